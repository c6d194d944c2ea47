#pragma once

#include <algorithm>
#include <chrono>
#include <map>
#include <string>

#include "connection/ServerName.h"

namespace cimhttp {

struct Options;

/// Time-outs, in seconds.
constexpr unsigned kShortestTimeout = 1;
constexpr unsigned kLongestTimeout = 86400;
constexpr unsigned kUsualTimeout = 120;
constexpr unsigned kLongestConnect = 20;

/// The server of those who name none.
constexpr const char* kDefaultHost = "localhost";

/// How to reach a server.
struct Connection {
    std::string host; ///< a name or an address
    std::string user; ///< empty: no credentials are sent
    std::string password;
    bool tls = false;
    std::chrono::seconds timeout{kUsualTimeout}; ///< for each answer

    /// How long connecting may take.
    std::chrono::seconds ConnectTimeout() const { return std::min(timeout, std::chrono::seconds(kLongestConnect)); }

    int Port() const { return tls ? kHttpsPort : kHttpPort; }

    /// The server as a URL without a port.
    std::string Url() const;
};

/// The connection that the options ask for: what they say counts first, then the named connection that they choose, or
/// the one with the name `default` when they name no server. The user is asked for a password that is found nowhere,
/// when there is a terminal. Throws Failure(kUsage) when all this does not make a connection.
Connection ConnectionOf(const Options& options);

/// The same with the settings of a document, `address`, `user`, `pass` and `ssl`, where the options say nothing; the
/// connection named `default` is for documents that name no server either. A user given on the command line takes no
/// password from the document, which holds that of somebody else. Failures name the document.
Connection ConnectionOf(const Options& options, const std::map<std::string, std::string>& settings,
                        const std::string& document);

} // namespace cimhttp
