// Why a server's certificate is refused: the reason, the certificate at fault, and the message for people.

#include "TlsFixture.h"

#include <gmock/gmock.h>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

std::vector<std::string> textsOf(const Array<String>& names) {
    std::vector<std::string> texts;
    for (Uint32 i = 0; i < names.size(); ++i) {
        texts.emplace_back(names[i].view());
    }
    return texts;
}

class CertificateRefusedTest : public TlsFixture {
  protected:
    /// The refusal of a server at server.test that shows this certificate, by a client that trusts the authority.
    Outcome refusalOf(const IssuedCertificate& certificate, const std::string& chain = "") {
        return refusalBy(trusting(authority_), certificate, chain);
    }

    Outcome refusalBy(const SSLContext& tls, const IssuedCertificate& certificate, const std::string& chain = "") {
        const Endpoint endpoint = serve(certificate, "server.test", chain);
        prefix_ = endpoint.text() + ": the server's certificate was refused: ";
        Outcome outcome = outcomeOf(endpoint, tls);
        EXPECT_TRUE(outcome.refused) << outcome.text;
        return outcome;
    }

    std::string prefix_;
};

CertificateRefused::Reason reasonOf(const Outcome& outcome) {
    return outcome.refused ? outcome.refused->getReason() : CertificateRefused::OTHER;
}

std::string subjectOf(const Outcome& outcome) {
    return outcome.refused ? std::string(outcome.refused->getCertificate().subject.view()) : "";
}

TEST_F(CertificateRefusedTest, TellsWhenItExpired) {
    auto options = serverFor("DNS:server.test");
    options.validUntilDay = -1;
    const IssuedCertificate certificate(options, authority_);
    const Outcome outcome = refusalOf(certificate);
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::EXPIRED);
    EXPECT_EQ(outcome.text, prefix_ + "it expired on " + certificate.ValidUntil() + " (certificate has expired)");
}

TEST_F(CertificateRefusedTest, TellsFromWhenOnItIsValid) {
    auto options = serverFor("DNS:server.test");
    options.validFromDay = 1;
    const IssuedCertificate certificate(options, authority_);
    const Outcome outcome = refusalOf(certificate);
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::NOT_YET_VALID);
    EXPECT_EQ(outcome.text,
              prefix_ + "it is not valid before " + certificate.ValidFrom() + " (certificate is not yet valid)");
}

TEST_F(CertificateRefusedTest, TellsWhichIssuerIsUnknown) {
    const IssuedCertificate other(IssuedCertificate::Authority("another authority"));
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:server.test"), other));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNKNOWN_ISSUER);
    EXPECT_EQ(outcome.text, prefix_ + "its issuer CN=another authority is not trusted (unable to get local issuer "
                                      "certificate)");
}

TEST_F(CertificateRefusedTest, TellsWhichIssuerIsUnknownAboveTheServers) {
    const IssuedCertificate other(IssuedCertificate::Authority("another authority"));
    const IssuedCertificate between(IssuedCertificate::Authority("between"), other);
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:server.test"), between), between.Pem());
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNKNOWN_ISSUER);
    EXPECT_EQ(subjectOf(outcome), "CN=between");
    EXPECT_EQ(outcome.text, prefix_ + "the issuer of CN=between, CN=another authority, is not trusted (unable to get "
                                      "local issuer certificate)");
}

TEST_F(CertificateRefusedTest, TellsThatTheTrustedIssuerHasNotSignedIt) {
    const IssuedCertificate impostor(IssuedCertificate::Authority("test authority"));
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:server.test"), impostor));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNKNOWN_ISSUER);
    EXPECT_EQ(outcome.text, prefix_ + "certificate signature failure: the trusted CN=test authority has not signed it");
}

TEST_F(CertificateRefusedTest, TellsThatItIsSignedByItself) {
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:server.test")));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::SELF_SIGNED);
    EXPECT_EQ(outcome.text,
              prefix_ + "it is signed by itself and not among the trusted ones (self-signed certificate)");
}

TEST_F(CertificateRefusedTest, TellsThatTheEndOfItsChainIsSignedByItself) {
    const IssuedCertificate other(IssuedCertificate::Authority("another authority"));
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:server.test"), other), other.Pem());
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::SELF_SIGNED);
    EXPECT_EQ(subjectOf(outcome), "CN=another authority");
    EXPECT_EQ(outcome.text, prefix_ + "that of CN=another authority above it is signed by itself and not among the "
                                      "trusted ones (self-signed certificate in certificate chain)");
}

