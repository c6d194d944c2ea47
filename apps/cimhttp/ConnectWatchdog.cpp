#include "ConnectWatchdog.h"

#include <unistd.h>

#include <utility>

namespace cimhttp {

ConnectWatchdog::ConnectWatchdog(std::chrono::milliseconds patience, std::function<std::string()> last_words,
                                 int exit_status)
    : thread_([this, end = std::chrono::steady_clock::now() + patience, words = std::move(last_words), exit_status] {
          Watch(end, words, exit_status);
      }) {}

ConnectWatchdog::~ConnectWatchdog() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        is_over_ = true;
    }
    over_.notify_one();
    thread_.join();
}

void ConnectWatchdog::Watch(std::chrono::steady_clock::time_point end, const std::function<std::string()>& last_words,
                            int exit_status) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (over_.wait_until(lock, end, [this] { return is_over_; })) {
        return;
    }
    const std::string line = last_words() + '\n';
    if (::write(STDERR_FILENO, line.data(), line.size()) < 0) {
        // There is nobody left to tell.
    }
    ::_exit(exit_status); // the call holds on to what an orderly end would take from it
}

} // namespace cimhttp
