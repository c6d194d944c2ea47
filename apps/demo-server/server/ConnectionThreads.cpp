#include "server/ConnectionThreads.h"

#include <csignal>
#include <exception>
#include <utility>

namespace demo {

namespace {

/// OpenSSL writes to sockets in such a way that a client that has gone raises SIGPIPE, which would end the process. The
/// thread gets the error of the write instead.
void BlockBrokenPipes() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace

void ConnectionThreads::Enqueue(Serve serve) {
    std::unique_lock<std::mutex> lock(mutex_);
    room_.wait(lock, [this] { return waiting_.size() < maxWaiting_; });
    waiting_.push_back({std::move(serve), Clock::now()});
    if (waiting_.size() > idle_ && threads_.size() < maxThreads_) {
        AddThread();
    }
    LookAtCrowd();
    changed_.notify_one();
}

/// Where the system has no more threads, those that there are serve the connection; without any it is not taken.
void ConnectionThreads::AddThread() {
    try {
        threads_.emplace_back([this] { Run(); });
        ++idle_;
    } catch (const std::exception&) {
        if (threads_.empty()) {
            waiting_.pop_back();
            throw;
        }
    }
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

void ConnectionThreads::Run() {
    BlockBrokenPipes();
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
        next.serve(next.since);
        lock.lock();
        ++idle_;
        LookAtCrowd();
    }
}

void ConnectionThreads::LookAtCrowd() { crowd_.Set(waiting_.size() > idle_); }

} // namespace demo
