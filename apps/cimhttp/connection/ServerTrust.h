#pragma once

#include "connection/Connection.h"

namespace cimhttp {

struct Options;
class ProgressWait;
class Plugin;

/// Makes sure whom an encrypted connection goes to, before it is made. A server that the user knows is expected to have
/// the certificate that it had. About any other that nothing verifies, the user is asked on the terminal, having seen
/// its certificate, and the answer is kept. What was shown is what the returned connection accepts, and nothing else.
/// Where the machine's policy verifies the server, nobody is asked.
///
/// Without a terminal, a server that nobody knows stays unverified: see IsVerified().
///
/// Throws Failure(kConnection) when the user does not trust the server, when its certificate cannot be looked at, and,
/// with --verify, where nothing verifies it; then nothing has been sent.
Connection Trusted(const Plugin& plugin, const Connection& connection, const Options& options,
                   const ProgressWait& wait);

/// Whether something makes sure whom an encrypted connection goes to.
inline bool IsVerified(const Connection& connection) {
    return connection.tlsSettings.Verifies() || connection.isVerifiedByPolicy;
}

} // namespace cimhttp
