#include "selection/KeyValue.h"

#include "host/TVYXException.h"
#include "text/ParsedText.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

template <typename Number>
TCIMValue As(const TCIMValue& value) {
    return {static_cast<Number>(value)};
}

TCIMValue Converted(const TCIMValue& value, ECIMType type) {
    switch (type) {
    case ECIMType::eCIMUint8:
        return As<unsigned char>(value);
    case ECIMType::eCIMSint8:
        return As<signed char>(value);
    case ECIMType::eCIMUint16:
        return As<unsigned short>(value);
    case ECIMType::eCIMSint16:
        return As<short>(value);
    case ECIMType::eCIMUint32:
        return As<unsigned int>(value);
    case ECIMType::eCIMSint32:
        return As<int>(value);
    case ECIMType::eCIMSint64:
        return As<long long>(value);
    case ECIMType::eCIMDateTime:
        return {TCIMDateTime(static_cast<std::string>(value))};
    default:
        return value;
    }
}

template <typename Value>
TCIMValue ValueOrNull(const std::optional<Value>& value) {
    return value ? TCIMValue(*value) : TCIMValue();
}

TCIMValue WrittenInteger(const std::string& text) {
    const auto number = NumberIn<long long>(text);
    return number ? TCIMValue(*number) : ValueOrNull(NumberIn<unsigned long long>(text));
}

TCIMValue WrittenDateTime(const std::string& text) {
    try {
        return {TCIMDateTime(text)};
    } catch (const TVYXException&) {
        return {};
    }
}

} // namespace

TCIMValue TypedKey(const TCIMValue& value, TCIMValue::TCIMType type) {
    try {
        return Converted(value, type);
    } catch (const TVYXException&) {
        return value;
    }
}

TCIMValue WrittenKey(const std::string& text, TCIMValue::TCIMType type) {
    if (type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMSint64) {
        return WrittenInteger(text);
    }
    switch (type) {
    case ECIMType::eCIMBoolean:
        return ValueOrNull(BooleanIn(text));
    case ECIMType::eCIMDateTime:
        return WrittenDateTime(text);
    case ECIMType::eCIMString:
    case ECIMType::eCIMChar16:
    case ECIMType::eCIMReference:
        return {text};
    default:
        return {};
    }
}

} // namespace cimhttp
