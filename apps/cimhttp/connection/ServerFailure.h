#pragma once

#include "Failure.h"
#include "cimhttp/RemoteFailure.h"

#include <string>
#include <utility>

namespace cimhttp {

/// A failure of the server, or of the way to it, with what the plug-in says of it.
class ServerFailure : public Failure {
  public:
    ServerFailure(ExitStatus status, const std::string& text, NQORVYX20::RemoteFailure reason)
        : Failure(status, text), reason_(std::move(reason)) {}

    const NQORVYX20::RemoteFailure& Reason() const { return reason_; }

  private:
    NQORVYX20::RemoteFailure reason_;
};

} // namespace cimhttp
