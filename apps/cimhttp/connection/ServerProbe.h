#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "access/TlsHandshake.h"

namespace cimhttp {

/// What a connection of our own finds out about a server, below CIM.
struct ProbeResult {
    std::chrono::microseconds round_trip; ///< the time that connecting took
    std::optional<TlsDetails> tls;
};

/// Connects once more, with a TLS handshake when `with_tls`, and looks. Whom the certificate belongs to is not
/// verified. Empty when that fails or takes longer than some seconds.
std::optional<ProbeResult> ProbeServer(const std::string& host, int port, bool with_tls);

} // namespace cimhttp
