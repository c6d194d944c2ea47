#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace demo {

/// The small letter of a capital one of ASCII, any other byte as it is: in names, no other letters differ in case only.
constexpr char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

inline std::string LowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return LowerCase(c); });
    return result;
}

} // namespace demo
