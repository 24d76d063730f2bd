// Text in service information (ETSI EN 300 468, annex A).
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace television {

// As UTF-8: the character table is chosen by the first byte; emphasis marks are left out, line breaks become "\n", and
// a byte that the table does not know becomes U+FFFD.
std::string DecodeText(std::span<const std::uint8_t> text);

}  // namespace television
