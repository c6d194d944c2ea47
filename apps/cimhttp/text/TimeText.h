#pragma once

#include <chrono>
#include <string>

namespace cimhttp {

/// The time now as people read it, `08:39:00`.
std::string TimeOfDay();

/// The time now as programs read it, with the time zone (ISO 8601), `2026-11-21T08:39:00+01:00`.
std::string TimeWithZone();

/// A span in milliseconds with this many decimals, `12.3`.
std::string Milliseconds(std::chrono::microseconds time, int decimals);

} // namespace cimhttp
