#pragma once

#include "HostTypes.h"
#include "selection/ValuePlace.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace cimhttp {

class ValueTexts;

/// What a user demands of a property, such as `Name=eth*` or `Size>=1000`.
///
/// After `=` comes a pattern that the value has to match, as it is or as people read it, without regard to case; of an
/// array, one of its elements. Null matches the empty pattern only. `!=` demands a value that does not match.
///
/// After `<`, `<=`, `>` and `>=` comes a value with which that of the property is compared as ValuePlace says; of an
/// array, one of its elements. Null is neither less nor greater than anything.
class Condition {
  public:
    enum class Answer { kNo, kYes, kUnknown };

    /// Throws Failure(kUsage) for a text without a sign, or without a name before it.
    explicit Condition(const std::string& text);

    const std::string& PropertyName() const { return name_; }

    /// Throws Failure(kUsage) when no value of the property can be compared with what the condition says.
    void Check(const NQORVYX20::ICIMPropertyDecl& property) const;

    /// `property` is the instance's, or null where there is none. Unknown where it cannot be compared.
    Answer Accepts(const NQORVYX20::ICIMInstance& instance, const NQORVYX20::ICIMProperty* property,
                   const ValueTexts& texts) const;

  private:
    enum class Sign { kMatches, kDiffers, kLess, kAtMost, kGreater, kAtLeast };

    bool IsOfOrder() const { return sign_ != Sign::kMatches && sign_ != Sign::kDiffers; }
    std::optional<bool> Allows(const ValuePlace& place, const ValuePlace& operand) const;
    Answer AnswerFor(const NQORVYX20::TCIMValue& value) const;
    const std::optional<ValuePlace>& PlaceAmong(NQORVYX20::TCIMValue::TCIMType type) const;

    static constexpr std::size_t kTypes = 16; // of values that are no arrays

    std::string name_;
    Sign sign_;
    std::string operand_;
    std::array<std::optional<ValuePlace>, kTypes> places_; // of the operand, among the values of each type
};

} // namespace cimhttp
