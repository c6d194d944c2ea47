#pragma once

#include <prometheus/counter.h>
#include <prometheus/family.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>

#include <chrono>
#include <string>

namespace cimhttp {

class Targets;

/// What the exporter tells of itself. For several threads.
class ExporterMetrics {
  public:
    /// `version` is that of the program.
    explicit ExporterMetrics(const std::string& version);

    enum class Outcome { kRead, kFailed, kShared, kRefused };

    /// Counts a scrape of a server.
    void AddScrape(Outcome outcome, std::chrono::duration<double> time);

    /// All numbers in Prometheus' text format.
    std::string Text(const Targets& targets);

  private:
    prometheus::Registry registry_;
    prometheus::Family<prometheus::Counter>& scrapes_;
    prometheus::Histogram& seconds_;
    prometheus::Gauge& kept_;
    prometheus::Gauge& busy_;
    prometheus::Gauge& waiting_;
    prometheus::Gauge& memory_;
    prometheus::Gauge& files_;
    prometheus::Counter& processor_;
};

} // namespace cimhttp
