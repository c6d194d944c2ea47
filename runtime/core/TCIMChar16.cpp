#include "host/TCIMChar16.h"

#include "host/TVYXException.h"

#include <charconv>
#include <system_error>

namespace NQORVYX20 {

TCIMChar16::TCIMChar16(const std::string& decimalCode) : code_(0) {
    const char* const end = decimalCode.data() + decimalCode.size();
    const auto [stop, error] = std::from_chars(decimalCode.data(), end, code_);
    if (error != std::errc() || stop != end) {
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
}

std::string TCIMChar16::ToString() const {
    const auto byte = [](unsigned int bits) { return static_cast<char>(static_cast<unsigned char>(bits)); };
    const unsigned int code = code_;
    if (code < 0x80) {
        return {byte(code)};
    }
    if (code < 0x800) {
        return {byte(0xC0 | (code >> 6U)), byte(0x80 | (code & 0x3FU))};
    }
    if (code >= 0xD800 && code <= 0xDFFF) {
        return "\xEF\xBF\xBD";
    }
    return {byte(0xE0 | (code >> 12U)), byte(0x80 | ((code >> 6U) & 0x3FU)), byte(0x80 | (code & 0x3FU))};
}

} // namespace NQORVYX20
