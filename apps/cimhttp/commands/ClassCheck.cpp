#include "commands/ClassCheck.h"

#include "commands/CheckReading.h"
#include "commands/InstanceQuery.h"
#include "commands/InstanceReader.h"
#include "connection/ServerSchema.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/DisplayText.h"
#include "text/Names.h"
#include "text/WordList.h"

#include <algorithm>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

constexpr bool kWithSubclasses = true;

/// A property of an instance, with its elements as numbers where they are some.
struct Numbers {
    std::vector<std::optional<Quantity>> quantities;
    bool isArray;
};

Numbers NumbersOf(const ICIMInstance& instance, const ICIMProperty& property, const ValueTexts& exact) {
    const std::vector<std::string> plain = PlainTexts(property.GetValue(TCIMContext()));
    const DisplayText texts = exact.Of(instance, property);
    Numbers numbers{{}, texts.IsList()};
    for (std::size_t i = 0; i < plain.size(); ++i) {
        numbers.quantities.push_back(QuantityOf(plain[i], i < texts.Texts().size() ? texts.Texts()[i] : plain[i]));
    }
    return numbers;
}

/// Null where an instance does not have the property, or has none of its values.
boost::shared_ptr<ICIMProperty> ValuedProperty(const ICIMInstance& instance, const std::string& name) {
    auto property = FindProperty(instance, name);
    return property && !property->GetValue(TCIMContext()).IsNull() ? property : nullptr;
}

const ThresholdRange* RangeAmong(const std::vector<Threshold>& thresholds, const ICIMPropertyDecl& property) {
    for (const Threshold& threshold : thresholds) {
        if (IsSameName(threshold.PropertyName(), property.GetName(TCIMContext()))) {
            if (const auto* const range = threshold.RangeFor(property)) {
                return range;
            }
        }
    }
    return nullptr;
}

std::string PerformanceText(const ThresholdRange* range, const Quantity& quantity) {
    return range != nullptr && range->Alerts(quantity) ? range->PerformanceText(quantity) : std::string();
}

} // namespace

/// What thresholds say of an instance.
struct ClassCheck::Finding {
    void Add(ServiceState one, const std::string& text) {
        state = Worse(state, one);
        criticals += one == ServiceState::kCritical ? 1 : 0;
        if (std::find(reasons.begin(), reasons.end(), text) == reasons.end()) {
            reasons.push_back(text);
        }
    }

    /// Adds what a threshold says, which is about this state.
    void Add(const Threshold& threshold, ServiceState about, const ICIMInstance& instance, const ValueTexts& texts,
             const ValueTexts& exact) {
        if (alerted.count(threshold.PropertyName()) > 0) { // what is critical is not warned about, too
            return;
        }
        const std::size_t before = criticals;
        const auto property = ValuedProperty(instance, threshold.PropertyName());
        const auto declaration = property ? property->GetDeclaration(TCIMContext()) : nullptr;
        const ThresholdRange* const range = declaration ? threshold.RangeFor(*declaration) : nullptr;
        if (range != nullptr) {
            AddRange(*range, about, instance, *property, texts, exact);
        } else {
            AddCondition(threshold, about, instance, texts);
        }
        if (criticals > before) {
            alerted.insert(threshold.PropertyName());
        }
    }

    void AddRange(const ThresholdRange& range, ServiceState about, const ICIMInstance& instance,
                  const ICIMProperty& property, const ValueTexts& texts, const ValueTexts& exact) {
        const std::string name = property.GetDeclaration(TCIMContext())->GetName(TCIMContext());
        const std::vector<std::string> shown = texts.Of(instance, property).Texts();
        const Numbers numbers = NumbersOf(instance, property, exact);
        if (numbers.quantities.empty()) {
            Add(ServiceState::kUnknown, name + " has no elements");
        }
        for (std::size_t i = 0; i < numbers.quantities.size(); ++i) {
            AddElement(range, about, name, i < shown.size() ? shown[i] : std::string(), numbers.quantities[i]);
        }
    }

    /// Adds what a range says of one element, of which `value` is the text for people.
    void AddElement(const ThresholdRange& range, ServiceState about, const std::string& name, const std::string& value,
                    const std::optional<Quantity>& quantity) {
        const auto alerts = quantity ? range.Alerts(*quantity) : std::nullopt;
        std::string text = name;
        if (!quantity) {
            text.append(value.empty() ? " is null" : " is no number: ").append(value);
            Add(ServiceState::kUnknown, text);
        } else if (!alerts) {
            text.append(" is ").append(value).append(", which ").append(range.Text()).append(" is no range for");
            Add(ServiceState::kUnknown, text);
        } else if (*alerts) {
            text.append(" is ").append(value).append(", threshold ").append(range.Text());
            Add(about, text);
        }
    }

    void AddCondition(const Threshold& threshold, ServiceState about, const ICIMInstance& instance,
                      const ValueTexts& texts) {
        const auto property = FindProperty(instance, threshold.PropertyName());
        const auto answer = threshold.AsCondition().Accepts(instance, property.get(), texts);
        const bool isNull = !property || property->GetValue(TCIMContext()).IsNull();
        const std::string value = isNull ? "null" : texts.Of(instance, *property).Joined();
        const std::string text =
            threshold.PropertyName() + (property ? " is " + value : std::string(" is no property of the instance"));
        if (answer == Condition::Answer::kYes) {
            Add(about, text);
        } else if (answer == Condition::Answer::kUnknown) {
            Add(ServiceState::kUnknown, text + ", which cannot be compared with " + threshold.Text());
        } else if (isNull) {
            Add(ServiceState::kUnknown, text);
        }
    }

