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
