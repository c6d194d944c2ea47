#pragma once

#include <optional>
#include <string>

namespace cimhttp {

// By agreement the first of these two ports is plain, the second encrypted; any other may be either.
constexpr int kHttpPort = 5988;
constexpr int kHttpsPort = 5989;

constexpr int kHighestPort = 65535;

/// How a user names a server: `server.example`, `192.0.2.7`, `2001:db8::7`, `[2001:db8::7]`, each also with a port,
/// `server.example:15989`, or as a URL, `https://server.example:443`.
struct ServerName {
    std::string host;        ///< a name or an address, without brackets
    std::optional<bool> tls; ///< what the scheme says, or a port that is one of the two above
    std::optional<int> port;
};

/// Throws Failure(kUsage) for what names no server.
ServerName ParseServerName(const std::string& text);

/// What a port says about TLS: nothing unless it is one of the two above.
std::optional<bool> TlsOfPort(int port);

/// A port from 1 to 65535, or nothing for another text.
std::optional<int> ParsePort(const std::string& text);

} // namespace cimhttp
