#include "web/QueryText.h"

#include <charconv>
#include <sstream>

namespace cimhttp {

namespace {

/// What stands behind a percent sign that no two hexadecimal digits follow stays as it is.
std::string Decoded(const std::string& text) {
    constexpr int kHexadecimal = 16;
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned byte = 0;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(text.data() + i + 1, text.data() + i + 3, byte, kHexadecimal).ptr == text.data() + i + 3) {
            decoded += static_cast<char>(byte);
            i += 2;
        } else {
            decoded += text[i] == '+' ? ' ' : text[i];
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
        parameters.emplace(Decoded(part.substr(0, sign)), Decoded(value));
    }
    return parameters;
}

} // namespace cimhttp
