#include "server/Places.h"

namespace demo {

Places::Place Places::TryTake() { return Take(std::chrono::milliseconds(0)); }

Places::Place Places::Take(std::chrono::milliseconds timeout) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (free_ == 0 && waiting_ < maxWaiting_) {
        ++waiting_;
        changed_.wait_for(lock, timeout, [this] { return free_ > 0 || isClosed_; });
        --waiting_;
    }
    if (free_ == 0) {
        return nullptr;
    }
    --free_;
    return Place(this);
}

void Places::Close() {
    const std::lock_guard<std::mutex> lock(mutex_);
    isClosed_ = true;
    changed_.notify_all();
}

void Places::GiveBack() {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++free_;
    changed_.notify_one();
}

} // namespace demo
