#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace cimhttp {

/// How many servers may be read at once. For several threads.
class TargetPlaces {
  public:
    explicit TargetPlaces(std::size_t count) : free_(count) {}

    /// Waits for a place. False where none became free in time.
    bool Take(std::chrono::steady_clock::time_point deadline) {
        std::unique_lock<std::mutex> lock(mutex_);
        if (!changed_.wait_until(lock, deadline, [this] { return free_ > 0; })) {
            return false;
        }
        --free_;
        return true;
    }

    void GiveBack() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            ++free_;
        }
        changed_.notify_one();
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t free_;
};

} // namespace cimhttp
