#include "reading/RemoteRequest.h"

#include "convert/CoreLog.h"
#include "host/TVYXException.h"
#include "reading/ReadingReport.h"

namespace NQORVYX20 {

void FailRemotely(ReadingReport& report, const std::string& what, const RemoteFailure& failure) {
    LogError(what + ": " + failure.text);
    report.Fail(failure);
    throw TVYXException(StatusCodeOf(failure));
}

RemoteFailure MalformedAnswer(const std::string& text) {
    RemoteFailure failure;
    failure.kind = RemoteFailure::Kind::kMalformed;
    failure.text = text;
    return failure;
}

RemoteFailure LocalFailure(const std::string& text) {
    RemoteFailure failure;
    failure.text = text;
    return failure;
}

} // namespace NQORVYX20
