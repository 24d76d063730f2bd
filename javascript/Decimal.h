// Numbers as decimal text, whatever the process's locale.
#pragma once

#include <charconv>
#include <concepts>
#include <string>

namespace OipfJavaScript {

template <std::integral Integer>
std::string Decimal(Integer number) {
    char digits[24];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

}  // namespace OipfJavaScript
