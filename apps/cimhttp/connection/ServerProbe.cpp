#include "connection/ServerProbe.h"

#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <utility>

#include "connection/HostAddresses.h"
#include "connection/OwnLibrary.h"

namespace cimhttp {

namespace {

constexpr timeval kPatience{5, 0}; // for each step

class Socket {
  public:
    explicit Socket(const addrinfo& address)
        : descriptor_(::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol)) {
        ::setsockopt(descriptor_, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience); // for connecting too
        ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
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

std::optional<TlsDetails> Handshake(int socket, const std::string& host) {
    auto* const shake_hands = OwnFunction<TlsHandshakeFunction>(kTlsHandshakeLibrary, kTlsHandshakeFunction);
    TlsDetails details;
    return shake_hands(socket, host, details) ? std::optional<TlsDetails>(std::move(details)) : std::nullopt;
}

} // namespace

std::optional<ProbeResult> ProbeServer(const std::string& host, int port, bool with_tls) {
    const HostAddresses addresses(host, port);
    for (const addrinfo* address = addresses.First(); address != nullptr; address = address->ai_next) {
        const Socket socket(*address);
        const auto begin = std::chrono::steady_clock::now();
        if (!socket.Connect(*address)) {
            continue;
        }
        const auto round_trip =
            std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
        return ProbeResult{round_trip, with_tls ? Handshake(socket.Descriptor(), host) : std::nullopt};
    }
    return std::nullopt;
}

} // namespace cimhttp
