#pragma once

#include <algorithm>
#include <string_view>

// What letters and digits are, whatever the locale: only those of ASCII.
namespace Pegasus::text {

constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

constexpr bool isLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// A letter in lower case, and every other character as it is.
constexpr char lowered(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// A letter in upper case, and every other character as it is.
constexpr char raised(char c) noexcept { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// Whether two texts differ in nothing but the case of letters.
inline bool equalIgnoringCase(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return x == y || lowered(x) == lowered(y); });
}

} // namespace Pegasus::text
