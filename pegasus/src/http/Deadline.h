#pragma once

#include <algorithm>
#include <chrono>

namespace Pegasus::http {

/// The moment at which an operation, or one step of it, must be complete. Every part that waits is given the same one.
class Deadline {
  public:
    using Clock = std::chrono::steady_clock; // the time of day may jump

    explicit Deadline(std::chrono::milliseconds limit) : limit_(limit), end_(Clock::now() + limit) {}

    Clock::time_point end() const { return end_; }
    /// How long the operation, or the step, may take in all, for messages.
    std::chrono::milliseconds limit() const { return limit_; }
    /// Whether it is a step's, and not that of the whole operation.
    bool isOfStep() const { return isOfStep_; }
    /// Never negative.
    Clock::duration remaining() const { return std::max(end_ - Clock::now(), Clock::duration::zero()); }
    bool hasPassed() const { return Clock::now() >= end_; }

    /// The deadline of a step that begins now and has a limit of its own: this one where it comes first.
    Deadline ofStep(std::chrono::milliseconds limit) const {
        Deadline step(limit);
        step.isOfStep_ = true;
        return step.end_ < end_ ? step : *this;
    }

    /// The deadline of an operation that goes on after a pause: in `left` from now, with the limit of this one.
    Deadline afterPause(Clock::duration left) const {
        Deadline later(*this);
        later.end_ = Clock::now() + left;
        return later;
    }

  private:
    std::chrono::milliseconds limit_;
    Clock::time_point end_;
    bool isOfStep_ = false;
};

} // namespace Pegasus::http
