#include "http/Descriptor.h"
#include "http/HappyEyeballs.h"
#include "http/Resolver.h"
#include "http/TlsTransport.h"

#include <Pegasus/Client/ClientLimits.h>
#include <Pegasus/Client/FailureMarks.h>
#include <Pegasus/Client/ServerProbe.h>
#include <Pegasus/Common/Exception.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace Pegasus {
inline namespace bundled {

namespace {

using Addresses = std::vector<http::SocketAddress>;
using Milliseconds = std::chrono::milliseconds;
using Clock = http::Deadline::Clock;

Uint64 microsecondsSince(Clock::time_point begin) {
    return static_cast<Uint64>(std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin).count());
}

template <class Mark>
bool bears(const Exception& error) {
    return dynamic_cast<const Mark*>(&error) != nullptr;
}

/// A probe under way.
class Probing {
  public:
    Probing(const String& host, Uint32 port, Milliseconds limit)
        : endpoint_(std::string(host.view()), port), limit_(limit) {}

    ServerProbe run(ServerProbe::Depth depth) {
        if (const auto addresses = lookUp(); !addresses.empty() && depth != ServerProbe::NAME) {
            http::Descriptor socket = connect(addresses);
            if (socket && depth == ServerProbe::TLS) {
                shakeHands(std::move(socket));
            }
        }
        return std::move(probe_);
    }

  private:
    Addresses lookUp() {
        Addresses addresses;
        try {
            addresses = http::resolve(endpoint_, http::Deadline(Milliseconds(ClientLimits::kConnectMilliseconds)));
        } catch (const Exception& error) {
            fail(bears<UnknownHost>(error) ? ServerProbe::UNKNOWN_HOST : ServerProbe::UNRESOLVED, error);
        }
        for (const http::SocketAddress& address : addresses) {
            probe_.addresses.append(String(http::literalOf(address)));
        }
        return addresses;
    }

    http::Descriptor connect(const Addresses& addresses) {
        const auto begin = Clock::now();
        try {
            http::Descriptor socket =
                http::HappyEyeballs(endpoint_, addresses, http::ConnectTime(http::Deadline(limit_), limit_)).run();
            probe_.connectTime = microsecondsSince(begin);
            return socket;
        } catch (const Exception& error) {
            fail(bears<PortClosed>(error) ? ServerProbe::REFUSED : ServerProbe::SILENT, error);
            return {};
        }
    }

    void shakeHands(http::Descriptor socket) {
        try {
            const http::TlsTransport& transport = http::TlsTransport::loaded();
            const auto begin = Clock::now();
            probe_.tls = transport.probe(endpoint_, std::move(socket), http::Deadline(limit_));
            probe_.handshakeTime = microsecondsSince(begin);
        } catch (const SSLException& error) {
            probe_.tls.failure = error.getMessage();
        }
    }

    /// A process without a descriptor has learnt nothing about the server.
    void fail(ServerProbe::Result result, const Exception& error) {
        const std::string shortage = http::Descriptor::shortage();
        probe_.result = shortage.empty() ? result : ServerProbe::NO_SOCKET;
        probe_.reason = shortage.empty() ? error.getMessage() : String(shortage);
    }

    const http::Endpoint endpoint_;
    const Milliseconds limit_;
    ServerProbe probe_;
};

} // namespace

ServerProbe ServerProbe::of(const String& host, Uint32 port, Depth depth, Uint32 milliseconds) {
    return Probing(host, port, Milliseconds(milliseconds)).run(depth);
}

} // namespace bundled
} // namespace Pegasus
