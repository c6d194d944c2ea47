#include "waiting/Repetition.h"

#include <algorithm>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

bool MayPass(const Failure& failure) {
    return failure.Status() == Failure::kConnection || failure.Status() == Failure::kServer;
}

/// Whether the reading was good.
bool Try(RepeatedReading& reading, bool is_lost) {
    try {
        reading.Read();
        return true;
    } catch (const Failure& failure) {
        if (!MayPass(failure)) {
            throw;
        }
        if (!is_lost) {
            reading.Lose(failure);
        }
        return false;
    }
}

} // namespace

void Repetition::Run(RepeatedReading& reading, std::optional<std::size_t> count) const {
    Duration pause = interval_;
    bool is_lost = false;
    for (std::size_t round = 0; (!count || round < *count) && wait_(pause);) {
        const auto begin = Clock::now();
        if (!Try(reading, is_lost)) {
            pause = is_lost ? AfterFailure(pause) : interval_;
            is_lost = true;
            continue;
        }
        if (is_lost) {
            reading.Regain();
            is_lost = false;
        }
        reading.Show(++round);
        pause = std::max(interval_ - (Clock::now() - begin), Duration::zero()); // so that readings keep to the interval
    }
}

Repetition::Duration Repetition::AfterFailure(Duration last) const {
    return std::max(interval_, std::min<Duration>(last * 2, kLongestRetry));
}

} // namespace cimhttp
