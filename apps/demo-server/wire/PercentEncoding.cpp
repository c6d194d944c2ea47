#include "wire/PercentEncoding.h"

#include <cctype>
#include <charconv>

namespace demo {

std::string PercentEncode(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 && (std::isalnum(byte) != 0 || std::string_view("-._~").find(c) != std::string_view::npos)) {
            result += c;
        } else {
            ((result += '%') += kDigits[byte >> 4U]) += kDigits[byte & 0xFU];
        }
    }
    return result;
}

std::string PercentDecode(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const char* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            result += static_cast<char>(byte);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

} // namespace demo
