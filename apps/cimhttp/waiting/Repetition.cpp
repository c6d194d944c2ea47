#include "waiting/Repetition.h"

#include <algorithm>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

bool MayPass(const Failure& failure) {
    return failure.Status() == Failure::kConnection || failure.Status() == Failure::kServer;
}

/// Whether the reading was good.
bool Try(RepeatedReading& reading, bool isLost) {
    try {
        reading.Read();
        return true;
    } catch (const Failure& failure) {
        if (!MayPass(failure)) {
            throw;
        }
        if (!isLost) {
            reading.Lose(failure);
        }
        return false;
    }
}

} // namespace

void Repetition::Run(RepeatedReading& reading, std::optional<std::size_t> count) const {
    Duration pause = interval_;
    bool isLost = false;
    for (std::size_t round = 0; (!count || round < *count) && wait_(pause);) {
        const auto begin = Clock::now();
        if (!Try(reading, isLost)) {
            pause = isLost ? AfterFailure(pause) : interval_;
            isLost = true;
            continue;
        }
        if (isLost) {
            reading.Regain();
            isLost = false;
        }
        reading.Show(++round);
        pause = std::max(interval_ - (Clock::now() - begin), Duration::zero()); // so that readings keep to the interval
    }
}

Repetition::Duration Repetition::AfterFailure(Duration last) const {
    return std::max(interval_, std::min<Duration>(last * 2, kLongestRetry));
}

} // namespace cimhttp
