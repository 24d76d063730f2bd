// The place of a virtual operation in its class's table, for tests that pin the order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace support {

// Counted from 0; a destructor takes two places. In the C++ ABI of all our targets a pointer to a virtual member holds
// one more than the byte offset of its slot.
template <class Member>
std::size_t SlotOf(Member member) {
    static_assert(sizeof member >= sizeof(std::uintptr_t));
    std::uintptr_t word = 0;
    std::memcpy(&word, &member, sizeof word);
    return (word - 1) / sizeof(void*);
}

}  // namespace support
