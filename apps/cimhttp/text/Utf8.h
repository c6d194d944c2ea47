#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cimhttp {

/// U+FFFD, which stands for what cannot be shown.
constexpr char32_t kReplacementCharacter = 0xFFFD;

/// The bytes of the longest character.
constexpr std::size_t kLongestUtf8 = 4;

/// True for a byte that goes on with a character.
constexpr bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

struct Utf8Character {
    char32_t value;
    std::size_t size; ///< in bytes, at least 1

    /// True for a byte that is no character's; a good U+FFFD has three.
    bool IsBad() const { return value == kReplacementCharacter && size == 1; }
};

/// The character that begins at an offset below the text's size; U+FFFD of one byte where there is no good one
/// (RFC 3629: overlong forms and surrogates are not).
Utf8Character CharacterAt(std::string_view text, std::size_t offset);

/// How many bytes at the front are ASCII without control characters.
std::size_t PlainAsciiSize(std::string_view text);

void AppendUtf8(char32_t character, std::string& text);

/// True for what must not reach a terminal as it is: control characters, separators of lines and paragraphs, and
/// characters that turn the direction of writing.
bool IsControl(char32_t character);

} // namespace cimhttp
