#include "selection/ValuePlace.h"

#include "selection/DateTimeRange.h"
#include "text/Names.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;

static_assert(std::numeric_limits<long double>::digits >= std::numeric_limits<unsigned long long>::digits);

bool IsUnsigned(ECIMType type) {
    return type == ECIMType::eCIMUint8 || type == ECIMType::eCIMUint16 || type == ECIMType::eCIMUint32 ||
           type == ECIMType::eCIMUint64;
}

bool IsReal(ECIMType type) { return type == ECIMType::eCIMReal32 || type == ECIMType::eCIMReal64; }

bool IsNumber(ECIMType type) { return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMReal64; }

/// Of a value that is a number.
long double NumberOf(const TCIMValue& value) {
    if (IsReal(value.GetType())) {
        return static_cast<double>(value);
    }
    return IsUnsigned(value.GetType()) ? static_cast<long double>(static_cast<unsigned long long>(value))
                                       : static_cast<long double>(static_cast<long long>(value));
}

/// As the nearest number of this type; nothing for a text that is no number, or none that the type comes near to.
template <typename Number>
std::optional<long double> Parsed(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, number);
    const bool is_number = error == std::errc() && parsed == end && !std::isnan(number);
    return is_number ? std::optional<long double>(number) : std::nullopt;
}

/// What a user means by 0.1 of a real is the real that shows as 0.1.
std::optional<long double> NumberIn(const std::string& text, ECIMType type) {
    const auto rounded = type == ECIMType::eCIMReal32   ? Parsed<float>(text)
                         : type == ECIMType::eCIMReal64 ? Parsed<double>(text)
                                                        : std::nullopt;
    return rounded ? rounded : Parsed<long double>(text);
}

std::optional<long double> BooleanIn(const std::string& text) {
    const bool isTrue = IsSameName(text, "true");
    return isTrue || IsSameName(text, "false") ? std::optional<long double>(isTrue ? 1 : 0) : std::nullopt;
}

} // namespace

ValuePlace::ValuePlace(long double number)
    : kind_(std::isnan(number) ? Kind::kNotANumber : Kind::kNumber), lowest_(number), highest_(number) {
    if (kind_ == Kind::kNotANumber) {
        lowest_ = highest_ = 0; // which has a place in an order
    }
}

ValuePlace::ValuePlace(const TCIMDateTime& date_time) : kind_(Kind::kInstant) {
    const DateTimeRange range(date_time);
    kind_ = range.isInterval ? Kind::kInterval : Kind::kInstant;
    lowest_ = static_cast<long double>(range.lowest);
    highest_ = static_cast<long double>(range.highest);
}

ValuePlace::ValuePlace(const TCIMValue& value) : ValuePlace(Placed(value)) {}

ValuePlace ValuePlace::Placed(const TCIMValue& value) {
    const ECIMType type = value.GetType();
    if (value.IsNull()) {
        ValuePlace place{std::string()};
        place.kind_ = Kind::kNull;
        return place;
    }
    if (IsNumber(type)) {
        return ValuePlace(NumberOf(value));
    }
    if (type == ECIMType::eCIMBoolean) {
        return ValuePlace(static_cast<bool>(value) ? 1.0L : 0.0L);
    }
    return type == ECIMType::eCIMDateTime ? ValuePlace(value.GetDateTime()) : ValuePlace(value.ToString(kDecimal));
}

std::optional<ValuePlace> ValuePlace::Of(const std::string& text, TCIMValue::TCIMType type) {
    if (IsNumber(type) || type == ECIMType::eCIMBoolean) {
        const auto number = IsNumber(type) ? NumberIn(text, type) : BooleanIn(text);
        return number ? std::optional<ValuePlace>(ValuePlace(*number)) : std::nullopt;
    }
    if (type == ECIMType::eCIMDateTime) {
        const auto date_time = DateTimeIn(text);
        return date_time ? std::optional<ValuePlace>(ValuePlace(*date_time)) : std::nullopt;
    }
    return ValuePlace(text);
}

bool ValuePlace::IsComparableWith(const ValuePlace& other) const {
    return kind_ == other.kind_ && kind_ != Kind::kNull && kind_ != Kind::kNotANumber;
}

std::optional<bool> ValuePlace::IsLessThan(const ValuePlace& other) const {
    if (!IsComparableWith(other)) {
        return std::nullopt;
    }
    if (kind_ == Kind::kText) {
        return CompareIgnoringCase(text_, other.text_) < 0;
    }
    const bool is_less = highest_ < other.lowest_;
    return is_less || lowest_ >= other.highest_ ? std::optional<bool>(is_less) : std::nullopt;
}

std::optional<bool> ValuePlace::IsAtMost(const ValuePlace& other) const {
    const auto isGreater = other.IsLessThan(*this);
    return isGreater ? std::optional<bool>(!*isGreater) : std::nullopt;
}

bool operator<(const ValuePlace& one, const ValuePlace& other) {
    const int texts = CompareIgnoringCase(one.text_, other.text_);
    return std::tuple(one.kind_, one.lowest_, one.highest_, texts) <
           std::tuple(other.kind_, other.lowest_, other.highest_, 0);
}

std::vector<ValuePlace> PlacesOf(const TCIMValue& value) {
    std::vector<ValuePlace> places;
    if (!value.IsArray() || value.IsNull()) {
        places.emplace_back(value);
        return places;
    }
    const std::vector<TCIMValue>& elements = value;
    for (const TCIMValue& element : elements) {
        places.emplace_back(element);
    }
    return places;
}

} // namespace cimhttp
