#pragma once

#include "monitoring/PerformanceData.h"
#include "monitoring/ServiceState.h"

#include <array>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

/// What a check has found, and how a monitoring system reads it: one line with the state, performance data after a
/// vertical bar, and a line for each thing that is not OK. Texts of a server are made safe here, and bounded.
class CheckReport {
  public:
    /// Counts one that is OK, or that is neither this nor that.
    void AddInstance() { ++instances_; }

    /// Counts an instance that is not OK: `about` says what is wrong with it, `where` where it is.
    void AddInstance(ServiceState state, const std::string& label, const std::string& about, const std::string& where);

    /// What could not be read, apart from an instance.
    void AddUnknown(const std::string& reason);

    void AddIgnored() { ++ignored_; }

    /// A line for the end.
    void AddRemark(const std::string& remark) { remarks_.push_back(remark); }

    PerformanceData& Performance() { return performance_; }

    /// Without the ignored ones.
    std::size_t InstanceCount() const { return instances_; }
    std::size_t IgnoredCount() const { return ignored_; }

    /// How many instances are in a state, without those that are OK.
    std::size_t CountOf(ServiceState state) const { return counts_.at(static_cast<std::size_t>(state)); }

    ServiceState State() const;

    /// `population` says what was looked at, `4 instances of CIM_Fan`; `values` what to say besides when all is OK.
    void Write(const std::string& population, const std::string& values, std::ostream& output) const;

    /// A check that has found nothing out.
    static void WriteUnknown(const std::string& reason, std::ostream& output);

  private:
    struct Problem {
        std::string text;
        std::string where;
    };

    void Add(ServiceState state, Problem problem);
    std::string Numbers() const;
    void WriteProblems(std::ostream& output) const;

    std::size_t instances_ = 0;
    std::size_t ignored_ = 0;
    std::array<std::size_t, 4> counts_{};
    std::array<std::vector<Problem>, 4> problems_; // the first of each state
    std::vector<std::string> remarks_;
    PerformanceData performance_;
};

} // namespace cimhttp
