#include "commands/InstanceFilter.h"

#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/ValueTexts.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <algorithm>
#include <iterator>
#include <ostream>

namespace cimhttp {

using namespace NQORVYX20;

void UncomparedValues::Add(const UncomparedValues& more) {
    first = count == 0 ? more.first : first;
    count += more.count;
}

void UncomparedValues::Report(std::ostream& errors) const {
    if (count > 0) {
        errors << "cimhttp: " << Counted(count, "value", "values")
               << " cannot be compared, so that --where does not select the instance; the first: " << Printable(first)
               << '\n';
    }
}

InstanceFilter::InstanceFilter(const std::vector<std::string>& conditions)
    : conditions_(conditions.begin(), conditions.end()) {}

std::vector<std::string> InstanceFilter::PropertyNames() const {
    std::vector<std::string> names;
    std::transform(conditions_.begin(), conditions_.end(), std::back_inserter(names),
                   [](const Condition& condition) { return condition.PropertyName(); });
    return names;
}

void InstanceFilter::Check(const Properties& ofClass, const std::string& className) const {
    for (const Condition& condition : conditions_) {
        condition.Check(*Chosen(ofClass, {condition.PropertyName()}, className).front());
    }
}

InstanceFilter::Selection InstanceFilter::Selected(Instances instances, const ValueTexts& texts) const {
    Selection selection{std::move(instances), {}};
    Instances& all = selection.instances;
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const auto& instance) { return !Accepts(*instance, texts, selection.uncompared); }),
              all.end());
    return selection;
}

bool InstanceFilter::Accepts(const ICIMInstance& instance, const ValueTexts& texts,
                             UncomparedValues& uncompared) const {
    UncomparedValues values;
    for (const Condition& condition : conditions_) {
        const auto property = FindProperty(instance, condition.PropertyName());
        const Condition::Answer answer = condition.Accepts(instance, property.get(), texts);
        if (answer == Condition::Answer::kNo) {
            return false;
        }
        if (answer == Condition::Answer::kUnknown) {
            values.Add({1, condition.PropertyName() + '=' + RawText(property->GetValue(TCIMContext()))});
        }
    }
    uncompared.Add(values);
    return values.count == 0;
}

} // namespace cimhttp
