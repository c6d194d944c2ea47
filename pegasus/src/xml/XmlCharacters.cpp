#include "xml/XmlCharacters.h"

#include "text/Hexadecimal.h"
#include "text/Utf8.h"

#include <cstddef>

namespace Pegasus::xml {

namespace {

constexpr std::size_t kBlock = 64;

/// Whether a whole block is ASCII and needs no closer look. Written without branches, so that compilers make vector
/// code of it.
bool isPlainBlock(const char* block) noexcept {
    std::uint8_t other = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        const auto byte = static_cast<std::uint8_t>(block[i]);
        other = static_cast<std::uint8_t>(other | (byte & 0x80U) | (byte == 0));
    }
    return other == 0;
}

} // namespace

bool isAcceptedCharacter(std::uint32_t codePoint) noexcept {
    return (codePoint != 0 && codePoint < 0xD800) || (codePoint > 0xDFFF && codePoint < 0xFFFE) ||
           (codePoint > 0xFFFF && codePoint < 0x110000);
}

std::size_t lengthOfCharacters(std::string_view text) noexcept {
    std::string_view rest = text;
    while (!rest.empty()) {
        if (rest.size() >= kBlock && isPlainBlock(rest.data())) {
            rest.remove_prefix(kBlock);
            continue;
        }
        const text::Utf8Character first = text::firstCharacter(rest);
        if (first.length == 0 || !isAcceptedCharacter(first.codePoint)) {
            break;
        }
        rest.remove_prefix(first.length);
    }
    return text.size() - rest.size();
}

std::string codePointText(std::uint32_t codePoint) {
    std::string text = "U+";
    for (unsigned shift = codePoint > 0xFFFFF ? 20 : codePoint > 0xFFFF ? 16 : 12;; shift -= 4) {
        text += text::hexDigit(codePoint >> shift & 0xFU);
        if (shift == 0) {
            return text;
        }
    }
}

} // namespace Pegasus::xml
