#pragma once

#include "text/Ascii.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Pegasus::xml {

/// Whether a text may hold the code point: one that XML 1.0 allows (production Char), or one of the other control
/// characters but U+0000, which servers send in texts.
bool isAcceptedCharacter(std::uint32_t codePoint) noexcept;

/// How many bytes of the text are whole characters in UTF-8 that are accepted: up to the first byte where none begins,
/// or where one is cut off by the end.
std::size_t lengthOfCharacters(std::string_view text) noexcept;

/// A code point as people write it, such as "U+FFFE".
std::string codePointText(std::uint32_t codePoint);

/// Bytes that a name of XML begins with and holds; every byte beyond ASCII counts as one.
constexpr bool startsXmlName(char c) noexcept {
    return text::isLetter(c) || c == '_' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}
constexpr bool isInXmlName(char c) noexcept { return startsXmlName(c) || text::isDigit(c) || c == '-' || c == '.'; }

/// White space as XML has it.
constexpr bool isXmlSpace(char c) noexcept { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

/// The text without the mark that may stand at the beginning of a document.
constexpr std::string_view withoutByteOrderMark(std::string_view text) noexcept {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    return text.substr(0, kMark.size()) == kMark ? text.substr(kMark.size()) : text;
}

/// The text without white space at either end.
constexpr std::string_view trimmed(std::string_view text) noexcept {
    while (!text.empty() && isXmlSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isXmlSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace Pegasus::xml
