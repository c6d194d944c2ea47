#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Pegasus::text {

/// The most bytes that a character has in UTF-8.
constexpr std::size_t kLongestCharacter = 4;

/// A character, and how many bytes it has in UTF-8.
struct Utf8Character {
    std::size_t length; ///< 0: there is none
    std::uint32_t codePoint;
};

/// Whether a byte is part of a character, but not its first.
constexpr bool isContinuation(char byte) noexcept { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

/// Whether a code point is half of a pair in UTF-16, and no character.
constexpr bool isSurrogate(std::uint32_t codePoint) noexcept { return (codePoint & 0xFFFFF800U) == 0xD800U; }

/// How many bytes the first one of a character announces; 0 where none begins with it.
constexpr std::size_t announcedLength(char first) noexcept {
    const auto byte = static_cast<unsigned char>(first);
    if (byte < 0x80) {
        return 1;
    }
    if (byte < 0xC2) {
        return 0;
    }
    if (byte < 0xE0) {
        return 2;
    }
    if (byte < 0xF0) {
        return 3;
    }
    return byte < 0xF5 ? 4 : 0;
}

/// The first character of a text that is not empty, where that is whole and in its shortest form; surrogates count,
/// too.
inline Utf8Character firstCharacter(std::string_view text) noexcept {
    constexpr Utf8Character kNone = {0, 0};
    constexpr unsigned char kPayload[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const std::size_t length = announcedLength(text.front());
    if (length == 0 || length > text.size()) {
        return kNone;
    }
    std::uint32_t codePoint = static_cast<unsigned char>(text.front()) & kPayload[length];
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i])) {
            return kNone;
        }
        codePoint = codePoint << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    const bool overlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
    return overlong || codePoint > 0x10FFFF ? kNone : Utf8Character{length, codePoint};
}

/// Whether the bytes are UTF-8.
inline bool isUtf8(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const Utf8Character first = firstCharacter(bytes);
        if (first.length == 0 || isSurrogate(first.codePoint)) {
            return false;
        }
        bytes.remove_prefix(first.length);
    }
    return true;
}

/// The beginning of a text, of so many bytes or a little less: whole characters.
inline std::string_view beginningOf(std::string_view text, std::size_t length) noexcept {
    std::size_t end = std::min(length, text.size());
    while (end != 0 && end != text.size() && isContinuation(text[end])) {
        --end;
    }
    return text.substr(0, end);
}

/// Appends a code point as UTF-8.
inline void appendUtf8(std::uint32_t codePoint, std::string& out) {
    const auto put = [&](std::uint32_t byte) { out += static_cast<char>(byte); };
    const auto putContinuation = [&](unsigned shift) { put(0x80U | (codePoint >> shift & 0x3FU)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0U | codePoint >> 6U);
        putContinuation(0);
    } else if (codePoint < 0x10000) {
        put(0xE0U | codePoint >> 12U);
        putContinuation(6);
        putContinuation(0);
    } else {
        put(0xF0U | codePoint >> 18U);
        putContinuation(12);
        putContinuation(6);
        putContinuation(0);
    }
}

} // namespace Pegasus::text
