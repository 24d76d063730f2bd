// The arguments of recorded calls as text.
#pragma once

#include <string>
#include <type_traits>

namespace support {

inline std::string TextOf(const std::string& value) { return value; }
inline std::string TextOf(const char* value) { return value != nullptr ? value : "null"; }
template <class T>
requires std::is_arithmetic_v<T> std::string TextOf(T value) {
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else {
        return std::to_string(value);
    }
}

// "7, false"
template <class First, class... Rest>
std::string Text(const First& first, const Rest&... rest) {
    return (TextOf(first) + ... + (", " + TextOf(rest)));
}

// The bytes as lower-case hexadecimal digits.
std::string Hex(const std::string& bytes);

}  // namespace support
