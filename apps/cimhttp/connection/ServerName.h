#pragma once

#include <optional>
#include <string>

namespace cimhttp {

constexpr int kHttpPort = 5988;
constexpr int kHttpsPort = 5989;

/// How a user names a server: `server.example`, `192.0.2.7`, `2001:db8::7`, `[2001:db8::7]`, each also with one of the
/// two ports of CIM servers, `server.example:5989`, or as a URL, `https://server.example`.
struct ServerName {
    std::string host;        ///< a name or an address, without brackets
    std::optional<bool> tls; ///< what port and scheme say
};

/// Throws Failure(kUsage) for what names no server that the plug-in can reach.
ServerName ParseServerName(const std::string& text);

} // namespace cimhttp
