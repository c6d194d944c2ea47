#include "connection/FailedConnect.h"

#include "access/PluginAccess.h"
#include "connection/Connection.h"

namespace cimhttp {

namespace {

using Depth = ServerProbe::Depth;
using Result = ServerProbe::Result;

constexpr std::chrono::seconds kTimeout{1}; // of each step

std::string ExplainUnknownHost(const ServerProbe& probe) {
    return probe.result == Result::kUnknownHost ? "no host of this name is known; check the spelling or give an address"
                                                : "the host's name cannot be looked up: " + probe.reason;
}

/// What to try where the other port of CIM servers answers; empty where it does not, and for who named a port. Nobody
/// is told to leave out TLS who would then send a password in plain text: whoever stands between could get it by
/// breaking TLS connections.
std::string OtherWay(const PluginAccess& access, const Connection& connection) {
    const bool wantsTls = connection.tls && (!connection.user.empty() || connection.tlsSettings.Verifies());
    if (connection.port || wantsTls) {
        return {};
    }
    const int port = connection.tls ? kHttpPort : kHttpsPort;
    const bool answers = access.Probe({connection.host, port, kTimeout}, Depth::kPort).result == Result::kReached;
    return answers ? "port " + std::to_string(port) + " answers: " + (connection.tls ? "leave out --tls" : "add --tls")
                   : std::string();
}

} // namespace

std::string ExplainFailedConnect(const PluginAccess& access, const Connection& connection, const std::string& reason) {
    if (connection.IsTimeOver()) {
        return reason;
    }
    const int port = connection.Port();
    const ServerProbe probe = access.Probe({connection.host, port, kTimeout}, Depth::kPort);
    if (probe.result == Result::kUnknownHost || probe.result == Result::kUnresolved) {
        return ExplainUnknownHost(probe);
    }
    if (probe.result == Result::kUntried || (probe.result == Result::kReached && !connection.tls)) {
        return reason; // to which the other port is no answer
    }
    const std::string otherWay = OtherWay(access, connection);
    if (probe.result == Result::kReached) {
        return reason + (otherWay.empty() ? "" : "; " + otherWay);
    }
    const bool isRefused = probe.result == Result::kRefused;
    const std::string what = (isRefused ? "nothing listens on port " : "no answer from port ") + std::to_string(port);
    if (!otherWay.empty()) {
        return what + ", but " + otherWay;
    }
    if (!isRefused) {
        return what + "; is the host up, and does a firewall let the port through?";
    }
    return what + "; is the CIM server running?" + (connection.host == kDefaultHost ? " --host names another" : "");
}

std::string CertificateAdvice(const PluginAccess& access, const Connection& connection) {
    if (!connection.tls || connection.tlsSettings.certificate || connection.IsTimeOver()) {
        return {};
    }
    const TlsDetails tls = access.Probe({connection.host, connection.Port(), kTimeout}, Depth::kTls).tls;
    return tls.showsCertificate && tls.asksForCertificate
               ? "; the server asks for a certificate of yours: give --cert FILE and --key FILE"
               : "";
}

} // namespace cimhttp
