#include "web/QueryText.h"

#include "text/Ascii.h"

#include <charconv>
#include <sstream>
#include <string_view>

namespace cimhttp {

namespace {

/// What stands behind a percent sign that no two hexadecimal digits follow stays as it is. `plus` is what a plus sign
/// stands for.
std::string Decoded(const std::string& text, char plus) {
    constexpr int kHexadecimal = 16;
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned byte = 0;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(text.data() + i + 1, text.data() + i + 3, byte, kHexadecimal).ptr == text.data() + i + 3) {
            decoded += static_cast<char>(byte);
            i += 2;
        } else {
            decoded += text[i] == '+' ? plus : text[i];
        }
    }
    return decoded;
}

} // namespace

std::map<std::string, std::string> QueryParameters(const std::string& query) {
    std::map<std::string, std::string> parameters;
    std::istringstream parts(query);
    for (std::string part; std::getline(parts, part, '&');) {
        const std::size_t sign = part.find('=');
        const std::string value = sign == std::string::npos ? std::string() : part.substr(sign + 1);
        parameters.emplace(Decoded(part.substr(0, sign), ' '), Decoded(value, ' '));
    }
    return parameters;
}

std::string PercentEncoded(const std::string& text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    constexpr unsigned kHalf = 4; // of a byte, in bits
    std::string encoded;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (IsAsciiLetter(character) || IsAsciiDigit(character) ||
            std::string_view("-._~").find(character) != std::string_view::npos) {
            encoded += character;
        } else {
            encoded += '%';
            encoded += kDigits[byte >> kHalf];
            encoded += kDigits[byte & 0xFU];
        }
    }
    return encoded;
}

std::vector<std::string> PathParts(const std::string& path) {
    std::vector<std::string> parts;
    std::istringstream text(path);
    for (std::string part; std::getline(text, part, '/');) {
        if (!part.empty()) {
            parts.push_back(Decoded(part, '+'));
        }
    }
    return parts;
}

} // namespace cimhttp
