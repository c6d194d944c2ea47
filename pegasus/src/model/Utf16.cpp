#include "model/Utf16.h"

#include "model/Utf8.h"

namespace Pegasus::detail {

namespace {

constexpr Uint32 kReplacement = 0xFFFD;
constexpr Uint32 kFirstSupplementary = 0x10000;
constexpr Uint32 kLastCodePoint = 0x10FFFF;

struct Character {
    Uint32 codePoint = kReplacement;
    std::size_t bytes = 0; ///< 0 where there is no good one
};

constexpr bool isSurrogate(Uint32 unit) noexcept { return (unit & 0xFFFFF800U) == 0xD800U; }
constexpr bool isLeading(Uint32 unit) noexcept { return (unit & 0xFC00U) == 0xD800U; }
constexpr bool isTrailing(Uint32 unit) noexcept { return (unit & 0xFC00U) == 0xDC00U; }

/// How many bytes the first one announces, and the bits of it that count.
Character announced(Uint8 first) noexcept {
    if (first < 0x80U) {
        return {first, 1};
    }
    if ((first & 0xE0U) == 0xC0U) {
        return {first & 0x1FU, 2};
    }
    if ((first & 0xF0U) == 0xE0U) {
        return {first & 0x0FU, 3};
    }
    if ((first & 0xF8U) == 0xF0U) {
        return {first & 0x07U, 4};
    }
    return {};
}

/// The shortest form is the only one.
bool isShortest(const Character& character) noexcept {
    constexpr Uint32 kLeast[] = {0, 0, 0x80, 0x800, kFirstSupplementary};
    return character.codePoint >= kLeast[character.bytes];
}

/// The character at the beginning of a text that is not empty.
Character firstOf(std::string_view text) noexcept {
    Character character = announced(static_cast<Uint8>(text.front()));
    if (character.bytes == 0 || character.bytes > text.size()) {
        return {};
    }
    for (std::size_t i = 1; i < character.bytes; ++i) {
        const auto byte = static_cast<Uint8>(text[i]);
        if ((byte & 0xC0U) != 0x80U) {
            return {};
        }
        character.codePoint = character.codePoint << 6U | (byte & 0x3FU);
    }
    const bool isGood =
        isShortest(character) && character.codePoint <= kLastCodePoint && !isSurrogate(character.codePoint);
    return isGood ? character : Character();
}

void appendUnits(std::u16string& out, Uint32 codePoint) {
    if (codePoint < kFirstSupplementary) {
        out += static_cast<char16_t>(codePoint);
        return;
    }
    const Uint32 offset = codePoint - kFirstSupplementary;
    out += static_cast<char16_t>(0xD800U | offset >> 10U);
    out += static_cast<char16_t>(0xDC00U | (offset & 0x3FFU));
}

} // namespace

std::u16string utf16Of(std::string_view utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    while (!utf8.empty()) {
        const Character character = firstOf(utf8);
        appendUnits(units, character.codePoint);
        utf8.remove_prefix(character.bytes == 0 ? 1 : character.bytes);
    }
    return units;
}

std::string utf8Of(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        const Uint32 unit = units[i];
        if (isLeading(unit) && i + 1 < units.size() && isTrailing(units[i + 1])) {
            const Uint32 next = units[++i];
            appendUtf8(kFirstSupplementary + ((unit & 0x3FFU) << 10U | (next & 0x3FFU)), text);
        } else {
            appendUtf8(isSurrogate(unit) ? kReplacement : unit, text);
        }
    }
    return text;
}

bool isUtf8(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const std::size_t size = firstOf(bytes).bytes;
        if (size == 0) {
            return false;
        }
        bytes.remove_prefix(size);
    }
    return true;
}

} // namespace Pegasus::detail
