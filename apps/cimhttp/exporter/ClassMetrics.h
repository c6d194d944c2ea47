#pragma once

#include "HostTypes.h"
#include "connection/Session.h"
#include "exporter/MetricName.h"
#include "exporter/MetricPage.h"
#include "exporter/Module.h"
#include "exporter/ReadingReport.h"
#include "output/InstanceProperties.h"
#include "output/ValueTexts.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// How a property of a class becomes a metric; of its declaration.
enum class MetricKind { kNone, kNumber, kTruth, kTime, kStates };
MetricKind KindOf(const NQORVYX20::ICIMPropertyDecl& property, MetricRule::Type wanted);

/// The texts of a property's value map, or of its bits, in its order.
std::vector<std::string> DeclaredStates(const NQORVYX20::ICIMPropertyDecl& property);

/// Reads the instances of one class and makes metrics of them.
class ClassMetrics {
  public:
    /// All must outlive the object. `mayGoOn` is asked between portions.
    ClassMetrics(Session& session, const ClassRule& rule, MetricPage& page, ReadingReport& report,
                 std::function<bool()> mayGoOn);

    /// Throws Failure where the server cannot be read any further; what is only about the class is in the report.
    void Read();

  private:
    struct Metric {
        const MetricRule* rule;
        std::string name; ///< as the class spells it
        std::string stem; ///< of the metric
        std::string help;
        MetricKind kind;
        bool isCounter;
        std::vector<std::string> states;
    };

    void Prepare(const Properties& declared);
    void AddMetric(const MetricRule& rule, const NQORVYX20::ICIMPropertyDecl& property);
    std::vector<std::string> NeededNames(const NQORVYX20::ICIMClass& cls, const Properties& declared) const;
    void ReadInstances(NQORVYX20::ICIMClass& cls, const Properties& declared);
    void AddInstance(const NQORVYX20::ICIMInstance& instance);
    MetricPage::Labels LabelsOf(const NQORVYX20::ICIMInstance& instance) const;
    std::string LabelValue(const NQORVYX20::ICIMInstance& instance, const std::string& source) const;
    void AddProperty(const Metric& metric, const NQORVYX20::ICIMInstance& instance,
                     const NQORVYX20::ICIMProperty& property, const MetricPage::Labels& labels);
    void AddElements(const Metric& metric, const NQORVYX20::ICIMInstance& instance,
                     const NQORVYX20::ICIMProperty& property, const MetricPage::Labels& labels);
    void AddStates(const Metric& metric, const DisplayText& texts, const MetricPage::Labels& labels);
    void AddSeries(const MetricPage::Family& family, MetricPage::Labels labels, double value);

    Session& session_;
    const ClassRule& rule_;
    MetricPage& page_;
    ReadingReport& report_;
    const std::function<bool()> mayGoOn_;
    const ValueTexts texts_;
    const ValueTexts exact_;
    bool isPrepared_ = false;
    std::vector<Metric> metrics_;
    std::size_t instances_ = 0;
};

} // namespace cimhttp
