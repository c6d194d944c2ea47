#include "connection/IncidentTally.h"

#include "text/WordList.h"

#include <algorithm>
#include <numeric>

namespace cimhttp {

namespace {

using NQORVYX20::ReadingIncident;
using NQORVYX20::ReadingIncidents;
using Cause = ReadingIncident::Cause;

const char* TextOf(Cause cause) {
    switch (cause) {
    case Cause::kUndeclaredProperty:
        return "undeclared";
    case Cause::kOtherType:
        return "of another type";
    case Cause::kBadValue:
        return "not valid";
    case Cause::kBadName:
        return "that the host cannot keep";
    case Cause::kDoubledPath:
        return "with the path of another";
    case Cause::kNoDefinition:
        return "without the definition of its class";
    case Cause::kNotAnInstance:
        return "that is no instance";
    case Cause::kUnreadableValue:
        return "that cannot be read";
    case Cause::kForeignBytes:
        return "not in UTF-8";
    case Cause::kDoubledProperty:
        return "twice in one object";
    }
    return "";
}

bool IsAboutValue(Cause cause) {
    return cause == Cause::kUndeclaredProperty || cause == Cause::kOtherType || cause == Cause::kBadValue ||
           cause == Cause::kUnreadableValue || cause == Cause::kForeignBytes || cause == Cause::kDoubledProperty;
}

/// The words about one, with what is known of its place.
std::string AboutFirst(const ReadingIncident& incident) {
    const std::string object = incident.path.empty() ? incident.className : incident.path;
    const bool hasBoth = !incident.property.empty() && !object.empty();
    const std::string place = incident.property + (hasBoth ? " of " : "") + object;
    return "; the first: " + place + (place.empty() ? "" : ": ") + incident.reason;
}

} // namespace

void IncidentTally::Add(const ReadingIncidents& incidents) {
    for (const auto& [cause, count] : incidents.Counts()) {
        counts_[cause] += count;
    }
    if (!first_ && !incidents.First().empty()) {
        first_ = incidents.First().front();
    }
}

void IncidentTally::Add(const IncidentTally& other) {
    for (const auto& [cause, count] : other.counts_) {
        counts_[cause] += count;
    }
    if (!first_) {
        first_ = other.first_;
    }
}

std::map<std::string, std::size_t> IncidentTally::Counts() const {
    std::map<std::string, std::size_t> counts;
    for (const auto& [cause, count] : counts_) {
        counts[TextOf(cause)] += count;
    }
    return counts;
}

std::string IncidentTally::Text() const {
    std::string causes;
    for (const auto& [cause, count] : counts_) {
        causes += (causes.empty() ? "" : ", ") + std::to_string(count) + ' ' + TextOf(cause);
    }
    const auto total = std::accumulate(counts_.begin(), counts_.end(), std::size_t{0},
                                       [](std::size_t sum, const auto& count) { return sum + count.second; });
    const bool areValues =
        std::all_of(counts_.begin(), counts_.end(), [](const auto& count) { return IsAboutValue(count.first); });
    return (areValues ? Counted(total, "value", "values") : Counted(total, "thing", "things")) +
           " could not be taken over (" + causes + ')' + (first_ ? AboutFirst(*first_) : std::string());
}

} // namespace cimhttp
