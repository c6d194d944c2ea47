#pragma once

#include "provider/ConnectionOptions.h"

#include <Pegasus/Client/CIMClient.h>

#include <string>

namespace NQORVYX20 {

/// Why the client library cannot do what the options ask of an encrypted connection: a sentence. Empty when it can, as
/// the project's own always can. OpenPegasus knows no fingerprints, and never compares a certificate with the host's
/// name: what it would call verified is not.
std::string UnsupportedIn(const ConnectionOptions& options);

/// How an encrypted connection verifies its server, and the certificate that it shows; without such options it does
/// neither.
Pegasus::SSLContext SslContextOf(const ConnectionOptions& options);

} // namespace NQORVYX20
