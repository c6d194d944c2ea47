#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::text {

/// The digit, in upper case, of a number below 16.
constexpr char hexDigit(unsigned number) noexcept {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    return kDigits[number];
}

/// The number that a digit in either case stands for; nothing where it is none.
constexpr std::optional<unsigned> hexNumber(char digit) noexcept {
    if (digit >= '0' && digit <= '9') {
        return static_cast<unsigned>(digit - '0');
    }
    if (digit >= 'A' && digit <= 'F') {
        return static_cast<unsigned>(digit - 'A' + 10);
    }
    if (digit >= 'a' && digit <= 'f') {
        return static_cast<unsigned>(digit - 'a' + 10);
    }
    return std::nullopt;
}

/// Appends a byte as two digits in upper case.
inline void appendHex(unsigned char byte, std::string& out) {
    out += hexDigit(byte >> 4U);
    out += hexDigit(byte & 0xFU);
}

} // namespace Pegasus::text
