#include "host/TCIMValue.h"

#include "host/TVYXException.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <ostream>
#include <type_traits>

namespace NQORVYX20 {

namespace {

constexpr unsigned int kArrayBit = TCIMValue::TCIMType::eCIMArrayUnknown;

TCIMValue::TCIMType ArrayOf(TCIMValue::TCIMType element) {
    return static_cast<TCIMValue::TCIMType::ECIMType>(static_cast<unsigned int>(element) | kArrayBit);
}

template <typename T>
constexpr bool kIsInteger = std::is_integral_v<T> && !std::is_same_v<T, bool>;
template <typename T>
constexpr bool kIsNumber = kIsInteger<T> || std::is_floating_point_v<T>;

// The bits from the first to the last that is set: what a floating type must be able to hold. The sign does not count.
template <typename T>
int SignificantBits(T number) {
    if (number == 0) {
        return 0;
    }
    while (number % 2 == 0) {
        number = static_cast<T>(number / 2);
    }
    int bits = 0;
    for (; number != 0; number = static_cast<T>(number / 2)) {
        ++bits;
    }
    return bits;
}

template <typename TTo, typename TFrom>
bool FitsInteger(TFrom value) {
    using TLimits = std::numeric_limits<TTo>;
    if constexpr (std::is_floating_point_v<TFrom>) {
        const double beyond = std::ldexp(1.0, TLimits::digits);
        const double lowest = std::is_signed_v<TTo> ? -beyond : 0.0;
        return value >= lowest && value < beyond && std::trunc(value) == value;
    } else if constexpr (std::is_signed_v<TFrom>) {
        if (value < 0) {
            return std::is_signed_v<TTo> && static_cast<long long>(value) >= static_cast<long long>(TLimits::min());
        }
        return static_cast<unsigned long long>(value) <= static_cast<unsigned long long>(TLimits::max());
    } else {
        return value <= static_cast<unsigned long long>(TLimits::max());
    }
}

template <typename TTo, typename TFrom>
bool FitsReal(TFrom value) {
    using TLimits = std::numeric_limits<TTo>;
    if constexpr (std::is_floating_point_v<TFrom>) {
        if (!std::isfinite(value)) {
            return true;
        }
        return std::abs(value) <= TLimits::max() && static_cast<TFrom>(static_cast<TTo>(value)) == value;
    } else {
        return SignificantBits(value) <= TLimits::digits;
    }
}

template <typename TTo, typename TFrom>
bool Fits(TFrom value) {
    if constexpr (std::is_floating_point_v<TTo>) {
        return FitsReal<TTo>(value);
    } else {
        return FitsInteger<TTo>(value);
    }
}

template <typename T>
bool AreEqual(const T& left, const T& right) {
    if constexpr (std::is_floating_point_v<T>) {
        return left == right || (std::isnan(left) && std::isnan(right));
    } else {
        return left == right;
    }
}

template <typename T>
bool IsLess(const T& left, const T& right) {
    if constexpr (std::is_floating_point_v<T>) {
        if (std::isnan(left) || std::isnan(right)) {
            return !std::isnan(left) && std::isnan(right);
        }
    }
    return left < right;
}

template <typename T>
std::string IntegerText(T value, int base) {
    if (base < 2 || base > 36) {
        base = 10; // a text in base 10 is better than none
    }
    std::array<char, std::numeric_limits<T>::digits + 2> text; // the lowest number in base 2, with its sign
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value, base).ptr};
}

template <typename T>
std::string RealText(T value) {
    if (std::isnan(value)) {
        return "nan";
    }
    std::array<char, 32> text; // the longest is `-2.2250738585072014e-308`
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

template <typename T>
std::string ScalarText(const T& value, int base) {
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_same_v<T, std::string>) {
        return value;
    } else if constexpr (kIsInteger<T>) {
        return IntegerText(value, base);
    } else if constexpr (kIsNumber<T>) {
        return RealText(value);
    } else {
        return value.ToString();
    }
}

std::string ScalarText(const TCIMIndirect<TCIMReference>& value, int) { return (*value).GetPath(); }

std::string ArrayText(const std::vector<TCIMValue>& elements, unsigned char base) {
    std::string text = "{";
    const char* separator = "";
    for (const TCIMValue& element : elements) {
        text.append(separator).append(element.ToString(base));
        separator = ", ";
    }
    return text + '}';
}

} // namespace

TCIMValue::TCIMValue() : TCIMValue(TCIMType::eCIMUnknown, 0) {}
TCIMValue::TCIMValue(bool value) : content_(value) {}
TCIMValue::TCIMValue(unsigned char value) : content_(value) {}
TCIMValue::TCIMValue(signed char value) : content_(value) {}
TCIMValue::TCIMValue(unsigned short value) : content_(value) {}
TCIMValue::TCIMValue(short value) : content_(value) {}
TCIMValue::TCIMValue(unsigned int value) : content_(value) {}
TCIMValue::TCIMValue(int value) : content_(value) {}
TCIMValue::TCIMValue(unsigned long long value) : content_(value) {}
TCIMValue::TCIMValue(long long value) : content_(value) {}
TCIMValue::TCIMValue(float value) : content_(value) {}
TCIMValue::TCIMValue(double value) : content_(value) {}
TCIMValue::TCIMValue(const char* value) : content_(TNull{TCIMType::eCIMString}) {
    if (value != nullptr) {
        content_.emplace<std::string>(value);
    }
}
TCIMValue::TCIMValue(const std::string& value) : content_(value) {}
TCIMValue::TCIMValue(const TCIMChar16& value) : content_(value) {}
TCIMValue::TCIMValue(const TCIMDateTime& value) : content_(value) {}
TCIMValue::TCIMValue(TCIMReference& value) : content_(TCIMIndirect<TCIMReference>(value)) {}
TCIMValue::TCIMValue(TCIMType type, unsigned int /*unused*/) : content_(TNull{type}) {}
TCIMValue::TCIMValue(TCIMType elementType, unsigned int /*unused*/, const std::vector<TCIMValue>& elements)
    : content_(TCIMIndirect<TArray>(TArray{ElementOf(elementType), elements})) {}

