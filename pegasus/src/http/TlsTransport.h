#pragma once

#include "http/Channel.h"
#include "http/ConnectTime.h"
#include "http/Deadline.h"
#include "http/Descriptor.h"
#include "http/Endpoint.h"

#include <Pegasus/Client/ServerProbe.h>
#include <Pegasus/Common/SSLContext.h>

#include <memory>

namespace Pegasus::http {

/// A client of one server that speaks TLS: opens one channel after the other, with the same settings.
class TlsClient {
  public:
    virtual ~TlsClient() = default;

    /// Connects and shakes hands. A later handshake may resume the TLS session of the one before. Throws like
    /// Channel::open().
    virtual std::unique_ptr<Channel> open(const ConnectTime& time) = 0;
};

/// Makes connections that are encrypted. It is a library of its own, so that a process that uses plain HTTP only does
/// not load OpenSSL, which takes longer than everything else in this client together.
class TlsTransport {
  public:
    virtual ~TlsTransport() = default;

    /// Reads the files that the settings name. Throws SSLException when the settings cannot be used.
    virtual std::unique_ptr<TlsClient> makeClient(const Endpoint& endpoint, const SSLContext& settings) const = 0;

    /// Shakes hands over a connected socket that does not block, without verifying the server. Throws SSLException only
    /// where TLS cannot be used at all: other failures are in what it returns.
    virtual TlsProbe probe(const Endpoint& endpoint, Descriptor socket, const Deadline& deadline) const = 0;

    /// The transport of the library, which the first call loads for the rest of the process. Throws SSLException when
    /// it cannot be loaded. May be called from any thread.
    static const TlsTransport& loaded();
};

/// The one function that the library exports. The object lives as long as the process.
using TlsTransportFunction = const TlsTransport*();
constexpr const char* kTlsTransportFunction = "PegasusTlsTransport";
constexpr const char* kTlsTransportLibrary = "libcimhttp-client-tls.so";

} // namespace Pegasus::http
