#include "exporter/ClassMetrics.h"

#include "Failure.h"
#include "connection/ServerInstances.h"
#include "connection/ServerSchema.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TCIMDateTime.h"
#include "host/TCIMReference.h"
#include "monitoring/InstanceName.h"
#include "output/DisplayText.h"
#include "output/TypeText.h"
#include "selection/DateTimeRange.h"
#include "text/Names.h"
#include "text/ParsedText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

using ValueType = TCIMValue::TCIMType::ECIMType;

constexpr bool kWithSubclasses = true;

/// As many as fit into a few megabytes; their order does not matter.
constexpr std::size_t kHeldInstances = 250;

constexpr const char* kOtherState = "other";

/// An instant in seconds since 1970, or a length in seconds; nothing where a second more or less would do, too.
std::optional<double> SecondsOf(const TCIMDateTime& dateTime) {
    constexpr long long kMicroseconds = 1000000;
    static const long long epoch = DateTimeRange(*DateTimeIn("1970-01-01")).lowest;
    const DateTimeRange range(dateTime);
    if (range.highest - range.lowest >= kMicroseconds) {
        return std::nullopt;
    }
    return static_cast<double>(static_cast<long double>(range.lowest - (range.isInterval ? 0 : epoch)) / kMicroseconds);
}

/// Whether a number is still one when it is written with the 16 digits that the text format gets.
bool CanBeWritten(double number) {
    constexpr double kGreatest = 1.797693134862315e308;
    return std::abs(number) <= kGreatest;
}

} // namespace

MetricKind KindOf(const ICIMPropertyDecl& property, MetricRule::Type wanted) {
    const bool wantsStates = wanted == MetricRule::Type::kStates;
    const ValueType type = ElementType(property.GetType(TCIMContext()));
    if (wantsStates || (wanted == MetricRule::Type::kAsDeclared && HasValueMap(property))) {
        return type == ValueType::eCIMReference ? MetricKind::kNone : MetricKind::kStates;
    }
    if (HasNumbers(property)) {
        return MetricKind::kNumber;
    }
    return type == ValueType::eCIMBoolean    ? MetricKind::kTruth
           : type == ValueType::eCIMDateTime ? MetricKind::kTime
                                             : MetricKind::kNone;
}

std::vector<std::string> DeclaredStates(const ICIMPropertyDecl& property) {
    for (const char* const name : {"Values", "BitValues"}) {
        bool isFound = false;
        const auto qualifier = property.GetQualifier(name, isFound, TCIMContext());
        if (isFound) {
            std::vector<std::string> states;
            for (const std::string& text : PlainTexts(qualifier->GetValue(TCIMContext()))) {
                if (std::find(states.begin(), states.end(), text) == states.end()) {
                    states.push_back(text);
                }
            }
            return states;
        }
    }
    return {};
}

ClassMetrics::ClassMetrics(Session& session, const ClassRule& rule, MetricPage& page, ReadingReport& report,
                           std::function<bool()> mayGoOn)
    : session_(session),
      rule_(rule),
      page_(page),
      report_(report),
      mayGoOn_(std::move(mayGoOn)),
      texts_(session.Access()),
      exact_(session.Access(), DisplayForm{true, false}) {}

void ClassMetrics::Read() {
    bool isRead = false;
    try {
        const auto cls = ServerSchema(session_).Class(rule_.className);
        const Properties declared = PropertiesOf(*cls);
        if (!declared.empty()) { // a server without operations on classes declares what it sends
            Prepare(declared);
        }
        ReadInstances(*cls, declared);
        isRead = true;
    } catch (const LoginFailure&) {
        throw;
    } catch (const Failure& failure) {
        if (failure.Status() == Failure::kConnection) {
            throw;
        }
        if (failure.Status() != Failure::kNotFound || !rule_.isOptional) {
            report_.AddClassError(rule_.className, failure.what());
        }
    }
    report_.AddIncidents(rule_.className, session_.TakeIncidents());
    page_.AddOwn({"cim_class_up", "Whether the instances of a class could be read"}, {{"class", rule_.className}},
                 isRead ? 1 : 0);
    page_.AddOwn({"cim_class_instances", "Instances of a class and its subclasses that were read"},
                 {{"class", rule_.className}}, static_cast<double>(instances_));
}

