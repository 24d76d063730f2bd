// What the benchmarks ask of their platform.
#pragma once

#include "platform/DSMCCProtocol.h"

namespace benchmarks {

// The job id that was given out last.
unsigned long LastJob();
// Delivers an event with four bytes for this job to the plug-in.
void DeliverStreamEvent(unsigned long job);

}  // namespace benchmarks
