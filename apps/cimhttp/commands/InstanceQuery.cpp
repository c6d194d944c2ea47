#include "commands/InstanceQuery.h"

#include "text/NameList.h"

namespace cimhttp {

InstanceQuery::InstanceQuery(const std::vector<std::string>& properties, const std::vector<std::string>& conditions)
    : names_(NamesIn(properties)), filter_(conditions) {}

std::vector<std::string> InstanceQuery::NeededNames() const {
    if (names_.empty()) {
        return {};
    }
    std::vector<std::string> needed = names_;
    const std::vector<std::string> filtered = filter_.PropertyNames();
    needed.insert(needed.end(), filtered.begin(), filtered.end());
    return DistinctNames(needed);
}

void InstanceQuery::CheckNames(const Properties& of_class, const std::string& class_name) const {
    Chosen(of_class, names_, class_name);
    Chosen(of_class, filter_.PropertyNames(), class_name);
}

Properties InstanceQuery::Shown(const Properties& of_class, const std::string& class_name) const {
    CheckNames(of_class, class_name);
    return names_.empty() ? of_class : Chosen(of_class, names_, class_name);
}

} // namespace cimhttp
