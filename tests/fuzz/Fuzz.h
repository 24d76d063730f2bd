// What every fuzzer has: it is given bytes, and demands something of what the parser makes of them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace television::fuzz {

// Each fuzzer defines this one.
void Fuzz(std::span<const std::uint8_t> input);

// Ends the program, which is a finding, unless it holds.
void Demand(bool holds, const char* what);

bool IsUtf8(std::string_view text);

}  // namespace television::fuzz