void ClassMetrics::Prepare(const Properties& declared) {
    isPrepared_ = true;
    for (const MetricRule& rule : rule_.metrics) {
        const auto found = std::find_if(declared.begin(), declared.end(), [&](const auto& property) {
            return IsSameName(property->GetName(TCIMContext()), rule.property);
        });
        if (found == declared.end()) {
            report_.AddPropertyError(rule_.className, "there is no property " + rule.property);
        } else {
            AddMetric(rule, **found);
        }
    }
}

void ClassMetrics::AddMetric(const MetricRule& rule, const ICIMPropertyDecl& property) {
    const std::string name = property.GetName(TCIMContext());
    const MetricKind kind = KindOf(property, rule.type);
    if (kind == MetricKind::kNone) {
        report_.AddPropertyError(rule_.className,
                                 name + " has texts, which are no numbers: it can be a label, or states");
        return;
    }
    Metric metric{&rule, name, rule.name, rule.help, kind, false, rule.states};
    metric.isCounter =
        kind == MetricKind::kNumber && (rule.type == MetricRule::Type::kCounter ||
                                        (rule.type == MetricRule::Type::kAsDeclared && IsCounter(property)));
    if (metric.stem.empty()) {
        metric.stem = SnakeCase(rule_.className) + '_' + SnakeCase(name);
    }
    if (metric.help.empty()) {
        metric.help = name + " of " + rule_.className;
    }
    if (kind == MetricKind::kStates && metric.states.empty()) {
        metric.states = DeclaredStates(property);
    }
    metrics_.push_back(std::move(metric));
}

std::vector<std::string> ClassMetrics::NeededNames(const ICIMClass& cls, const Properties& declared) const {
    std::vector<std::string> names;
    for (const auto& property : declared) {
        const std::string name = property->GetName(TCIMContext());
        const bool isMetric =
            std::any_of(metrics_.begin(), metrics_.end(), [&](const Metric& metric) { return metric.name == name; });
        const bool isLabel = std::any_of(rule_.labels.begin(), rule_.labels.end(),
                                         [&](const LabelRule& label) { return IsSameName(label.source, name); });
        if (isMetric || isLabel || IsKey(*property)) {
            names.push_back(name);
        }
        if (isMetric) {
            const auto tellers = session_.Access().UnitTellers(cls, *property);
            names.insert(names.end(), tellers.begin(), tellers.end());
        }
    }
    const auto namesInstances = [](const LabelRule& label) { return label.source == "$name"; };
    if (std::any_of(rule_.labels.begin(), rule_.labels.end(), namesInstances)) {
        const auto more = InstanceName::PropertiesIn(declared);
        names.insert(names.end(), more.begin(), more.end());
    }
    return DistinctNames(names);
}

void ClassMetrics::ReadInstances(ICIMClass& cls, const Properties& declared) {
    ServerInstances instances(session_);
    const auto sequence = instances.Open(cls, kWithSubclasses, NeededNames(cls, declared), kHeldInstances);
    do {
        for (const auto& instance : instances.Next(*sequence, rule_.className)) {
            ++instances_;
            AddInstance(*instance);
        }
        if (!sequence->IsAtEnd() && !sequence->HasMoreAtHand() && !mayGoOn_()) {
            report_.AddBeyondLimit(rule_.className, "reading ended after " + std::to_string(instances_) +
                                                        " instances: the limit of bytes is reached");
            return;
        }
    } while (!sequence->IsAtEnd());
}

void ClassMetrics::AddInstance(const ICIMInstance& instance) {
    if (!isPrepared_) {
        Prepare(PropertiesOf(instance));
    }
    const MetricPage::Labels labels = LabelsOf(instance);
    for (const Metric& metric : metrics_) {
        const auto property = FindProperty(instance, metric.name);
        if (!property || property->GetValue(TCIMContext()).IsNull()) {
            report_.AddNull();
        } else {
            AddProperty(metric, instance, *property, labels);
        }
    }
}

MetricPage::Labels ClassMetrics::LabelsOf(const ICIMInstance& instance) const {
    MetricPage::Labels labels;
    for (const LabelRule& label : rule_.labels) {
        labels.push_back({label.name, LabelValue(instance, label.source)});
    }
    if (!labels.empty()) {
        return labels;
    }
    MetricPage::Labels all;
    instance.BuildPath(TCIMContext()).EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
        std::string label = SnakeCase(name);
        label = IsLabelName(label) ? label : "key_" + label;
        const prometheus::ClientMetric::Label key{label, PlainText(value)};
        all.push_back(key);
        if (InstanceName::IsOwnKey(name)) {
            labels.push_back(key);
        }
        return true;
    });
    return labels.empty() ? all : labels;
}

