#pragma once

#include "display/Unit.h"

#include <cstdint>
#include <optional>
#include <string>

namespace NQORVYX20 {

/// The one rule for a class: a CIM_NumericSensor tells the unit of its readings by three other properties, which no
/// other class of the schema has.
class SensorUnits {
  public:
    static constexpr const char* kBaseUnits = "BaseUnits";
    static constexpr const char* kUnitModifier = "UnitModifier";
    static constexpr const char* kRateUnits = "RateUnits";

    /// Whether a property of that class, by the normal form of its name, holds a reading or a limit of one.
    static bool IsReading(const std::string& property);

    /// The unit by the values of the three properties: numbers of units in the order of their value maps, and a power
    /// of ten. Nothing for a base unit that has no name, such as "Other".
    static std::optional<Unit> UnitOf(std::uint64_t baseUnits, std::int64_t unitModifier, std::uint64_t rateUnits);
};

} // namespace NQORVYX20
