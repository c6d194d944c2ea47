#pragma once

#include <cstdint>
#include <string_view>

namespace Pegasus::cimxml {

/// Whether XML 1.0 allows the code point (production Char).
bool isXmlCharacter(std::uint32_t codePoint) noexcept;

/// Whether the text is UTF-8 and made of characters that XML allows.
bool isXmlText(std::string_view text) noexcept;

/// Takes the first character off `text` and returns its code point. The text is not empty and has passed isXmlText().
std::uint32_t takeCharacter(std::string_view& text) noexcept;

/// Writes a code point as UTF-8 and returns the end of it, four bytes on at most.
char* putCharacter(std::uint32_t codePoint, char* out) noexcept;

/// Bytes that a name of XML begins with and holds; every byte beyond ASCII counts as one.
constexpr bool startsXmlName(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}
constexpr bool isInXmlName(char c) noexcept {
    return startsXmlName(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

constexpr bool isXmlSpace(char c) noexcept { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

/// The text without white space at either end.
constexpr std::string_view trimmed(std::string_view text) noexcept {
    while (!text.empty() && isXmlSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isXmlSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace Pegasus::cimxml
