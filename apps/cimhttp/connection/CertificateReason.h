#pragma once

#include "cimhttp/ServerCertificate.h"

#include <string>

namespace cimhttp {

struct Connection;

/// Why the certificate of a server was refused, and what to try. `text` is what the client library says, for a reason
/// that has no name. Nobody is told to do without verification.
std::string ExplainedRefusal(const NQORVYX20::CertificateRefusal& refusal, const Connection& connection,
                             const std::string& text);

} // namespace cimhttp
