#include "connection/Connection.h"

#include "Choices.h"
#include "Failure.h"
#include "Options.h"
#include "cimhttp/ContextKeys.h"
#include "connection/ConnectionStore.h"
#include "connection/PathReader.h"
#include "connection/TerminalPrompt.h"
#include "host/TCIMValue.h"
#include "text/Ascii.h"
#include "text/TerminalText.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr const char* kDefaultConnection = "default";

[[noreturn]] void Refuse(const std::string& what) { throw Failure(Failure::kUsage, what); }

/// A document's setting, empty where it has none.
class Settings {
  public:
    Settings(const std::map<std::string, std::string>& texts, const std::string& document)
        : texts_(texts), document_(document) {}

    bool Has(const std::string& name) const { return texts_.count(name) > 0; }

    std::string Text(const std::string& name) const { return Has(name) ? texts_.at(name) : std::string(); }

    std::optional<bool> Tls() const {
        const std::string text = Text("ssl");
        if (text.empty()) {
            return std::nullopt;
        }
        const auto truth = TruthIn(text);
        if (!truth) {
            Refuse(document_ + ": ssl is '" + text + "'; true, 1, yes or on mean HTTPS, false, 0, no or off HTTP");
        }
        return truth;
    }

    std::optional<int> Port() const {
        const auto port = ParsePort(Text("port"));
        if (Has("port") && !port) {
            Refuse(document_ + ": port is '" + Text("port") + "', which is no number from 1 to 65535");
        }
        return port;
    }

    std::optional<std::string> OptionalText(const std::string& name) const {
        return Has(name) ? std::optional(Text(name)) : std::nullopt;
    }

  private:
    const std::map<std::string, std::string>& texts_;
    const std::string& document_;
};

/// Adds a saved connection where the options say nothing. A user who is not the connection's gets no password from it.
void Add(const SavedConnection& saved, Options& options) {
    if (!options.host) {
        options.host = saved.host;
        options.port = options.port ? options.port : saved.port;
    }
    options.nameSpace = options.nameSpace ? options.nameSpace : saved.nameSpace;
    options.tlsSettings.Complete(saved.tlsSettings);
    options.tls = options.tls ? options.tls : saved.tls;
    options.user = options.user ? options.user : saved.user;
    options.timeout = options.timeout ? options.timeout : saved.timeout;
    if (!options.password && options.user == saved.user) {
        options.password = saved.password;
    }
}

void AddChosenConnection(Options& options) {
    if (options.saved) {
        Add(*options.saved, options);
    } else if (options.connection) {
        Add(ConnectionStore::NeededOfUser().Find(*options.connection), options);
    }
}

void AddDefaultConnection(Options& options) {
    const auto store = ConnectionStore::OfUser();
    if (options.host || !store) {
        return;
    }
    const auto connections = store->Read();
    const auto found = connections.find(kDefaultConnection);
    if (found != connections.end()) {
        Add(found->second, options);
    }
}

std::string PasswordOf(const Options& options, const std::string& user, const std::string& server) {
    if (options.password) {
        return *options.password;
    }
    if (options.passwordVariable) {
        return *options.passwordVariable;
    }
    const auto typed = options.isErrorStreamTerminal && !options.server
                           ? AskForPassword(Printable("Password of " + user + " on " + server + ": "))
                           : std::nullopt;
    if (!typed) {
        throw Failure(Failure::kUsage, "the user " + user +
                                           " needs a password: give --password-file FILE or set the variable "
                                           "CIMHTTP_PASSWORD" +
                                           (options.server ? ", or store it: cimhttp connection add NAME ... "
                                                             "--store-password"
                                                           : ""));
    }
    return *typed;
}

void CheckContradiction(bool isContradiction, const std::string& one, const std::string& other) {
    if (isContradiction) {
        Refuse(one + " and " + other + " contradict each other");
    }
}

/// Whether the connection is encrypted: as the options, the URL or the port say.
bool TlsOf(const Options& options, const ServerName& server) {
    const std::string quoted = "'" + options.host.value_or("") + "'";
    const std::string option = options.tls.value_or(false) ? "--tls" : "--tls=false";
    CheckContradiction(options.tls && server.tls && options.tls != server.tls, quoted, option);
    const std::optional<bool> named = options.tls ? options.tls : server.tls;
    if (!options.port) {
        return named.value_or(false);
    }
    const std::string port = "--port " + std::to_string(*options.port);
    CheckContradiction(server.port && server.port != options.port, quoted, port);
    const std::optional<bool> ofPort = TlsOfPort(*options.port);
    CheckContradiction(named && ofPort && named != ofPort, options.tls ? option : quoted, port);
    return named.value_or(ofPort.value_or(false));
}

void CheckNeedsTls(const std::string& option, bool isGiven, bool tls) {
    if (isGiven && !tls) {
        Refuse(option + " is for encrypted connections: add --tls");
    }
}

/// The settings by which the ends are verified, checked. None of them is silently left out.
TlsSettings CheckedSettings(TlsSettings settings, bool tls) {
    const std::array<std::pair<const char*, std::optional<std::string>>, 4> texts{
        {{"--ca", settings.ca},
         {"--fingerprint", settings.fingerprint},
         {"--cert", settings.certificate},
         {"--key", settings.key}}};
    for (const auto& [name, text] : texts) {
        CheckNeedsTls(name, text.has_value(), tls);
        if (text && text->empty()) {
            Refuse(std::string(name) + " is empty");
        }
    }
    CheckNeedsTls("--verify", settings.verify.value_or(false), tls);
    if (settings.key && !settings.certificate) {
        Refuse("--key goes with --cert, the certificate that the key is of");
    }
    if (settings.fingerprint) {
        const auto normal = NormalFingerprint(*settings.fingerprint);
        if (!normal) {
            Refuse("'" + *settings.fingerprint + "' is no SHA-256 fingerprint: that has 64 hexadecimal digits");
        }
        settings.fingerprint = normal;
    }
    return settings;
}

