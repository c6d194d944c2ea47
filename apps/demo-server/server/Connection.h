#pragma once

#include "server/CrowdSignal.h"
#include "server/ListenerLimits.h"
#include "server/StopSignal.h"

#include <openssl/ssl.h>

#include <sys/types.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace demo {

/// A connection that a client has made, with or without TLS. It keeps a client from holding on to the server: each
/// request has a time limit and may be so long, each answer must be taken at some speed, a client that says nothing
/// makes room when others wait, and all waiting ends soon when the server stops.
class Connection {
  public:
    using Clock = std::chrono::steady_clock;

    /// The longest headers of a request, the longest one of them, their number, and the longest rest of the request, in
    /// bytes as they arrive.
    static constexpr std::size_t kMaxHeaderBytes = std::size_t{64} * 1024;
    static constexpr std::size_t kMaxHeaderLine = std::size_t{8} * 1024;
    static constexpr std::size_t kMaxHeaderLines = 128;
    static constexpr std::size_t kMaxBodyBytes = std::size_t{4} * 1024 * 1024;

    /// Takes over the socket of a connection that was made at a time. With a TLS context WaitForRequest() begins with
    /// the handshake. All but the socket must outlive the connection; the crowd are those who wait to be served.
    Connection(int socket, Clock::time_point made, SSL_CTX* context, const ListenerLimits& limits,
               const StopSignal& stop, const CrowdSignal& crowd);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Waits for the first byte of the next request. False when none comes: the client has closed, takes too long while
    /// others wait or not, or the server stops.
    bool WaitForRequest();

    /// Reads bytes of the request, at least one. 0 at the end, -1 when the request exceeds a limit or the connection is
    /// broken.
    ssize_t Read(char* data, std::size_t size);

    /// Writes some of the bytes. -1 when the client does not take them.
    ssize_t Write(const char* data, std::size_t size);

    int Socket() const { return socket_; }

    /// Whether the headers of the request exceed a limit.
    bool HasTooLongHeaders() const { return hasTooLongHeaders_; }

    /// All bytes that Write() has written.
    std::uint64_t WrittenBytes() const { return writtenBytes_; }

    /// The client's IP address; empty if it has gone.
    std::string PeerAddress() const;

  private:
    /// How long to wait for a client.
    struct Patience {
        Clock::time_point deadline;
        /// The deadline while others wait.
        Clock::time_point crowdedDeadline = Clock::time_point::max();
        /// Not longer than until the server stops; otherwise a little longer.
        bool untilStop = false;
    };

    bool Handshake();
    bool Fill(const Patience& patience);
    bool HasWholeHeaders() const;
    Patience ForRequest() const;
    Clock::time_point AnswerDeadline() const;
    bool WaitToWrite();
    void CountHeader(const char* data, std::size_t size);
    void Close();
    ssize_t TryRead(char* data, std::size_t size);
    ssize_t TryWrite(const char* data, std::size_t size);
    /// What poll() has to wait for after the result of an SSL function; 0 when it has failed.
    short EventsAfter(int result) const;
    bool Wait(short events, const Patience& patience);
    Clock::time_point DeadlineNow(const Patience& patience);
    Clock::time_point LimitedByStop(Clock::time_point deadline);

    int socket_;
    const ListenerLimits& limits_;
    std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
    const StopSignal& stop_;
    const CrowdSignal& crowd_;
    bool isReady_;
    short wanted_ = 0;
    std::array<char, std::size_t{16} * 1024> buffer_{};
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t allowance_ = 0;
    std::size_t headerEnd_ = 0;
    std::size_t headerLine_ = 0;
    std::size_t headerLines_ = 0;
    bool hasTooLongHeaders_ = false;
    std::uint64_t writtenBytes_ = 0;
    std::uint64_t writtenBefore_ = 0;
    Clock::duration writeWait_{};
    /// When a client that has not sent whole headers has to make room.
    Clock::time_point crowdedDeadline_;
    Clock::time_point requestDeadline_;
    std::optional<Clock::time_point> stopDeadline_;
};

} // namespace demo
