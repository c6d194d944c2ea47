// TLS as a program sees it that is linked to the library.

#include "Texts.h"
#include "support/IssuedCertificate.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/FailureMarks.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace {

using namespace Pegasus;
using support::Connection;
using support::IssuedCertificate;
using support::TlsVersion;
using ::testing::HasSubstr;

/// A client and a server that answers each request with an HTTP error and closes.
class ClientTlsTest : public ::testing::Test {
  protected:
    ClientTlsTest() { client_.setTimeout(120000); }

    void serve(TlsVersion version = TlsVersion::kCurrent, const std::string& clientAuthorityFile = "") {
        port_ = server_.ListenTls(0, {write("server.pem", certificate_.Pem()),
                                      write("server.key", certificate_.KeyPem()), version, clientAuthorityFile});
    }

    std::string write(const std::string& name, const std::string& content) const {
        return directory_.WriteFile(name, content);
    }

    void connect(const SSLContext& tls) { client_.connect(String(server_.Address()), port_, tls, "", ""); }

    void ask() { client_.enumerateInstances(CIMNamespaceName("root/cimv2"), CIMName("A")); }

    void askInVain() { EXPECT_THROW(ask(), CIMClientHTTPErrorException); }

    SSLContext accepting(const IssuedCertificate& certificate) const {
        SSLContext tls(String(), nullptr);
        tls.setPeerFingerprint(String(certificate.Fingerprint()));
        return tls;
    }

    const support::TemporaryDirectory directory_;
    const IssuedCertificate certificate_{IssuedCertificate::Options{}};
    std::atomic<int> resumed_{0};
    support::ScriptedServer server_{[this](Connection& peer) {
        if (peer.ReadRequest()) {
            resumed_ += peer.IsResumed() ? 1 : 0;
            peer.Write("HTTP/1.1 500 No\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
        }
    }};
    std::uint16_t port_ = 0;
    CIMClient client_;
};

TEST_F(ClientTlsTest, ARefusedCertificateMarksTheExceptionWithReasonAndCertificate) {
    serve();
    try {
        connect(accepting(IssuedCertificate(IssuedCertificate::Options{})));
        FAIL() << "no exception";
    } catch (const Exception& error) {
        EXPECT_NE(dynamic_cast<const SSLException*>(&error), nullptr);
        const auto* const refused = dynamic_cast<const CertificateRefused*>(&error);
        ASSERT_NE(refused, nullptr);
        EXPECT_EQ(refused->getReason(), CertificateRefused::OTHER_FINGERPRINT);
        EXPECT_EQ(refused->getCertificate().fingerprint, String(certificate_.Fingerprint()));
    }
    connect(accepting(certificate_));
}

TEST_F(ClientTlsTest, AnotherFailureOfTlsIsNotMarked) {
    try {
        connect(SSLContext("/no/such/store", nullptr));
        FAIL() << "no exception";
    } catch (const SSLException& error) {
        EXPECT_EQ(dynamic_cast<const CertificateRefused*>(&error), nullptr);
    }
}

TEST_F(ClientTlsTest, AServerThatWantsACertificateSaysSoAtTheLatestToTheFirstOperation) {
    const std::string authorities = write("clients.pem", certificate_.Pem());
    for (const TlsVersion version : {TlsVersion::kOnly12, TlsVersion::kOnly13}) {
        serve(version, authorities);
        const auto message = MessageOf<SSLException>([&] {
            connect(accepting(certificate_));
            ask();
        });
        EXPECT_THAT(message, HasSubstr(": the server wants a certificate of the client's (")) << message;
        client_.disconnect();
    }
}

TEST_F(ClientTlsTest, SessionsAreResumedUntilTheClientDisconnects) {
    serve();
    for (int connects = 1; connects <= 2; ++connects) {
        connect(accepting(certificate_));
        askInVain();
        askInVain();
        EXPECT_EQ(resumed_, connects) << "one of two each time";
        client_.disconnect();
    }
}

} // namespace