TEST_F(CertificateRefusedTest, TellsForWhichHostsItIs) {
    const Outcome outcome =
        refusalOf(IssuedCertificate(serverFor("DNS:a.test,DNS:*.b.test,IP:192.0.2.1,IP:2001:db8::1"), authority_));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::WRONG_NAME);
    EXPECT_EQ(outcome.text, prefix_ + "it is for a.test, *.b.test, 192.0.2.1, 2001:db8::1 and not for server.test "
                                      "(hostname mismatch)");
    ASSERT_TRUE(outcome.refused);
    EXPECT_THAT(textsOf(outcome.refused->getCertificate().names),
                ElementsAre("a.test", "*.b.test", "192.0.2.1", "2001:db8::1"));
}

TEST_F(CertificateRefusedTest, TellsForWhichHostsItIsToWhoConnectsToAnAddress) {
    const IssuedCertificate certificate(serverFor("DNS:a.test"), authority_);
    const Outcome outcome = outcomeOf(serve(certificate, address_), trusting(authority_));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::WRONG_NAME);
    EXPECT_THAT(outcome.text, EndsWith("it is for a.test and not for " + address_ + " (IP address mismatch)"));
}

TEST_F(CertificateRefusedTest, CountsACommonNameOnlyWhereThereIsNoOther) {
    auto options = serverFor("IP:192.0.2.1");
    options.commonName = "common.test";
    Outcome outcome = refusalOf(IssuedCertificate(options, authority_));
    EXPECT_THAT(outcome.text, HasSubstr("it is for 192.0.2.1, common.test and not for server.test"));
    options.extensions = {{"subjectAltName", "DNS:a.test"}};
    outcome = refusalOf(IssuedCertificate(options, authority_));
    EXPECT_THAT(outcome.text, HasSubstr("it is for a.test and not for server.test"));
    options.extensions.clear();
    options.commonName = "Server of the Month";
    outcome = refusalOf(IssuedCertificate(options, authority_));
    EXPECT_THAT(outcome.text, HasSubstr("it names no host and is not for server.test"));
}

TEST_F(CertificateRefusedTest, ListsAFewOfManyNamesAndKeepsAll) {
    std::string names = "DNS:0.test";
    for (int i = 1; i < 300; ++i) {
        names += ",DNS:" + std::to_string(i) + ".test";
    }
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor(names), authority_));
    EXPECT_THAT(outcome.text, HasSubstr("0.test, 1.test, 2.test, 3.test, 4.test, 5.test, 6.test, 7.test and 292 more"));
    ASSERT_TRUE(outcome.refused);
    EXPECT_EQ(outcome.refused->getCertificate().names.size(), 300U);
}

TEST_F(CertificateRefusedTest, ShowsNothingThatCouldSteerATerminal) {
    auto options = serverFor("DNS:a\x1b[2J.test");
    options.commonName = "b\x1b[2J";
    const Outcome outcome = refusalOf(IssuedCertificate(options));
    EXPECT_EQ(outcome.text.find('\x1b'), std::string::npos);
    ASSERT_TRUE(outcome.refused);
    EXPECT_EQ(subjectOf(outcome), "CN=b\\1B[2J");
    EXPECT_THAT(textsOf(outcome.refused->getCertificate().names), ElementsAre("a\\1B[2J.test"));
}

TEST_F(CertificateRefusedTest, ShortensWhatIsVeryLong) {
    const std::string name = std::string(60, 'a') + '.';
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:" + name + name + name + name), authority_));
    EXPECT_THAT(outcome.text, HasSubstr("it is for " + (name + name + name + name).substr(0, 200) + "... and not for"));
}

TEST_F(CertificateRefusedTest, TellsThatItIsNotForServers) {
    const Outcome outcome =
        refusalOf(IssuedCertificate(serverFor("DNS:server.test", {{"extendedKeyUsage", "clientAuth"}}), authority_));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNSUITABLE);
    EXPECT_EQ(outcome.text, prefix_ + "it is not meant for servers (unsuitable certificate purpose)");
}

TEST_F(CertificateRefusedTest, TellsThatItsKeyIsWeak) {
    auto options = serverFor("DNS:server.test");
    options.key = IssuedCertificate::Key::kRsa1024;
    const Outcome outcome = refusalOf(IssuedCertificate(options, authority_));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNSUITABLE);
    EXPECT_EQ(outcome.text, prefix_ + "it has a weak key: 1024 bits of RSA (EE certificate key too weak)");
}