TCIMValue::TCIMValue(const TCIMValue& other) = default;
TCIMValue& TCIMValue::operator=(const TCIMValue& other) = default;
TCIMValue::~TCIMValue() = default;

bool TCIMValue::IsNull() const { return std::holds_alternative<TNull>(content_); }

bool TCIMValue::IsArray() const { return (static_cast<unsigned int>(GetType()) & kArrayBit) != 0; }

TCIMValue::TCIMType TCIMValue::GetType() const {
    static_assert(std::is_same_v<std::variant_alternative_t<TCIMType::eCIMSint64, TContent>, long long>);
    static_assert(std::is_same_v<std::variant_alternative_t<TCIMType::eCIMDateTime, TContent>, TCIMDateTime>);
    if (const auto* null = std::get_if<TNull>(&content_)) {
        return null->type;
    }
    if (const auto* array = std::get_if<TCIMIndirect<TArray>>(&content_)) {
        return ArrayOf((**array).elementType);
    }
    return static_cast<TCIMType::ECIMType>(content_.index());
}

bool TCIMValue::IsReference() const { return GetType() == TCIMType::eCIMReference; }

std::string TCIMValue::GetReferencedClass() const {
    const auto* reference = std::get_if<TCIMIndirect<TCIMReference>>(&content_);
    return reference == nullptr ? std::string() : (**reference).GetClassName();
}

std::string TCIMValue::ToString(unsigned char base) const {
    return std::visit(
        [base](const auto& content) -> std::string {
            using T = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<T, TNull>) {
                return {};
            } else if constexpr (std::is_same_v<T, TCIMIndirect<TArray>>) {
                return ArrayText((*content).elements, base);
            } else {
                return ScalarText(content, base);
            }
        },
        content_);
}

template <typename T>
const T& TCIMValue::Get() const {
    if (const T* content = std::get_if<T>(&content_)) {
        return *content;
    }
    throw TVYXException(TVYXStatusCode::eTypeMismatch);
}

template <typename T>
T TCIMValue::ToNumber() const {
    return std::visit(
        [](const auto& content) -> T {
            if constexpr (kIsNumber<std::decay_t<decltype(content)>>) {
                if (Fits<T>(content)) {
                    return static_cast<T>(content);
                }
            }
            throw TVYXException(TVYXStatusCode::eTypeMismatch);
        },
        content_);
}

TCIMValue::operator bool() const { return Get<bool>(); }
TCIMValue::operator unsigned char() const { return ToNumber<unsigned char>(); }
TCIMValue::operator signed char() const { return ToNumber<signed char>(); }
TCIMValue::operator unsigned short() const { return ToNumber<unsigned short>(); }
TCIMValue::operator short() const { return ToNumber<short>(); }
TCIMValue::operator unsigned int() const { return ToNumber<unsigned int>(); }
TCIMValue::operator int() const { return ToNumber<int>(); }
TCIMValue::operator unsigned long long() const { return ToNumber<unsigned long long>(); }
TCIMValue::operator long long() const { return ToNumber<long long>(); }
TCIMValue::operator float() const { return ToNumber<float>(); }
TCIMValue::operator double() const { return ToNumber<double>(); }

TCIMValue::operator std::string() const {
    if (IsNull()) {
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    return ToString(10);
}

TCIMValue::operator std::vector<TCIMValue>&() const { return (*Get<TCIMIndirect<TArray>>()).elements; }

const TCIMDateTime& TCIMValue::GetDateTime() const { return Get<TCIMDateTime>(); }

const TCIMReference& TCIMValue::GetReference() const { return *Get<TCIMIndirect<TCIMReference>>(); }

template <typename TRelation>
bool TCIMValue::CompareContent(const TCIMValue& other, TRelation relation) const {
    return std::visit(
        [&other, relation](const auto& content) {
            using T = std::decay_t<decltype(content)>;
            const T& otherContent = std::get<T>(other.content_);
            if constexpr (std::is_same_v<T, TNull>) {
                return relation(0, 0);
            } else if constexpr (std::is_same_v<T, TCIMIndirect<TArray>>) {
                return relation((*content).elements, (*otherContent).elements);
            } else {
                return relation(content, otherContent);
            }
        },
        content_);
}

bool TCIMValue::operator==(const TCIMValue& other) const {
    if (GetType() != other.GetType() || IsNull() != other.IsNull()) {
        return false;
    }
    return CompareContent(other, [](const auto& left, const auto& right) { return AreEqual(left, right); });
}

bool TCIMValue::operator<(const TCIMValue& other) const {
    if (GetType() != other.GetType()) {
        return GetType() < other.GetType();
    }
    if (IsNull() != other.IsNull()) {
        return IsNull();
    }
    return CompareContent(other, [](const auto& left, const auto& right) { return IsLess(left, right); });
}

std::ostream& operator<<(std::ostream& stream, const TCIMValue::TCIMType& type) {
    constexpr std::array<const char*, 16> kNames{"unknown", "boolean", "uint8",    "sint8",    "uint16", "sint16",
                                                 "uint32",  "sint32",  "uint64",   "sint64",   "real32", "real64",
                                                 "char16",  "string",  "datetime", "reference"};
    const auto code = static_cast<unsigned int>(type);
    return stream << kNames.at(code & (kArrayBit - 1)) << ((code & kArrayBit) != 0 ? "[]" : "");
}

} // namespace NQORVYX20
