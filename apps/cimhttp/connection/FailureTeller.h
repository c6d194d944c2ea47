#pragma once

#include "Failure.h"
#include "HostTypes.h"
#include "cimhttp/RemoteFailure.h"

#include <string>
#include <utility>

namespace cimhttp {

struct Connection;
class PluginAccess;

/// A failure of the server, or of the way to it, with what the plug-in says of it.
class ServerFailure : public Failure {
  public:
    ServerFailure(ExitStatus status, const std::string& text, NQORVYX20::RemoteFailure reason)
        : Failure(status, text), reason_(std::move(reason)) {}

    const NQORVYX20::RemoteFailure& Reason() const { return reason_; }

  private:
    NQORVYX20::RemoteFailure reason_;
};

/// Turns what goes wrong at one server into the Failure that the user reads: it names the thing asked for, the reason
/// and what to try.
class FailureTeller {
  public:
    /// The arguments must outlive the object.
    FailureTeller(const PluginAccess& access, const Connection& connection)
        : access_(access), connection_(connection) {}

    /// Why the operation of the namespace failed that threw the exception.
    NQORVYX20::RemoteFailure ReasonOf(const NQORVYX20::TVYXException& exception,
                                      NQORVYX20::ICIMNamespace& nameSpace) const;

    Failure NotConnected(const NQORVYX20::RemoteFailure& failure) const;

    /// About connecting that took longer than it may.
    Failure ConnectTimedOut() const;

    /// Throws a LoginFailure, or a ServerFailure about `what`.
    [[noreturn]] void Fail(const std::string& what, const NQORVYX20::RemoteFailure& failure) const;

    /// Does so unless the failure is an error that the server answers with.
    void FailUnlessAnswered(const std::string& what, const NQORVYX20::RemoteFailure& failure) const;

  private:
    Failure NoConnection(const std::string& reason) const;

    /// About a server that ends a connection for want of a certificate.
    std::string AdviceAbout(const NQORVYX20::RemoteFailure& failure) const;

    const PluginAccess& access_;
    const Connection& connection_;
};

} // namespace cimhttp
