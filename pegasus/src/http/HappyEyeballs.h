#pragma once

#include "http/ConnectTime.h"
#include "http/Deadline.h"
#include "http/Descriptor.h"
#include "http/Endpoint.h"
#include "http/Resolver.h"

#include <poll.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace Pegasus::http {

/// The addresses in the order in which they are to be tried: the families take turns, so that one that leads nowhere
/// does not keep the other waiting (RFC 8305, 4).
std::vector<SocketAddress> interleaveFamilies(const std::vector<SocketAddress>& addresses);

/// Connects to a server by the first of its addresses that accepts (RFC 8305, 5): they are tried one after the other,
/// each while those before it may still answer.
class HappyEyeballs {
  public:
    /// How long an address has before the next one is tried, too, unless it fails earlier (Connection Attempt Delay).
    static constexpr std::chrono::milliseconds kAttemptDelay{250};

    /// The endpoint is for messages, and must outlive this object.
    HappyEyeballs(const Endpoint& endpoint, const std::vector<SocketAddress>& addresses, const ConnectTime& time,
                  std::chrono::milliseconds attemptDelay = kAttemptDelay);

    /// A connected socket that does not block, and that child processes do not inherit. All others are closed. Throws
    /// CannotConnectException with the reasons of all, or ConnectionTimeoutException when the operation's time is over
    /// or none of them said anything in its time. Once.
    Descriptor run();

  private:
    struct Attempt {
        SocketAddress address;
        Descriptor socket;
        Deadline deadline;
    };

    bool mayStart() const;
    void start();
    Descriptor awaitConnection();
    std::vector<pollfd> waitForAttempts() const;
    void noteRefusal(const SocketAddress& address, int error);
    void noteReason(const SocketAddress& address, const std::string& reason);
    [[noreturn]] void fail() const;
    [[noreturn]] void fail(const std::string& reason) const;

    const Endpoint& endpoint_;
    const std::vector<SocketAddress> addresses_;
    const ConnectTime time_;
    const std::chrono::milliseconds attemptDelay_;
    std::size_t next_ = 0; // the address to be tried next, and when
    Deadline::Clock::time_point nextStart_{};
    std::vector<Attempt> attempts_; // that are under way
    std::string reasons_;           // why the others failed
    bool isRefused_ = false;        // whether any of them is not that the time was over
    bool isClosed_ = false;         // whether an address has said that nothing listens there
};

} // namespace Pegasus::http
