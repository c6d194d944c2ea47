#include "monitoring/Health.h"

#include "Failure.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "monitoring/InstanceName.h"
#include "output/InstanceProperties.h"
#include "output/ValueTexts.h"
#include "text/Names.h"
#include "text/ParsedText.h"

#include <map>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

using States = std::map<unsigned, ServiceState>;

// Values that are not listed tell nothing of health: those that are unknown, reserved or a vendor's own, and states of
// work such as Starting, Stopped or Completed.

const States& HealthStates() {
    static const States states{{5, ServiceState::kOk},        {10, ServiceState::kWarning},
                               {15, ServiceState::kWarning},  {20, ServiceState::kCritical},
                               {25, ServiceState::kCritical}, {30, ServiceState::kCritical}};
    return states;
}

const States& OperationalStates() {
    static const States states{
        {2, ServiceState::kOk},        // OK
        {3, ServiceState::kWarning},   // Degraded
        {4, ServiceState::kWarning},   // Stressed
        {5, ServiceState::kWarning},   // Predictive Failure
        {6, ServiceState::kCritical},  // Error
        {7, ServiceState::kCritical},  // Non-Recoverable Error
        {12, ServiceState::kWarning},  // No Contact: it has never been reached
        {13, ServiceState::kCritical}, // Lost Communication
        {14, ServiceState::kCritical}, // Aborted
        {16, ServiceState::kWarning},  // Supporting Entity in Error: itself it may be well
    };
    return states;
}

void Add(Health& health, const ICIMInstance& instance, const char* name, const States& states,
         const ValueTexts& texts) {
    const auto property = FindProperty(instance, name);
    if (!property || property->GetValue(TCIMContext()).IsNull()) {
        return;
    }
    bool isFault = false;
    for (const std::string& text : PlainTexts(property->GetValue(TCIMContext()))) {
        const auto value = NumberIn<unsigned>(text);
        const auto known = value ? states.find(*value) : states.end();
        if (known != states.end()) {
            health.state = Worse(health.state.value_or(known->second), known->second);
            isFault = isFault || known->second != ServiceState::kOk;
        }
    }
    if (isFault) {
        health.faults += health.faults.empty() ? "" : ", ";
        health.faults.append(name).append(" is ").append(texts.Of(instance, *property).Joined());
    }
}

} // namespace

std::vector<std::string> HealthPropertiesIn(const Properties& declared) {
    if (declared.empty()) {
        return {};
    }
    std::vector<std::string> names = InstanceName::PropertiesIn(declared);
    const std::size_t labels = names.size();
    for (const std::string& name : NamesOf(declared)) {
        if (IsSameName(name, kHealthState) || IsSameName(name, kOperationalStatus)) {
            names.push_back(name);
        }
    }
    if (names.size() == labels) {
        throw Failure(Failure::kNotFound, std::string("the server's ") + kHealthElements + " has neither " +
                                              kHealthState + " nor " + kOperationalStatus);
    }
    return names;
}

Health HealthOf(const ICIMInstance& instance, const ValueTexts& texts) {
    Health health;
    Add(health, instance, kHealthState, HealthStates(), texts);
    Add(health, instance, kOperationalStatus, OperationalStates(), texts);
    return health;
}

} // namespace cimhttp
