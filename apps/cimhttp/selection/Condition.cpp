#include "selection/Condition.h"

#include "Failure.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/TypeText.h"
#include "output/ValueTexts.h"
#include "text/Names.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

bool IsMatch(const std::string& pattern, const ICIMInstance& instance, const ICIMProperty& property,
             const ValueTexts& texts) {
    const auto hasMatch = [&](const std::vector<std::string>& some) {
        return std::any_of(some.begin(), some.end(), [&](const auto& text) { return Matches(pattern, text); });
    };
    const TCIMValue& value = property.GetValue(TCIMContext());
    return Matches(pattern, PlainText(value)) || hasMatch(PlainTexts(value)) ||
           hasMatch(texts.Of(instance, property).Texts());
}

} // namespace

Condition::Condition(const std::string& text) {
    const std::pair<std::string_view, Sign> signs[] = {{"<=", Sign::kAtMost},  {">=", Sign::kAtLeast},
                                                       {"!=", Sign::kDiffers}, {"<", Sign::kLess},
                                                       {">", Sign::kGreater},  {"=", Sign::kMatches}};
    const std::size_t begin = text.find_first_of("<>=!");
    const auto* const sign = std::find_if(std::begin(signs), std::end(signs), [&](const auto& one) {
        return begin != std::string::npos && text.compare(begin, one.first.size(), one.first) == 0;
    });
    if (sign == std::end(signs) || begin == 0) {
        throw Failure(Failure::kUsage, "'" + text + "' is not a condition such as 'Name=eth*'");
    }
    name_ = text.substr(0, begin);
    sign_ = sign->second;
    operand_ = text.substr(begin + sign->first.size());
    for (std::size_t type = 0; IsOfOrder() && type < kTypes; ++type) {
        places_[type] = ValuePlace::Of(operand_, static_cast<TCIMValue::TCIMType::ECIMType>(type));
    }
}

const std::optional<ValuePlace>& Condition::PlaceAmong(TCIMValue::TCIMType type) const {
    return places_[static_cast<std::size_t>(type) % kTypes]; // an array has the places of its elements
}

void Condition::Check(const ICIMPropertyDecl& property) const {
    const TCIMValue::TCIMType type = property.GetType(TCIMContext());
    if (IsOfOrder() && !PlaceAmong(type)) {
        throw Failure(Failure::kUsage, "'" + operand_ + "' cannot be compared with " + property.GetName(TCIMContext()) +
                                           ", which is of type " + TypeText(type));
    }
}

Condition::Answer Condition::Accepts(const ICIMInstance& instance, const ICIMProperty* property,
                                     const ValueTexts& texts) const {
    const auto answer = [](bool isYes) { return isYes ? Answer::kYes : Answer::kNo; };
    if (property == nullptr) {
        return answer(sign_ == Sign::kMatches && Matches(operand_, ""));
    }
    const TCIMValue& value = property->GetValue(TCIMContext());
    if (IsOfOrder()) {
        return AnswerFor(value);
    }
    const bool isMatch = IsMatch(operand_, instance, *property, texts);
    return answer(sign_ == Sign::kMatches ? isMatch : !isMatch && !value.IsNull());
}

/// One element that is right is enough; without one, it is enough that one cannot be compared.
Condition::Answer Condition::AnswerFor(const TCIMValue& value) const {
    const std::optional<ValuePlace>& operand = PlaceAmong(value.GetType());
    Answer answer = Answer::kNo;
    for (const ValuePlace& place : PlacesOf(value)) {
        const auto isAllowed = operand ? Allows(place, *operand) : std::nullopt;
        if (isAllowed.value_or(false)) {
            return Answer::kYes;
        }
        answer = isAllowed || place.IsNull() ? answer : Answer::kUnknown;
    }
    return answer;
}

std::optional<bool> Condition::Allows(const ValuePlace& place, const ValuePlace& operand) const {
    switch (sign_) {
    case Sign::kLess:
        return place.IsLessThan(operand);
    case Sign::kAtMost:
        return place.IsAtMost(operand);
    case Sign::kGreater:
        return operand.IsLessThan(place);
    default:
        return operand.IsAtMost(place);
    }
}

} // namespace cimhttp
