#include "model/InstanceUnits.h"

#include "display/FaithfulTexts.h"
#include "display/ProgrammaticUnit.h"
#include "display/SensorUnits.h"
#include "display/SignedNumber.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

bool Declares(const ICIMClass& cls, const std::string& property) {
    return cls.GetPropertyDecl(property, TCIMContext()) != nullptr;
}

bool IsSensorReading(const ICIMClass& cls, const FaithfulTexts& property) {
    return property.IsNamedAsReading() && Declares(cls, SensorUnits::kBaseUnits) &&
           Declares(cls, SensorUnits::kUnitModifier) && Declares(cls, SensorUnits::kRateUnits);
}

/// The property that holds the unit; empty where none does.
std::string UnitHolder(const ICIMClass& cls, const FaithfulTexts& property) {
    const std::string& holder = property.UnitHolder();
    return !holder.empty() && Declares(cls, holder) ? holder : std::string();
}

/// The number that an instance's property holds; nothing for null and for another value.
std::optional<std::int64_t> NumberIn(const ICIMInstance& instance, const char* property) {
    const TCIMValue& value = instance.GetProperty(property, TCIMContext())->GetValue(TCIMContext());
    if (value.IsNull()) {
        return std::nullopt;
    }
    switch (value.GetType()) {
    case ECIMType::eCIMUint16:
        return static_cast<unsigned short>(value);
    case ECIMType::eCIMSint32:
        return SignedNumber(value);
    default:
        return std::nullopt;
    }
}

/// A server that leaves the rate out means none.
std::optional<Unit> SensorUnit(const ICIMInstance& instance) {
    const auto base = NumberIn(instance, SensorUnits::kBaseUnits);
    const auto modifier = NumberIn(instance, SensorUnits::kUnitModifier);
    const std::int64_t rate = NumberIn(instance, SensorUnits::kRateUnits).value_or(0);
    if (!base || !modifier || *base < 0 || rate < 0) {
        return std::nullopt;
    }
    return SensorUnits::UnitOf(static_cast<std::uint64_t>(*base), *modifier, static_cast<std::uint64_t>(rate));
}

std::optional<Unit> UnitIn(const ICIMInstance& instance, const std::string& holder) {
    const TCIMValue& unit = instance.GetProperty(holder, TCIMContext())->GetValue(TCIMContext());
    const bool isText = !unit.IsNull() && unit.GetType() == ECIMType::eCIMString;
    return isText ? ParseProgrammaticUnit(static_cast<std::string>(unit)) : std::nullopt;
}

} // namespace

std::vector<std::string> UnitTellers(const ICIMClass& cls, const FaithfulTexts& property) {
    if (IsSensorReading(cls, property)) {
        return {SensorUnits::kBaseUnits, SensorUnits::kUnitModifier, SensorUnits::kRateUnits};
    }
    const std::string holder = UnitHolder(cls, property);
    return holder.empty() ? std::vector<std::string>() : std::vector<std::string>{holder};
}

std::optional<Unit> UnitToldBy(const ICIMInstance& instance, const FaithfulTexts& property) {
    if (!property.MayHaveUnitOfInstance()) {
        return std::nullopt;
    }
    const auto cls = instance.GetClass(TCIMContext());
    if (IsSensorReading(*cls, property)) {
        return SensorUnit(instance);
    }
    const std::string holder = UnitHolder(*cls, property);
    return holder.empty() ? std::nullopt : UnitIn(instance, holder);
}

} // namespace NQORVYX20
