#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

namespace cimhttp {

/// How fast counters count, from two readings. A counter that is less than before has begun anew, or has come to the
/// end of its digits; servers do not tell which. There is no rate for that reading then, since any number would be a
/// guess.
class CounterRates {
  public:
    using Time = std::chrono::steady_clock::time_point;

    /// Begins with the numbers of a further reading.
    void Begin(Time time);

    /// How much more the counter has each second than in the reading before. Nothing where there is none before.
    std::optional<long double> Rate(const std::string& path, const std::string& property, long double number);

    /// How often a counter was less than before, in all readings.
    std::size_t Restarts() const { return restarts_; }

  private:
    using Numbers = std::unordered_map<std::string, long double>; // by path and property

    Numbers earlier_;
    Numbers now_;
    Time earlierTime_;
    Time time_;
    std::size_t restarts_ = 0;
};

} // namespace cimhttp
