#include "exporter/ReadingReport.h"

#include <algorithm>
#include <array>

namespace cimhttp {

namespace {

constexpr std::size_t kNamedProblems = 20;

/// All kinds are there, so that an alert sees the first one come.
constexpr std::array<const char*, 6> kKinds{"class", "property", "value", "doubled", "limit", "incident"};

} // namespace

void ReadingReport::Add(const std::string& kind, const std::string& className, const std::string& reason) {
    ++errors_[kind];
    const auto isSame = [&](const Problem& other) {
        return other.kind == kind && other.className == className && other.reason == reason;
    };
    if (problems_.size() < kNamedProblems && std::none_of(problems_.begin(), problems_.end(), isSame)) {
        problems_.push_back({kind, className, reason});
    }
}

void ReadingReport::AddIncidents(const std::string& className, const IncidentTally& incidents) {
    if (!incidents.IsEmpty()) {
        incidents_.Add(incidents);
        Add("incident", className, incidents.Text());
    }
}

void ReadingReport::WriteTo(MetricPage& page) const {
    for (const char* const kind : kKinds) {
        const auto known = errors_.find(kind);
        page.AddOwn({"cim_errors", "What could not be read in this scrape, by kind"}, {{"kind", kind}},
                    known == errors_.end() ? 0 : static_cast<double>(known->second));
    }
    for (const auto& [cause, count] : incidents_.Counts()) {
        page.AddOwn({"cim_incidents", "Values and objects that could not be taken over, by cause"}, {{"cause", cause}},
                    static_cast<double>(count));
    }
    for (const Problem& problem : problems_) {
        page.AddOwn({"cim_problem_info", "The first things that could not be read in this scrape"},
                    {{"kind", problem.kind}, {"class", problem.className}, {"reason", problem.reason}}, 1);
    }
    page.AddOwn({"cim_null_values", "Values that are null and give no series"}, {}, static_cast<double>(nulls_));
}

} // namespace cimhttp
