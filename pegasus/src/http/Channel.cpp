#include "http/Channel.h"

#include "http/Descriptor.h"
#include "http/TcpChannel.h"
#include "http/TlsTransport.h"

#include <Pegasus/Common/Exception.h>

namespace Pegasus::http {

namespace {

std::unique_ptr<Channel> openEither(const Endpoint& endpoint, const SSLContext* tls, const ConnectTime& time) {
    if (tls != nullptr) {
        return TlsTransport::loaded().open(endpoint, *tls, time);
    }
    return std::make_unique<TcpChannel>(endpoint, time);
}

/// Whatever fails first where a process has no descriptor left, be it the name service, a library or a trust store,
/// knows another reason for it.
void blameShortage(const Endpoint& endpoint) {
    if (const std::string shortage = Descriptor::shortage(); !shortage.empty()) {
        throw CannotConnectException(String("cannot connect to " + endpoint.text() + ": " + shortage));
    }
}

} // namespace

std::unique_ptr<Channel> Channel::open(const Endpoint& endpoint, const SSLContext* tls, const ConnectTime& time) {
    try {
        return openEither(endpoint, tls, time);
    } catch (const InvalidLocatorException&) {
        blameShortage(endpoint);
        throw;
    } catch (const SSLException&) {
        blameShortage(endpoint);
        throw;
    }
}

} // namespace Pegasus::http
