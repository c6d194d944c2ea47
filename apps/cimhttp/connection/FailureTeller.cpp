#include "connection/FailureTeller.h"

#include "access/PluginAccess.h"
#include "connection/Connection.h"
#include "connection/FailedConnect.h"
#include "connection/RemoteReason.h"
#include "host/TVYXException.h"
#include "text/WordList.h"

namespace cimhttp {

using NQORVYX20::RemoteFailure;
using Kind = RemoteFailure::Kind;

RemoteFailure FailureTeller::ReasonOf(const NQORVYX20::TVYXException& exception,
                                      NQORVYX20::ICIMNamespace& nameSpace) const {
    RemoteFailure unknown;
    unknown.text = exception.what();
    return access_.LastFailure(nameSpace).value_or(unknown);
}

Failure FailureTeller::NotConnected(const RemoteFailure& failure) const {
    if (failure.refusal || failure.kind == Kind::kPolicy) { // about which the ports have nothing to say
        return {Failure::kConnection,
                "no connection to " + connection_.Url() + ": " + RemoteReason(failure, connection_).Text()};
    }
    return NoConnection(failure.text + AdviceAbout(failure));
}

Failure FailureTeller::ConnectTimedOut() const {
    const auto seconds = static_cast<std::size_t>(connection_.ConnectTimeout().count());
    return NoConnection("it took longer than " + Counted(seconds, "second", "seconds"));
}

Failure FailureTeller::NoConnection(const std::string& reason) const {
    return {Failure::kConnection,
            "no connection to " + connection_.Url() + ": " + ExplainFailedConnect(access_, connection_, reason)};
}

std::string FailureTeller::AdviceAbout(const RemoteFailure& failure) const {
    const bool isEnded = failure.kind == Kind::kTls || failure.kind == Kind::kClosed;
    return isEnded && !failure.refusal ? CertificateAdvice(access_, connection_) : std::string();
}

void FailureTeller::Fail(const std::string& what, const RemoteFailure& failure) const {
    const RemoteReason reason(failure, connection_);
    const std::string text = what + ": " + reason.Text() + AdviceAbout(failure);
    if (reason.IsLoginRefused()) {
        throw LoginFailure(text);
    }
    throw ServerFailure(reason.Status(), text, failure);
}

void FailureTeller::FailUnlessAnswered(const std::string& what, const RemoteFailure& failure) const {
    if (failure.kind != Kind::kCimStatus && failure.kind != Kind::kHttp) {
        Fail(what, failure);
    }
}

} // namespace cimhttp
