#include "convert/HostValues.h"
#include "convert/RemoteText.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

/// The integer that a text is, without its sign; false when it is none or too large.
bool ParseMagnitude(const std::string& digits, unsigned long long& magnitude) {
    const bool isHex = digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
    const char* const begin = digits.data() + (isHex ? 2 : 0);
    const char* const end = digits.data() + digits.size();
    const auto [parsed, error] = std::from_chars(begin, end, magnitude, isHex ? 16 : 10);
    return error == std::errc() && parsed == end && begin != end;
}

struct TInteger {
    bool isNegative;
    unsigned long long magnitude;
};

bool ParseInteger(const std::string& text, TInteger& integer) {
    const bool isSigned = !text.empty() && (text[0] == '-' || text[0] == '+');
    integer.isNegative = isSigned && text[0] == '-';
    return ParseMagnitude(isSigned ? text.substr(1) : text, integer.magnitude);
}

/// The integer as a host value of this type; null when it does not fit.
template <typename Number>
TCIMValue FittedInteger(const TInteger& integer, ECIMType type) {
    using TLimits = std::numeric_limits<Number>;
    const auto largest = static_cast<unsigned long long>(TLimits::max());
    if (!integer.isNegative) {
        return integer.magnitude <= largest ? TCIMValue(static_cast<Number>(integer.magnitude)) : TCIMValue(type, 0);
    }
    if (integer.magnitude > (TLimits::is_signed ? largest + 1 : 0)) {
        return {type, 0};
    }
    return {static_cast<Number>(-static_cast<long long>(integer.magnitude - 1) - 1)};
}

TCIMValue IntegerOfType(const TInteger& integer, ECIMType type) {
    switch (type) {
    case ECIMType::eCIMUint8:
        return FittedInteger<unsigned char>(integer, type);
    case ECIMType::eCIMSint8:
        return FittedInteger<signed char>(integer, type);
    case ECIMType::eCIMUint16:
        return FittedInteger<unsigned short>(integer, type);
    case ECIMType::eCIMSint16:
        return FittedInteger<short>(integer, type);
    case ECIMType::eCIMUint32:
        return FittedInteger<unsigned int>(integer, type);
    case ECIMType::eCIMSint32:
        return FittedInteger<int>(integer, type);
    case ECIMType::eCIMUint64:
        return FittedInteger<unsigned long long>(integer, type);
    case ECIMType::eCIMSint64:
        return FittedInteger<long long>(integer, type);
    default:
        return {};
    }
}

/// The number in the widest type of its kind.
TCIMValue WidestNumber(const std::string& text) {
    TInteger integer{};
    if (ParseInteger(text, integer)) {
        const auto type = integer.isNegative && integer.magnitude != 0 ? ECIMType::eCIMSint64 : ECIMType::eCIMUint64;
        const TCIMValue value = IntegerOfType(integer, type);
        return value.IsNull() ? TCIMValue(text) : value;
    }
    char* end = nullptr;
    const double real = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' ? TCIMValue(real) : TCIMValue(text);
}

TCIMValue ReferenceOrText(const Pegasus::String& text) {
    try {
        TCIMReference reference = ToHostReference(Pegasus::CIMObjectPath(text));
        return {reference};
    } catch (const Pegasus::Exception&) {
        return {ToStdString(text)};
    }
}

TCIMValue KeyValueOfItsKind(const Pegasus::CIMKeyBinding& key, const std::string& text) {
    switch (key.getType()) {
    case Pegasus::CIMKeyBinding::BOOLEAN:
        return {Pegasus::String::equalNoCase(key.getValue(), "true")};
    case Pegasus::CIMKeyBinding::NUMERIC:
        return WidestNumber(text);
    case Pegasus::CIMKeyBinding::REFERENCE:
        return ReferenceOrText(key.getValue());
    default:
        return {text};
    }
}

/// The value of a text in a path that stands for a date-time or character; null when it is none.
TCIMValue TextOfType(const std::string& text, ECIMType type) {
    try {
        if (type == ECIMType::eCIMDateTime) {
            return {TCIMDateTime(text)};
        }
    } catch (const std::exception&) {
        // kept as the text that it is
    }
    return type == ECIMType::eCIMString ? TCIMValue(text) : TCIMValue();
}

} // namespace

TCIMValue HostKeyValue(const Pegasus::CIMKeyBinding& key, TCIMValue::TCIMType type) {
    const std::string text = ToStdString(key.getValue());
    TCIMValue value;
    TInteger integer{};
    if (key.getType() == Pegasus::CIMKeyBinding::NUMERIC && ParseInteger(text, integer)) {
        value = IntegerOfType(integer, type);
    } else if (key.getType() == Pegasus::CIMKeyBinding::STRING) {
        value = TextOfType(text, type);
    }
    if (value.IsNull()) {
        return KeyValueOfItsKind(key, text);
    }
    return value;
}

} // namespace NQORVYX20
