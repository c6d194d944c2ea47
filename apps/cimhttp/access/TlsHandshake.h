#pragma once

#include <string>
#include <vector>

namespace cimhttp {

/// What a TLS handshake shows of a server.
struct TlsDetails {
    std::string version; ///< `TLSv1.3`
    std::string cipher;
    std::string subject; ///< of the certificate, here and below
    std::string issuer;
    std::vector<std::string> names; ///< the hosts and addresses that it is for
    std::string validFrom;          ///< in UTC, `2026-11-22T08:00:00Z`
    std::string validUntil;
    std::string fingerprint; ///< SHA-256
    bool isSelfSigned = false;
    bool asksForCertificate = false; ///< the server wants to see one of the client's
    std::string failure;             ///< what ended the handshake too early; empty otherwise
};

/// Shakes hands as a client over a connected socket, which stays the caller's. Whom the certificate belongs to is not
/// verified. False when the server shows no certificate; it may do so and then end the handshake for want of one of the
/// client's.
///
/// It is the one function of a library of its own, which is loaded when it is needed: OpenSSL takes longer to load than
/// most commands take in all.
using TlsHandshakeFunction = bool(int socket, const std::string& host, TlsDetails& details);
constexpr const char* kTlsHandshakeFunction = "CimhttpTlsHandshake";
constexpr const char* kTlsHandshakeLibrary = "libcimhttp-tls.so";

} // namespace cimhttp
