// A failing malloc, for the one block that the plug-in takes from it. The program is linked with --wrap=malloc.
#pragma once

#include <cstddef>

// While it lives, malloc calls of this program for exactly `size` bytes fail.
class MallocFault {
public:
    explicit MallocFault(std::size_t size) { s_size = size; }
    ~MallocFault() { s_size = 0; }
    MallocFault(const MallocFault&) = delete;
    MallocFault& operator=(const MallocFault&) = delete;

    static inline std::size_t s_size = 0;
};
