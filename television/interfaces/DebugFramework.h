// The plug-in's log lines.
#pragma once

namespace television {

// Prints lines of this level and below; -1 prints none. Any thread.
void SetPluginDebugLevel(int level);

}  // namespace television
