#pragma once

#include "access/ServerProbe.h"
#include "connection/Connection.h"

#include <functional>

namespace cimhttp {

struct Options;
class ProgressWait;
class Plugin;

/// Makes sure that an encrypted connection goes to the right server, before it is made. A server that the user knows is
/// expected to have the certificate that it had. About any other that nothing verifies, the user, who is shown its
/// certificate, is asked on the terminal, and a yes is kept. What was shown is what the returned connection accepts,
/// and nothing else. Where the machine's policy verifies the server, nobody is asked.
///
/// Without a terminal, a server that is not known stays unverified: see IsVerified().
///
/// Nor is anybody asked about one of several servers: it fails where the user would have to be asked.
///
/// Throws Failure(kConnection) when the user does not trust the server, when its certificate cannot be looked at, and,
/// with --verify, where nothing verifies it; then nothing has been sent.
Connection Trusted(const Plugin& plugin, const Connection& connection, const Options& options,
                   const ProgressWait& wait);

/// Whether to trust a server that nothing verifies and that shows this; what it throws ends the asking.
using TrustQuestion = std::function<bool(const TlsDetails& shown)>;

/// Does so, and puts the question in the place of the one on the terminal, whatever the options say of that.
Connection TrustedBy(const TrustQuestion& ask, const Plugin& plugin, const Connection& connection,
                     const ProgressWait& wait);

/// Whether the server of an encrypted connection is verified.
inline bool IsVerified(const Connection& connection) {
    return connection.tlsSettings.Verifies() || connection.isVerifiedByPolicy;
}

} // namespace cimhttp
