// What a server shows below HTTP, step by step.

#include "support/IssuedCertificate.h"
#include "support/LoopbackAddress.h"
#include "support/NameService.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"

#include <Pegasus/Client/ServerProbe.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Pegasus;
using support::Connection;
using support::IssuedCertificate;
using support::LoopbackAddress;
using support::ScriptedServer;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr Uint32 kAmple = 30000;
constexpr Uint32 kShort = 100;
constexpr Uint32 kClosedPort = 1;

class ServerProbeTest : public ::testing::Test {
  protected:
    Uint32 listenTls(const IssuedCertificate& certificate, const std::string& clientAuthorityFile = "") {
        return server_.ListenTls(0, {folder_.WriteFile("server.pem", certificate.Pem()),
                                     folder_.WriteFile("server.key", certificate.KeyPem()),
                                     support::TlsVersion::kCurrent, clientAuthorityFile});
    }

    static ServerProbe probe(Uint32 port, ServerProbe::Depth depth, Uint32 milliseconds = kAmple) {
        return ServerProbe::of(String(LoopbackAddress()), port, depth, milliseconds);
    }

    const support::TemporaryDirectory folder_;
    const IssuedCertificate certificate_{IssuedCertificate::Options{}};
    ScriptedServer server_{[](Connection& peer) { peer.ReadSome(); }};
};

std::string text(const String& remote) { return std::string(remote.view()); }

} // namespace

TEST_F(ServerProbeTest, AnUnknownHostIsToldFromAPortWhereNothingListens) {
    support::NameService names;
    names.Answer("no-such-host.invalid", {});
    const ServerProbe unknown = ServerProbe::of("no-such-host.invalid", 5988, ServerProbe::PORT, kAmple);
    EXPECT_EQ(unknown.result, ServerProbe::UNKNOWN_HOST);
    EXPECT_THAT(text(unknown.reason), HasSubstr("no-such-host.invalid"));
    const ServerProbe closed = probe(kClosedPort, ServerProbe::TLS);
    EXPECT_EQ(closed.result, ServerProbe::REFUSED);
    EXPECT_THAT(text(closed.reason), HasSubstr("refused"));
    EXPECT_FALSE(closed.tls.showsCertificate);
}

TEST_F(ServerProbeTest, ItGoesNoFurtherThanAsked) {
    const ServerProbe name = probe(kClosedPort, ServerProbe::NAME);
    EXPECT_EQ(name.result, ServerProbe::REACHED);
    ASSERT_EQ(name.addresses.size(), 1U);
    EXPECT_EQ(text(name.addresses[0]), LoopbackAddress());
    const ServerProbe port = probe(listenTls(certificate_), ServerProbe::PORT);
    EXPECT_EQ(port.result, ServerProbe::REACHED);
    EXPECT_GT(port.connectTime, 0U);
    EXPECT_EQ(text(port.tls.version), "");
}

TEST_F(ServerProbeTest, AHandshakeShowsTheCertificateWhoeverHasIssuedIt) {
    const TlsProbe tls = probe(listenTls(certificate_), ServerProbe::TLS).tls;
    EXPECT_EQ(text(tls.failure), "");
    EXPECT_EQ(text(tls.version), "TLSv1.3");
    EXPECT_THAT(text(tls.cipher), StartsWith("TLS_"));
    EXPECT_TRUE(tls.showsCertificate);
    EXPECT_EQ(text(tls.certificate.fingerprint), certificate_.Fingerprint());
    EXPECT_TRUE(tls.isSelfSigned);
    EXPECT_FALSE(tls.asksForCertificate);
}

TEST_F(ServerProbeTest, AServerThatAsksForACertificateIsSeen) {
    const std::string authority = folder_.WriteFile("authority.pem", certificate_.Pem());
    const TlsProbe tls = probe(listenTls(certificate_, authority), ServerProbe::TLS).tls;
    EXPECT_TRUE(tls.asksForCertificate);
    EXPECT_TRUE(tls.showsCertificate);
}

TEST_F(ServerProbeTest, AServerWithoutTlsSaysSoByItsAnswerOrByNone) {
    ScriptedServer plain([](Connection& peer) {
        peer.ReadSome();
        peer.Write("HTTP/1.1 400 Bad Request\r\n\r\n");
    });
    const ServerProbe probed = probe(plain.Listen(0), ServerProbe::TLS);
    EXPECT_EQ(probed.result, ServerProbe::REACHED);
    EXPECT_FALSE(probed.tls.showsCertificate);
    EXPECT_EQ(text(probed.tls.failure), "wrong version number");
}

TEST_F(ServerProbeTest, AServerThatSaysNothingIsNotWaitedForLonger) {
    ScriptedServer silent([](Connection& peer) {
        while (!peer.ReadSome().empty()) {
        }
    });
    EXPECT_EQ(text(probe(silent.Listen(0), ServerProbe::TLS, kShort).tls.failure),
              "the server does not answer in time");
}
