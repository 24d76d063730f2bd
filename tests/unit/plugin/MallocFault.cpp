// The malloc of this program, with its fault.
#include "tests/unit/plugin/MallocFault.h"

extern "C" void* __real_malloc(std::size_t size);

extern "C" void* __wrap_malloc(std::size_t size) {
    return MallocFault::s_size != 0 && size == MallocFault::s_size ? nullptr : __real_malloc(size);
}
