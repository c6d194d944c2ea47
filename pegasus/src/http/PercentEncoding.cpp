#include "http/PercentEncoding.h"

#include "text/Ascii.h"
#include "text/Hexadecimal.h"

#include <cstddef>
#include <optional>

namespace Pegasus::http {

namespace {

bool isUnreserved(char c) {
    return text::isLetter(c) || text::isDigit(c) || std::string_view("-._~").find(c) != std::string_view::npos;
}

/// The byte that two digits stand for; nothing where there are not two.
std::optional<char> byteOf(std::string_view digits) {
    const auto high = digits.size() == 2 ? text::hexNumber(digits[0]) : std::nullopt;
    const auto low = high ? text::hexNumber(digits[1]) : std::nullopt;
    return low ? std::optional<char>(static_cast<char>(*high << 4U | *low)) : std::nullopt;
}

} // namespace

std::string percentEncoded(std::string_view text) {
    std::string encoded;
    for (const char c : text) {
        if (isUnreserved(c)) {
            encoded += c;
        } else {
            encoded += '%';
            text::appendHex(static_cast<unsigned char>(c), encoded);
        }
    }
    return encoded;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = text[i] == '%' ? byteOf(text.substr(i + 1, 2)) : std::nullopt;
        decoded += byte.value_or(text[i]);
        i += byte ? 2 : 0;
    }
    return decoded;
}

} // namespace Pegasus::http
