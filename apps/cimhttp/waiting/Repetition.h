#pragma once

#include "Failure.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>

namespace cimhttp {

/// Something that is read again and again, from a server that may go and come back.
class RepeatedReading {
  public:
    virtual ~RepeatedReading() = default;

    /// Throws Failure.
    virtual void Read() = 0;

    /// Shows what the newest reading, the `round`-th good one, has brought.
    virtual void Show(std::size_t round) = 0;

    /// A reading has failed, but may succeed later. Not called again until one has.
    virtual void Lose(const Failure& failure) = 0;

    /// A reading has succeeded after others failed. Show() follows.
    virtual void Regain() = 0;
};

/// Reads at an interval, beginning with a wait. After a failure it goes on trying, and waits longer each time: twice as
/// long as before, but never longer than the longest retry, unless that is shorter than the interval.
class Repetition {
  public:
    using Duration = std::chrono::steady_clock::duration;

    /// Waits for a time. False when the waiting, and with it the repetition, is to end.
    using Wait = std::function<bool(Duration)>;

    static constexpr std::chrono::seconds kLongestRetry{30};

    Repetition(Duration interval, Wait wait) : interval_(interval), wait_(std::move(wait)) {}

    /// Ends after `count` good readings, or never. Throws the failures that waiting does not mend: where the server
    /// does not let the user in, or does not have what is read.
    void Run(RepeatedReading& reading, std::optional<std::size_t> count) const;

  private:
    Duration AfterFailure(Duration last) const;

    Duration interval_;
    Wait wait_;
};

} // namespace cimhttp
