#pragma once

#include "access/ServerProbe.h"
#include "connection/ServerName.h"
#include "connection/TlsSettings.h"
#include "host/TCIMContext.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace cimhttp {

class OperationStatistics;
struct Options;

/// Time-outs, in seconds.
constexpr unsigned kShortestTimeout = 1;
constexpr unsigned kLongestTimeout = 86400;
constexpr unsigned kUsualTimeout = 120;
constexpr unsigned kLongestConnect = 20;

/// The server where none is named.
constexpr const char* kDefaultHost = "localhost";

/// The namespace where none is named.
constexpr const char* kUsualNamespace = "root/cimv2";

/// How to reach a server.
struct Connection {
    std::string host; ///< a name or an address
    std::string user; ///< empty: no credentials are sent
    std::string password;
    bool tls = false;
    std::chrono::seconds timeout{kUsualTimeout}; ///< for each answer
    bool strict = false;                         ///< an answer of which a part cannot be read fails as a whole
    std::optional<int> port = {};                ///< empty for the usual one
    std::string nameSpace = kUsualNamespace;     ///< on the server
    TlsSettings tlsSettings = {};
    std::string knownSince = {};           ///< when the user trusted the fingerprint; empty where it is given otherwise
    std::optional<std::string> trace = {}; ///< the file for what is sent and received, an absolute path
    std::shared_ptr<OperationStatistics> statistics = {}; ///< where what operations take is counted; null: nowhere
    bool isVerifiedByPolicy = false; ///< the machine's policy verifies the server of an encrypted connection
    std::optional<std::chrono::steady_clock::time_point> deadline = {}; ///< when all that is asked must be answered

    /// How long connecting may take.
    std::chrono::seconds ConnectTimeout() const { return std::min(timeout, std::chrono::seconds(kLongestConnect)); }

    /// How long an answer may take from now on: 1 millisecond at least.
    std::chrono::milliseconds TimeLeft() const;

    /// Whether the deadline, if there is one, has passed.
    bool IsTimeOver() const { return deadline && std::chrono::steady_clock::now() >= *deadline; }

    /// Where to look for the server, with as much time as connecting has.
    ProbeTarget Target() const {
        return {host, Port(), std::min<std::chrono::milliseconds>(ConnectTimeout(), TimeLeft())};
    }

    int UsualPort() const { return tls ? kHttpsPort : kHttpPort; }

    int Port() const { return port.value_or(UsualPort()); }

    /// The server as a URL, with its port unless that is the usual one.
    std::string Url() const;

    /// The server and, unless it is the usual one, the namespace, `http://server.example/root/interop`.
    std::string Place() const;

    /// Host and port, `server.example:5989`.
    std::string HostAndPort() const;

    /// Whether what is sent does not leave this machine.
    bool IsLoopback() const;

    /// What the plug-in is told when a namespace is made for the connection, see cimhttp/ContextKeys.h.
    NQORVYX20::TCIMContext Context() const;
};

/// The connection that the options ask for: what they say counts first, then the named connection that they choose, or
/// the one with the name `default` when they name no server. The user is asked for a password that is found nowhere,
/// when there is a terminal. Throws Failure(kUsage) when all of this does not describe a connection.
Connection ConnectionOf(const Options& options);

/// The connection of options with the settings of a document, `address`, `port`, `namespace`, `user`, `pass`, `ssl` and
/// `ca`, where the options say nothing; the port goes with the address. The connection named
/// `default` is for documents that name no server either. A user given on the command line takes no
/// password from the document, which holds that of somebody else. Failures name the document.
Connection ConnectionOf(const Options& options, const std::map<std::string, std::string>& settings,
                        const std::string& document);

} // namespace cimhttp
