#pragma once

#include "Failure.h"
#include "cimhttp/RemoteFailure.h"

#include <string>

namespace cimhttp {

struct Connection;

// Status codes of CIM (DSP0200), of which a RemoteFailure tells.
constexpr unsigned kCimAccessDenied = 2;
constexpr unsigned kCimInvalidNamespace = 3;
constexpr unsigned kCimInvalidParameter = 4;
constexpr unsigned kCimInvalidClass = 5;
constexpr unsigned kCimNotFound = 6;
constexpr unsigned kCimNotSupported = 7;

/// What a remote failure means to the user, by its kind.
class RemoteReason {
  public:
    RemoteReason(const NQORVYX20::RemoteFailure& failure, const Connection& connection);

    /// kNotFound, kAuthentication, kConnection (a time-out, for example) or kServer.
    Failure::ExitStatus Status() const { return status_; }

    /// Whether nothing can be read with this user and password; otherwise kAuthentication is about one thing.
    bool IsLoginRefused() const { return isLoginRefused_; }

    /// The reason, with what to try.
    const std::string& Text() const { return text_; }

  private:
    Failure::ExitStatus status_;
    bool isLoginRefused_;
    std::string text_;
};

} // namespace cimhttp
