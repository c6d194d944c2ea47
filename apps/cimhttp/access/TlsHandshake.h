#pragma once

#include <string>

namespace cimhttp {

/// What a TLS handshake shows of a server.
struct TlsDetails {
    std::string version; ///< `TLSv1.3`
    std::string cipher;
    std::string subject; ///< of the certificate, here and below
    std::string issuer;
    std::string valid_until;
    std::string fingerprint; ///< SHA-256
    bool is_self_signed = false;
};

/// Shakes hands as a client over a connected socket, which stays the caller's. Whom the certificate belongs to is not
/// verified. False when the handshake fails.
///
/// It is the one function of a library of its own, which is loaded when it is needed: OpenSSL takes longer to load than
/// most commands take in all.
using TlsHandshakeFunction = bool(int socket, const std::string& host, TlsDetails& details);
constexpr const char* kTlsHandshakeFunction = "CimhttpTlsHandshake";
constexpr const char* kTlsHandshakeLibrary = "libcimhttp-tls.so";

} // namespace cimhttp
