// The entry that libFuzzer calls, and the demands.
#include "tests/fuzz/Fuzz.h"

#include <cstdio>
#include <cstdlib>

namespace television::fuzz {
namespace {

constexpr std::uint32_t kLargestCharacter = 0x10ffff, kFirstSurrogate = 0xd800, kLastSurrogate = 0xdfff;

bool IsContinuation(char byte) { return (byte & 0xc0) == 0x80; }

// The length of the sequence with this first byte; 0 when none begins so.
std::size_t LengthBy(std::uint8_t first) {
    if (first < 0x80) return 1;
    if (first < 0xc0) return 0;
    return first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf8 ? 4 : 0;
}

// The length of the character at the beginning of a text; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
    const auto first = static_cast<std::uint8_t>(text[0]);
    const std::size_t length = LengthBy(first);
    if (length <= 1 || length > text.size()) return length > text.size() ? 0 : length;
    std::uint32_t code = first & (0x7f >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) return 0;
        code = code << 6 | (static_cast<std::uint8_t>(text[i]) & 0x3f);
    }
    constexpr std::uint32_t kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= kFirstSurrogate && code <= kLastSurrogate;
    return code < kFirstOfLength[length] || code > kLargestCharacter || surrogate ? 0 : length;
}

}  // namespace

void Demand(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "It does not hold that %s.\n", what);
    std::abort();
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

}  // namespace television::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    television::fuzz::Fuzz({data, size});
    return 0;
}
