#include "http/Channel.h"

#include "http/Dialer.h"

#include <optional>

namespace Pegasus::http {

std::unique_ptr<Channel> Channel::open(const Endpoint& endpoint, const SSLContext* tls, const ConnectTime& time) {
    return Dialer(endpoint, tls != nullptr ? std::optional<SSLContext>(*tls) : std::nullopt).open(time);
}

} // namespace Pegasus::http
