// How the program's memory is managed.
#pragma once

namespace browser {

// Lets all threads take their memory from the same two places. Before the first thread is begun.
void ShareMemoryAmongThreads();

}  // namespace browser
