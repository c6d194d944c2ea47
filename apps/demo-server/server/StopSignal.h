#pragma once

#include <atomic>
#include <chrono>

namespace demo {

/// Tells threads, including those that wait in poll(), that it is time to stop. It cannot be taken back.
class StopSignal {
  public:
    /// Throws std::system_error when there are no more file descriptors.
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    void Raise();
    bool IsRaised() const { return isRaised_; }

    /// Lets a time pass, or less when the signal is raised. Whether it is.
    bool WaitUntil(std::chrono::steady_clock::time_point time) const;

    /// A file descriptor that is readable from Raise() on.
    int Handle() const { return handle_; }

  private:
    std::atomic<bool> isRaised_ = false;
    int handle_;
};

} // namespace demo
