#include "cimxml/ScalarDecoder.h"

#include "text/Ascii.h"
#include "text/Utf8.h"
#include "xml/DecodingError.h"
#include "xml/XmlCharacters.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <type_traits>

namespace Pegasus::cimxml {

using xml::DecodingError;
using xml::kLongestExcerpt;
using xml::throwBadContent;
using xml::throwBadValue;
using xml::trimmed;

namespace {

/// Takes a sign off the front; returns whether it was a minus.
bool takeSign(std::string_view& digits) {
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative || (!digits.empty() && digits.front() == '+')) {
        digits.remove_prefix(1);
    }
    return negative;
}

bool takeHexadecimalPrefix(std::string_view& digits) {
    const bool hexadecimal = digits.size() > 2 && digits[0] == '0' && text::lowered(digits[1]) == 'x';
    if (hexadecimal) {
        digits.remove_prefix(2);
    }
    return hexadecimal;
}

template <class Integer>
Integer decodeInteger(std::string_view text) {
    std::string_view digits = trimmed(text);
    const bool negative = takeSign(digits);
    const int base = takeHexadecimalPrefix(digits) ? 16 : 10;
    Uint64 magnitude = 0;
    const char* const end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, magnitude, base);
    if (error == std::errc::invalid_argument || last != end) {
        throwBadValue("not an integer", text);
    }

    constexpr auto kMaximum = static_cast<Uint64>(std::numeric_limits<Integer>::max());
    constexpr Uint64 kLowest = std::is_signed_v<Integer> ? kMaximum + 1 : 0;
    if (error != std::errc() || magnitude > (negative ? kLowest : kMaximum)) {
        throwBadValue("integer out of range", text);
    }
    return static_cast<Integer>(negative ? Uint64{0} - magnitude : magnitude);
}

/// A number whose digits are right and whose exponent is too large or too small for the type: infinite, or zero.
template <class Real>
Real decodeExtreme(std::string_view digits) {
    const std::size_t exponent = digits.find_first_of("eEpP");
    const bool tiny = exponent == std::string_view::npos ? digits.substr(0, 1) == "0" || digits.substr(0, 1) == "."
                                                         : digits.substr(exponent + 1, 1) == "-";
    return tiny ? Real{0} : std::numeric_limits<Real>::infinity();
}

/// Nothing where the text is no real.
template <class Real>
std::optional<Real> readReal(std::string_view text) {
    std::string_view digits = trimmed(text);
    const bool negative = takeSign(digits);
    const auto format = takeHexadecimalPrefix(digits) ? std::chars_format::hex : std::chars_format::general;
    Real real{};
    const char* const end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, real, format);
    if (error == std::errc::invalid_argument || last != end || digits.front() == '-') {
        return std::nullopt;
    }
    if (error != std::errc()) {
        real = decodeExtreme<Real>(digits);
    }
    return std::copysign(real, negative ? Real{-1} : Real{1});
}

template <class Real>
Real decodeReal(std::string_view text) {
    const auto real = readReal<Real>(text);
    if (!real) {
        throwBadValue("not a real", text);
    }
    return *real;
}

/// The bytes of a short text as one number, to compare many at once; 0 for one that does not fit.
constexpr Uint64 packed(std::string_view text) {
    Uint64 bytes = 0;
    if (text.size() <= sizeof bytes) {
        for (const char c : text) {
            bytes = bytes << 8U | static_cast<Uint8>(c);
        }
    }
    return bytes;
}

} // namespace

bool isNumber(std::string_view text) { return readReal<Real64>(text).has_value(); }

std::optional<Boolean> readBoolean(std::string_view text) {
    const std::string_view word = trimmed(text);
    if (text::equalIgnoringCase(word, "TRUE")) {
        return true;
    }
    return text::equalIgnoringCase(word, "FALSE") ? std::optional(false) : std::nullopt;
}

template <>
Boolean decodeScalar(std::string_view text) {
    const auto boolean = readBoolean(text);
    if (!boolean) {
        throwBadValue("not a boolean", text);
    }
    return *boolean;
}

// clang-format off
template <> Uint8 decodeScalar(std::string_view text) { return decodeInteger<Uint8>(text); }
template <> Sint8 decodeScalar(std::string_view text) { return decodeInteger<Sint8>(text); }
template <> Uint16 decodeScalar(std::string_view text) { return decodeInteger<Uint16>(text); }
template <> Sint16 decodeScalar(std::string_view text) { return decodeInteger<Sint16>(text); }
template <> Uint32 decodeScalar(std::string_view text) { return decodeInteger<Uint32>(text); }
template <> Sint32 decodeScalar(std::string_view text) { return decodeInteger<Sint32>(text); }
template <> Uint64 decodeScalar(std::string_view text) { return decodeInteger<Uint64>(text); }
template <> Sint64 decodeScalar(std::string_view text) { return decodeInteger<Sint64>(text); }
template <> Real32 decodeScalar(std::string_view text) { return decodeReal<Real32>(text); }
template <> Real64 decodeScalar(std::string_view text) { return decodeReal<Real64>(text); }
template <> String decodeScalar(std::string_view text) { return String(text); }
// clang-format on

template <>
Char16 decodeScalar(std::string_view text) {
    const auto [length, codePoint] = text.empty() ? text::Utf8Character{0, 0} : text::firstCharacter(text);
    if (length == 0 || length != text.size() || codePoint > 0xFFFF) {
        throwBadValue("not one UTF-16 character", text);
    }
    return Char16(static_cast<Uint16>(codePoint));
}

template <>
CIMDateTime decodeScalar(std::string_view text) {
    try {
        return CIMDateTime(String(trimmed(text)));
    } catch (const Exception& exception) {
        throw DecodingError{DecodingError::Kind::Content, std::string(exception.getMessage().view()),
                            std::string(text::beginningOf(text, kLongestExcerpt))};
    }
}

CIMType decodeType(std::string_view name) {
    if (const std::string_view word = trimmed(name); word.size() != name.size()) {
        return decodeType(word);
    }
    switch (packed(name)) {
    case packed("boolean"):
        return CIMTYPE_BOOLEAN;
    case packed("uint8"):
        return CIMTYPE_UINT8;
    case packed("sint8"):
        return CIMTYPE_SINT8;
    case packed("uint16"):
        return CIMTYPE_UINT16;
    case packed("sint16"):
        return CIMTYPE_SINT16;
    case packed("uint32"):
        return CIMTYPE_UINT32;
    case packed("sint32"):
        return CIMTYPE_SINT32;
    case packed("uint64"):
        return CIMTYPE_UINT64;
    case packed("sint64"):
        return CIMTYPE_SINT64;
    case packed("real32"):
        return CIMTYPE_REAL32;
    case packed("real64"):
        return CIMTYPE_REAL64;
    case packed("char16"):
        return CIMTYPE_CHAR16;
    case packed("string"):
        return CIMTYPE_STRING;
    case packed("datetime"):
        return CIMTYPE_DATETIME;
    default:
        throwBadContent({"unknown type: ", name});
    }
}

} // namespace Pegasus::cimxml
