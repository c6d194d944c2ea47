#include "http/UriText.h"

#include <charconv>
#include <cstddef>

namespace Pegasus::http {

namespace {

bool isUnreserved(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~").find(c) != std::string_view::npos;
}

bool decodeByte(std::string_view digits, char& byte) {
    unsigned char value = 0;
    const char* const end = digits.data() + digits.size();
    if (digits.size() != 2 || std::from_chars(digits.data(), end, value, 16).ptr != end) {
        return false;
    }
    byte = static_cast<char>(value);
    return true;
}

} // namespace

std::string encodeUri(std::string_view text) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        if (isUnreserved(c)) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
        }
    }
    return encoded;
}

std::string decodeUri(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%' && decodeByte(text.substr(i + 1, 2), c)) {
            i += 2;
        }
        decoded += c;
    }
    return decoded;
}

} // namespace Pegasus::http
