#pragma once

#include "connection/IncidentTally.h"
#include "exporter/MetricPage.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace cimhttp {

/// What went wrong while the metrics of a server were read: counted by kind, and the first ones named.
class ReadingReport {
  public:
    /// A class that could not be read, or not all of it.
    void AddClassError(const std::string& className, const std::string& reason) { Add("class", className, reason); }

    /// A property that gives no metric, whatever its instances have.
    void AddPropertyError(const std::string& className, const std::string& reason) {
        Add("property", className, reason);
    }

    /// A value that gives no metric.
    void AddValueError(const std::string& className, const std::string& reason) { Add("value", className, reason); }

    /// A series that is there already.
    void AddDoubled(const std::string& className, const std::string& reason) { Add("doubled", className, reason); }

    /// Series, or classes, beyond a limit.
    void AddBeyondLimit(const std::string& className, const std::string& reason) { Add("limit", className, reason); }

    void AddNull() { ++nulls_; }

    void AddIncidents(const std::string& className, const IncidentTally& incidents);

    /// Writes all of it.
    void WriteTo(MetricPage& page) const;

  private:
    struct Problem {
        std::string kind;
        std::string className;
        std::string reason;
    };

    void Add(const std::string& kind, const std::string& className, const std::string& reason);

    std::map<std::string, std::size_t> errors_; // by kind
    std::vector<Problem> problems_;             // the first of them
    IncidentTally incidents_;
    std::size_t nulls_ = 0;
};

} // namespace cimhttp
