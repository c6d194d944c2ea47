#pragma once

#include <Pegasus/Common/Config.h>

#include <string>

namespace Pegasus::http {

/// Where a server listens: a name or an address literal, and a port.
class Endpoint {
  public:
    /// An empty host is the local one. An IPv6 literal may stand in square brackets, as in a URL.
    Endpoint(std::string host, Uint32 port);

    /// The name or the bare literal.
    const std::string& host() const { return host_; }
    Uint32 port() const { return port_; }
    bool isAddressLiteral() const;

    /// host:port, an IPv6 literal in brackets: for the Host header and for messages.
    std::string text() const;

  private:
    std::string host_;
    Uint32 port_;
};

} // namespace Pegasus::http
