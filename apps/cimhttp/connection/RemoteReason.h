#pragma once

#include <string>

#include "Failure.h"

namespace cimhttp {

struct Connection;

/// What the reason for a remote failure, as the plug-in's log gives it, means to the user.
class RemoteReason {
  public:
    RemoteReason(std::string text, const Connection& connection);

    /// kNotFound, kAuthentication, kConnection (a time-out, for example) or kServer.
    Failure::ExitStatus Status() const { return status_; }

    /// Whether nothing can be read with this user and password; otherwise kAuthentication is about one thing.
    bool IsLoginRefused() const { return is_login_refused_; }

    /// The reason, with what to try.
    const std::string& Text() const { return text_; }

  private:
    Failure::ExitStatus status_;
    bool is_login_refused_;
    std::string text_;
};

} // namespace cimhttp
