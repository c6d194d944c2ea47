#include "cimxml/XmlCharacters.h"

#include <cstddef>

namespace Pegasus::cimxml {

namespace {

std::uint8_t byteAt(std::string_view text, std::size_t index) noexcept {
    return static_cast<std::uint8_t>(text[index]);
}

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

/// How long the UTF-8 form is that begins with this byte; 0 when none does.
std::size_t lengthFrom(std::uint8_t first) noexcept {
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xC2) {
        return 0;
    }
    if (first < 0xE0) {
        return 2;
    }
    if (first < 0xF0) {
        return 3;
    }
    return first < 0xF5 ? 4 : 0;
}

struct Form {
    std::size_t length; // 0: there is none
    std::uint32_t codePoint;
};

/// What the text begins with, whole and in UTF-8; surrogates count, too.
Form firstForm(std::string_view text) noexcept {
    constexpr Form kNone = {0, 0};
    const std::size_t length = lengthFrom(byteAt(text, 0));
    if (length == 0 || length > text.size()) {
        return kNone;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, i) & 0xC0U) != 0x80U) {
            return kNone;
        }
    }
    const std::uint32_t codePoint = takeCharacter(text);
    const bool overlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
    return overlong || codePoint > 0x10FFFF ? kNone : Form{length, codePoint};
}

} // namespace

std::size_t lengthOfFirstForm(std::string_view text) noexcept { return firstForm(text).length; }

bool isAcceptedCharacter(std::uint32_t codePoint) noexcept {
    return (codePoint != 0 && codePoint < 0xD800) || (codePoint > 0xDFFF && codePoint < 0xFFFE) ||
           (codePoint > 0xFFFF && codePoint < 0x110000);
}

std::uint32_t takeCharacter(std::string_view& text) noexcept {
    constexpr std::uint8_t kPayload[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const std::size_t length = lengthFrom(byteAt(text, 0));
    std::uint32_t codePoint = byteAt(text, 0) & kPayload[length];
    for (std::size_t i = 1; i < length; ++i) {
        codePoint = codePoint << 6U | (byteAt(text, i) & 0x3FU);
    }
    text.remove_prefix(length);
    return codePoint;
}

std::size_t lengthOfCharacters(std::string_view text) noexcept {
    std::string_view rest = text;
    while (!rest.empty()) {
        if (rest.size() >= kBlock && isPlainBlock(rest.data())) {
            rest.remove_prefix(kBlock);
            continue;
        }
        const Form form = firstForm(rest);
        if (form.length == 0 || !isAcceptedCharacter(form.codePoint)) {
            break;
        }
        rest.remove_prefix(form.length);
    }
    return text.size() - rest.size();
}

std::string codePointText(std::uint32_t codePoint) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "U+";
    for (unsigned shift = codePoint > 0xFFFFF ? 20 : codePoint > 0xFFFF ? 16 : 12;; shift -= 4) {
        text += kDigits[codePoint >> shift & 0xFU];
        if (shift == 0) {
            return text;
        }
    }
}

} // namespace Pegasus::cimxml
