#include "text/Utf8.h"

#include <algorithm>
#include <array>

namespace cimhttp {

namespace {

constexpr unsigned kContinuationBits = 6;

struct Lead {
    std::size_t size; // 0: no character begins so
    char32_t bits;
    char32_t smallest; // what a shorter form cannot say
};

Lead LeadOf(unsigned char byte) {
    if (byte < 0x80U) {
        return {1, byte, 0};
    }
    if ((byte & 0xE0U) == 0xC0U) {
        return {2, byte & 0x1FU, 0x80};
    }
    if ((byte & 0xF0U) == 0xE0U) {
        return {3, byte & 0x0FU, 0x800};
    }
    if ((byte & 0xF8U) == 0xF0U) {
        return {4, byte & 0x07U, 0x10000};
    }
    return {0, 0, 0};
}

bool IsCharacter(char32_t value) { return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF); }

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array<Range, 17> kControls{{
    {0x00, 0x1F},       // C0
    {0x7F, 0x9F},       // delete, C1
    {0xAD, 0xAD},       // soft hyphen
    {0x34F, 0x34F},     // combining grapheme joiner
    {0x61C, 0x61C},     // Arabic letter mark
    {0x115F, 0x1160},   // Hangul fillers
    {0x17B4, 0x17B5},   // Khmer vowels that do not show
    {0x180E, 0x180E},   // Mongolian vowel separator
    {0x200B, 0x200F},   // blanks of no width, joiners, direction marks
    {0x2028, 0x202E},   // ends of lines and paragraphs, directions
    {0x2060, 0x206F},   // word joiner, operators that do not show, directions
    {0x3164, 0x3164},   // Hangul filler
    {0xFEFF, 0xFEFF},   // byte order mark
    {0xFFA0, 0xFFA0},   // Hangul filler
    {0xFFF9, 0xFFFB},   // annotations
    {0x1D173, 0x1D17A}, // musical controls
    {0xE0000, 0xE0FFF}, // tags, variation selectors for rare ideographs
}};

} // namespace

Utf8Character CharacterAt(std::string_view text, std::size_t offset) {
    constexpr Utf8Character kBad{kReplacementCharacter, 1};
    const Lead lead = LeadOf(static_cast<unsigned char>(text[offset]));
    if (lead.size == 0 || lead.size > text.size() - offset) {
        return kBad;
    }
    char32_t value = lead.bits;
    for (std::size_t i = 1; i < lead.size; ++i) {
        const auto byte = static_cast<unsigned char>(text[offset + i]);
        if (!IsContinuation(text[offset + i])) {
            return kBad;
        }
        value = (value << kContinuationBits) | (byte & 0x3FU);
    }
    return value >= lead.smallest && IsCharacter(value) ? Utf8Character{value, lead.size} : kBad;
}

std::size_t PlainAsciiSize(std::string_view text) {
    const auto* const end =
        std::find_if_not(text.begin(), text.end(), [](char byte) { return byte >= ' ' && byte <= '~'; });
    return static_cast<std::size_t>(end - text.begin());
}

void AppendUtf8(char32_t character, std::string& text) {
    const auto append = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    const auto continuation = [&](unsigned shift) { return 0x80U | ((character >> shift) & 0x3FU); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | (character >> kContinuationBits));
        append(continuation(0));
    } else if (character < 0x10000) {
        append(0xE0U | (character >> (2 * kContinuationBits)));
        append(continuation(kContinuationBits));
        append(continuation(0));
    } else {
        append(0xF0U | (character >> (3 * kContinuationBits)));
        append(continuation(2 * kContinuationBits));
        append(continuation(kContinuationBits));
        append(continuation(0));
    }
}

std::vector<unsigned> Utf16Units(char32_t character) {
    constexpr char32_t kFirstOfPairs = 0x10000;
    if (character < kFirstOfPairs) {
        return {character};
    }
    const char32_t bits = character - kFirstOfPairs;
    return {0xD800U | (bits >> 10U), 0xDC00U | (bits & 0x3FFU)};
}

bool IsControl(char32_t character) {
    const auto* const range = std::lower_bound(kControls.begin(), kControls.end(), character,
                                               [](const Range& one, char32_t value) { return one.last < value; });
    return range != kControls.end() && range->first <= character;
}

} // namespace cimhttp
