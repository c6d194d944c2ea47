#include "commands/InstanceQuery.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "text/Names.h"

namespace cimhttp {

using namespace NQORVYX20;

InstanceQuery::InstanceQuery(const std::vector<std::string>& properties, const std::vector<std::string>& conditions,
                             const std::vector<std::string>& order)
    : names_(NamesIn(properties)), filter_(conditions), order_(order) {}

std::vector<std::string> InstanceQuery::NeededNames() const {
    if (names_.empty()) {
        return {};
    }
    std::vector<std::string> needed = names_;
    const std::vector<std::string> filtered = filter_.PropertyNames();
    needed.insert(needed.end(), filtered.begin(), filtered.end());
    needed.insert(needed.end(), order_.Names().begin(), order_.Names().end());
    return DistinctNames(needed);
}

void InstanceQuery::CheckNames(const Properties& ofClass, const std::string& className) const {
    Chosen(ofClass, names_, className);
    filter_.Check(ofClass, className);
    Chosen(ofClass, order_.Names(), className);
}

Properties InstanceQuery::Shown(const Properties& ofClass, const std::string& className) const {
    CheckNames(ofClass, className);
    return names_.empty() ? ofClass : Chosen(ofClass, names_, className);
}

InstanceFilter::Selection InstanceQuery::Selected(Instances instances, const ValueTexts& texts) const {
    InstanceFilter::Selection selection = filter_.Selected(std::move(instances), texts);
    if (!order_.IsEmpty()) {
        selection.instances = Sorted(selection.instances);
    }
    return selection;
}

Instances InstanceQuery::Sorted(const Instances& instances) const {
    std::vector<std::vector<TCIMValue>> rows;
    rows.reserve(instances.size());
    for (const auto& instance : instances) {
        auto& row = rows.emplace_back();
        for (const std::string& name : order_.Names()) {
            const auto property = FindProperty(*instance, name);
            row.push_back(property ? property->GetValue(TCIMContext()) : TCIMValue());
        }
    }
    return Ordered(instances, order_.Sorted(rows));
}

} // namespace cimhttp
