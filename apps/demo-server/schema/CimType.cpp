#include "schema/CimType.h"

#include "schema/DateTime.h"
#include "schema/Names.h"
#include "schema/XmlCharacters.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdint>

namespace demo {

namespace {

struct NamedType {
    CimType type;
    std::string_view name;
};

constexpr std::array kTypes{
    NamedType{CimType::kBoolean, "boolean"},     NamedType{CimType::kUint8, "uint8"},
    NamedType{CimType::kSint8, "sint8"},         NamedType{CimType::kUint16, "uint16"},
    NamedType{CimType::kSint16, "sint16"},       NamedType{CimType::kUint32, "uint32"},
    NamedType{CimType::kSint32, "sint32"},       NamedType{CimType::kUint64, "uint64"},
    NamedType{CimType::kSint64, "sint64"},       NamedType{CimType::kReal32, "real32"},
    NamedType{CimType::kReal64, "real64"},       NamedType{CimType::kChar16, "char16"},
    NamedType{CimType::kString, "string"},       NamedType{CimType::kDatetime, "datetime"},
    NamedType{CimType::kReference, "reference"},
};

template <typename Number>
bool IsNumber(std::string_view text) {
    Number number{};
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}

bool IsInteger(CimType type) { return type >= CimType::kUint8 && type <= CimType::kSint64; }

/// The shortest decimal text of an integer in one of the forms of DSP0201, hexadecimal ones included; the text itself
/// if it is in none.
std::string Decimal(const std::string& text) {
    std::string_view digits = text;
    const bool isNegative = !digits.empty() && digits.front() == '-';
    if (isNegative || (!digits.empty() && digits.front() == '+')) {
        digits.remove_prefix(1);
    }
    const bool isHexadecimal = digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
    if (isHexadecimal) {
        digits.remove_prefix(2);
    }
    std::uint64_t number = 0;
    const auto* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number, isHexadecimal ? 16 : 10);
    if (error != std::errc() || rest != end) {
        return text;
    }
    return (isNegative && number != 0 ? "-" : "") + std::to_string(number);
}

/// One UTF-16 code unit: one character of at most three bytes.
bool IsChar16(const std::string& text) {
    return !text.empty() && text.size() <= 3 && XmlCharacterLength(text, 0) == text.size();
}

} // namespace

std::string_view TypeName(CimType type) {
    return std::find_if(kTypes.begin(), kTypes.end(), [&](const auto& named) { return named.type == type; })->name;
}

std::optional<CimType> TypeFromName(std::string_view name) {
    for (const auto& named : kTypes) {
        if (named.name == name) {
            return named.type;
        }
    }
    return std::nullopt;
}

bool IsNumeric(CimType type) { return type >= CimType::kUint8 && type <= CimType::kReal64; }

std::optional<std::string> NormalForm(CimType type, const std::string& text) {
    if (type == CimType::kBoolean && IsValueOf(type, text)) {
        return SameName(text, "true") ? "TRUE" : "FALSE";
    }
    const std::string normal = IsInteger(type) ? Decimal(text) : text;
    return IsValueOf(type, normal) ? std::optional(normal) : std::nullopt;
}

bool IsValueOf(CimType type, const std::string& text) {
    switch (type) {
    case CimType::kBoolean:
        return SameName(text, "true") || SameName(text, "false");
    case CimType::kUint8:
        return IsNumber<std::uint8_t>(text);
    case CimType::kSint8:
        return IsNumber<std::int8_t>(text);
    case CimType::kUint16:
        return IsNumber<std::uint16_t>(text);
    case CimType::kSint16:
        return IsNumber<std::int16_t>(text);
    case CimType::kUint32:
        return IsNumber<std::uint32_t>(text);
    case CimType::kSint32:
        return IsNumber<std::int32_t>(text);
    case CimType::kUint64:
        return IsNumber<std::uint64_t>(text);
    case CimType::kSint64:
        return IsNumber<std::int64_t>(text);
    case CimType::kReal32:
        return IsNumber<float>(text);
    case CimType::kReal64:
        return IsNumber<double>(text);
    case CimType::kChar16:
        return IsChar16(text);
    case CimType::kString:
        return true;
    case CimType::kDatetime:
        return IsDatetime(text);
    case CimType::kReference:
        return false;
    }
    return false;
}

} // namespace demo
