#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

/// A server on this process's loopback address, with one thread and one connection at a time. It allocates in its own
/// thread only.
class LoopbackServer {
  public:
    /// The bytes that are sent for a request; nothing where the connection is closed instead.
    using Answers = std::function<std::optional<std::string>(const std::string& request)>;

    /// What to do when a client waits for bytes that were not sent: leave it to its time-out, or close the connection
    /// as soon as the thread that made the server sleeps.
    enum class Silence { kLasts, kEnds };

    /// Listens on a port of the address; 0 is any free one. Throws std::system_error when it cannot be had.
    explicit LoopbackServer(std::uint16_t port, Silence silence = Silence::kLasts);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    const std::string& Address() const { return address_; }
    std::uint16_t Port() const { return port_; }

    /// Says what is answered from now on; with nothing, each connection is closed at its first request. No call to what
    /// was there before is left when it returns.
    void SetAnswers(Answers answers);

  private:
    void Serve();
    void ServeConnection(int connection);
    std::optional<std::string> ReadRequest(int connection, std::string& unread);
    bool Receive(int connection, std::string& unread);
    bool WaitForInput(int connection) const;
    bool ClientSleeps() const;

    const std::string address_;
    const Silence silence_;
    int listener_;
    int clientState_; // of the thread that made the server
    std::uint16_t port_;
    std::mutex mutex_;
    Answers answers_;
    std::thread thread_;
};
