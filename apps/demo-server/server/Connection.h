#pragma once

#include "server/CrowdSignal.h"
#include "server/ListenerLimits.h"
#include "server/StopSignal.h"
#include "wire/XmlWriter.h"

#include <boost/beast/core/flat_buffer.hpp>
#include <openssl/ssl.h>

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace demo {

/// A client takes no more bytes, sends none, or has closed. To what writes an answer this is an output that is closed.
class ConnectionLost : public OutputClosed {};

/// A connection that a client has made, with or without TLS. It keeps a client from holding on to the server: each
/// request has a time limit, each answer must be taken at some speed, a client that says nothing makes room when others
/// wait, and all waiting ends soon when the server stops.
class Connection {
  public:
    using Clock = std::chrono::steady_clock;

    /// What may have arrived without being taken.
    static constexpr std::size_t kMaxArrived = std::size_t{64} * 1024;

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

    /// What has arrived and was not taken yet. Valid until the next call of Receive() or Take().
    std::string_view Arrived() const { return {static_cast<const char*>(arrived_.data().data()), arrived_.size()}; }
    void Take(std::size_t count) { arrived_.consume(count); }

    /// Waits until more of the request has arrived. Throws ConnectionLost when no more comes in time, or kMaxArrived is
    /// there already.
    void Receive();

    /// Says that the headers of the request have arrived: from now on it does not have to make room.
    void EndHeaders() { hasHeaders_ = true; }

    /// Writes all of the bytes. Throws ConnectionLost when the client does not take them.
    void Write(std::string_view bytes);

    /// All bytes that Write() has written.
    std::uint64_t WrittenBytes() const { return writtenBytes_; }

    /// The client's IP address; empty if it has gone.
    std::string PeerAddress() const;

  private:
    /// How long to wait for a client.
    struct TimeLimit {
        Clock::time_point deadline;
        /// The deadline while others wait.
        Clock::time_point crowdedDeadline = Clock::time_point::max();
        /// Not longer than until the server stops; otherwise a little longer.
        bool untilStop = false;
    };

    bool Handshake();
    bool Fill(const TimeLimit& limit);
    bool Discard(char* data, std::size_t size, const TimeLimit& limit);
    TimeLimit ForRequest() const;
    Clock::time_point AnswerDeadline() const;
    std::size_t WriteSome(std::string_view bytes);
    void WaitToWrite();
    void Close();
    ssize_t TryRead(char* data, std::size_t size);
    ssize_t TryWrite(const char* data, std::size_t size);
    /// What poll() has to wait for after the result of an SSL function; 0 when it has failed.
    short EventsAfter(int result) const;
    bool Wait(short events, const TimeLimit& limit);
    Clock::time_point DeadlineNow(const TimeLimit& limit);
    Clock::time_point LimitedByStop(Clock::time_point deadline);

    int socket_;
    const ListenerLimits& limits_;
    std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
    const StopSignal& stop_;
    const CrowdSignal& crowd_;
    bool isReady_;
    short wanted_ = 0;
    boost::beast::flat_buffer arrived_;
    bool hasHeaders_ = false;
    std::uint64_t writtenBytes_ = 0;
    std::uint64_t writtenBefore_ = 0;
    Clock::duration writeWait_{};
    /// When a client that has not sent whole headers has to make room.
    Clock::time_point crowdedDeadline_;
    Clock::time_point requestDeadline_;
    std::optional<Clock::time_point> stopDeadline_;
};

} // namespace demo
