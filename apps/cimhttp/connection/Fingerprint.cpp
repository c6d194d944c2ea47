#include "connection/Fingerprint.h"

#include <cctype>

namespace cimhttp {

namespace {

constexpr std::size_t kBytes = 32;
constexpr std::size_t kBareSize = 2 * kBytes;
constexpr std::size_t kSizeWithColons = 3 * kBytes - 1;

} // namespace

std::optional<std::string> NormalFingerprint(const std::string& text) {
    if (text.size() != kBareSize && text.size() != kSizeWithColons) {
        return std::nullopt;
    }
    const bool hasColons = text.size() == kSizeWithColons;
    std::string normal;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto letter = static_cast<unsigned char>(text[i]);
        const bool isColon = hasColons && i % 3 == 2;
        if (isColon ? letter != ':' : std::isxdigit(letter) == 0) {
            return std::nullopt;
        }
        normal += !hasColons && i > 0 && i % 2 == 0 ? ":" : "";
        normal += static_cast<char>(std::toupper(letter));
    }
    return normal;
}

} // namespace cimhttp
