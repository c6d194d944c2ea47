#pragma once

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
/// request has a time limit and may be so long, and all waiting ends soon when the server stops.
class Connection {
  public:
    /// The longest headers of a request, the longest one of them, and the longest rest of the request, in bytes as they
    /// arrive.
    static constexpr std::size_t kMaxHeaderBytes = std::size_t{64} * 1024;
    static constexpr std::size_t kMaxHeaderLine = std::size_t{8} * 1024;
    static constexpr std::size_t kMaxBodyBytes = std::size_t{4} * 1024 * 1024;

    /// Takes over the socket. With a TLS context, which must outlive the connection, WaitForRequest() begins with the
    /// handshake.
    Connection(int socket, SSL_CTX* context, const StopSignal& stop);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Waits for the first byte of the next request. False when none comes: the client has closed, takes too long, or
    /// the server stops.
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
    using Clock = std::chrono::steady_clock;

    bool Handshake();
    bool Fill(Clock::time_point deadline);
    void CountHeader(const char* data, std::size_t size);
    void Close();
    ssize_t TryRead(char* data, std::size_t size);
    ssize_t TryWrite(const char* data, std::size_t size);
    /// What poll() has to wait for after the result of an SSL function; 0 when it has failed.
    short EventsAfter(int result) const;
    bool Wait(short events, Clock::time_point deadline, bool untilStop);
    Clock::time_point LimitedByStop(Clock::time_point deadline);

    int socket_;
    std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
    const StopSignal& stop_;
    bool isReady_;
    short wanted_ = 0;
    std::array<char, std::size_t{16} * 1024> buffer_{};
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::size_t allowance_ = 0;
    std::size_t headerEnd_ = 0;
    std::size_t headerLine_ = 0;
    bool hasTooLongHeaders_ = false;
    std::uint64_t writtenBytes_ = 0;
    Clock::time_point requestDeadline_;
    std::optional<Clock::time_point> stopDeadline_;
};

} // namespace demo
