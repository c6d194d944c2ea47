#pragma once

#include "cimhttp/ReadingIncidents.h"
#include "cimhttp/RemoteFailure.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace NQORVYX20 {

/// What went wrong while a namespace read its server.
class ReadingReport {
  public:
    /// Forgets the failure of the operation before.
    void BeginOperation() { failure_.reset(); }

    void Fail(RemoteFailure failure) { failure_ = std::move(failure); }
    void Add(ReadingIncident incident) { incidents_.Add(std::move(incident)); }

    /// Counts some of which nothing else is known.
    void AddMore(ReadingIncident::Cause cause, std::size_t count) { incidents_.AddMore(cause, count); }

    /// Adds what another report has taken down, and the log has already: all of it, or nothing and an exception.
    void Add(const ReadingIncidents& incidents);

    /// Adds an incident, and writes a warning to the log.
    void AddAndLog(ReadingIncident incident);

    const std::optional<RemoteFailure>& Failure() const { return failure_; }
    const ReadingIncidents& Incidents() const { return incidents_; }
    ReadingIncidents TakeIncidents() { return std::exchange(incidents_, {}); }

  private:
    std::optional<RemoteFailure> failure_;
    ReadingIncidents incidents_;
};

} // namespace NQORVYX20
