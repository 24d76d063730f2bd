// What runs on a television before its browser loads the plug-in.
#pragma once

namespace contract {

// Called once, before the first test, on the thread that is the browser's main thread in these tests. Afterwards the
// platform library is at work, and the current page is a broadcast-related application.
void StartPlatform();
void EndPlatform();

}  // namespace contract
