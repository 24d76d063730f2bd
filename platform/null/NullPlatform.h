// What the platform that supports nothing offers to the program around it.
#pragma once

#include "platform/visibility.h"

namespace nullplatform {

// The plug-in's log lines up to this level go to standard error: 0 errors, 2 warnings, 3 traces, 4 details. -1, as at
// the start: none. Any thread.
TVPLATFORM_API void SetDebugLevel(int level);

}  // namespace nullplatform
