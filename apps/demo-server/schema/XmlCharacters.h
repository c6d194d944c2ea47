#pragma once

#include <cstddef>
#include <string_view>

namespace demo {

/// The length of the character at an index, 0 if what stands there is none that XML 1.0 has, in good UTF-8.
std::size_t XmlCharacterLength(std::string_view text, std::size_t index);

/// Whether a text is made of characters that XML 1.0 has, in good UTF-8.
bool IsXmlText(std::string_view text);

/// The index of the first byte that is no part of such a character; the text's length if there is none.
std::size_t FirstOutsideXml(std::string_view text);

} // namespace demo
