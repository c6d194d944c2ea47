#pragma once

#include <string>
#include <vector>

namespace NQORVYX20 {

/// What a server showed of itself in a TLS handshake. Plain data, all of it the server's own claim.
struct ServerCertificate {
    std::string subject;            ///< as in RFC 2253, `CN=server.example,O=Example`
    std::string issuer;             ///< the name of whoever signed it, in this form too
    std::vector<std::string> names; ///< the host names and addresses that it is for
    std::string validFrom;          ///< in UTC, `2026-11-22T08:00:00Z`
    std::string validUntil;
    std::string fingerprint; ///< SHA-256, 32 pairs of digits in upper case with colons between them
};

/// Why a server's certificate was refused.
struct CertificateRefusal {
    enum class Reason {
        kExpired,
        kNotYetValid,
        kUnknownIssuer,    ///< no authority that is trusted has signed it, or one in between is missing
        kSelfSigned,       ///< it, or the last of its chain, has signed itself and is not trusted
        kWrongName,        ///< the certificate is for other hosts
        kOtherFingerprint, ///< the certificate is not the one that is accepted
        kUnsuitable,       ///< its key or signature is weak, or it is not meant for servers
        kOther             ///< the text says what
    };

    Reason reason = Reason::kOther;
    ServerCertificate certificate; ///< the one at fault: the server's own, or one of its chain
};

} // namespace NQORVYX20
