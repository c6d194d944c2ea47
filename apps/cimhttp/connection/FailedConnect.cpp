#include "connection/FailedConnect.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "connection/Connection.h"
#include "connection/HostAddresses.h"

namespace cimhttp {

namespace {

constexpr int kPatienceMs = 1000;

enum class PortState {
    kOpen,
    kRefused,
    kSilent, ///< or out of reach
};

/// What became of a connection that was begun, as an error number; ETIMEDOUT when it takes too long.
int ResultOf(int socket) {
    pollfd awaited{socket, POLLOUT, 0};
    if (::poll(&awaited, 1, kPatienceMs) != 1) {
        return ETIMEDOUT;
    }
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

PortState Try(const addrinfo& address) {
    const int socket = ::socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket < 0) {
        return PortState::kSilent;
    }
    const bool is_begun = ::connect(socket, address.ai_addr, address.ai_addrlen) == 0 || errno == EINPROGRESS;
    const int error = is_begun ? ResultOf(socket) : errno;
    ::close(socket);
    return error == 0 ? PortState::kOpen : error == ECONNREFUSED ? PortState::kRefused : PortState::kSilent;
}

/// The best of what a host's addresses say; only the first two are asked, which are one of each kind where it has both.
PortState StateOf(const HostAddresses& addresses) {
    PortState state = PortState::kSilent;
    int asked = 0;
    for (const addrinfo* address = addresses.First(); address != nullptr && asked < 2;
         address = address->ai_next, ++asked) {
        const PortState one = Try(*address);
        if (one == PortState::kOpen) {
            return one;
        }
        state = one == PortState::kRefused ? one : state;
    }
    return state;
}

std::string ExplainUnknownHost(int error) {
    return error == EAI_NONAME ? "no host of this name is known; check the spelling or give an address"
                               : std::string("the host's name cannot be looked up: ") + ::gai_strerror(error);
}

} // namespace

std::string ExplainFailedConnect(const Connection& connection, const std::string& reason) {
    const int port = connection.Port();
    const int other_port = port == kHttpPort ? kHttpsPort : kHttpPort;
    const std::string other_way = connection.tls ? "leave out --tls" : "add --tls";
    const HostAddresses addresses(connection.host, port);
    if (addresses.Error() != 0) {
        return ExplainUnknownHost(addresses.Error());
    }
    const PortState state = StateOf(addresses);
    const bool other_answers = StateOf(HostAddresses(connection.host, other_port)) == PortState::kOpen;
    if (state == PortState::kOpen) {
        return reason + (other_answers ? "; port " + std::to_string(other_port) + " answers, too: " + other_way : "");
    }
    const std::string what =
        (state == PortState::kRefused ? "nothing listens on port " : "no answer from port ") + std::to_string(port);
    if (other_answers) {
        return what + ", but port " + std::to_string(other_port) + " answers: " + other_way;
    }
    if (state != PortState::kRefused) {
        return what + "; is the host up, and does a firewall let the port through?";
    }
    return what + "; is the CIM server running?" + (connection.host == kDefaultHost ? " --host names another" : "");
}

} // namespace cimhttp
