#pragma once

#include "http/Channel.h"
#include "http/ConnectTime.h"
#include "http/Endpoint.h"

#include <Pegasus/Common/SSLContext.h>
#include <memory>

namespace Pegasus::http {

/// Makes channels that are encrypted. It is a library of its own, so that whoever speaks plain HTTP does not load
/// OpenSSL, which takes longer than everything else in this client together.
class TlsTransport {
  public:
    virtual ~TlsTransport() = default;

    /// Connects and shakes hands. Throws like Channel::open().
    virtual std::unique_ptr<Channel> open(const Endpoint& endpoint, const SSLContext& settings,
                                          const ConnectTime& time) const = 0;

    /// The library's, which the first call loads, for the rest of the process. Throws SSLException when it cannot be
    /// loaded. From any thread.
    static const TlsTransport& loaded();
};

/// The one function that the library exports. The object lives as long as the process.
using TlsTransportFunction = const TlsTransport*();
constexpr const char* kTlsTransportFunction = "PegasusTlsTransport";
constexpr const char* kTlsTransportLibrary = "libpegtls.so";

} // namespace Pegasus::http
