#pragma once

#include "cimhttp/ServerCertificate.h"

#include <optional>
#include <string>

namespace NQORVYX20 {

class ICIMNamespace;

/// Why a server could not be read. Plain data, which outlives the namespace.
struct RemoteFailure {
    enum class Kind {
        kNameUnknown,  ///< no address is known for the host's name
        kRefused,      ///< nothing listens there, or the way to it is closed
        kNotConnected, ///< the namespace was never connected
        kTls,          ///< the TLS handshake failed, or the server speaks TLS where it is not expected
        kClosed,       ///< the server closed the connection without an answer
        kTimeOut,      ///< the server did not answer in time
        kLogin,        ///< HTTP 401 or 403: the server does not let the user in
        kHttp,         ///< another HTTP status than 200
        kNotCim,       ///< the answer is not HTTP, breaks off, or is not the HTTP of a CIM operation
        kMalformed,    ///< the answer is not valid CIM-XML, or belongs to another request
        kLimit,        ///< the answer passes a limit, or does not fit into the memory
        kCimStatus,    ///< the server reports a CIM error
        kPolicy,       ///< this machine's policy for connections forbids it, or cannot be read
        kOther
    };

    Kind kind = Kind::kOther;
    unsigned cimStatus = 0;  ///< with kCimStatus, the status code of DSP0200
    unsigned httpStatus = 0; ///< with kLogin and kHttp
    std::string text;        ///< for people: what the client library says; with kCimStatus, what the server says

    std::optional<CertificateRefusal> refusal; ///< with kTls, where it was the server's certificate
};

/// Why the newest operation of a namespace that asked the server, ConnectNamespace among them, could not read it, or
/// not all of it; empty when it could. A copy, which stays as it is. Throws TVYXException eTypeMismatch, after a line
/// in the log, for a namespace that is not one of the plug-in's. Exported by the plug-in, and used from the thread that
/// uses the namespace.
std::optional<RemoteFailure> LastFailure(const ICIMNamespace& nameSpace);

} // namespace NQORVYX20
