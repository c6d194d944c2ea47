#include "selection/ValuePlace.h"

#include "output/DisplayText.h"
#include "selection/DateTimeRange.h"
#include "text/ParsedText.h"

#include <strings.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

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

/// Nothing for what is not a number, too.
template <typename Number>
std::optional<long double> PlaceIn(const std::string& text) {
    const auto number = NumberIn<Number>(text);
    return number && !std::isnan(*number) ? std::optional<long double>(*number) : std::nullopt;
}

/// What a user means by 0.1 of a real is the real that shows as 0.1.
std::optional<long double> PlaceIn(const std::string& text, ECIMType type) {
    if (type == ECIMType::eCIMBoolean) {
        return BooleanIn(text);
    }
    const auto rounded = type == ECIMType::eCIMReal32   ? PlaceIn<float>(text)
                         : type == ECIMType::eCIMReal64 ? PlaceIn<double>(text)
                                                        : std::nullopt;
    return rounded ? rounded : PlaceIn<long double>(text);
}

} // namespace

ValuePlace::ValuePlace(long double number)
    : kind_(std::isnan(number) ? Kind::kNotANumber : Kind::kNumber), lowest_(number), highest_(number) {
    if (kind_ == Kind::kNotANumber) {
        lowest_ = highest_ = 0; // which has a place in an order
    }
}

ValuePlace::ValuePlace(const TCIMDateTime& dateTime) : kind_(Kind::kInstant) {
    const DateTimeRange range(dateTime);
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
    return type == ECIMType::eCIMDateTime ? ValuePlace(value.GetDateTime()) : ValuePlace(PlainText(value));
}

std::optional<ValuePlace> ValuePlace::Of(const std::string& text, TCIMValue::TCIMType type) {
    if (IsNumber(type) || type == ECIMType::eCIMBoolean) {
        const auto number = PlaceIn(text, type);
        return number ? std::optional<ValuePlace>(ValuePlace(*number)) : std::nullopt;
    }
    if (type == ECIMType::eCIMDateTime) {
        const auto dateTime = DateTimeIn(text);
        return dateTime ? std::optional<ValuePlace>(ValuePlace(*dateTime)) : std::nullopt;
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
    const bool isLess = highest_ < other.lowest_;
    return isLess || lowest_ >= other.highest_ ? std::optional<bool>(isLess) : std::nullopt;
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
