#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

/// Stands before a server at another port of its address, and lets the first connection through to it. All others are
/// accepted and closed.
class FirstConnectionOnly {
  public:
    /// Listens on `port` from now on.
    FirstConnectionOnly(const std::string& address, std::uint16_t port, std::uint16_t serverPort);
    ~FirstConnectionOnly();
    FirstConnectionOnly(const FirstConnectionOnly&) = delete;
    FirstConnectionOnly& operator=(const FirstConnectionOnly&) = delete;

  private:
    void Run();
    void Accept();
    void EndFirst();

    int listener_;
    int server_;
    int client_ = -1;
    bool hasFirst_ = false;
    std::atomic<bool> isStopping_{false};
    std::thread thread_;
};
