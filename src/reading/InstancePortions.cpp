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

/// A server may send empty portions to make a client wait, but not for ever.
constexpr unsigned kMaxEmptyPortions = 100;

/// Whether servers answer so to an operation that they do not know. Where this one means something else, the plain
/// enumeration, which is tried next, shows it.
bool HasNoPulls(const Pegasus::Exception& exception) {
    const RemoteFailure failure = RemoteFailureOf(exception);
    const auto says = [&](Pegasus::CIMStatusCode code) {
        return failure.kind == RemoteFailure::Kind::kCimStatus && failure.cimStatus == static_cast<unsigned>(code);
    };
    return IsOperationUnsupported(failure) || says(Pegasus::CIM_ERR_FAILED) || says(Pegasus::CIM_ERR_NOT_FOUND) ||
           says(Pegasus::CIM_ERR_METHOD_NOT_FOUND);
}

/// Whether the server has answered, and does not know that the client could not use the answer.
bool IsReadInVain(RemoteFailure::Kind kind) {
    return kind == RemoteFailure::Kind::kMalformed || kind == RemoteFailure::Kind::kLimit;
}

} // namespace

InstancePortions::InstancePortions(RemoteServer& server, std::string className,
                                   const Pegasus::CIMPropertyList& properties, std::size_t most)
    : server_(server),
      className_(std::move(className)),
      properties_(properties),
      isHeldInPart_(most != kAll),
      size_(most) {}

Pegasus::Array<Pegasus::CIMInstance> InstancePortions::Next() {
    const bool isNew = std::exchange(state_, State::kEnded) == State::kNew; // unless all goes well
    const auto begin = Clock::now();
    auto instances = isNew ? First() : Further();
    size_.Took(instances.size(), Clock::now() - begin);
    state_ = enumeration_.isAtEnd ? State::kEnded : State::kOpen;
    emptyPortions_ = instances.size() == 0 ? emptyPortions_ + 1 : 0;
    if (emptyPortions_ > kMaxEmptyPortions) {
        throw LimitExceeded("the server sends one portion of an enumeration after the other that has no instances");
    }
    return instances;
}

Pegasus::Array<Pegasus::CIMInstance> InstancePortions::First() {
    if (server_.MayPull()) {
        try {
            return server_.OpenWholeInstances(enumeration_, className_, properties_, size_.Next());
        } catch (const Pegasus::Exception& exception) {
            if (!HasNoPulls(exception)) {
                throw;
            }
            server_.DoNotPull();
        }
    }
    if (isHeldInPart_) {
        arrival_ = server_.BeginWholeInstances(className_, properties_);
        isArriving_ = !arrival_.expired();
    }
    if (isArriving_) {
        return Arrived();
    }
    enumeration_.isAtEnd = true;
    return server_.EnumerateWholeInstances(className_, properties_);
}

Pegasus::Array<Pegasus::CIMInstance> InstancePortions::Arrived() {
    try {
        auto instances = server_.NextInstances(arrival_, enumeration_.isAtEnd);
        if (enumeration_.isAtEnd) {
            server_.EndArrival(arrival_);
        }
        return instances;
    } catch (...) {
        server_.EndArrival(arrival_);
        throw;
    }
}

Pegasus::Array<Pegasus::CIMInstance> InstancePortions::Further() {
    if (isArriving_) {
        return Arrived();
    }
    try {
        return server_.PullInstances(enumeration_, size_.Next());
    } catch (const Pegasus::Exception& exception) {
        if (IsReadInVain(RemoteFailureOf(exception).kind)) {
            state_ = State::kOpen;
            Close();
        }
        throw;
    }
}

void InstancePortions::Close() noexcept {
    if (std::exchange(state_, State::kEnded) != State::kOpen) {
        return;
    }
    if (isArriving_) {
        server_.EndArrival(arrival_);
        return;
    }
    try {
        server_.CloseEnumeration(enumeration_);
    } catch (const Pegasus::Exception& exception) {
        try {
            LogDebug("the enumeration of " + className_ + " was not closed: " + MessageOf(exception));
        } catch (...) { // then it is not reported
        }
    } catch (...) { // the server closes it by itself
    }
}

} // namespace NQORVYX20
