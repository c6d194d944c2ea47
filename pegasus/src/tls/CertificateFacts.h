#pragma once

#include <Pegasus/Client/PeerCertificate.h>

#include <openssl/types.h>

#include <string>
#include <string_view>

namespace Pegasus::tls {

/// A name such as `CN=server.example,O=Example`, as in RFC 2253, in UTF-8.
std::string nameText(const X509_NAME& name);

/// A name in its own order, as "/C=AT/O=Example/CN=server", with escapes for what cannot be shown.
std::string slashedName(const X509_NAME& name);

/// A time in UTC, such as `2026-11-22T08:00:00Z`.
std::string timeText(const ASN1_TIME& time);

/// The text with everything but printable ASCII as `\xx`, so that it can be shown.
std::string printable(std::string_view bytes);

/// All that a certificate tells. Its names are the DNS names and addresses among its alternative names; where there is
/// no DNS name, its common names count as such, as far as they look like one.
PeerCertificate factsOf(const X509& certificate);

} // namespace Pegasus::tls
