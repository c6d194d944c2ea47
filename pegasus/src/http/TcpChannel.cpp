#include "http/TcpChannel.h"

#include "http/HostLookup.h"

#include <Pegasus/Common/Exception.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <vector>

namespace Pegasus::http {

using boost::asio::ip::tcp;

void TcpChannel::connect(const Deadline& deadline) {
    const std::vector<SocketAddress> addresses = lookUp(endpoint_, deadline);
    std::optional<Error> result;
    for (std::size_t next = 0; next < addresses.size(); ++next) {
        result = connectTo(addresses[next], deadline.share(addresses.size() - next));
        if (result && !*result) {
            return;
        }
    }
    if (!result) {
        throwTimeOut(endpoint_, deadline, "the connection was not accepted");
    }
    throw CannotConnectException(String("cannot connect to " + endpoint_.text() + ": " + result->message()));
}

bool TcpChannel::isClosedByPeer() { return events(POLLRDHUP) != 0; }

bool TcpChannel::hasInput() { return events(POLLIN) != 0; }

/// Those of the wanted events, and of the error events, that are there now.
int TcpChannel::events(short wanted) {
    pollfd state{socket_.native_handle(), wanted, 0};
    ::poll(&state, 1, 0);
    return state.revents;
}

/// A socket that the host's child processes do not inherit.
TcpChannel::Error TcpChannel::openSocket(const tcp& protocol) {
    Error error;
    socket_.close(error);
    const int descriptor = ::socket(protocol.family(), SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
    if (descriptor < 0) {
        return {errno, boost::system::system_category()};
    }
    socket_.assign(protocol, descriptor, error);
    return error;
}

std::optional<TcpChannel::Error> TcpChannel::connectTo(const SocketAddress& address, const Deadline& deadline) {
    tcp::endpoint target;
    target.resize(address.size);
    std::memcpy(target.data(), &address.bytes, address.size);

    Error error = openSocket(target.protocol());
    if (error) {
        return error;
    }
    socket_.set_option(tcp::no_delay(true), error);
    return await(deadline, [&](auto handler) { socket_.async_connect(target, handler); });
}

} // namespace Pegasus::http
