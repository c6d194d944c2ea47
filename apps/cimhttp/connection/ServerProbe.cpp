#include "connection/ServerProbe.h"

#include "connection/HostAddresses.h"
#include "connection/OwnLibrary.h"

#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <utility>

namespace cimhttp {

namespace {

using std::chrono::microseconds;
using Clock = std::chrono::steady_clock;

microseconds Since(Clock::time_point begin) { return std::chrono::duration_cast<microseconds>(Clock::now() - begin); }

class Socket {
  public:
    Socket(const addrinfo& address, std::chrono::seconds patience)
        : descriptor_(::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol)) {
        const timeval limit{patience.count(), 0};
        ::setsockopt(descriptor_, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit); // for connecting too
        ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    }
    ~Socket() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    bool Connect(const addrinfo& address) const {
        return descriptor_ >= 0 && ::connect(descriptor_, address.ai_addr, address.ai_addrlen) == 0;
    }

    int Descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

void ShakeHands(int socket, const std::string& host, ProbeResult& result) {
    auto* const shakeHands = OwnFunction<TlsHandshakeFunction>(kTlsHandshakeLibrary, kTlsHandshakeFunction);
    TlsDetails details;
    const auto begin = Clock::now();
    const bool isSeen = shakeHands(socket, host, details);
    result.handshake = Since(begin);
    if (isSeen) {
        result.tls = std::move(details);
    } else {
        result.tlsFailure = details.failure;
    }
}

} // namespace

std::optional<ProbeResult> ProbeServer(const std::string& host, int port, bool withTls, std::chrono::seconds patience) {
    const HostAddresses addresses(host, port);
    for (const addrinfo* address = addresses.First(); address != nullptr; address = address->ai_next) {
        const Socket socket(*address, patience);
        const auto begin = Clock::now();
        if (!socket.Connect(*address)) {
            continue;
        }
        ProbeResult result;
        result.roundTrip = Since(begin);
        if (withTls) {
            ShakeHands(socket.Descriptor(), host, result);
        }
        return result;
    }
    return std::nullopt;
}

} // namespace cimhttp
