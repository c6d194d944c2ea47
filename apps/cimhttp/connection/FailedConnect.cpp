#include "connection/FailedConnect.h"

#include "connection/Connection.h"
#include "connection/HostAddresses.h"
#include "connection/ServerProbe.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace cimhttp {

namespace {

constexpr int kPatienceMs = 1000;
constexpr std::chrono::seconds kProbeForAdvice{1};

enum class PortState {
    kOpen,
    kRefused,
    kSilent,  ///< or out of reach
    kUntried, ///< the program has no socket left to ask with
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
    if (socket < 0) { // also where the machine does not know the kind of address
        return errno == EAFNOSUPPORT ? PortState::kSilent : PortState::kUntried;
    }
    const bool isBegun = ::connect(socket, address.ai_addr, address.ai_addrlen) == 0 || errno == EINPROGRESS;
    const int error = isBegun ? ResultOf(socket) : errno;
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
        if (one == PortState::kOpen || one == PortState::kUntried) {
            return one;
        }
        state = one == PortState::kRefused ? one : state;
    }
    return state;
}

std::string ExplainUnknownHost(const HostAddresses& addresses) {
    return addresses.Error() == EAI_NONAME ? "no host of this name is known; check the spelling or give an address"
                                           : "the host's name cannot be looked up: " + addresses.ErrorText();
}

/// What to try where the other port of CIM servers answers; empty where it does not, and for who named a port. Nobody
/// is told to leave out TLS who would then send a password in plain text: whoever stands between could get it by
/// disturbing TLS.
std::string OtherWay(const Connection& connection) {
    const bool wantsTls = connection.tls && (!connection.user.empty() || connection.tlsSettings.Verifies());
    if (connection.port || wantsTls) {
        return {};
    }
    const int port = connection.tls ? kHttpPort : kHttpsPort;
    const bool answers = StateOf(HostAddresses(connection.host, port)) == PortState::kOpen;
    return answers ? "port " + std::to_string(port) + " answers: " + (connection.tls ? "leave out --tls" : "add --tls")
                   : std::string();
}

} // namespace

std::string ExplainFailedConnect(const Connection& connection, const std::string& reason) {
    const int port = connection.Port();
    const HostAddresses addresses(connection.host, port);
    if (addresses.Error() != 0) {
        return ExplainUnknownHost(addresses);
    }
    const PortState state = StateOf(addresses);
    if (state == PortState::kUntried || (state == PortState::kOpen && !connection.tls)) {
        return reason; // to which the other port is no answer
    }
    const std::string otherWay = OtherWay(connection);
    if (state == PortState::kOpen) {
        return reason + (otherWay.empty() ? "" : "; " + otherWay);
    }
    const std::string what =
        (state == PortState::kRefused ? "nothing listens on port " : "no answer from port ") + std::to_string(port);
    if (!otherWay.empty()) {
        return what + ", but " + otherWay;
    }
    if (state != PortState::kRefused) {
        return what + "; is the host up, and does a firewall let the port through?";
    }
    return what + "; is the CIM server running?" + (connection.host == kDefaultHost ? " --host names another" : "");
}

std::string CertificateAdvice(const Connection& connection) {
    if (!connection.tls || connection.tlsSettings.certificate) {
        return {};
    }
    const auto probe = ProbeServer(connection.host, connection.Port(), true, kProbeForAdvice);
    const bool asks = probe && probe->tls && probe->tls->asksForCertificate;
    return asks ? "; the server asks for a certificate of yours: give --cert FILE and --key FILE" : "";
}

} // namespace cimhttp
