#include "TerminalSafety.h"

#include "Require.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// The control characters, and those of the categories Cf, Zl and Zp and of the property Default_Ignorable_Code_Point
/// that deceive: marks and changes of direction, ends of lines, characters without width, tags.
constexpr std::array<Range, 17> kForbidden{{{0x00, 0x1F},
                                            {0x7F, 0x9F},
                                            {0xAD, 0xAD},
                                            {0x034F, 0x034F},
                                            {0x061C, 0x061C},
                                            {0x115F, 0x1160},
                                            {0x17B4, 0x17B5},
                                            {0x180E, 0x180E},
                                            {0x200B, 0x200F},
                                            {0x2028, 0x202E},
                                            {0x2060, 0x206F},
                                            {0x3164, 0x3164},
                                            {0xFEFF, 0xFEFF},
                                            {0xFFA0, 0xFFA0},
                                            {0xFFF9, 0xFFFB},
                                            {0x1D173, 0x1D17A},
                                            {0xE0000, 0xE0FFF}}};

bool IsForbidden(char32_t character) {
    return std::any_of(kForbidden.begin(), kForbidden.end(),
                       [&](const Range& range) { return range.first <= character && character <= range.last; });
}

[[noreturn]] void Refuse(std::string_view text, std::size_t offset, const char* property) {
    std::fprintf(stderr, "at offset %zu:", offset);
    for (const char byte : text.substr(offset, 8)) {
        std::fprintf(stderr, " %02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    }
    std::fprintf(stderr, "\nin the output:\n%.*s\n", static_cast<int>(text.size()), text.data());
    Require(false, property);
    __builtin_unreachable();
}

/// The length of a character by its first byte, 0 where none begins (RFC 3629).
std::size_t LengthOf(unsigned char lead) {
    return lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
}

/// The character at an offset with its length; the length is 0 where there is no good one.
std::size_t Decode(std::string_view text, std::size_t offset, char32_t& character) {
    constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(text[offset]);
    const std::size_t length = LengthOf(lead);
    if (length == 0 || length > text.size() - offset) {
        return 0;
    }
    character = length == 1 ? lead : lead & (0x7FU >> length);
    for (const char byte : text.substr(offset + 1, length - 1)) {
        if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80) {
            return 0;
        }
        character = character << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    const bool isGood =
        character >= kSmallest[length] && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
    return isGood ? length : 0;
}

/// What the program writes around texts: bold, dim and neither.
constexpr std::array<std::string_view, 3> kColors{"\x1b[1m", "\x1b[2m", "\x1b[0m"};

/// The length of the end of a line, or of a colour, at the front; 0 where there is neither.
std::size_t OwnSequenceSize(std::string_view text, bool hasColors) {
    if (text.front() == '\n') {
        return 1;
    }
    if (text.substr(0, 2) == "\r\n") {
        return 2;
    }
    const auto isFront = [&](std::string_view color) { return text.substr(0, color.size()) == color; };
    const auto color = std::find_if(kColors.begin(), kColors.end(), isFront);
    return hasColors && color != kColors.end() ? color->size() : 0;
}

} // namespace

void RequireSafeForTerminals(std::string_view text, bool hasColors) {
    std::size_t offset = 0;
    while (offset < text.size()) {
        if (const std::size_t own = OwnSequenceSize(text.substr(offset), hasColors)) {
            offset += own;
            continue;
        }
        char32_t character = 0;
        const std::size_t length = Decode(text, offset, character);
        if (length == 0) {
            Refuse(text, offset, "the output is good UTF-8");
        }
        if (IsForbidden(character)) {
            Refuse(text, offset, "nothing in the output steers or deceives a terminal");
        }
        offset += length;
    }
}
