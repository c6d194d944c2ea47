#pragma once

#include "HostTypes.h"

#include <optional>
#include <string>

namespace cimhttp {

/// The instants, or the lengths of time, that a date-time may stand for: one, unless it has asterisks.
struct DateTimeRange {
    explicit DateTimeRange(const NQORVYX20::TCIMDateTime& dateTime);

    bool isInterval;
    long long lowest;  ///< in microseconds: since the year 0 in UTC, or the length
    long long highest; ///< as `lowest`
};

/// The date-time that a user writes: its 25 characters; an instant such as `2026-11-21`, `2026-11-21 08:39` or
/// `2026-11-21T08:39:00.5+01:00`, in UTC unless it names a zone; a length such as `3 days`, `08:39:00`,
/// `1 day 08:39:00`, `2 d 08:39`, `5 h`, `3 min` or `0.25 s`. Nothing for another text.
std::optional<NQORVYX20::TCIMDateTime> DateTimeIn(const std::string& text);

} // namespace cimhttp
