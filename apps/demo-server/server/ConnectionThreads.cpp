#include "server/ConnectionThreads.h"

#include <utility>

namespace demo {

namespace {

thread_local ConnectionThreads::Clock::time_point enqueueTime;

} // namespace

void ConnectionThreads::Enqueue(std::function<void()> connection) {
    std::unique_lock<std::mutex> lock(mutex_);
    room_.wait(lock, [this] { return waiting_.size() < maxWaiting_; });
    waiting_.push_back({std::move(connection), Clock::now()});
    if (waiting_.size() > idle_ && threads_.size() < maxThreads_) {
        threads_.emplace_back([this] { Run(); });
        ++idle_;
    }
    LookAtCrowd();
    changed_.notify_one();
}

void ConnectionThreads::Shutdown() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_all();
    for (auto& thread : threads_) {
        thread.join();
    }
    threads_.clear();
}

ConnectionThreads::Clock::time_point ConnectionThreads::EnqueueTime() { return enqueueTime; }

void ConnectionThreads::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return isOver_ || !waiting_.empty(); });
        if (waiting_.empty()) {
            return;
        }
        const Waiting next = std::move(waiting_.front());
        waiting_.pop_front();
        --idle_;
        LookAtCrowd();
        room_.notify_one();
        lock.unlock();
        enqueueTime = next.since;
        next.connection();
        lock.lock();
        ++idle_;
        LookAtCrowd();
    }
}

void ConnectionThreads::LookAtCrowd() { crowd_.Set(waiting_.size() > idle_); }

} // namespace demo
