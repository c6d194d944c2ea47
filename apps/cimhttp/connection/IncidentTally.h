#pragma once

#include "cimhttp/ReadingIncidents.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace cimhttp {

/// How much of what a server sent could not be taken over, added up over several readings.
class IncidentTally {
  public:
    void Add(const NQORVYX20::ReadingIncidents& incidents);
    void Add(const IncidentTally& other);

    bool IsEmpty() const { return !first_; }

    /// How many there were of each cause, by what the cause is called in Text().
    std::map<std::string, std::size_t> Counts() const;

    /// One line: the number of each cause, and the first incident in full.
    std::string Text() const;

  private:
    std::map<NQORVYX20::ReadingIncident::Cause, std::size_t> counts_;
    std::optional<NQORVYX20::ReadingIncident> first_;
};

} // namespace cimhttp
