#include "commands/InstanceChanges.h"

#include "host/ICIMProperty.h"

#include <map>
#include <optional>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

using ByPath = std::map<std::string, boost::shared_ptr<ICIMInstance>>;
using Difference = InstanceChange::Difference;

ByPath Filed(const Instances& instances) {
    ByPath filed;
    for (const auto& instance : instances) {
        filed.emplace(PathOf(*instance), instance);
    }
    return filed;
}

TCIMValue ValueOf(const boost::shared_ptr<ICIMProperty>& property) {
    return property ? property->GetValue(TCIMContext()) : TCIMValue();
}

/// Nothing where the values are the same.
std::optional<Difference> Compared(const ICIMInstance& earlier, const ICIMInstance& later, const std::string& name) {
    const auto before = FindProperty(earlier, name);
    const auto now = FindProperty(later, name);
    if (!before && !now) {
        return std::nullopt;
    }
    Difference difference{name, (now ? now : before)->GetDeclaration(TCIMContext()), ValueOf(before), ValueOf(now)};
    const bool areBothNull = difference.before.IsNull() && difference.now.IsNull();
    return areBothNull || difference.before == difference.now ? std::nullopt : std::optional<Difference>(difference);
}

std::vector<Difference> Differences(const ICIMInstance& earlier, const ICIMInstance& later,
                                    const std::vector<std::string>& properties) {
    std::vector<Difference> differences;
    for (const std::string& name : properties) {
        if (auto difference = Compared(earlier, later, name)) {
            differences.push_back(std::move(*difference));
        }
    }
    return differences;
}

} // namespace

std::vector<InstanceChange> ChangesBetween(const Instances& earlier, const Instances& later,
                                           const std::vector<std::string>& properties) {
    std::map<std::string, InstanceChange> changes; // by path
    const ByPath before = Filed(earlier);
    const ByPath after = Filed(later);
    for (const auto& [path, instance] : after) {
        const auto known = before.find(path);
        if (known == before.end()) {
            changes.insert({path, {InstanceChange::Kind::kNew, path, instance, {}, {}}});
            continue;
        }
        auto differences = Differences(*known->second, *instance, properties);
        if (!differences.empty()) {
            changes.insert(
                {path, {InstanceChange::Kind::kChanged, path, instance, known->second, std::move(differences)}});
        }
    }
    for (const auto& [path, instance] : before) {
        if (after.count(path) == 0) {
            changes.insert({path, {InstanceChange::Kind::kGone, path, instance, {}, {}}});
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
