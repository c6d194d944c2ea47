#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace cimhttp {

/// Bounds a call that has no time-out of its own, such as the plug-in's connect(): when it is not over in time, the
/// program ends, with a line on the error stream and an exit status. The call is over when the watchdog goes. The last
/// words are made, in a thread of the watchdog's, only when they are needed.
class ConnectWatchdog {
  public:
    ConnectWatchdog(std::chrono::milliseconds patience, std::function<std::string()> last_words, int exit_status);
    ~ConnectWatchdog();
    ConnectWatchdog(const ConnectWatchdog&) = delete;
    ConnectWatchdog& operator=(const ConnectWatchdog&) = delete;

  private:
    void Watch(std::chrono::steady_clock::time_point end, const std::function<std::string()>& last_words,
               int exit_status);

    std::mutex mutex_;
    std::condition_variable over_;
    bool is_over_ = false;
    std::thread thread_;
};

} // namespace cimhttp
