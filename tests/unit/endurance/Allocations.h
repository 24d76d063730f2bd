// What the whole program allocates with `new`: how much of it is alive, and an allocation that fails.
#pragma once

#include <cstddef>

namespace endurance {

struct Allocations {
    std::ptrdiff_t blocks;
    std::ptrdiff_t bytes;
    friend bool operator==(const Allocations&, const Allocations&) = default;

    // Those that are alive, on all threads.
    static Allocations Alive();
};

// While it lives, the n-th `new` of its thread throws std::bad_alloc (1: the next one).
class AllocationFault {
public:
    explicit AllocationFault(unsigned n);
    ~AllocationFault();
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    // Whether that allocation came.
    bool Happened() const;
};

}  // namespace endurance
