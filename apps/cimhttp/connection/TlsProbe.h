#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace cimhttp {

/// What a connection of our own finds out about a server, below CIM.
struct ProbeResult {
    struct Tls {
        std::string version; ///< `TLSv1.3`
        std::string cipher;
        std::string subject; ///< of the certificate, here and below
        std::string issuer;
        std::string valid_until;
        std::string fingerprint; ///< SHA-256
        bool is_self_signed;
    };

    std::chrono::microseconds round_trip; ///< the time that connecting took
    std::optional<Tls> tls;
};

/// Connects once more, with a TLS handshake when `with_tls`, and looks. Whom the certificate belongs to is not
/// verified. Empty when that fails or takes longer than some seconds.
std::optional<ProbeResult> ProbeServer(const std::string& host, int port, bool with_tls);

} // namespace cimhttp
