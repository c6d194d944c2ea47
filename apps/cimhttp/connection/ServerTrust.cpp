#include "connection/ServerTrust.h"

#include "Failure.h"
#include "Options.h"
#include "connection/CertificateText.h"
#include "connection/FailedConnect.h"
#include "connection/KnownServers.h"
#include "connection/Plugin.h"
#include "connection/TerminalPrompt.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"
#include "text/Ascii.h"
#include "text/TerminalText.h"
#include "text/TimeText.h"
#include "waiting/ProgressWait.h"

namespace cimhttp {

namespace {

Failure NoConnection(const Connection& connection, const std::string& reason) {
    return {Failure::kConnection, "no connection to " + connection.Url() + ": " + reason};
}

/// What the server shows.
TlsDetails Look(const PluginAccess& access, const Connection& connection, const ProgressWait& wait) {
    const ServerProbe probe = wait.Read("connecting to " + connection.Url(),
                                        [&] { return access.Probe(connection.Target(), ServerProbe::Depth::kTls); });
    if (!probe.tls.showsCertificate) {
        const std::string reason = probe.result == ServerProbe::Result::kReached ? probe.tls.failure : probe.reason;
        throw NoConnection(connection, ExplainFailedConnect(access, connection, reason));
    }
    return probe.tls;
}

/// What the plug-in does not accept is told when the connection is made.
bool PolicyVerifies(const Plugin& plugin, const Connection& connection) {
    try {
        const auto nameSpace = plugin.AllocateNamespace(connection.Context());
        return plugin.Access().WouldVerify(*nameSpace, connection.host, connection.Port());
    } catch (const NQORVYX20::TVYXException&) {
        return false;
    }
}

bool IsYes(const std::string& answer) { return EqualIgnoringCase(answer, "yes") || EqualIgnoringCase(answer, "y"); }

bool IsNo(const std::string& answer) {
    return answer.empty() || EqualIgnoringCase(answer, "no") || EqualIgnoringCase(answer, "n");
}

/// No answer counts as no.
bool AskUntilClear(const std::string& question) {
    auto answer = AskForAnswer(question);
    while (answer && !IsYes(*answer) && !IsNo(*answer)) {
        answer = AskForAnswer("Answer yes or no: ");
    }
    return answer && IsYes(*answer);
}

bool UserTrusts(const Connection& connection, const TlsDetails& tls, const std::optional<KnownServers>& known) {
    const std::string where = known ? ", from now on (kept in " + Printable(known->Path()) + ")" : "";
    return AskUntilClear("Nothing verifies " + Printable(connection.Url()) + " yet. It shows this certificate:\n" +
                         CertificateText(tls) + "Whoever runs the server can tell you whether the SHA-256 is right.\n" +
                         "Trust it" + where + "? (yes or no) ");
}

Connection WithFingerprint(Connection connection, const KnownServer& server) {
    connection.tlsSettings.fingerprint = server.fingerprint;
    connection.knownSince = server.since.empty() ? "an unknown time" : server.since;
    return connection;
}

Connection AskedFor(const TrustQuestion& ask, const PluginAccess& access, const Connection& connection,
                    const std::optional<KnownServers>& known, const ProgressWait& wait) {
    const TlsDetails tls = Look(access, connection, wait);
    if (!ask(tls)) {
        throw NoConnection(connection, "its certificate is not trusted; nothing was sent");
    }
    const KnownServer server{tls.fingerprint, TimeWithZone(), Printable(tls.subject)};
    if (known) {
        known->Keep(connection.HostAndPort(), server);
    }
    return WithFingerprint(connection, server);
}

/// The connection, if it goes to a server that is verified, or needs not be.
std::optional<Connection> Verified(const Plugin& plugin, const Connection& connection,
                                   const std::optional<KnownServers>& known) {
    if (!connection.tls || IsVerified(connection)) {
        return connection;
    }
    if (PolicyVerifies(plugin, connection)) {
        Connection verified = connection;
        verified.isVerifiedByPolicy = true;
        return verified;
    }
    if (const auto server = known ? known->Find(connection.HostAndPort()) : std::nullopt) {
        return WithFingerprint(connection, *server);
    }
    if (connection.tlsSettings.verify.value_or(false)) {
        throw NoConnection(connection, "nothing verifies the server, and --verify forbids to go on: give --ca FILE or "
                                       "--fingerprint SHA256; without --verify, you are asked on a terminal whether to "
                                       "trust its certificate");
    }
    return std::nullopt;
}

} // namespace

Connection Trusted(const Plugin& plugin, const Connection& connection, const Options& options,
                   const ProgressWait& wait) {
    const auto known = KnownServers::OfUser();
    if (const auto verified = Verified(plugin, connection, known)) {
        return *verified;
    }
    if (options.server && options.isErrorStreamTerminal) {
        const std::string name = options.connection.value_or("");
        throw NoConnection(connection, "nothing verifies the server yet, and nobody is asked about one of several; "
                                       "'cimhttp connection test " +
                                           name + "' asks");
    }
    if (!options.isErrorStreamTerminal) {
        return connection;
    }
    const auto ask = [&](const TlsDetails& tls) { return UserTrusts(connection, tls, known); };
    return AskedFor(ask, plugin.Access(), connection, known, wait);
}

Connection TrustedBy(const TrustQuestion& ask, const Plugin& plugin, const Connection& connection,
                     const ProgressWait& wait) {
    const auto known = KnownServers::OfUser();
    const auto verified = Verified(plugin, connection, known);
    return verified ? *verified : AskedFor(ask, plugin.Access(), connection, known, wait);
}

} // namespace cimhttp
