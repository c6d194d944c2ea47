#include "reading/RemoteRequest.h"

#include "convert/CoreLog.h"
#include "host/TVYXException.h"
#include "reading/ReadingReport.h"
#include "reading/RemoteNamespace.h"

namespace NQORVYX20 {

void FailRemotely(ReadingReport& report, const std::string& what, const RemoteFailure& failure) {
    LogError(what + ": " + failure.text);
    report.Fail(failure);
    throw TVYXException(StatusCodeOf(failure));
}

void FailRemotely(RemoteNamespace& nameSpace, const std::string& what, const RemoteFailure& failure) {
    FailRemotely(nameSpace.Report(), what, failure);
}

FindingsReported::~FindingsReported() {
    try {
        namespace_.Incidents();
    } catch (...) {
        // there is no memory for them, of which the operation tells, or the next one
    }
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