std::string NamespaceOf(const Options& options) {
    const std::string name = options.nameSpace.value_or(kUsualNamespace);
    std::string withoutSlash = WithoutLeadingSlash(name);
    if (withoutSlash.empty()) {
        Refuse("which namespace? '" + name + "' names none");
    }
    return withoutSlash;
}

/// The connection of options that lack nothing.
Connection ConnectionOfComplete(const Options& options) {
    const ServerName server = ParseServerName(options.host.value_or(kDefaultHost));
    Connection connection;
    connection.host = server.host;
    connection.tls = TlsOf(options, server);
    const std::optional<int> port = options.port ? options.port : server.port;
    connection.port = port == connection.UsualPort() ? std::nullopt : port;
    connection.nameSpace = NamespaceOf(options);
    connection.tlsSettings = CheckedSettings(options.tlsSettings, connection.tls);
    connection.user = options.user.value_or("");
    connection.strict = options.strict;
    connection.trace = options.trace;
    connection.statistics = options.statistics;
    connection.timeout = std::chrono::seconds(options.timeout.value_or(kUsualTimeout));
    connection.deadline = options.deadline;
    if (connection.user.empty() && !options.password.value_or("").empty()) {
        Refuse("whose password? give --user");
    }
    if (!connection.user.empty()) {
        connection.password = PasswordOf(options, connection.user, connection.Url());
    }
    return connection;
}

std::string Bracketed(const std::string& host) { return host.find(':') == std::string::npos ? host : '[' + host + ']'; }

void Put(const char* key, const std::optional<std::string>& text, TCIMContext& context) {
    if (text) {
        context.emplace(key, TCIMValue(*text));
    }
}

} // namespace

std::string Connection::Url() const {
    const std::string scheme = tls ? "https://" : "http://";
    return scheme + (port ? Bracketed(host) + ':' + std::to_string(*port) : Bracketed(host));
}

std::string Connection::Place() const { return nameSpace == kUsualNamespace ? Url() : Url() + '/' + nameSpace; }

std::string Connection::HostAndPort() const { return Bracketed(host) + ':' + std::to_string(Port()); }

bool Connection::IsLoopback() const {
    in_addr four{};
    in6_addr six{};
    constexpr unsigned kNetworkBits = 24;
    return EqualIgnoringCase(host, "localhost") ||
           (::inet_pton(AF_INET, host.c_str(), &four) == 1 && ntohl(four.s_addr) >> kNetworkBits == IN_LOOPBACKNET) ||
           (::inet_pton(AF_INET6, host.c_str(), &six) == 1 && IN6_IS_ADDR_LOOPBACK(&six));
}

std::chrono::milliseconds Connection::TimeLeft() const {
    if (!deadline) {
        return timeout;
    }
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
    return std::clamp<std::chrono::milliseconds>(left, std::chrono::milliseconds(1), timeout);
}

TCIMContext Connection::Context() const {
    const auto milliseconds = TimeLeft().count();
    TCIMContext context{{kNamespaceKey, TCIMValue(nameSpace)},
                        {kTlsKey, TCIMValue(tls)},
                        {kLenientKey, TCIMValue(!strict)},
                        {kTimeoutKey, TCIMValue(static_cast<std::uint32_t>(milliseconds))}};
    Put(kTrustKey, tlsSettings.ca, context);
    Put(kFingerprintKey, tlsSettings.fingerprint, context);
    Put(kClientCertificateKey, tlsSettings.certificate, context);
    Put(kClientKeyKey, tlsSettings.key, context);
    Put(kTraceKey, trace, context);
    return context;
}

Connection ConnectionOf(const Options& options) {
    Options merged = options;
    AddChosenConnection(merged);
    AddDefaultConnection(merged);
    return ConnectionOfComplete(merged);
}

Connection ConnectionOf(const Options& options, const std::map<std::string, std::string>& settings,
                        const std::string& document) {
    const Settings given(settings, document);
    Options merged = options;
    AddChosenConnection(merged);
    if (!merged.host && given.Has("address")) {
        merged.host = given.Text("address");
        merged.port = merged.port ? merged.port : given.Port();
    }
    merged.nameSpace = merged.nameSpace ? merged.nameSpace : given.OptionalText("namespace");
    TlsSettings ofDocument;
    ofDocument.ca = given.OptionalText("ca");
    merged.tlsSettings.Complete(ofDocument);
    if (!merged.tls) {
        merged.tls = given.Tls();
    }
    if (!merged.user) {
        merged.user = given.OptionalText("user");
        if (!merged.password && merged.user && given.Has("pass")) {
            merged.password = given.Text("pass");
        }
    }
    AddDefaultConnection(merged);
    if (merged.host.value_or("").empty()) {
        throw Failure(Failure::kUsage, document + " names no server: give <network address=\"...\"/> there, or --host");
    }
    return ConnectionOfComplete(merged);
}

} // namespace cimhttp
