#include "http/TcpChannel.h"

#include "http/HappyEyeballs.h"
#include "http/Resolver.h"
#include "http/SocketPoll.h"
#include "http/SystemError.h"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

namespace Pegasus::http {

TcpChannel::TcpChannel(const Endpoint& endpoint, const ConnectTime& time)
    : endpoint_(endpoint), socket_(HappyEyeballs(endpoint_, resolve(endpoint_, time.ofStep()), time).run()) {}

TcpChannel::TcpChannel(Endpoint endpoint, Descriptor socket)
    : endpoint_(std::move(endpoint)), socket_(std::move(socket)) {}

void TcpChannel::write(std::string_view bytes, const Deadline& deadline) {
    while (!bytes.empty()) {
        bytes.remove_prefix(await(deadline, "the request was not accepted", [&] { return sendSome(bytes); }));
    }
}

std::size_t TcpChannel::readSome(char* buffer, std::size_t size, const Deadline& deadline) {
    return await(deadline, "no complete answer came", [&] { return receiveSome(buffer, size); });
}

bool TcpChannel::isClosedByPeer() { return eventsNow(POLLRDHUP) != 0; }

bool TcpChannel::hasInput() { return eventsNow(POLLIN) != 0; }

TcpChannel::Progress TcpChannel::sendSome(std::string_view bytes) {
    return progress(::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL), POLLOUT);
}

TcpChannel::Progress TcpChannel::receiveSome(char* buffer, std::size_t size) {
    return progress(::recv(socket_.number(), buffer, size, 0), POLLIN);
}

/// The progress that a system call has made, by its result; `event` is what it waits for where it made none.
TcpChannel::Progress TcpChannel::progress(ssize_t result, short event) {
    if (result >= 0) {
        return {static_cast<std::size_t>(result), 0};
    }
    if (errno != EAGAIN && errno != EINTR) {
        throw ConnectionLost{systemError(errno)};
    }
    return {0, event};
}

/// The wanted events and the error events that have occurred.
short TcpChannel::eventsNow(short wanted) const {
    pollfd state{socket_.number(), wanted, 0};
    ::poll(&state, 1, 0);
    return state.revents;
}

/// A peer that has ended its side and accepts nothing more will not send anything either: there is no use in waiting
/// for it.
void TcpChannel::waitForEvent(short event, const Deadline& deadline) const {
    pollfd state{socket_.number(), static_cast<short>(event | POLLRDHUP), 0};
    if (const int error = pollUntil(&state, 1, deadline.end()); error != 0) {
        throw ConnectionLost{systemError(error)};
    }
    if (state.revents == POLLRDHUP) {
        throw ConnectionLost{"the server closed the connection"};
    }
}

} // namespace Pegasus::http