std::string ClassMetrics::LabelValue(const ICIMInstance& instance, const std::string& source) const {
    if (source == "$class") {
        return ClassNameOf(instance);
    }
    if (source == "$name") {
        return InstanceName(instance).Label();
    }
    if (source == "$path") {
        return InstanceName(instance).ShortPath();
    }
    const auto property = FindProperty(instance, source);
    return property ? texts_.Of(instance, *property).Joined() : std::string();
}

void ClassMetrics::AddProperty(const Metric& metric, const ICIMInstance& instance, const ICIMProperty& property,
                               const MetricPage::Labels& labels) {
    if (metric.kind == MetricKind::kStates) {
        AddStates(metric, texts_.Of(instance, property), labels);
    } else {
        AddElements(metric, instance, property, labels);
    }
}

void ClassMetrics::AddElements(const Metric& metric, const ICIMInstance& instance, const ICIMProperty& property,
                               const MetricPage::Labels& labels) {
    const TCIMValue value = property.GetValue(TCIMContext());
    const std::vector<std::string> plain = PlainTexts(value);
    const DisplayText exact = exact_.Of(instance, property);
    for (std::size_t i = 0; i < plain.size(); ++i) {
        MetricUnit unit;
        std::optional<double> number;
        if (metric.kind == MetricKind::kNumber) {
            const auto quantity = QuantityOf(plain[i], i < exact.Texts().size() ? exact.Texts()[i] : plain[i]);
            unit = quantity ? MetricUnit::Of(quantity->unit) : unit;
            number = quantity ? std::optional(unit.InBase(*quantity)) : std::nullopt;
        } else if (metric.kind == MetricKind::kTruth) {
            const auto truth = BooleanIn(plain[i]);
            number = truth ? std::optional<double>(*truth ? 1 : 0) : std::nullopt;
        } else {
            const auto time = DateTimeIn(plain[i]);
            unit.suffix = time && time->IsInterval() ? "seconds" : "timestamp_seconds";
            number = time ? SecondsOf(*time) : std::nullopt;
        }
        if (!number || !CanBeWritten(*number)) {
            report_.AddValueError(rule_.className,
                                  metric.name + " is no number that Prometheus has: " + LabelText(plain[i]));
            continue;
        }
        MetricPage::Labels own = labels;
        if (exact.IsList()) {
            own.push_back({kIndexLabel, std::to_string(i)});
        }
        AddSeries({MetricName(metric.stem, unit, metric.isCounter), metric.help,
                   metric.isCounter ? MetricPage::Type::Counter : MetricPage::Type::Gauge},
                  std::move(own), *number);
    }
}

/// A state that the value map does not have shows as it is; where only some are wanted, it is `other`.
void ClassMetrics::AddStates(const Metric& metric, const DisplayText& texts, const MetricPage::Labels& labels) {
    std::vector<std::string> states = metric.states;
    std::vector<std::string> active;
    const bool isChosen = !metric.rule->states.empty();
    for (const std::string& text : texts.Texts()) {
        const bool isKnown = std::find(states.begin(), states.end(), text) != states.end();
        active.push_back(isKnown || !isChosen ? text : kOtherState);
        if (!isKnown && !isChosen) {
            states.push_back(text);
        }
    }
    if (isChosen && std::find(states.begin(), states.end(), kOtherState) == states.end()) {
        states.emplace_back(kOtherState);
    }
    for (const std::string& state : states) {
        MetricPage::Labels own = labels;
        own.push_back({kStateLabel, state});
        AddSeries({metric.stem, metric.help, MetricPage::Type::Gauge}, std::move(own),
                  std::find(active.begin(), active.end(), state) == active.end() ? 0 : 1);
    }
}

void ClassMetrics::AddSeries(const MetricPage::Family& family, MetricPage::Labels labels, double value) {
    switch (page_.Add(family, std::move(labels), value)) {
    case MetricPage::Outcome::kAdded:
        return;
    case MetricPage::Outcome::kDoubled:
        report_.AddDoubled(rule_.className, family.name + " has two numbers with the same labels");
        return;
    case MetricPage::Outcome::kBeyondLimit:
        report_.AddBeyondLimit(rule_.className, "the limit of series is reached");
        return;
    }
}

} // namespace cimhttp
