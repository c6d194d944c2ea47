#pragma once

#include <prometheus/metric_family.h>

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace cimhttp {

/// Metrics on their way to Prometheus, in its text format. Texts of a server are made safe and bounded here: labels of
/// 200 columns at most.
class MetricPage {
  public:
    using Type = prometheus::MetricType;
    using Labels = std::vector<prometheus::ClientMetric::Label>;

    enum class Outcome { kAdded, kDoubled, kBeyondLimit };

    /// Takes no more than `maxSeries` series by Add().
    explicit MetricPage(std::size_t maxSeries) : maxSeries_(maxSeries) {}

    /// What a family is, and how it is called.
    struct Family {
        std::string name;
        std::string help;
        Type type = Type::Gauge;
    };

    /// Adds a number, unless there is one with these labels already, or no room.
    Outcome Add(const Family& family, Labels labels, double value);

    /// Adds a number about the reading itself, for which there is room.
    void AddOwn(const Family& family, Labels labels, double value);

    /// How many series there are by Add().
    std::size_t SeriesCount() const { return series_; }

    std::string Text() const;

  private:
    struct Series {
        prometheus::MetricFamily family;
        std::set<Labels> known;
    };

    Outcome Put(const Family& family, Labels labels, double value);

    const std::size_t maxSeries_;
    std::size_t series_ = 0;
    std::map<std::string, Series> families_;
};

/// A text of a server as the value of a label.
std::string LabelText(const std::string& text);

} // namespace cimhttp
