#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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

/// The character in UTF-16, which escapes of JSON and MOF are made of: one unit or two.
std::vector<unsigned> Utf16Units(char32_t character);

/// True for what must not reach a terminal as it is: control characters, separators of lines and paragraphs, and
/// characters that show nothing by themselves and change what stands around them: they turn the direction of writing,
/// or make one text look like another, as blanks of no width, soft hyphens, fillers and tags do. The joiners U+200C and
/// U+200D are among them, although emoji and some scripts use them: a name of a server that holds one may not pass for
/// the name without it. This is the one place that decides so, for every form of the output.
bool IsControl(char32_t character);

} // namespace cimhttp
