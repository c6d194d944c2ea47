#pragma once

#include "monitoring/Quantity.h"

#include <optional>
#include <string>

namespace cimhttp {

/// A range as plug-ins of monitoring systems take it: `10` (0 to 10), `10:` (10 and above), `~:10` (10 and below),
/// `10:20`; with `@` before it, the numbers within it are those to alert about, otherwise those outside. A number may
/// have a unit, `10GB:`; one after the second number is meant for both. Without one, a number is in the unit of the
/// property, as `--where` takes it.
class ThresholdRange {
  public:
    /// Nothing for another text.
    static std::optional<ThresholdRange> In(const std::string& text);

    /// Whether to alert about a number; nothing where its unit cannot be compared with that of the range.
    std::optional<bool> Alerts(const Quantity& quantity) const;

    /// The range in the base unit of a quantity with which it can be compared, `@~:10`.
    std::string PerformanceText(const Quantity& quantity) const;

    const std::string& Text() const { return text_; }

  private:
    struct Limit {
        long double number;
        std::string unit;
    };

    static std::optional<Limit> LimitIn(const std::string& text);
    static std::optional<long double> InBase(const Limit& limit, const UnitScale& unit);

    bool IsInOrder() const;

    std::string text_;
    bool alertsWithin_ = false;
    std::optional<Limit> lowest_; // nothing where there is no limit
    std::optional<Limit> highest_;
};

} // namespace cimhttp
