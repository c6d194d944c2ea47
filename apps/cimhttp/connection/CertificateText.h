#pragma once

#include "cimhttp/ServerCertificate.h"

#include <string>

namespace cimhttp {

struct Connection;
struct TlsDetails;

/// What a server shows of itself, as lines for people: subject, names, issuer, validity, fingerprint. All of it is the
/// server's own claim; it is made safe to show, and what is long is cut off, so that it cannot push away the rest.
std::string CertificateText(const TlsDetails& tls);

/// Why the certificate of a server was refused, and what to try. `text` is what the client library says, for a reason
/// that has no name. It never advises to do without verification.
std::string ExplainedRefusal(const NQORVYX20::CertificateRefusal& refusal, const Connection& connection,
                             const std::string& text);

} // namespace cimhttp
