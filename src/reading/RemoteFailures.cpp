#include "reading/RemoteFailures.h"

#if __has_include(<Pegasus/Client/FailureMarks.h>)
#include <Pegasus/Client/FailureMarks.h>
#define CIMHTTP_HAS_FAILURE_MARKS 1
#endif

#include "convert/RemoteText.h"
#include "reading/LimitExceeded.h"

namespace NQORVYX20 {

namespace {

using Kind = RemoteFailure::Kind;

constexpr unsigned kUnauthorized = 401;
constexpr unsigned kForbidden = 403;
constexpr unsigned kNotImplemented = 501;

template <typename Type>
bool Is(const Pegasus::Exception& exception) {
    return dynamic_cast<const Type*>(&exception) != nullptr;
}

/// What the project's own client library says of an exception beyond its type. Another library says nothing.
bool MarkedKind(const Pegasus::Exception& exception, Kind& kind) {
#ifdef CIMHTTP_HAS_FAILURE_MARKS
    if (Is<Pegasus::ExceedsLimit>(exception)) {
        kind = Kind::kLimit;
    } else if (Is<Pegasus::PeerSpeaksTls>(exception)) {
        kind = Kind::kTls;
    } else if (Is<Pegasus::ClosedWithoutAnswer>(exception)) {
        kind = Kind::kClosed;
    } else {
        return false;
    }
    return true;
#else
    (void)exception;
    (void)kind;
    return false;
#endif
}

#ifdef CIMHTTP_HAS_FAILURE_MARKS

using Mark = Pegasus::CertificateRefused;

CertificateRefusal::Reason ReasonOf(Mark::Reason reason) {
    using Reason = CertificateRefusal::Reason;
    switch (reason) {
    case Mark::EXPIRED:
        return Reason::kExpired;
    case Mark::NOT_YET_VALID:
        return Reason::kNotYetValid;
    case Mark::UNKNOWN_ISSUER:
        return Reason::kUnknownIssuer;
    case Mark::SELF_SIGNED:
        return Reason::kSelfSigned;
    case Mark::WRONG_NAME:
        return Reason::kWrongName;
    case Mark::OTHER_FINGERPRINT:
        return Reason::kOtherFingerprint;
    case Mark::UNSUITABLE:
        return Reason::kUnsuitable;
    default:
        return Reason::kOther;
    }
}

ServerCertificate CertificateOf(const Pegasus::PeerCertificate& peer) {
    ServerCertificate certificate;
    certificate.subject = ToStdString(peer.subject);
    certificate.issuer = ToStdString(peer.issuer);
    for (Pegasus::Uint32 i = 0; i < peer.names.size(); ++i) {
        certificate.names.push_back(ToStdString(peer.names[i]));
    }
    certificate.validFrom = ToStdString(peer.validFrom);
    certificate.validUntil = ToStdString(peer.validUntil);
    certificate.fingerprint = ToStdString(peer.fingerprint);
    return certificate;
}

#endif

/// Why the server's certificate was refused, where it was; another library than the project's own does not say.
std::optional<CertificateRefusal> RefusalIn(const Pegasus::Exception& exception) {
#ifdef CIMHTTP_HAS_FAILURE_MARKS
    if (const auto* const mark = dynamic_cast<const Mark*>(&exception)) {
        return CertificateRefusal{ReasonOf(mark->getReason()), CertificateOf(mark->getCertificate())};
    }
#else
    (void)exception;
#endif
    return std::nullopt;
}

Kind KindOf(const Pegasus::Exception& exception) {
    Kind kind = Kind::kOther;
    if (MarkedKind(exception, kind)) {
        return kind;
    }
    if (Is<LimitExceeded>(exception)) {
        return Kind::kLimit;
    }
    if (Is<Pegasus::InvalidLocatorException>(exception)) {
        return Kind::kNameUnknown;
    }
    if (Is<Pegasus::CannotConnectException>(exception)) {
        return Kind::kRefused;
    }
    if (Is<Pegasus::NotConnectedException>(exception)) {
        return Kind::kNotConnected;
    }
    if (Is<Pegasus::SSLException>(exception)) {
        return Kind::kTls;
    }
    if (Is<Pegasus::ConnectionTimeoutException>(exception)) {
        return Kind::kTimeOut;
    }
    if (Is<Pegasus::CIMClientMalformedHTTPException>(exception)) {
        return Kind::kNotCim;
    }
    if (Is<Pegasus::CIMClientXmlException>(exception) || Is<Pegasus::CIMClientResponseException>(exception)) {
        return Kind::kMalformed;
    }
    return Kind::kOther;
}

} // namespace

RemoteFailure RemoteFailureOf(const Pegasus::Exception& exception) {
    RemoteFailure failure;
    failure.text = MessageOf(exception);
    if (const auto* const cim = dynamic_cast<const Pegasus::CIMException*>(&exception)) {
        failure.kind = Kind::kCimStatus;
        failure.cimStatus = static_cast<unsigned>(cim->getCode());
    } else if (const auto* const http = dynamic_cast<const Pegasus::CIMClientHTTPErrorException*>(&exception)) {
        failure.httpStatus = http->getCode();
        const bool isLogin = failure.httpStatus == kUnauthorized || failure.httpStatus == kForbidden;
        failure.kind = isLogin ? Kind::kLogin : Kind::kHttp;
    } else {
        failure.kind = KindOf(exception);
        failure.refusal = RefusalIn(exception);
    }
    return failure;
}

const Pegasus::String& StatementOf(const Pegasus::Exception& exception) {
#ifdef CIMHTTP_HAS_FAILURE_MARKS
    if (const auto* const refusal = dynamic_cast<const Pegasus::RefusedByServer*>(&exception)) {
        return refusal->getStatement();
    }
#endif
    return exception.getMessage();
}

std::string MessageOf(const Pegasus::Exception& exception) { return ToStdString(StatementOf(exception)); }

TVYXStatusCode::EStatusCode StatusCodeOf(const RemoteFailure& failure) {
    const bool isAbsent = failure.kind == Kind::kCimStatus &&
                          (failure.cimStatus == static_cast<unsigned>(Pegasus::CIM_ERR_NOT_FOUND) ||
                           failure.cimStatus == static_cast<unsigned>(Pegasus::CIM_ERR_INVALID_CLASS));
    return isAbsent ? TVYXStatusCode::eNotFound : TVYXStatusCode::eRemoteConnectionFailed;
}

bool IsConnectionAtFault(const RemoteFailure& failure) {
    switch (failure.kind) {
    case Kind::kHttp:
    case Kind::kNotCim:
    case Kind::kMalformed:
    case Kind::kLimit:
    case Kind::kCimStatus:
    case Kind::kOther:
        return false;
    default:
        return true;
    }
}

bool IsOperationUnsupported(const RemoteFailure& failure) {
    return (failure.kind == Kind::kCimStatus &&
            failure.cimStatus == static_cast<unsigned>(Pegasus::CIM_ERR_NOT_SUPPORTED)) ||
           (failure.kind == Kind::kHttp && failure.httpStatus == kNotImplemented);
}

} // namespace NQORVYX20
