#include "reading/InstancePortions.h"

#include "convert/CoreLog.h"
#include "convert/RemoteText.h"
#include "reading/LimitExceeded.h"
#include "reading/RemoteFailures.h"

#include <chrono>
#include <utility>

namespace NQORVYX20 {

namespace {

using Clock = std::chrono::steady_clock;

/// A server may make a client wait by them, but not for ever.
constexpr unsigned kMaxEmptyPortions = 100;

/// Whether this is how a server speaks of an operation that it does not know. Where it means something else, the old
/// operation brings it to light.
bool HasNoPulls(const Pegasus::Exception& exception) {
    const RemoteFailure failure = RemoteFailureOf(exception);
    const auto says = [&](Pegasus::CIMStatusCode code) {
        return failure.kind == RemoteFailure::Kind::kCimStatus && failure.cimStatus == static_cast<unsigned>(code);
    };
    return IsOperationUnsupported(failure) || says(Pegasus::CIM_ERR_FAILED) || says(Pegasus::CIM_ERR_NOT_FOUND) ||
           says(Pegasus::CIM_ERR_METHOD_NOT_FOUND);
}

/// Whether the server has answered, and knows nothing of a failure.
bool IsReadInVain(RemoteFailure::Kind kind) {
    return kind == RemoteFailure::Kind::kMalformed || kind == RemoteFailure::Kind::kLimit;
}

} // namespace

InstancePortions::InstancePortions(RemoteServer& server, std::string className,
                                   const Pegasus::CIMPropertyList& properties)
    : fServer(server), fClassName(std::move(className)), fProperties(properties) {}

Pegasus::Array<Pegasus::CIMInstance> InstancePortions::Next() {
    const bool isNew = std::exchange(fState, State::kEnded) == State::kNew; // unless all goes well
    const auto begin = Clock::now();
    auto instances = isNew ? First() : Further();
    fSize.Took(instances.size(), Clock::now() - begin);
    fState = fEnumeration.isAtEnd ? State::kEnded : State::kOpen;
    fEmptyPortions = instances.size() == 0 ? fEmptyPortions + 1 : 0;
    if (fEmptyPortions > kMaxEmptyPortions) {
        throw LimitExceeded("the server sends one portion of an enumeration after the other that has no instances");
    }
    return instances;
}

Pegasus::Array<Pegasus::CIMInstance> InstancePortions::First() {
    if (fServer.MayPull()) {
        try {
            return fServer.OpenWholeInstances(fEnumeration, fClassName, fProperties, fSize.Next());
        } catch (const Pegasus::Exception& exception) {
            if (!HasNoPulls(exception)) {
                throw;
            }
            fServer.DoNotPull();
        }
    }
    fEnumeration.isAtEnd = true;
    return fServer.EnumerateWholeInstances(fClassName, fProperties);
}

Pegasus::Array<Pegasus::CIMInstance> InstancePortions::Further() {
    try {
        return fServer.PullInstances(fEnumeration, fSize.Next());
    } catch (const Pegasus::Exception& exception) {
        if (IsReadInVain(RemoteFailureOf(exception).kind)) {
            fState = State::kOpen;
            Close();
        }
        throw;
    }
}

void InstancePortions::Close() noexcept {
    if (std::exchange(fState, State::kEnded) != State::kOpen) {
        return;
    }
    try {
        fServer.CloseEnumeration(fEnumeration);
    } catch (const Pegasus::Exception& exception) {
        try {
            LogDebug("the enumeration of " + fClassName + " was not closed: " + ToStdString(exception.getMessage()));
        } catch (...) { // then nobody is told
        }
    } catch (...) { // the server closes it by itself
    }
}

} // namespace NQORVYX20
