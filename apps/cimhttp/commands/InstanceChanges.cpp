#include "commands/InstanceChanges.h"

#include <map>

#include "access/PluginAccess.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

using ByPath = std::map<std::string, boost::shared_ptr<ICIMInstance>>;

ByPath Filed(const Instances& instances) {
    ByPath filed;
    for (const auto& instance : instances) {
        filed.emplace(instance->BuildPath(TCIMContext()).GetPath(), instance);
    }
    return filed;
}

/// The later value with the earlier one as its previous value, where they are different.
boost::shared_ptr<ICIMProperty> Compared(const ICIMInstance& earlier, const ICIMInstance& later,
                                         const std::string& name, const PluginAccess& access) {
    const auto now = later.GetProperty(name, TCIMContext());
    const auto before = earlier.GetProperty(name, TCIMContext());
    auto property = access.MakeProperty(now->GetDeclaration(TCIMContext()), now->GetValue(TCIMContext()));
    if (before->GetValue(TCIMContext()) != now->GetValue(TCIMContext())) {
        property->SetPrevValue(before->GetValue(TCIMContext()));
    }
    return property;
}

std::vector<InstanceChange::Difference> Differences(const ICIMInstance& earlier, const ICIMInstance& later,
                                                    const std::vector<std::string>& properties,
                                                    const PluginAccess& access) {
    std::vector<InstanceChange::Difference> differences;
    for (const std::string& name : properties) {
        auto property = Compared(earlier, later, name, access);
        if (property->IsPrevValueDifferent()) {
            differences.push_back({name, std::move(property)});
        }
    }
    return differences;
}

} // namespace

std::vector<InstanceChange> ChangesBetween(const Instances& earlier, const Instances& later,
                                           const std::vector<std::string>& properties, const PluginAccess& access) {
    std::map<std::string, InstanceChange> changes; // by path
    const ByPath before = Filed(earlier);
    for (const auto& [path, instance] : Filed(later)) {
        const auto known = before.find(path);
        if (known == before.end()) {
            changes.insert({path, {InstanceChange::Kind::kNew, path, {}}});
            continue;
        }
        auto differences = Differences(*known->second, *instance, properties, access);
        if (!differences.empty()) {
            changes.insert({path, {InstanceChange::Kind::kChanged, path, std::move(differences)}});
        }
    }
    const ByPath after = Filed(later);
    for (const auto& [path, instance] : before) {
        if (after.count(path) == 0) {
            changes.insert({path, {InstanceChange::Kind::kGone, path, {}}});
        }
    }
    std::vector<InstanceChange> sorted;
    sorted.reserve(changes.size());
    for (auto& [path, change] : changes) {
        sorted.push_back(std::move(change));
    }
    return sorted;
}

} // namespace cimhttp
