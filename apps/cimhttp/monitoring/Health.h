#pragma once

#include "HostTypes.h"
#include "monitoring/ServiceState.h"

#include <optional>
#include <string>

namespace cimhttp {

class ValueTexts;

/// What an element of a managed system tells of its health by HealthState and OperationalStatus; docs/monitoring.md has
/// the states of each value.
struct Health {
    std::optional<ServiceState> state; ///< the worse of both; nothing where neither tells
    std::string faults;                ///< `OperationalStatus is Degraded`; empty where there are none
};

Health HealthOf(const NQORVYX20::ICIMInstance& instance, const ValueTexts& texts);

constexpr const char* kHealthState = "HealthState";
constexpr const char* kOperationalStatus = "OperationalStatus";

} // namespace cimhttp
