#include "commands/CollectedClass.h"

#include "host/ICIMInstance.h"
#include "host/TCIMReference.h"
#include "monitoring/Health.h"
#include "monitoring/InstanceName.h"
#include "output/ClassJson.h"
#include "output/InstanceProperties.h"

#include <ostream>
#include <utility>

namespace cimhttp {

using namespace NQORVYX20;

CollectedClass::CollectedClass(const ValueTexts& texts, std::shared_ptr<Spool> spool)
    : texts_(texts), json_(PropertySelector(PropertySelector::Order::kByName), texts), instances_(std::move(spool)) {}

void CollectedClass::SetDefinition(const RemoteClass& definition) {
    definition_ = ClassJson(definition);
    definition_.pop_back(); // the instances are its last member
}

void CollectedClass::Add(ICIMInstance& instance, bool wantsHealth) {
    line_.Clear();
    line_.Add(count_++ == 0 ? "[\n" : ",\n");
    json_.Append(instance, line_);
    instances_.Append(line_.Text());
    if (wantsHealth) {
        AddHealth(instance);
    }
}

void CollectedClass::AddHealth(const ICIMInstance& instance) {
    Health health = HealthOf(instance, texts_);
    if (!health.state) {
        return;
    }
    telling_.push_back(instance.GetReference(TCIMContext()).GetPath());
    if (*health.state != ServiceState::kOk) {
        const char* const state = *health.state == ServiceState::kCritical ? "critical" : "warning";
        faults_.push_back(
            {state, ClassNameOf(instance), telling_.back(), InstanceName(instance).Label(), std::move(health.faults)});
    }
}

void CollectedClass::WriteTo(std::ostream& output) const {
    output << definition_ << ",\n\"instances\":" << (count_ == 0 ? "[" : "");
    instances_.WriteTo(output);
    output << "]}";
}

} // namespace cimhttp
