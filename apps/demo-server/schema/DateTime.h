#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace demo {

/// A point in time as the 25 characters of a CIM datetime (DSP0004), in local time with its offset from UTC.
std::string Timestamp(std::chrono::system_clock::time_point time);

/// A length of time, which is not negative, as the 25 characters of a CIM datetime.
std::string Interval(std::chrono::microseconds length);

/// The minutes that local time is ahead of UTC at a point in time.
int MinutesAheadOfUtc(std::chrono::system_clock::time_point time);

/// Whether a text is a CIM datetime: a moment or a length of time that there can be, the last fields of which may be
/// asterisks.
bool IsDatetime(std::string_view text);

} // namespace demo
