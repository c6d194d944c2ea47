#include "interop/InteropNamespace.h"

#include "connection/RemoteReason.h"

namespace cimhttp {

namespace {

using NQORVYX20::RemoteFailure;

constexpr unsigned kHttpNotImplemented = 501;

} // namespace

const std::vector<std::string>& InteropNames() {
    static const std::vector<std::string> kNames{"interop", "root/interop", "root/PG_InterOp"};
    return kNames;
}

bool SaysThatThereIsNone(const RemoteFailure& failure) {
    const unsigned status = failure.kind == RemoteFailure::Kind::kCimStatus ? failure.cimStatus : 0;
    return status == kCimInvalidNamespace || status == kCimInvalidClass || status == kCimNotFound ||
           IsUnsupported(failure);
}

bool IsUnsupported(const RemoteFailure& failure) {
    return (failure.kind == RemoteFailure::Kind::kCimStatus && failure.cimStatus == kCimNotSupported) ||
           (failure.kind == RemoteFailure::Kind::kHttp && failure.httpStatus == kHttpNotImplemented);
}

void VainAttempts::Add(const std::string& className, const std::string& nameSpace, const std::string& reason) {
    text_ += (text_.empty() ? "" : "; ") + className + " in " + nameSpace + ": " + reason;
}

} // namespace cimhttp
