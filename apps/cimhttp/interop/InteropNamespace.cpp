#include "interop/InteropNamespace.h"

namespace cimhttp {

namespace {

using NQORVYX20::RemoteFailure;

// Status codes of CIM (DSP0200).
constexpr unsigned kInvalidNamespace = 3;
constexpr unsigned kInvalidClass = 5;
constexpr unsigned kNotFound = 6;
constexpr unsigned kNotSupported = 7;

constexpr unsigned kHttpNotImplemented = 501;

} // namespace

const std::vector<std::string>& InteropNames() {
    static const std::vector<std::string> kNames{"interop", "root/interop", "root/PG_InterOp"};
    return kNames;
}

bool SaysThatThereIsNone(const RemoteFailure& failure) {
    const unsigned status = failure.kind == RemoteFailure::Kind::kCimStatus ? failure.cimStatus : 0;
    return status == kInvalidNamespace || status == kInvalidClass || status == kNotFound || IsUnsupported(failure);
}

bool IsUnsupported(const RemoteFailure& failure) {
    return (failure.kind == RemoteFailure::Kind::kCimStatus && failure.cimStatus == kNotSupported) ||
           (failure.kind == RemoteFailure::Kind::kHttp && failure.httpStatus == kHttpNotImplemented);
}

void VainAttempts::Add(const std::string& className, const std::string& nameSpace, const std::string& reason) {
    text_ += (text_.empty() ? "" : "; ") + className + " in " + nameSpace + ": " + reason;
}

} // namespace cimhttp
