#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace cimhttp {

// Letters, digits and case as ASCII has them, whatever the locale. Every other byte stands for itself.

constexpr bool IsAsciiDigit(char letter) { return letter >= '0' && letter <= '9'; }

constexpr bool IsAsciiLetter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

constexpr char AsciiLower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

constexpr char AsciiUpper(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

/// The text in lower case.
inline std::string AsciiLower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) { return AsciiLower(letter); });
    return text;
}

/// Compares bytes in lower case: less than 0, 0 or greater than 0, as std::string::compare does.
inline int CompareIgnoringCase(std::string_view one, std::string_view other) {
    const std::size_t common = std::min(one.size(), other.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto left = static_cast<unsigned char>(AsciiLower(one[i]));
        const auto right = static_cast<unsigned char>(AsciiLower(other[i]));
        if (left != right) {
            return left < right ? -1 : 1;
        }
    }
    return one.size() == other.size() ? 0 : one.size() < other.size() ? -1 : 1;
}

inline bool EqualIgnoringCase(std::string_view one, std::string_view other) {
    return one.size() == other.size() && CompareIgnoringCase(one, other) == 0;
}

} // namespace cimhttp
