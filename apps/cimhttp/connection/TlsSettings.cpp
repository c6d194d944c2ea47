#include "connection/TlsSettings.h"

#include "text/Ascii.h"

namespace cimhttp {

namespace {

constexpr std::size_t kBytes = 32;
constexpr std::size_t kBareSize = 2 * kBytes;
constexpr std::size_t kSizeWithColons = 3 * kBytes - 1;

bool IsHexadecimalDigit(char letter) { return IsAsciiDigit(letter) || (letter >= 'A' && letter <= 'F'); }

} // namespace

std::optional<std::string> NormalFingerprint(const std::string& text) {
    if (text.size() != kBareSize && text.size() != kSizeWithColons) {
        return std::nullopt;
    }
    const bool hasColons = text.size() == kSizeWithColons;
    std::string normal;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char letter = AsciiUpper(text[i]);
        const bool isColon = hasColons && i % 3 == 2;
        if (isColon ? letter != ':' : !IsHexadecimalDigit(letter)) {
            return std::nullopt;
        }
        normal += !hasColons && i > 0 && i % 2 == 0 ? ":" : "";
        normal += letter;
    }
    return normal;
}

} // namespace cimhttp
