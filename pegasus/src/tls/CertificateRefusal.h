#pragma once

#include "http/Endpoint.h"
#include "tls/Fingerprint.h"

#include <Pegasus/Client/FailureMarks.h>

#include <openssl/types.h>

#include <string>

namespace Pegasus::tls {

/// Why a certificate of a server was refused: for programs, and for people as what comes after "the server's
/// certificate was refused: ".
struct CertificateRefusal {
    CertificateRefused mark;
    std::string text;
};

/// What OpenSSL's check found: an error (X509_V_ERR_...) of a certificate that is `depth` steps above the server's in
/// the chain.
CertificateRefusal refusalByCheck(int error, int depth, const X509& certificate, const http::Endpoint& endpoint);

/// The caller's callback refused what the check had accepted.
CertificateRefusal refusalByCallback(const X509& certificate);

/// The server's certificate is not the one that is accepted.
CertificateRefusal refusalByFingerprint(const X509& certificate, const Fingerprint& accepted);

} // namespace Pegasus::tls
