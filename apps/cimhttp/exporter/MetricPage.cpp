#include "exporter/MetricPage.h"

#include "text/TerminalText.h"

#include <prometheus/text_serializer.h>

#include <utility>

namespace cimhttp {

namespace {

constexpr std::size_t kWidestLabel = 200;

} // namespace

std::string LabelText(const std::string& text) {
    const std::string printable = Printable(text);
    return DisplayWidth(printable) <= kWidestLabel ? printable : Cut(printable, kWidestLabel - 1) + "…";
}

MetricPage::Outcome MetricPage::Add(const Family& family, Labels labels, double value) {
    if (series_ >= maxSeries_) {
        return Outcome::kBeyondLimit;
    }
    const Outcome outcome = Put(family, std::move(labels), value);
    series_ += outcome == Outcome::kAdded ? 1 : 0;
    return outcome;
}

void MetricPage::AddOwn(const Family& family, Labels labels, double value) { Put(family, std::move(labels), value); }

MetricPage::Outcome MetricPage::Put(const Family& family, Labels labels, double value) {
    auto [entry, isNew] = families_.try_emplace(family.name);
    Series& series = entry->second;
    if (isNew) {
        series.family = {family.name, Printable(family.help), family.type, {}};
    }
    for (auto& label : labels) {
        label.value = LabelText(label.value);
    }
    if (!series.known.insert(labels).second) {
        return Outcome::kDoubled;
    }
    prometheus::ClientMetric metric;
    metric.label = std::move(labels);
    metric.gauge.value = value;
    metric.counter.value = value;
    series.family.metric.push_back(std::move(metric));
    return Outcome::kAdded;
}

std::string MetricPage::Text() const {
    std::vector<prometheus::MetricFamily> families;
    families.reserve(families_.size());
    for (const auto& [name, series] : families_) {
        families.push_back(series.family);
    }
    return prometheus::TextSerializer().Serialize(families);
}

} // namespace cimhttp
