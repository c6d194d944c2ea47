#pragma once

#include "http/Channel.h"
#include "support/IssuedCertificate.h"
#include "support/LoopbackAddress.h"
#include "support/NameService.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"

#include <Pegasus/Client/FailureMarks.h>
#include <Pegasus/Common/Exception.h>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What the tests of TLS share.
namespace Pegasus::http {

using support::IssuedCertificate;
using Extensions = std::vector<std::pair<std::string, std::string>>;

/// What became of a handshake.
struct Outcome {
    std::string text; ///< of the exception; empty when there was none
    std::optional<CertificateRefused> refused;
};

/// A server's options: for these alternative names.
inline IssuedCertificate::Options serverFor(const std::string& names, Extensions more = {}) {
    IssuedCertificate::Options options;
    options.extensions = std::move(more);
    options.extensions.emplace_back("subjectAltName", names);
    return options;
}

/// Real handshakes with a real server, whose certificates a test makes.
class TlsFixture : public ::testing::Test {
  protected:
    TlsFixture() { names_.Answer("server.test", {address_}); }

    std::string write(const std::string& name, const std::string& content) const {
        return directory_.WriteFile(name, content);
    }

    /// Starts a server that shows this certificate and, with it, these.
    Endpoint serve(const IssuedCertificate& certificate, const std::string& host, const std::string& chain = "",
                   support::TlsVersion version = support::TlsVersion::kCurrent,
                   const std::string& clientAuthorityFile = "") {
        server_ = std::make_unique<support::ScriptedServer>(
            [](support::Connection& peer) {
                for (std::string bytes; !(bytes = peer.ReadSome()).empty();) {
                    peer.Write(bytes);
                }
            },
            host == "::1" ? host : address_);
        return {host, server_->ListenTls(0, {write("server.pem", certificate.Pem() + chain),
                                             write("server.key", certificate.KeyPem()), version, clientAuthorityFile})};
    }

    SSLContext trusting(const IssuedCertificate& authority) const {
        return {String(write("trusted.pem", authority.Pem())), nullptr};
    }

    /// Connects, and lets the server return some bytes: some of its refusals come no earlier.
    static Outcome outcomeOf(const Endpoint& endpoint, const SSLContext& tls) {
        const Deadline deadline(std::chrono::seconds(30));
        try {
            const auto channel = Channel::open(endpoint, &tls, deadline);
            channel->write("hello", deadline);
            char buffer[16];
            EXPECT_EQ(channel->readSome(buffer, sizeof buffer, deadline), 5U);
            return {};
        } catch (const SSLException& error) {
            const auto* const mark = dynamic_cast<const CertificateRefused*>(&error);
            return {std::string(error.getMessage().view()), mark != nullptr ? std::make_optional(*mark) : std::nullopt};
        } catch (const ConnectionLost& lost) {
            return {"lost: " + lost.reason, std::nullopt};
        }
    }

    const std::string address_ = support::LoopbackAddress();
    const support::TemporaryDirectory directory_;
    support::NameService names_;
    const IssuedCertificate authority_{IssuedCertificate::Authority("test authority")};
    std::unique_ptr<support::ScriptedServer> server_;
};

} // namespace Pegasus::http
