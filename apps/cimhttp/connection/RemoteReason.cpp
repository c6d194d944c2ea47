#include "connection/RemoteReason.h"

#include "connection/CertificateText.h"
#include "connection/Connection.h"

namespace cimhttp {

namespace {

using NQORVYX20::RemoteFailure;
using Kind = RemoteFailure::Kind;

// Of HTTP. With the last two, a CIM server says that it cannot make anything of a request (DSP0200).
constexpr unsigned kUnauthorized = 401;
constexpr unsigned kBadRequest = 400;
constexpr unsigned kNotImplemented = 501;

Failure::ExitStatus StatusOfCim(unsigned status) {
    switch (status) {
    case kCimAccessDenied:
        return Failure::kAuthentication;
    case kCimInvalidClass:
    case kCimNotFound:
        return Failure::kNotFound;
    default:
        return Failure::kServer;
    }
}

Failure::ExitStatus StatusOf(const RemoteFailure& failure) {
    switch (failure.kind) {
    case Kind::kNameUnknown:
    case Kind::kRefused:
    case Kind::kNotConnected:
    case Kind::kTls:
    case Kind::kClosed:
    case Kind::kTimeOut:
    case Kind::kPolicy:
        return Failure::kConnection;
    case Kind::kLogin:
        return Failure::kAuthentication;
    case Kind::kLimit:
        return Failure::kIncomplete; // the server's answer is good as far as it goes
    case Kind::kCimStatus:
        return StatusOfCim(failure.cimStatus);
    default:
        return Failure::kServer;
    }
}

std::string ExplainedLogin(const RemoteFailure& failure, const Connection& connection) {
    if (failure.httpStatus != kUnauthorized) {
        return failure.text;
    }
    return connection.user.empty() ? "the server asks who you are: give --user NAME"
                                   : "the server does not accept the user " + connection.user + " with this password";
}

std::string ExplainedHttp(const RemoteFailure& failure) {
    const bool isOfCim = failure.httpStatus == kBadRequest || failure.httpStatus == kNotImplemented;
    return failure.text + (isOfCim ? "" : "; is it a CIM server that answers there?");
}

std::string ExplainedTls(const RemoteFailure& failure, const Connection& connection) {
    if (failure.refusal) {
        return ExplainedRefusal(*failure.refusal, connection, failure.text);
    }
    if (connection.tls) {
        return failure.text;
    }
    return "the server speaks TLS on port " + std::to_string(connection.Port()) +
           (connection.port ? "; try --tls" : "; try --tls, which goes to port 5989");
}

std::string Explained(const RemoteFailure& failure, const Connection& connection) {
    switch (failure.kind) {
    case Kind::kLogin:
        return ExplainedLogin(failure, connection);
    case Kind::kTimeOut:
        return failure.text + "; --timeout SECONDS waits longer";
    case Kind::kTls:
        return ExplainedTls(failure, connection);
    case Kind::kClosed:
        return connection.tls ? failure.text
                              : "the server closed the connection without an answer; if it expects TLS, add --tls";
    case Kind::kHttp:
        return ExplainedHttp(failure);
    case Kind::kCimStatus:
        return failure.text + (failure.cimStatus == kCimInvalidNamespace ? "; --namespace names another" : "");
    default:
        return failure.text;
    }
}

} // namespace

RemoteReason::RemoteReason(const RemoteFailure& failure, const Connection& connection)
    : status_(StatusOf(failure)),
      isLoginRefused_(failure.kind == Kind::kLogin),
      text_(Explained(failure, connection)) {}

} // namespace cimhttp
