#include "connection/RemoteReason.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "connection/Connection.h"

namespace cimhttp {

namespace {

bool HasOneOf(const std::string& text, std::initializer_list<const char*> parts) {
    return std::any_of(parts.begin(), parts.end(),
                       [&](const char* part) { return text.find(part) != std::string::npos; });
}

/// Whether the reason is an answer with this status of HTTP.
bool IsHttpStatus(const std::string& reason, const std::string& status) {
    return reason.find("HTTP") != std::string::npos && reason.find(' ' + status) != std::string::npos;
}

/// Whether the reason is HTTP's; CIM has a status of its own for what a user may not read.
bool HasLoginRefused(const std::string& reason) {
    return !HasOneOf(reason, {"CIM_ERR_"}) && (IsHttpStatus(reason, "401") || IsHttpStatus(reason, "403"));
}

/// The names of CIM's status codes (DSP0200) and the numbers of HTTP's are the same whatever client library the
/// plug-in is built with; the other words are the library's.
Failure::ExitStatus StatusOf(const std::string& reason) {
    if (HasOneOf(reason, {"CIM_ERR_NOT_FOUND", "CIM_ERR_INVALID_CLASS"})) {
        return Failure::kNotFound;
    }
    if (HasOneOf(reason, {"CIM_ERR_ACCESS_DENIED"})) {
        return Failure::kAuthentication;
    }
    if (HasOneOf(reason, {"CIM_ERR_"})) {
        return Failure::kServer;
    }
    if (HasLoginRefused(reason)) {
        return Failure::kAuthentication;
    }
    if (HasOneOf(reason, {" within ", "timed out", "annot connect", "annot resolve", "SSLContext", "TLS"})) {
        return Failure::kConnection;
    }
    return Failure::kServer;
}

std::string Explained(const std::string& reason, const Connection& connection) {
    if (IsHttpStatus(reason, "401")) {
        return connection.user.empty()
                   ? "the server asks who you are: give --user NAME"
                   : "the server does not accept the user " + connection.user + " with this password";
    }
    if (HasOneOf(reason, {" within ", "timed out"})) {
        return reason + "; --timeout SECONDS waits longer";
    }
    if (!connection.tls && HasOneOf(reason, {"SSLContext"})) { // the library's advice to programmers
        return HasOneOf(reason, {"speaks TLS"})
                   ? "the server speaks TLS on port 5988; try --tls, which goes to port 5989"
                   : "the server closed the connection without an answer; if it expects TLS, add --tls";
    }
    if (HasOneOf(reason, {"HTTP error"}) && !HasOneOf(reason, {"CIMError"}) && !HasLoginRefused(reason)) {
        return reason + "; is it a CIM server that answers there?";
    }
    return reason;
}

} // namespace

RemoteReason::RemoteReason(std::string text, const Connection& connection)
    : status_(StatusOf(text)), is_login_refused_(HasLoginRefused(text)), text_(Explained(text, connection)) {}

} // namespace cimhttp
