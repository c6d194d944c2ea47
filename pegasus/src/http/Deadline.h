#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace Pegasus::http {

/// The moment at which an operation must be complete. Every step of it that waits is given the same deadline.
class Deadline {
  public:
    using Clock = std::chrono::steady_clock;

    explicit Deadline(std::chrono::milliseconds limit) : limit_(limit), end_(Clock::now() + limit) {}

    Clock::time_point end() const { return end_; }
    /// How long the operation may take in all, for messages.
    std::chrono::milliseconds limit() const { return limit_; }
    /// Never negative.
    Clock::duration remaining() const { return std::max(end_ - Clock::now(), Clock::duration::zero()); }

    /// An earlier deadline, for the next of `count` attempts that share the time that remains.
    Deadline share(std::size_t count) const {
        Deadline earlier = *this;
        earlier.end_ = Clock::now() + remaining() / static_cast<Clock::rep>(count);
        return earlier;
    }

  private:
    std::chrono::milliseconds limit_;
    Clock::time_point end_;
};

} // namespace Pegasus::http
