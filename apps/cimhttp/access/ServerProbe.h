#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace cimhttp {

/// What a TLS handshake shows of a server. The certificate is not verified.
struct TlsDetails {
    std::string version; ///< `TLSv1.3`
    std::string cipher;
    bool showsCertificate = false;
    std::string subject; ///< of the certificate, here and below
    std::string issuer;
    std::vector<std::string> names; ///< the hosts and addresses that it is for
    std::string validFrom;          ///< in UTC, `2026-11-22T08:00:00Z`
    std::string validUntil;
    std::string fingerprint; ///< SHA-256
    bool isSelfSigned = false;
    bool asksForCertificate = false; ///< the server wants to see one of the client's
    std::string failure;             ///< why the handshake failed; empty when it did not
};

/// What a separate connection finds out about a server, below CIM.
struct ServerProbe {
    /// How far it goes. Each step needs those before it.
    enum class Depth { kName, kPort, kTls };

    enum class Result {
        kReached,     ///< as far as asked; for TLS, see TlsDetails::failure
        kUnknownHost, ///< there is no host of that name
        kUnresolved,  ///< the name cannot be looked up now
        kRefused,     ///< nothing listens on the port
        kSilent,      ///< no address has answered
        kUntried      ///< the program has no socket left, or the client library cannot do it
    };

    Result result = Result::kReached;
    std::string reason; ///< a sentence for people; empty when the server was reached
    std::vector<std::string> addresses;
    std::chrono::microseconds connectTime{};
    std::chrono::microseconds handshakeTime{};
    TlsDetails tls;
};

/// Where a probe goes, and for how long it may wait in each of its steps.
struct ProbeTarget {
    std::string host;
    int port;
    std::chrono::milliseconds timeout;
};

/// See PluginAccess::Probe.
ServerProbe ProbeServer(const ProbeTarget& target, ServerProbe::Depth depth);

} // namespace cimhttp
