#include "connection/ServerName.h"

#include "Failure.h"
#include "text/Ascii.h"
#include "text/ParsedText.h"

#include <algorithm>

namespace cimhttp {

namespace {

/// Takes `prefix` off the front of `text`. False where it is not there.
bool TakePrefix(std::string& text, const std::string& prefix) {
    const bool isThere = text.compare(0, prefix.size(), prefix) == 0;
    if (isThere) {
        text.erase(0, prefix.size());
    }
    return isThere;
}

std::optional<bool> TakeScheme(std::string& text) {
    const bool isHttps = TakePrefix(text, "https://");
    if (!isHttps && !TakePrefix(text, "http://")) {
        return std::nullopt;
    }
    if (!text.empty() && text.back() == '/') {
        text.pop_back();
    }
    return isHttps;
}

/// Splits `host:port` and `[host]:port`; an IPv6 address without brackets has no port.
std::string TakePort(std::string& host) {
    std::string port;
    const auto colon = host.rfind(':');
    const bool isBracketed = host.front() == '[';
    const bool hasPort = colon != std::string::npos && (isBracketed ? host[colon - 1] == ']' : host.find(':') == colon);
    if (hasPort) {
        port = host.substr(colon + 1);
        host.erase(colon);
    }
    if (isBracketed && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    }
    return port;
}

bool IsPlausible(const std::string& host) {
    const auto isPlausible = [](char letter) {
        return IsAsciiLetter(letter) || IsAsciiDigit(letter) || static_cast<unsigned char>(letter) > 0x7f ||
               std::string(".-_:%").find(letter) != std::string::npos;
    };
    return !host.empty() && std::all_of(host.begin(), host.end(), isPlausible);
}

} // namespace

std::optional<bool> TlsOfPort(int port) {
    return port == kHttpPort || port == kHttpsPort ? std::optional(port == kHttpsPort) : std::nullopt;
}

std::optional<int> ParsePort(const std::string& text) {
    const auto port = NumberIn<int>(text);
    return port && *port > 0 && *port <= kHighestPort ? port : std::nullopt;
}

ServerName ParseServerName(const std::string& text) {
    ServerName server{text, std::nullopt, std::nullopt};
    server.tls = TakeScheme(server.host);
    if (const auto end = server.host.find("://"); end != std::string::npos) {
        throw Failure(Failure::kUsage, "'" + text + "' is a URL of " + server.host.substr(0, end) +
                                           ": a CIM server has http:// or https://, or a name alone");
    }
    const auto sign = server.host.rfind('@');
    if (sign != std::string::npos) { // what stands before it may be a password, which is not to be shown
        throw Failure(Failure::kUsage, "the user is not a part of the server's name: give --host " +
                                           server.host.substr(sign + 1) + " and --user NAME");
    }
    const std::string port = server.host.empty() ? std::string() : TakePort(server.host);
    if (!IsPlausible(server.host)) {
        throw Failure(Failure::kUsage, "'" + text + "' is not the name or address of a server");
    }
    if (port.empty()) {
        return server;
    }
    server.port = ParsePort(port);
    if (!server.port) {
        throw Failure(Failure::kUsage, "'" + text + "': a port is a number from 1 to 65535");
    }
    const std::optional<bool> tls = TlsOfPort(*server.port);
    if (tls && server.tls.value_or(*tls) != *tls) {
        throw Failure(Failure::kUsage, "'" + text + "': https goes with port 5989, http with port 5988");
    }
    server.tls = tls ? tls : server.tls;
    return server;
}

} // namespace cimhttp
