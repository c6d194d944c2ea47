#include "http/Channel.h"

#include "http/TcpChannel.h"
#include "http/TlsTransport.h"

#include <Pegasus/Common/Exception.h>
#include <boost/system/system_error.hpp>

namespace Pegasus::http {

std::unique_ptr<Channel> Channel::open(const Endpoint& endpoint, const SSLContext* tls, const Deadline& deadline) {
    try {
        if (tls != nullptr) {
            return TlsTransport::loaded().open(endpoint, *tls, deadline);
        }
        auto channel = std::make_unique<TcpChannel>(endpoint);
        channel->connect(deadline);
        return channel;
    } catch (const boost::system::system_error& error) {
        // The io_context or the TLS stream could not be made: the process is short of file descriptors, for example.
        throw CannotConnectException(String("cannot connect to " + endpoint.text() + ": " + error.what()));
    }
}

} // namespace Pegasus::http
