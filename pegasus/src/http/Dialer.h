#pragma once

#include "http/Channel.h"
#include "http/ConnectTime.h"
#include "http/Endpoint.h"
#include "http/TlsTransport.h"

#include <Pegasus/Common/SSLContext.h>

#include <memory>
#include <optional>

namespace Pegasus::http {

/// Opens one channel to the same server after the other. What is needed for TLS is made once.
class Dialer {
  public:
    Dialer(Endpoint endpoint, std::optional<SSLContext> tls);

    const Endpoint& endpoint() const { return endpoint_; }
    bool encrypts() const { return tls_.has_value(); }
    const std::optional<SSLContext>& tls() const { return tls_; }

    /// Throws like Channel::open().
    std::unique_ptr<Channel> open(const ConnectTime& time);

  private:
    std::unique_ptr<Channel> openEither(const ConnectTime& time);

    const Endpoint endpoint_;
    const std::optional<SSLContext> tls_;
    std::unique_ptr<TlsClient> secure_; // from the first channel on
};

} // namespace Pegasus::http
