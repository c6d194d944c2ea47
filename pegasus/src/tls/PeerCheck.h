#pragma once

#include "http/Endpoint.h"
#include "tls/CertificateRefusal.h"
#include "tls/Fingerprint.h"

#include <Pegasus/Common/SSLContext.h>

#include <openssl/types.h>

#include <exception>
#include <optional>

namespace Pegasus::tls {

/// The check of one server's certificates. Must outlive the handshake of the session that it is attached to.
class PeerCheck {
  public:
    /// A fingerprint, where given, decides alone.
    PeerCheck(const SSLContext& settings, const std::optional<Fingerprint>& fingerprint,
              const http::Endpoint& endpoint);
    PeerCheck(const PeerCheck&) = delete;
    PeerCheck& operator=(const PeerCheck&) = delete;

    /// Lets the sessions of a context be checked by the objects that are attached to them.
    static void useFor(SSL_CTX& context);

    /// Tells the session which name the server must have, and to ask this object about each of its certificates. Throws
    /// SSLException when OpenSSL has no memory for that.
    void attachTo(SSL& session);

    /// Why a certificate was refused; nothing when none was.
    const std::optional<CertificateRefusal>& refusal() const { return refusal_; }
    /// The exception that ended the check, such as one from the caller's verification callback, which must not pass
    /// through OpenSSL.
    const std::exception_ptr& failure() const { return failure_; }

  private:
    static int onChain(X509_STORE_CTX* store, void* unused);
    static int onCertificate(int preverified, X509_STORE_CTX* store);
    static PeerCheck& ofStore(X509_STORE_CTX* store);
    bool acceptFingerprint(X509_STORE_CTX& store);
    bool accept(bool preverified, X509_STORE_CTX& store);
    bool askCallback(bool preverified, X509_STORE_CTX& store) const;

    const http::Endpoint& endpoint_;
    const bool verify_;
    SSLCertificateVerifyFunction* const callback_;
    const std::optional<Fingerprint> fingerprint_;
    std::optional<CertificateRefusal> refusal_;
    std::exception_ptr failure_;
};

} // namespace Pegasus::tls
