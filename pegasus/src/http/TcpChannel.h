#pragma once

#include "http/Channel.h"
#include "http/ConnectTime.h"
#include "http/Descriptor.h"
#include "http/TimeOut.h"

#include <sys/types.h>

#include <cstddef>
#include <string_view>

namespace Pegasus::http {

/// A TCP connection: a socket that does not block, and nothing else that the system knows of, so that a process that
/// forks can drop its copy at any time.
class TcpChannel : public Channel {
  public:
    /// Connects. Throws InvalidLocatorException, CannotConnectException or ConnectionTimeoutException.
    TcpChannel(const Endpoint& endpoint, const ConnectTime& time);

    /// Takes a connected socket that does not block.
    TcpChannel(Endpoint endpoint, Descriptor socket);

    void write(std::string_view bytes, const Deadline& deadline) override;
    std::size_t readSome(char* buffer, std::size_t size, const Deadline& deadline) override;
    bool isClosedByPeer() override;
    bool hasInput() override;

  protected:
    /// The outcome of an attempt to send or receive bytes.
    struct Progress {
        std::size_t bytes; ///< how many were sent or received
        short awaited;     ///< or, where it has to be tried again, the event of poll() to wait for; else 0
    };

    /// Sends what can be sent without waiting. Throws ConnectionLost.
    virtual Progress sendSome(std::string_view bytes);
    /// Receives what can be received without waiting; no byte is the end of the stream. Throws ConnectionLost.
    virtual Progress receiveSome(char* buffer, std::size_t size);

    const Endpoint& endpoint() const { return endpoint_; }
    const Descriptor& socket() const { return socket_; }

    /// Repeats an attempt, which returns a Progress, until it needs to wait no more. Past the deadline throws
    /// ConnectionTimeoutException, which says that `what` did not happen.
    template <typename Attempt>
    std::size_t await(const Deadline& deadline, const char* what, Attempt attempt) {
        for (;;) {
            if (deadline.hasPassed()) {
                throwTimeOut(endpoint_, deadline, what);
            }
            const Progress progress = attempt();
            if (progress.awaited == 0) {
                return progress.bytes;
            }
            waitForEvent(progress.awaited, deadline);
        }
    }

  private:
    static Progress progress(ssize_t result, short event);
    short eventsNow(short wanted) const;
    void waitForEvent(short event, const Deadline& deadline) const;

    const Endpoint endpoint_;
    const Descriptor socket_;
};

} // namespace Pegasus::http
