#include "reading/InstanceArrival.h"

#include <limits>
#include <utility>

namespace NQORVYX20 {

namespace {

constexpr Pegasus::Uint32 kAtOnce = 128;
constexpr Pegasus::Uint32 kAhead = 256;

} // namespace

Pegasus::Array<Pegasus::CIMInstance> InstanceArrival::Next() {
    if (readAhead_.size() != 0) {
        return std::exchange(readAhead_, {});
    }
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    return arriving_->next(kAtOnce);
}

bool InstanceArrival::EndsSoon() {
    ReadAhead(kAhead);
    return !arriving_->isReceiving();
}

void InstanceArrival::ReadAll() { ReadAhead(std::numeric_limits<Pegasus::Uint32>::max()); }

void InstanceArrival::ReadAhead(Pegasus::Uint32 count) {
    while (arriving_->isReceiving() && readAhead_.size() < count) {
        ReadSomeAhead();
    }
}

/// What fails is no failure of the request for which this is read.
void InstanceArrival::ReadSomeAhead() {
    try {
        auto some = arriving_->next(kAtOnce);
        for (Pegasus::Uint32 i = 0; i < some.size(); ++i) {
            readAhead_.append(std::exchange(some[i], {}));
        }
    } catch (...) {
        failure_ = std::current_exception();
        arriving_->close();
    }
}

} // namespace NQORVYX20
