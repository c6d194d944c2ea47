#pragma once

#include "tls/OpenSslObjects.h"

#include <openssl/types.h>

#include <chrono>

namespace Pegasus::tls {

/// The TLS session that the next connection to the same server can resume, which spares both sides the certificates.
/// The server's certificate is not verified then, so a session is resumed only for a while after it was.
class SessionCache {
  public:
    static constexpr std::chrono::seconds kTrustedFor = std::chrono::hours(1);

    explicit SessionCache(std::chrono::seconds trustedFor = kTrustedFor) : trustedFor_(trustedFor) {}
    SessionCache(const SessionCache&) = delete;
    SessionCache& operator=(const SessionCache&) = delete;

    /// Lets the sessions of a context be kept by the objects that are attached to them.
    static void useFor(SSL_CTX& context);

    /// Before a handshake: lets the session resume the one that is kept, if any, and keeps what the server gives for
    /// the next. The object must outlive the session.
    void attachTo(SSL& session);

    /// After a handshake that has succeeded.
    void noteHandshake(const SSL& session);

    /// Lets the next handshake be a whole one.
    void forget() { latest_.reset(); }

  private:
    static int onNewSession(SSL* session, SSL_SESSION* resumable);

    const std::chrono::seconds trustedFor_;
    SessionPtr latest_;
    std::chrono::steady_clock::time_point verified_{}; // when the server was verified last
};

} // namespace Pegasus::tls
