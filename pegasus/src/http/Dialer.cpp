#include "http/Dialer.h"

#include "http/Descriptor.h"
#include "http/TcpChannel.h"

#include <Pegasus/Common/Exception.h>

#include <string>
#include <utility>

namespace Pegasus::http {

namespace {

/// Where a process has no descriptor left, whatever fails first (the name service, a library, a trust store) gives
/// another reason.
void blameShortage(const Endpoint& endpoint) {
    if (const std::string shortage = Descriptor::shortage(); !shortage.empty()) {
        throw CannotConnectException(String("cannot connect to " + endpoint.text() + ": " + shortage));
    }
}

} // namespace

Dialer::Dialer(Endpoint endpoint, std::optional<SSLContext> tls)
    : endpoint_(std::move(endpoint)), tls_(std::move(tls)) {}

std::unique_ptr<Channel> Dialer::open(const ConnectTime& time) {
    try {
        return openEither(time);
    } catch (const InvalidLocatorException&) {
        blameShortage(endpoint_);
        throw;
    } catch (const SSLException&) {
        blameShortage(endpoint_);
        throw;
    }
}

std::unique_ptr<Channel> Dialer::openEither(const ConnectTime& time) {
    if (!tls_) {
        return std::make_unique<TcpChannel>(endpoint_, time);
    }
    if (!secure_) {
        secure_ = TlsTransport::loaded().makeClient(endpoint_, *tls_);
    }
    return secure_->open(time);
}

} // namespace Pegasus::http
