#pragma once

#include "HostTypes.h"
#include "monitoring/ThresholdRange.h"
#include "selection/Condition.h"

#include <optional>
#include <string>

namespace cimhttp {

/// When to alert about an instance: a property that is outside a range, `Size=10GB:`, or of which a condition holds,
/// `OperationalStatus!=OK`.
///
/// After `=` comes a range where the property has numbers that stand for themselves. Where a value map has texts for
/// them, a range is what has a colon or begins with `@`, and anything else a value or its text, as in all other
/// conditions.
class Threshold {
  public:
    /// Throws Failure(kUsage) as Condition does.
    explicit Threshold(const std::string& text);

    const std::string& PropertyName() const { return condition_.PropertyName(); }

    const std::string& Text() const { return text_; }

    /// Throws Failure(kUsage) when no value of the property can be compared with what the threshold says.
    void Check(const NQORVYX20::ICIMPropertyDecl& property) const;

    /// The range that the numbers of the property are held against; null where the threshold is a condition for it.
    const ThresholdRange* RangeFor(const NQORVYX20::ICIMPropertyDecl& property) const;

    const Condition& AsCondition() const { return condition_; }

  private:
    /// Whether numbers of the property are to be in a range, also when the text is none.
    bool WantsRange(const NQORVYX20::ICIMPropertyDecl& property) const;

    std::string text_;
    Condition condition_;
    bool isEquation_; // the sign is =
    std::string operand_;
    std::optional<ThresholdRange> range_;
};

} // namespace cimhttp