TEST_F(CertificateRefusedTest, TellsThatItsSignatureIsWeak) {
    auto options = serverFor("DNS:server.test");
    options.digest = "SHA1";
    const Outcome outcome = refusalOf(IssuedCertificate(options, authority_));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNSUITABLE);
    EXPECT_EQ(outcome.text,
              prefix_ + "it has a weak signature: ecdsa-with-SHA1 (CA signature digest algorithm too weak)");
}

TEST_F(CertificateRefusedTest, TellsThatItsIssuerIsNoAuthority) {
    auto options = serverFor("DNS:between.test", {{"basicConstraints", "CA:FALSE"}});
    options.commonName = "between";
    const IssuedCertificate between(options, authority_);
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:server.test"), between), between.Pem());
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNSUITABLE);
    EXPECT_EQ(outcome.text,
              prefix_ + "that of CN=between above it is not meant to sign others (invalid CA certificate)");
}

TEST_F(CertificateRefusedTest, TellsThatAnAuthorityMayNotSignSoLongAChain) {
    auto options = IssuedCertificate::Authority("short");
    options.extensions[0].second = "critical,CA:TRUE,pathlen:0";
    const IssuedCertificate shortOne(options, authority_);
    const IssuedCertificate below(IssuedCertificate::Authority("below"), shortOne);
    const Outcome outcome =
        refusalOf(IssuedCertificate(serverFor("DNS:server.test"), below), below.Pem() + shortOne.Pem());
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNSUITABLE);
    EXPECT_EQ(outcome.text, prefix_ + "that of CN=short above it is not meant to sign so long a chain (path length "
                                      "constraint exceeded)");
}

TEST_F(CertificateRefusedTest, TellsThatAnAuthorityMayNotSignItsNames) {
    const IssuedCertificate between(
        IssuedCertificate::Authority("between", {{"nameConstraints", "critical,permitted;DNS:other.test"}}),
        authority_);
    const Outcome outcome = refusalOf(IssuedCertificate(serverFor("DNS:server.test"), between), between.Pem());
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::UNSUITABLE);
    EXPECT_EQ(outcome.text,
              prefix_ + "it has names that an authority above may not sign (permitted subtree violation)");
}

TEST_F(CertificateRefusedTest, TellsWhatElseIsWrongInTheWordsOfOpenSsl) {
    const Outcome outcome = refusalOf(
        IssuedCertificate(serverFor("DNS:server.test", {{"1.2.3.4", "critical,ASN1:UTF8String:x"}}), authority_));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::OTHER);
    EXPECT_EQ(outcome.text, prefix_ + "unhandled critical extension");
}

TEST_F(CertificateRefusedTest, TellsThatTheCallbackRefusedIt) {
    const SSLContext tls(trusting(authority_).getTrustStore(), [](SSLCertificateInfo&) { return false; });
    const Outcome outcome = refusalBy(tls, IssuedCertificate(serverFor("DNS:server.test"), authority_));
    EXPECT_EQ(reasonOf(outcome), CertificateRefused::OTHER);
    EXPECT_EQ(subjectOf(outcome), "CN=test authority") << "the first that it is asked about";
    EXPECT_EQ(outcome.text, prefix_ + "the verification callback refused it");
}

TEST_F(CertificateRefusedTest, TellsAllFactsOfACertificate) {
    const IssuedCertificate certificate(serverFor("DNS:a.test"), authority_);
    const Outcome outcome = refusalOf(certificate);
    ASSERT_TRUE(outcome.refused);
    const PeerCertificate& facts = outcome.refused->getCertificate();
    EXPECT_EQ(facts.subject, String("CN=cimhttp test server"));
    EXPECT_EQ(facts.issuer, String("CN=test authority"));
    EXPECT_EQ(facts.validFrom, String(certificate.ValidFrom()));
    EXPECT_EQ(facts.validUntil, String(certificate.ValidUntil()));
    EXPECT_EQ(facts.fingerprint, String(certificate.Fingerprint()));
}

TEST_F(CertificateRefusedTest, IsNotSaidOfAHandshakeThatFailsOtherwise) {
    support::ScriptedServer server([](support::Connection& peer) { peer.ReadSome(); });
    const Outcome outcome = outcomeOf({server.Address(), server.Listen(0)}, trusting(authority_));
    EXPECT_FALSE(outcome.refused);
    EXPECT_THAT(outcome.text, HasSubstr("the TLS handshake failed"));
}

} // namespace
