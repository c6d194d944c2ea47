#pragma once

#include <atomic>

namespace demo {

/// Tells threads, including those that wait in poll(), whether there are connections for which there is no thread.
class CrowdSignal {
  public:
    /// Throws std::system_error when there are no more file descriptors.
    CrowdSignal();
    ~CrowdSignal();
    CrowdSignal(const CrowdSignal&) = delete;
    CrowdSignal& operator=(const CrowdSignal&) = delete;

    /// From one thread at a time.
    void Set(bool isRaised);
    bool IsRaised() const { return isRaised_; }

    /// A file descriptor that is readable while the signal is raised.
    int Handle() const { return handle_; }

  private:
    std::atomic<bool> isRaised_ = false;
    int handle_;
};

} // namespace demo
