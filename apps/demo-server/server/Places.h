#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

namespace demo {

/// A limited number of places for what takes much memory. Safe to use from several threads.
class Places {
  public:
    /// Gives a place back when it ends.
    struct Leave {
        void operator()(Places* places) const { places->GiveBack(); }
    };
    /// A place that is taken; null for none.
    using Place = std::unique_ptr<Places, Leave>;

    /// At most `maxWaiting` threads wait for a place.
    Places(std::size_t count, std::size_t maxWaiting) : free_(count), maxWaiting_(maxWaiting) {}

    /// A place if there is one now.
    Place TryTake();

    /// Waits for a place. None when none became free in time, too many wait already, or Close() was called.
    Place Take(std::chrono::milliseconds timeout);

    /// From now on nobody waits.
    void Close();

  private:
    void GiveBack();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t free_;
    const std::size_t maxWaiting_;
    std::size_t waiting_ = 0;
    bool isClosed_ = false;
};

} // namespace demo
