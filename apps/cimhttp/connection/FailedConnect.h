#pragma once

#include <string>

namespace cimhttp {

struct Connection;
class PluginAccess;

/// Why there is no connection to a server, in words for the user: what failed and what to try. `reason` says what the
/// plug-in found; where looking at the server's name and ports tells more, that takes its place.
/// To leave out TLS is never advised to those who log in, or who verify the server.
/// Takes a second for each of the two ports at most, beside the time for looking up the name; looks at nothing where
/// the connection's time is over.
std::string ExplainFailedConnect(const PluginAccess& access, const Connection& connection, const std::string& reason);

/// What to try when a server ends a TLS connection because the user has shown no certificate, to be said after the
/// reason; empty where that is not so. Looks at the server, for a second in each step.
std::string CertificateAdvice(const PluginAccess& access, const Connection& connection);

} // namespace cimhttp
