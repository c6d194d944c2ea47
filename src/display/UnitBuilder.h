#pragma once

#include "display/Unit.h"
#include "display/UnitNames.h"

#include <optional>
#include <vector>

namespace NQORVYX20 {

/// Puts a unit together out of what it is made of, such as `byte / second * 10^3`.
class UnitBuilder {
  public:
    void Multiply(const BaseUnit& unit) { above_.push_back(&unit); }
    void Divide(const BaseUnit& unit) { below_.push_back(&unit); }
    Scale& GetScale() { return scale_; }

    /// Nothing without any base unit.
    std::optional<Unit> Build() const;

  private:
    bool IsTime() const;
    bool IsOne(const char* above, const char* below) const;
    Unit::Steps StepsOf() const;
    Unit TimeUnit() const;
    std::string Symbol() const;

    std::vector<const BaseUnit*> above_;
    std::vector<const BaseUnit*> below_;
    Scale scale_;
};

} // namespace NQORVYX20