    ServiceState state = ServiceState::kOk;
    std::vector<std::string> reasons;
    std::size_t criticals = 0;
    NameSet alerted; // properties that made the instance critical
};

ClassCheck::ClassCheck(const CheckRequest& request)
    : request_(request),
      warnings_(request.warnings.begin(), request.warnings.end()),
      criticals_(request.criticals.begin(), request.criticals.end()) {}

std::vector<const Threshold*> ClassCheck::Thresholds() const {
    std::vector<const Threshold*> thresholds;
    for (const auto* const list : {&criticals_, &warnings_}) {
        for (const Threshold& threshold : *list) {
            thresholds.push_back(&threshold);
        }
    }
    return thresholds;
}

void ClassCheck::CheckThresholds(const Properties& declared) const {
    for (const Threshold* const threshold : Thresholds()) {
        threshold->Check(*Chosen(declared, {threshold->PropertyName()}, request_.className).front());
    }
}

/// None from a server that does not declare what its instances have, which asks for all.
std::vector<std::string> ClassCheck::NeededNames(const Properties& declared) const {
    std::vector<std::string> names = InstanceName::PropertiesIn(declared);
    for (const Threshold* const threshold : Thresholds()) {
        names.push_back(threshold->PropertyName());
    }
    if (declared.empty()) {
        return {};
    }
    return names.empty() ? std::vector<std::string>{NamesOf(declared).front()} : DistinctNames(names);
}

ClassCheck::Finding ClassCheck::FindingOf(const ICIMInstance& instance, const ValueTexts& texts,
                                          const ValueTexts& exact) const {
    Finding finding;
    for (const Threshold& threshold : criticals_) {
        finding.Add(threshold, ServiceState::kCritical, instance, texts, exact);
    }
    for (const Threshold& threshold : warnings_) {
        finding.Add(threshold, ServiceState::kWarning, instance, texts, exact);
    }
    return finding;
}

void ClassCheck::AddNumbers(const ICIMInstance& instance, const InstanceName& name, const ValueTexts& exact,
                            PerformanceData& performance) const {
    NameSet done;
    for (const Threshold* const threshold : Thresholds()) {
        const auto property = ValuedProperty(instance, threshold->PropertyName());
        const auto declaration = property ? property->GetDeclaration(TCIMContext()) : nullptr;
        if (!declaration || threshold->RangeFor(*declaration) == nullptr ||
            !done.insert(threshold->PropertyName()).second) {
            continue;
        }
        const Numbers numbers = NumbersOf(instance, *property, exact);
        for (std::size_t i = 0; i < numbers.quantities.size(); ++i) {
            const auto& quantity = numbers.quantities[i];
            if (quantity) {
                const std::string place = numbers.isArray ? '[' + std::to_string(i) + ']' : std::string();
                performance.Add({name.Label() + ' ' + declaration->GetName(TCIMContext()) + place, name.ShortPath(),
                                 *quantity, IsCounter(*declaration),
                                 PerformanceText(RangeAmong(warnings_, *declaration), *quantity),
                                 PerformanceText(RangeAmong(criticals_, *declaration), *quantity)});
            }
        }
    }
}

ServiceState ClassCheck::Run(const Session& session, const DisplayForm& form, CheckReport& report,
                             std::ostream& output) const {
    const Properties declared = PropertiesOf(*ServerSchema(session).Class(request_.className));
    if (!declared.empty()) {
        CheckThresholds(declared);
    }
    InstanceReader reader(session, request_.className, InstanceQuery(NeededNames(declared), request_.conditions),
                          kWithSubclasses, form);
    const ValueTexts texts(session.Access(), form);
    const ValueTexts exact(session.Access(), DisplayForm{true, false});
    std::string values;
    const auto take = [&](const ICIMInstance& instance) {
        const InstanceName name(instance);
        if (request_.Ignores(name)) {
            report.AddIgnored();
            return;
        }
        const Finding finding = FindingOf(instance, texts, exact);
        if (finding.state == ServiceState::kOk) {
            report.AddInstance();
        } else {
            report.AddInstance(finding.state, name.Label(), Joined(finding.reasons), name.ShortPath());
        }
        AddNumbers(instance, name, exact, report.Performance());
        if (report.InstanceCount() == 1) {
            values = ValuesOf(instance, name, texts);
        }
    };
    ReadForCheck(reader, take, report);
    RefuseIfAllAreIgnored(report, reader.ClassName());
    report.Write(Counted(report.InstanceCount(), "instance", "instances") + " of " + reader.ClassName(),
                 report.InstanceCount() == 1 ? values : std::string(), output);
    return report.State();
}

/// `sda: Size is 16 GiB`; empty without thresholds.
std::string ClassCheck::ValuesOf(const ICIMInstance& instance, const InstanceName& name,
                                 const ValueTexts& texts) const {
    std::vector<std::string> values;
    for (const Threshold* const threshold : Thresholds()) {
        if (const auto property = ValuedProperty(instance, threshold->PropertyName())) {
            values.push_back(property->GetDeclaration(TCIMContext())->GetName(TCIMContext()) + " is " +
                             texts.Of(instance, *property).Joined());
        }
    }
    return values.empty() ? std::string() : name.Label() + ": " + Joined(DistinctNames(values));
}

} // namespace cimhttp
