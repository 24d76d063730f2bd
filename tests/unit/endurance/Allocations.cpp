// Stands before the operators of the C++ library, or of the sanitizer, which still do the work and check the use.
#include "tests/unit/endurance/Allocations.h"

#include <dlfcn.h>
#include <malloc.h>

#include <atomic>
#include <new>

namespace {

thread_local unsigned s_untilFailure = 0;  // 0: none fails
std::atomic<std::ptrdiff_t> s_blocks = 0;
std::atomic<std::ptrdiff_t> s_bytes = 0;

void Count(void* block, int sign) {
    s_blocks.fetch_add(sign, std::memory_order_relaxed);
    s_bytes.fetch_add(sign * static_cast<std::ptrdiff_t>(malloc_usable_size(block)), std::memory_order_relaxed);
}

// The names are the operators' in the C++ ABI, where std::size_t is m on 64 bits and j on 32.
template <class Operator>
Operator Next(const char* name64, const char* name32) {
    return reinterpret_cast<Operator>(dlsym(RTLD_NEXT, sizeof(std::size_t) == 8 ? name64 : name32));
}

}  // namespace

void* operator new(std::size_t size) {
    static const auto next = Next<void* (*)(std::size_t)>("_Znwm", "_Znwj");
    if (s_untilFailure != 0 && --s_untilFailure == 0) throw std::bad_alloc();
    void* block = next(size);
    Count(block, 1);
    return block;
}

void operator delete(void* block) noexcept {
    static const auto next = Next<void (*)(void*)>("_ZdlPv", "_ZdlPv");
    if (block) Count(block, -1);
    next(block);
}

// That of the C++ library comes back to the one above, that of the sanitizer does not: it checks the size.
void operator delete(void* block, [[maybe_unused]] std::size_t size) noexcept {
#if defined(__SANITIZE_ADDRESS__)
    static const auto next = Next<void (*)(void*, std::size_t)>("_ZdlPvm", "_ZdlPvj");
    if (block) Count(block, -1);
    next(block, size);
#else
    operator delete(block);
#endif
}

namespace endurance {

Allocations Allocations::Alive() { return {s_blocks, s_bytes}; }

AllocationFault::AllocationFault(unsigned n) { s_untilFailure = n; }
AllocationFault::~AllocationFault() { s_untilFailure = 0; }
bool AllocationFault::Happened() const { return s_untilFailure == 0; }

}  // namespace endurance
