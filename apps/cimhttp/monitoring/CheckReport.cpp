#include "monitoring/CheckReport.h"

#include "monitoring/StatusText.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <ostream>
#include <utility>

namespace cimhttp {

namespace {

constexpr std::size_t kStatusWidth = 250;
constexpr std::size_t kLabelWidth = 60;
constexpr std::size_t kAboutWidth = 200;
constexpr std::size_t kWhereWidth = 200;
constexpr std::size_t kMostProblems = 50; // of each state, each a line

constexpr std::array kFaults{ServiceState::kCritical, ServiceState::kWarning, ServiceState::kUnknown};

std::string InLowerCase(ServiceState state) {
    return state == ServiceState::kCritical ? "critical" : state == ServiceState::kWarning ? "warning" : "unknown";
}

} // namespace

void CheckReport::AddInstance(ServiceState state, const std::string& label, const std::string& about,
                              const std::string& where) {
    AddInstance();
    Add(state,
        {StatusText(label, kLabelWidth) + ": " + StatusText(about, kAboutWidth), StatusText(where, kWhereWidth)});
}

void CheckReport::AddUnknown(const std::string& reason) {
    Add(ServiceState::kUnknown, {StatusText(reason, kAboutWidth), {}});
}

void CheckReport::Add(ServiceState state, Problem problem) {
    const auto place = static_cast<std::size_t>(state);
    ++counts_.at(place);
    if (problems_.at(place).size() < kMostProblems) {
        problems_.at(place).push_back(std::move(problem));
    }
}

ServiceState CheckReport::State() const {
    ServiceState state = ServiceState::kOk;
    for (const ServiceState fault : kFaults) {
        state = CountOf(fault) > 0 ? Worse(state, fault) : state;
    }
    return state;
}

/// `2 critical, 1 unknown`
std::string CheckReport::Numbers() const {
    std::vector<std::string> numbers;
    for (const ServiceState fault : kFaults) {
        if (CountOf(fault) > 0) {
            numbers.push_back(std::to_string(CountOf(fault)) + ' ' + InLowerCase(fault));
        }
    }
    return Joined(numbers);
}

void CheckReport::Write(const std::string& population, const std::string& values, std::ostream& output) const {
    const ServiceState state = State();
    std::string status = NameOf(state);
    status += " - " + (state == ServiceState::kOk ? "" : Numbers() + " of ") + population;
    status += ignored_ > 0 ? ", " + std::to_string(ignored_) + " ignored" : "";
    const std::string first =
        state == ServiceState::kOk ? values : problems_.at(static_cast<std::size_t>(state)).front().text;
    output << StatusText(status + (first.empty() ? "" : "; ") + first, kStatusWidth);
    if (performance_.Count() > 0) {
        output << " | " << performance_.Text();
    }
    output << '\n';
    WriteProblems(output);
    if (performance_.Count() > performance_.ShownCount()) {
        output << "performance data: the first " << performance_.ShownCount() << " of " << performance_.Count() << '\n';
    }
    for (const std::string& remark : remarks_) {
        output << StatusText(remark, kAboutWidth) << '\n';
    }
}

void CheckReport::WriteProblems(std::ostream& output) const {
    for (const ServiceState fault : kFaults) {
        const auto& problems = problems_.at(static_cast<std::size_t>(fault));
        for (const Problem& problem : problems) {
            output << NameOf(fault) << ": " << problem.text
                   << (problem.where.empty() ? std::string() : " (" + problem.where + ')') << '\n';
        }
        if (CountOf(fault) > problems.size()) {
            output << NameOf(fault) << ": " << CountOf(fault) - problems.size() << " more\n";
        }
    }
}

void CheckReport::WriteUnknown(const std::string& reason, std::ostream& output) {
    output << NameOf(ServiceState::kUnknown) << " - " << StatusText(reason, kStatusWidth) << '\n';
}

} // namespace cimhttp
