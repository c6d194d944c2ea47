#pragma once

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
    static constexpr std::size_t kMaxConnections = 256;

    ~ConnectionThreads() { Shutdown(); }

    /// Has a connection served. Not to be called after Shutdown().
    void Enqueue(std::function<void()> connection);

    /// Waits until all connections, those that still wait included, are served.
    void Shutdown();

  private:
    void Run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool isOver_ = false;
};

} // namespace demo
