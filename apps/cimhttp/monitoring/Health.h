#pragma once

#include "HostTypes.h"
#include "monitoring/ServiceState.h"
#include "output/InstanceProperties.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

class ValueTexts;

/// What an element of a managed system tells of its health by HealthState and OperationalStatus; docs/monitoring.md has
/// the states of each value.
struct Health {
    std::optional<ServiceState> state; ///< the worse of both; nothing where neither tells
    std::string faults;                ///< `OperationalStatus is Degraded`; empty where there are none
};

Health HealthOf(const NQORVYX20::ICIMInstance& instance, const ValueTexts& texts);

/// The class of all that has these properties.
constexpr const char* kHealthElements = "CIM_ManagedSystemElement";

/// Those of the class's properties that tell the health and the names of its instances; none where the server declares
/// none, which asks for all. Throws Failure(kNotFound) where the class has none that tells the health.
std::vector<std::string> HealthPropertiesIn(const Properties& declared);

constexpr const char* kHealthState = "HealthState";
constexpr const char* kOperationalStatus = "OperationalStatus";

} // namespace cimhttp
