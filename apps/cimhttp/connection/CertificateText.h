#pragma once

#include <string>
#include <vector>

namespace cimhttp {

struct TlsDetails;

/// What a server shows of itself, as lines for people: subject, names, issuer, validity, fingerprint. All of it is the
/// server's own claim; it is made safe to show, and what is long is cut off, so that it cannot push away the rest.
std::string CertificateText(const TlsDetails& tls);

/// The names that a certificate is for in one line, not more than a few of them.
std::string CertificateNames(const std::vector<std::string>& names);

} // namespace cimhttp
