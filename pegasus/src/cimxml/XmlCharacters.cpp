#include "cimxml/XmlCharacters.h"

#include <cstring>

namespace Pegasus::cimxml {

namespace {

constexpr std::uint64_t kEachByte = 0x0101010101010101U;

std::uint8_t byteAt(std::string_view text, std::size_t index) noexcept {
    return static_cast<std::uint8_t>(text[index]);
}

/// Whether eight bytes at once are plain: ASCII, and no control character, white space included.
bool areEightPlain(const char* bytes) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    const std::uint64_t belowBlank = word - kEachByte * 0x20U; // borrows into the top bit of a byte that is less
    return ((word | belowBlank) & kEachByte * 0x80U) == 0;
}

/// How long the UTF-8 form is that begins with this byte; 0 when none does.
std::size_t lengthFrom(std::uint8_t first) noexcept {
    if (first < 0x80)
        return 1;
    if (first < 0xC2)
        return 0;
    if (first < 0xE0)
        return 2;
    if (first < 0xF0)
        return 3;
    return first < 0xF5 ? 4 : 0;
}

} // namespace

bool isXmlCharacter(std::uint32_t codePoint) noexcept {
    if (codePoint < 0x20)
        return codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
    return codePoint < 0xD800 || (codePoint > 0xDFFF && codePoint < 0xFFFE) ||
           (codePoint > 0xFFFF && codePoint < 0x110000);
}

std::uint32_t takeCharacter(std::string_view& text) noexcept {
    constexpr std::uint8_t kPayload[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const std::size_t length = lengthFrom(byteAt(text, 0));
    std::uint32_t codePoint = byteAt(text, 0) & kPayload[length];
    for (std::size_t i = 1; i < length; ++i)
        codePoint = codePoint << 6U | (byteAt(text, i) & 0x3FU);
    text.remove_prefix(length);
    return codePoint;
}

bool isXmlText(std::string_view text) noexcept {
    while (!text.empty()) {
        while (text.size() >= 8 && areEightPlain(text.data()))
            text.remove_prefix(8);
        if (text.empty())
            break;
        const std::size_t length = lengthFrom(byteAt(text, 0));
        if (length == 0 || length > text.size())
            return false;
        for (std::size_t i = 1; i < length; ++i)
            if ((byteAt(text, i) & 0xC0U) != 0x80U)
                return false;
        const std::uint32_t codePoint = takeCharacter(text);
        const bool overlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
        if (overlong || !isXmlCharacter(codePoint))
            return false;
    }
    return true;
}

} // namespace Pegasus::cimxml
