// Text in service information (ETSI EN 300 468, annex A).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace television {

// As UTF-8: the first bytes choose the character table; emphasis marks are left out, line breaks become "\n", and a byte
// that the table does not know becomes U+FFFD. A text in a coding of a broadcaster's own (0x1f) is empty.
std::string DecodeText(std::span<const std::uint8_t> text);

// Decodes a text with its length before it at `at`, which moves behind it; what the bytes do not hold is left out.
std::string ReadCountedText(std::span<const std::uint8_t> bytes, std::size_t& at);

}  // namespace television
