#include "browser/Memory.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace browser {

// The C library gives each thread an arena of its own, eight for each processor. A channel change ends the decoder's
// threads, and what its pictures took, up to 16 MB, stays behind as free memory of the arenas that they came from; the
// next decoder's threads take others. Two arenas are used again. Handing the pictures back to the system would take
// even less memory (a fixed M_MMAP_THRESHOLD), but new pages for each picture, a quarter more of the processor's time.
void ShareMemoryAmongThreads() {
#ifdef __GLIBC__
    mallopt(M_ARENA_MAX, 2);
#endif
}

}  // namespace browser
