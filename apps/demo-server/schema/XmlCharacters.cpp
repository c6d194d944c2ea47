#include "schema/XmlCharacters.h"

namespace demo {

namespace {

unsigned Byte(std::string_view text, std::size_t index) { return static_cast<unsigned char>(text[index]); }

bool IsControl(unsigned character) {
    return character < ' ' && character != '\t' && character != '\n' && character != '\r';
}

} // namespace

std::size_t XmlCharacterLength(std::string_view text, std::size_t index) {
    const unsigned first = Byte(text, index);
    if (first < 0x80) {
        return IsControl(first) ? 0 : 1;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || index + length > text.size()) {
        return 0;
    }
    unsigned character = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((Byte(text, index + i) & 0xC0U) != 0x80) {
            return 0;
        }
        character = character << 6U | (Byte(text, index + i) & 0x3FU);
    }
    const bool isOverlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    const bool isNoCharacter = character == 0xFFFE || character == 0xFFFF || character > 0x10FFFF;
    return isOverlong || isSurrogate || isNoCharacter ? 0 : length;
}

bool IsXmlText(std::string_view text) { return FirstOutsideXml(text) == text.size(); }

std::size_t FirstOutsideXml(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t length = XmlCharacterLength(text, i);
        if (length == 0) {
            break;
        }
        i += length;
    }
    return i;
}

} // namespace demo
