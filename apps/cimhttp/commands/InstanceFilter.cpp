#include "commands/InstanceFilter.h"

#include <algorithm>
#include <iterator>

#include "Failure.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/DisplayText.h"
#include "text/Pattern.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr unsigned char kDecimal = 10;

bool IsMatch(const std::string& pattern, const ICIMProperty& property, const PluginAccess& access) {
    const TCIMValue& value = property.GetValue(TCIMContext());
    if (Matches(pattern, value.ToString(kDecimal))) {
        return true;
    }
    const DisplayText display(access, property);
    const auto matches = [&](const std::string& text) { return Matches(pattern, text); };
    if (std::any_of(display.Texts().begin(), display.Texts().end(), matches)) {
        return true;
    }
    if (!display.IsList()) {
        return false;
    }
    const std::vector<TCIMValue>& elements = value;
    return std::any_of(elements.begin(), elements.end(),
                       [&](const TCIMValue& element) { return matches(element.ToString(kDecimal)); });
}

} // namespace

InstanceFilter::InstanceFilter(const std::vector<std::string>& conditions) {
    for (const std::string& condition : conditions) {
        const auto sign = condition.find('=');
        if (sign == std::string::npos || sign == 0) {
            throw Failure(Failure::kUsage, "'" + condition + "' is not a condition such as 'Name=eth*'");
        }
        conditions_.push_back({condition.substr(0, sign), condition.substr(sign + 1)});
    }
}

std::vector<std::string> InstanceFilter::PropertyNames() const {
    std::vector<std::string> names;
    std::transform(conditions_.begin(), conditions_.end(), std::back_inserter(names),
                   [](const Condition& condition) { return condition.property; });
    return names;
}

Instances InstanceFilter::Selected(Instances instances, const PluginAccess& access) const {
    instances.erase(std::remove_if(instances.begin(), instances.end(),
                                   [&](const auto& instance) { return !Accepts(*instance, access); }),
                    instances.end());
    return instances;
}

bool InstanceFilter::Accepts(const ICIMInstance& instance, const PluginAccess& access) const {
    return std::all_of(conditions_.begin(), conditions_.end(), [&](const Condition& condition) {
        const auto property = FindProperty(instance, condition.property);
        return property ? IsMatch(condition.pattern, *property, access) : Matches(condition.pattern, "");
    });
}

} // namespace cimhttp
