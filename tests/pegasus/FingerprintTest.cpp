// A server that is known by the fingerprint of its certificate.

#include "TlsFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using ::testing::HasSubstr;

class FingerprintTest : public TlsFixture {
  protected:
    static SSLContext accepting(const std::string& fingerprint, const String& trustStore = String(),
                                SSLCertificateVerifyFunction* verify = nullptr) {
        SSLContext tls(trustStore, verify);
        tls.setPeerFingerprint(String(fingerprint));
        return tls;
    }

    /// As bad as a certificate can be whose server still has the key.
    static IssuedCertificate::Options bad() {
        auto options =
            serverFor("DNS:other.test", {{"keyUsage", "critical,keyCertSign"}, {"extendedKeyUsage", "clientAuth"}});
        options.validUntilDay = -1;
        options.key = IssuedCertificate::Key::kRsa1024;
        options.digest = "SHA1";
        return options;
    }
};

TEST_F(FingerprintTest, AcceptsTheCertificateWhateverElseIsSaidOfIt) {
    for (const auto version : {support::TlsVersion::kOnly12, support::TlsVersion::kOnly13}) {
        const IssuedCertificate certificate(bad());
        const Endpoint endpoint = serve(certificate, "server.test", "", version);
        EXPECT_EQ(outcomeOf(endpoint, accepting(certificate.Fingerprint())).text, "");
        EXPECT_NE(outcomeOf(endpoint, trusting(certificate)).text, "") << "it is bad for who looks at the rest";
    }
}

TEST_F(FingerprintTest, IsThatOfTheServersOwnAmongThoseThatItShows) {
    const IssuedCertificate between(IssuedCertificate::Authority("between"), authority_);
    const IssuedCertificate certificate(serverFor("DNS:server.test"), between);
    const Endpoint endpoint = serve(certificate, "server.test", between.Pem() + authority_.Pem());
    EXPECT_EQ(outcomeOf(endpoint, accepting(certificate.Fingerprint())).text, "");
    for (const IssuedCertificate* other : {&between, &authority_}) {
        EXPECT_THAT(outcomeOf(endpoint, accepting(other->Fingerprint())).text, HasSubstr("its fingerprint is"));
    }
}

TEST_F(FingerprintTest, RefusesAnyOtherCertificateAndShowsBoth) {
    const IssuedCertificate accepted(serverFor("DNS:server.test"), authority_);
    const IssuedCertificate certificate(serverFor("DNS:server.test"), authority_);
    for (const auto version : {support::TlsVersion::kOnly12, support::TlsVersion::kOnly13}) {
        const Endpoint endpoint = serve(certificate, "server.test", "", version);
        const Outcome outcome = outcomeOf(endpoint, accepting(accepted.Fingerprint()));
        EXPECT_EQ(outcome.text, endpoint.text() + ": the server's certificate was refused: its fingerprint is " +
                                    certificate.Fingerprint() + " and not " + accepted.Fingerprint());
        ASSERT_TRUE(outcome.refused);
        EXPECT_EQ(outcome.refused->getReason(), CertificateRefused::OTHER_FINGERPRINT);
        EXPECT_EQ(outcome.refused->getCertificate().fingerprint, String(certificate.Fingerprint()));
    }
}

TEST_F(FingerprintTest, DecidesWhateverTrustStoreAndCallbackSay) {
    const IssuedCertificate good(serverFor("DNS:server.test"), authority_);
    const IssuedCertificate other(bad());
    const String trustStore = trusting(authority_).getTrustStore();
    const Endpoint endpoint = serve(good, "server.test");
    EXPECT_TRUE(outcomeOf(endpoint, accepting(other.Fingerprint(), trustStore)).refused);
    EXPECT_TRUE(outcomeOf(endpoint, accepting(other.Fingerprint(), String(), [](SSLCertificateInfo&) { return true; }))
                    .refused);
    EXPECT_EQ(
        outcomeOf(endpoint, accepting(good.Fingerprint(), trustStore, [](SSLCertificateInfo&) { return false; })).text,
        "");
    EXPECT_EQ(outcomeOf(serve(other, "server.test"), accepting(other.Fingerprint(), trustStore)).text, "");
}

TEST_F(FingerprintTest, MayBeWrittenInAnyCaseWithAndWithoutColons) {
    const IssuedCertificate certificate(serverFor("DNS:server.test"));
    const Endpoint endpoint = serve(certificate, "server.test");
    std::string text = certificate.Fingerprint();
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    EXPECT_EQ(outcomeOf(endpoint, accepting(text)).text, "");
    text.erase(std::remove(text.begin(), text.end(), ':'), text.end());
    EXPECT_EQ(outcomeOf(endpoint, accepting(text)).text, "");
}

TEST_F(FingerprintTest, IsRefusedBeforeAnyConnectionWhenItIsMalformed) {
    const std::string good = IssuedCertificate(serverFor("DNS:server.test")).Fingerprint();
    support::ScriptedServer server([](support::Connection& peer) { peer.WaitForPeerClose(); });
    const Endpoint endpoint(server.Address(), server.Listen(0));
    for (const std::string& text :
         {std::string("x"), good.substr(3), good.substr(0, good.size() - 1), good + ":", good + ":00", ":" + good,
          "G" + good.substr(1), "0:" + good.substr(1), good + " ", "sha256:" + good}) {
        EXPECT_EQ(outcomeOf(endpoint, accepting(text)).text,
                  "a fingerprint is 64 hexadecimal digits, with or without colons between the pairs, and not \"" +
                      text + '"');
    }
    EXPECT_EQ(server.ConnectionCount(), 0U);
}

} // namespace
