#include "survey/InstanceCensus.h"

#include "Failure.h"
#include "connection/ServerInstances.h"
#include "host/TCIMReference.h"

namespace cimhttp {

std::vector<InstanceCensus::Count> InstanceCensus::Take() {
    std::vector<std::pair<std::string, State>> visits;
    for (const std::string& name : tree_.TopClasses()) {
        visits.emplace_back(name, State::kToCount);
    }
    while (!visits.empty()) {
        const auto [name, above] = visits.back();
        visits.pop_back();
        const State state = Visited(name, above);
        for (const std::string& subclass : tree_.SubclassesOf(name)) {
            visits.emplace_back(subclass, state);
        }
    }
    std::vector<Count> counts;
    for (auto& [name, count] : counts_) {
        counts.push_back(std::move(count));
    }
    return counts;
}

InstanceCensus::State InstanceCensus::Visited(const std::string& name, State above) {
    if (!isWanted_(name)) {
        return above;
    }
    auto& instances = counts_.emplace(name, Count{name, 0}).first->second.instances;
    const State state = above == State::kToCount ? CountBelow(name) : above;
    if (state == State::kLost || (above == State::kToCount && state == State::kToCount)) {
        instances.reset();
    }
    return state;
}

InstanceCensus::State InstanceCensus::CountBelow(const std::string& name) {
    try {
        for (const auto& path : ServerInstances(session_).PathsOf(name)) {
            const std::string& of = path.GetClassName();
            if (isWanted_(of)) {
                auto& instances = counts_.emplace(of, Count{of, 0}).first->second.instances;
                instances = instances.value_or(0) + 1;
            }
        }
        hasLostServer_ = false;
        return State::kCounted;
    } catch (const Failure& failure) {
        Note(failure);
        return hasLostServer_ ? State::kLost : State::kToCount;
    }
}

void InstanceCensus::Note(const Failure& failure) {
    const bool isLost = failure.Status() == Failure::kConnection;
    if (dynamic_cast<const LoginFailure*>(&failure) != nullptr || (isLost && hasLostServer_)) {
        throw;
    }
    hasLostServer_ = isLost;
    failures_.emplace_back(failure.what());
}

} // namespace cimhttp
