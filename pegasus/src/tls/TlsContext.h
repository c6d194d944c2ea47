#pragma once

#include "http/Endpoint.h"

#include <Pegasus/Common/SSLContext.h>
#include <exception>
#include <memory>
#include <openssl/types.h>
#include <string>

namespace Pegasus::http {

struct TlsContextFree {
    void operator()(SSL_CTX* context) const;
};
using TlsContextPtr = std::unique_ptr<SSL_CTX, TlsContextFree>;

/// OpenSSL's side of a client that speaks TLS 1.2 or newer and trusts what the trust store says. Throws SSLException
/// when the trust store or the random file cannot be read.
TlsContextPtr makeTlsContext(const SSLContext& settings);

/// The check of one server's certificates. Must outlive the handshake of the session that it is attached to.
class PeerCheck {
  public:
    PeerCheck(const SSLContext& settings, const Endpoint& endpoint);
    PeerCheck(const PeerCheck&) = delete;
    PeerCheck& operator=(const PeerCheck&) = delete;

    /// Tells the session which name the server must have, and to ask this object about each of its certificates. Throws
    /// SSLException when OpenSSL cannot remember that.
    void attachTo(SSL& session);

    /// Why a certificate was refused; empty when none was.
    const std::string& refusal() const { return refusal_; }
    /// What the check ended in, be it thrown by the caller's verification callback; it must not fly through OpenSSL.
    const std::exception_ptr& failure() const { return failure_; }

  private:
    static int onCertificate(int preverified, X509_STORE_CTX* store);
    bool accept(bool preverified, X509_STORE_CTX& store);
    bool askCallback(bool preverified, X509_STORE_CTX& store) const;

    const Endpoint& endpoint_;
    const bool verify_;
    SSLCertificateVerifyFunction* const callback_;
    std::string refusal_;
    std::exception_ptr failure_;
};

} // namespace Pegasus::http
