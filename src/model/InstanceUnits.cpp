#include "model/InstanceUnits.h"

#include <string>

#include "convert/NormalName.h"
#include "display/ProgrammaticUnit.h"
#include "display/SensorUnits.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

bool Declares(const ICIMInstance& instance, const char* property) {
    return instance.GetClass(TCIMContext())->GetPropertyDecl(property, TCIMContext()) != nullptr;
}

bool IsSensor(const ICIMInstance& instance) {
    return Declares(instance, SensorUnits::kBaseUnits) && Declares(instance, SensorUnits::kUnitModifier) &&
           Declares(instance, SensorUnits::kRateUnits);
}

/// The number that an instance's property holds, 0 for null; nothing for another value.
std::optional<std::int64_t> NumberIn(const ICIMInstance& instance, const char* property) {
    const TCIMValue value = instance.GetProperty(property, TCIMContext())->GetValue(TCIMContext());
    if (value.IsNull()) {
        return 0;
    }
    switch (value.GetType()) {
    case ECIMType::eCIMUint16:
        return static_cast<unsigned short>(value);
    case ECIMType::eCIMSint32:
        return static_cast<int>(value);
    default:
        return std::nullopt;
    }
}

std::optional<Unit> SensorUnit(const ICIMInstance& instance) {
    const auto base = NumberIn(instance, SensorUnits::kBaseUnits);
    const auto modifier = NumberIn(instance, SensorUnits::kUnitModifier);
    const auto rate = NumberIn(instance, SensorUnits::kRateUnits);
    if (!base || !modifier || !rate || *base < 0 || *rate < 0) {
        return std::nullopt;
    }
    return SensorUnits::UnitOf(static_cast<std::uint64_t>(*base), *modifier, static_cast<std::uint64_t>(*rate));
}

/// The text of a qualifier; empty where there is none.
std::string QualifierText(const ICIMPropertyDecl& declaration, const char* name) {
    bool isFound = false;
    const auto qualifier = declaration.GetQualifier(name, isFound, TCIMContext());
    const bool isText = isFound && qualifier->GetType(TCIMContext()) == ECIMType::eCIMString &&
                        !qualifier->GetValue(TCIMContext()).IsNull();
    return isText ? static_cast<std::string>(qualifier->GetValue(TCIMContext())) : std::string();
}

std::optional<Unit> NamedUnit(const ICIMInstance& instance, const ICIMPropertyDecl& declaration) {
    const std::string holder = QualifierText(declaration, "ISPUnit");
    if (holder.empty() || !Declares(instance, holder.c_str())) {
        return std::nullopt;
    }
    const TCIMValue unit = instance.GetProperty(holder, TCIMContext())->GetValue(TCIMContext());
    const bool isText = !unit.IsNull() && unit.GetType() == ECIMType::eCIMString;
    return isText ? ParseProgrammaticUnit(static_cast<std::string>(unit)) : std::nullopt;
}

} // namespace

std::optional<Unit> UnitToldBy(const ICIMInstance& instance, const ICIMPropertyDecl& declaration) {
    const std::string name = NormalizeName(declaration.GetName(TCIMContext()), NameRule::kCim);
    if (SensorUnits::IsReading(name) && IsSensor(instance)) {
        return SensorUnit(instance);
    }
    return NamedUnit(instance, declaration);
}

} // namespace NQORVYX20
