#pragma once

#include "PluginTest.h"
#include "cimhttp/ContextKeys.h"
#include "support/TestCertificate.h"

#include <string>

/// The SHA-256 of the certificate in a PEM file, in pairs of digits with colons between them.
std::string FingerprintOf(const std::string& file);

/// Servers with certificates, and namespaces that are told how to connect to them.
class TlsTest : public PluginTest {
  protected:
    static constexpr int kHttpPort = 5988;
    static constexpr int kHttpsPort = 5989;
    static constexpr int kOtherPort = 8765;

    TlsTest();

    static boost::shared_ptr<NQORVYX20::TCimHTTPNamespace> Allocated(NQORVYX20::TCIMContext options = {});

    /// The status of connect() to the server, and the failure that comes with it.
    unsigned StatusOn(int port, NQORVYX20::TCIMContext options = {});
    const std::optional<NQORVYX20::RemoteFailure>& Failure() const { return failure_; }
    NQORVYX20::RemoteFailure::Kind FailureKind() const;

    /// Whether a class can be fetched on that port.
    bool IsRead(int port, NQORVYX20::TCIMContext options = {});

    /// A certificate for the server's address.
    const support::TestCertificate& Certificate() const { return certificate_; }

  private:
    const support::TestCertificate certificate_{support::TestCertificate::For(server_.Address())};
    std::optional<NQORVYX20::RemoteFailure> failure_;
};
