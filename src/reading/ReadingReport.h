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
    void BeginOperation() { fFailure.reset(); }

    void Fail(RemoteFailure failure) { fFailure = std::move(failure); }
    void Add(ReadingIncident incident) { fIncidents.Add(std::move(incident)); }

    /// Counts some of which nothing else is known.
    void AddMore(ReadingIncident::Cause cause, std::size_t count) { fIncidents.AddMore(cause, count); }

    /// The same as Add(), with a warning in the log.
    void AddAndLog(ReadingIncident incident);

    const std::optional<RemoteFailure>& Failure() const { return fFailure; }
    const ReadingIncidents& Incidents() const { return fIncidents; }
    ReadingIncidents TakeIncidents() { return std::exchange(fIncidents, {}); }

  private:
    std::optional<RemoteFailure> fFailure;
    ReadingIncidents fIncidents;
};

} // namespace NQORVYX20
