#pragma once

#include <string>

namespace cimhttp {

/// The time now as people read it, `08:39:00`.
std::string TimeOfDay();

/// The time now as programs read it, with the time zone (ISO 8601), `2026-11-21T08:39:00+01:00`.
std::string TimeWithZone();

} // namespace cimhttp
