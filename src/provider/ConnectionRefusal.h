#pragma once

#include "cimhttp/RemoteFailure.h"

#include <stdexcept>
#include <string>

namespace NQORVYX20 {

/// A connection that is not attempted, since its options do not allow it.
class ConnectionRefusal : public std::runtime_error {
  public:
    ConnectionRefusal(RemoteFailure::Kind kind, const std::string& why) : std::runtime_error(why), kind_(kind) {}

    RemoteFailure Failure() const {
        RemoteFailure failure;
        failure.kind = kind_;
        failure.text = what();
        return failure;
    }

  private:
    RemoteFailure::Kind kind_;
};

} // namespace NQORVYX20
