#pragma once

#include "tls/Fingerprint.h"
#include "tls/OpenSslObjects.h"
#include "tls/SessionCache.h"

#include <Pegasus/Common/SSLContext.h>

#include <optional>

namespace Pegasus::tls {

/// What all connections of one client to one server share: the settings, and the OpenSSL context made from them.
class TlsContext {
  public:
    /// A client that speaks TLS 1.2 or newer, trusts what the trust store says, and has the client's certificate.
    /// Throws SSLException when one of the settings cannot be used.
    explicit TlsContext(const SSLContext& settings);

    const SSLContext& settings() const { return settings_; }
    const std::optional<Fingerprint>& fingerprint() const { return fingerprint_; }
    SSL_CTX& openSsl() const { return *openSsl_; }
    SessionCache& sessions() { return sessions_; }

  private:
    const SSLContext settings_;
    const std::optional<Fingerprint> fingerprint_;
    const OpenSslContextPtr openSsl_;
    SessionCache sessions_;
};

} // namespace Pegasus::tls
