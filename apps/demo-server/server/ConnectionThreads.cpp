#include "server/ConnectionThreads.h"

#include <utility>

namespace demo {

void ConnectionThreads::Enqueue(std::function<void()> connection) {
    const std::lock_guard<std::mutex> lock(mutex_);
    waiting_.push_back(std::move(connection));
    if (waiting_.size() > idle_ && threads_.size() < kMaxConnections)
        threads_.emplace_back([this] { Run(); });
    changed_.notify_one();
}

void ConnectionThreads::Shutdown() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_all();
    for (auto& thread : threads_)
        thread.join();
    threads_.clear();
}

void ConnectionThreads::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        ++idle_;
        changed_.wait(lock, [this] { return isOver_ || !waiting_.empty(); });
        --idle_;
        if (waiting_.empty())
            return;
        const auto connection = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        connection();
        lock.lock();
    }
}

} // namespace demo
