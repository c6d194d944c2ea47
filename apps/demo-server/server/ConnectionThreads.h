#pragma once

#include "server/CrowdSignal.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace demo {

/// One thread for each connection, started when it is needed and used again, up to a limit; connections beyond it wait.
class ConnectionThreads {
  public:
    using Clock = std::chrono::steady_clock;

    ConnectionThreads(std::size_t maxThreads, std::size_t maxWaiting)
        : maxThreads_(maxThreads), maxWaiting_(maxWaiting) {}
    ~ConnectionThreads() { Shutdown(); }

    /// Serves a connection, which is told when it was enqueued.
    using Serve = std::function<void(Clock::time_point)>;

    /// Has a connection served, after it has waited for room among those that wait. Throws std::exception when there is
    /// no memory or no thread for it. Not to be called after Shutdown().
    void Enqueue(Serve serve);

    /// Waits until all connections, those that still wait included, are served.
    void Shutdown();

    /// Raised while connections wait for a thread.
    const CrowdSignal& Crowd() const { return crowd_; }

  private:
    struct Waiting {
        Serve serve;
        Clock::time_point since;
    };

    void AddThread();
    void Run();
    void LookAtCrowd();

    const std::size_t maxThreads_;
    const std::size_t maxWaiting_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::condition_variable room_;
    std::deque<Waiting> waiting_;
    std::vector<std::thread> threads_;
    /// Threads that have nothing to do, or that have just been told what.
    std::size_t idle_ = 0;
    bool isOver_ = false;
    CrowdSignal crowd_;
};

} // namespace demo
