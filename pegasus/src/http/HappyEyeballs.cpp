#include "http/HappyEyeballs.h"

#include "errors/Marked.h"
#include "http/SocketPoll.h"
#include "http/SystemError.h"
#include "http/TimeOut.h"

#include <Pegasus/Common/Exception.h>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace Pegasus::http {

namespace {

using Clock = Deadline::Clock;

constexpr const char* kNotAccepted = "the connection was not accepted";

Descriptor newSocket(int family) {
    Descriptor socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP));
    if (socket) {
        const int on = 1; // a request is written as a whole, and must not wait for the answer to the one before
        ::setsockopt(socket.number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    return socket;
}

/// False, with errno, when the attempt has failed already.
bool startConnecting(const Descriptor& socket, const SocketAddress& address) {
    const auto* const bytes = reinterpret_cast<const sockaddr*>(&address.bytes);
    // An interrupted connect() goes on by itself.
    return socket && (::connect(socket.number(), bytes, address.size) == 0 || errno == EINPROGRESS || errno == EINTR);
}

/// What has become of a connect(): 0 or an error number.
int outcome(const Descriptor& socket) {
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket.number(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

} // namespace

std::vector<SocketAddress> interleaveFamilies(const std::vector<SocketAddress>& addresses) {
    std::array<std::vector<SocketAddress>, 2> turns; // those of the first one's family, and the others
    for (const SocketAddress& address : addresses) {
        turns[address.bytes.ss_family == addresses.front().bytes.ss_family ? 0 : 1].push_back(address);
    }
    std::vector<SocketAddress> ordered;
    for (std::size_t i = 0; ordered.size() < addresses.size(); ++i) {
        for (const auto& family : turns) {
            if (i < family.size()) {
                ordered.push_back(family[i]);
            }
        }
    }
    return ordered;
}

HappyEyeballs::HappyEyeballs(const Endpoint& endpoint, const std::vector<SocketAddress>& addresses,
                             const ConnectTime& time, std::chrono::milliseconds attemptDelay)
    : endpoint_(endpoint), addresses_(interleaveFamilies(addresses)), time_(time), attemptDelay_(attemptDelay) {}

Descriptor HappyEyeballs::run() {
    for (;;) {
        if (mayStart()) {
            start();
        } else if (attempts_.empty()) {
            fail();
        } else if (Descriptor connection = awaitConnection()) {
            return connection;
        }
    }
}

bool HappyEyeballs::mayStart() const {
    return next_ < addresses_.size() && (attempts_.empty() || Clock::now() >= nextStart_) &&
           !time_.operation.hasPassed();
}

void HappyEyeballs::start() {
    const SocketAddress& address = addresses_[next_++];
    Descriptor socket = newSocket(address.bytes.ss_family);
    if (!startConnecting(socket, address)) {
        noteRefusal(address, errno);
        return;
    }
    attempts_.push_back({address, std::move(socket), time_.ofStep()});
    nextStart_ = Clock::now() + attemptDelay_;
}

/// Waits until something has happened, and sees what. Nothing when no attempt has succeeded yet.
Descriptor HappyEyeballs::awaitConnection() {
    const std::vector<pollfd> sockets = waitForAttempts();
    std::vector<Attempt> remaining;
    for (std::size_t i = 0; i < attempts_.size(); ++i) {
        Attempt& attempt = attempts_[i];
        if (attempt.deadline.hasPassed()) {
            noteReason(attempt.address, timeOutText(kNotAccepted, attempt.deadline));
        } else if (sockets[i].revents == 0) {
            remaining.push_back(std::move(attempt));
        } else if (const int error = outcome(attempt.socket); error != 0) {
            noteRefusal(attempt.address, error);
        } else {
            return std::move(attempt.socket);
        }
    }
    attempts_ = std::move(remaining);
    return {};
}

std::vector<pollfd> HappyEyeballs::waitForAttempts() const {
    std::vector<pollfd> sockets;
    Clock::time_point end = next_ < addresses_.size() ? nextStart_ : Clock::time_point::max();
    for (const Attempt& attempt : attempts_) {
        sockets.push_back({attempt.socket.number(), POLLOUT, 0});
        end = std::min(end, attempt.deadline.end());
    }
    if (const int error = pollUntil(sockets.data(), sockets.size(), end); error != 0) {
        fail(systemError(error));
    }
    return sockets;
}

/// After a refusal the next address is tried at once.
void HappyEyeballs::noteRefusal(const SocketAddress& address, int error) {
    noteReason(address, systemError(error));
    isRefused_ = true;
    isClosed_ = isClosed_ || error == ECONNREFUSED;
    nextStart_ = Clock::now();
}

void HappyEyeballs::noteReason(const SocketAddress& address, const std::string& reason) {
    reasons_ += (reasons_.empty() ? "" : "; ") + reason;
    if (addresses_.size() > 1) {
        reasons_ += " (" + literalOf(address) + ")";
    }
}

void HappyEyeballs::fail() const {
    if (reasons_.empty()) {
        throwTimeOut(endpoint_, time_.operation, kNotAccepted);
    }
    if (!isRefused_ || time_.operation.hasPassed()) {
        throw ConnectionTimeoutException(String(endpoint_.text() + ": " + reasons_));
    }
    fail(reasons_);
}

void HappyEyeballs::fail(const std::string& reason) const {
    const String text("cannot connect to " + endpoint_.text() + ": " + reason);
    if (isClosed_) {
        throw errors::Marked<CannotConnectException, PortClosed>(text);
    }
    throw CannotConnectException(text);
}

} // namespace Pegasus::http
