#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// A certificate that a server showed in a TLS handshake. All of it is the server's own claim.
struct PeerCertificate {
    String subject; ///< as in RFC 2253, with escapes for what cannot be shown, as in all of these
    String issuer;  ///< the name of whoever signed it
    /// The host names and addresses that it is for; the common name only where there is no DNS name.
    Array<String> names;
    String validFrom; ///< in UTC, `2026-11-22T08:00:00Z`
    String validUntil;
    String fingerprint; ///< SHA-256, pairs of hexadecimal digits in upper case with colons between them
};

} // namespace bundled
} // namespace Pegasus
