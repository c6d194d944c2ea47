#pragma once

#include "access/TlsHandshake.h"

#include <chrono>
#include <optional>
#include <string>

namespace cimhttp {

/// What a connection of our own finds out about a server, below CIM.
struct ProbeResult {
    std::chrono::microseconds roundTrip{}; ///< the time that connecting took
    std::chrono::microseconds handshake{}; ///< the time that the TLS handshake took
    std::optional<TlsDetails> tls;
    std::string tlsFailure; ///< why there is nothing to see of TLS; empty otherwise, and without TLS
};

/// How long a probe waits in each step, unless told otherwise.
constexpr std::chrono::seconds kProbePatience{5};

/// Connects once more, with a TLS handshake when `withTls`, and looks. Whom the certificate belongs to is not
/// verified. Empty when there is no connection, for which each address of the host has the patience.
std::optional<ProbeResult> ProbeServer(const std::string& host, int port, bool withTls,
                                       std::chrono::seconds patience = kProbePatience);

} // namespace cimhttp
