// A client that has a certificate of its own, and servers that want one.

#include "TlsFixture.h"

#include <gmock/gmock.h>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using support::TlsVersion;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

class ClientCertificateTest : public TlsFixture {
  protected:
    SSLContext with(const std::string& certPath, const std::string& keyPath = "") const {
        return {trusting(authority_).getTrustStore(), String(certPath), String(keyPath)};
    }

    /// A server that requires a certificate of its clients' authority.
    Endpoint serveDemanding(TlsVersion version) {
        return serve(IssuedCertificate(serverFor("DNS:server.test"), authority_), "server.test", "", version,
                     write("clients.pem", clients_.Pem()));
    }

    /// The error of settings that cannot be used, with which nothing is connected to.
    static std::string errorOf(const SSLContext& tls) {
        return outcomeOf(Endpoint(support::LoopbackAddress(), 1), tls).text;
    }

    static IssuedCertificate::Options client() {
        IssuedCertificate::Options options;
        options.commonName = "client";
        return options;
    }

    const IssuedCertificate clients_{IssuedCertificate::Authority("authority of clients")};
    const IssuedCertificate own_{client(), clients_};
    const std::string certPath_ = write("client.pem", own_.Pem());
    const std::string keyPath_ = write("client.key", own_.KeyPem());
};

constexpr TlsVersion kBoth[] = {TlsVersion::kOnly12, TlsVersion::kOnly13};

TEST_F(ClientCertificateTest, IsShownToAServerThatWantsOne) {
    for (const TlsVersion version : kBoth) {
        EXPECT_EQ(outcomeOf(serveDemanding(version), with(certPath_, keyPath_)).text, "");
    }
}

TEST_F(ClientCertificateTest, MayStandInOneFileWithItsKey) {
    for (const std::string& content : {own_.Pem() + own_.KeyPem(), own_.KeyPem() + own_.Pem()}) {
        EXPECT_EQ(outcomeOf(serveDemanding(TlsVersion::kCurrent), with(write("both.pem", content))).text, "");
    }
}

TEST_F(ClientCertificateTest, IsShownWithTheChainOfItsFile) {
    const IssuedCertificate between(IssuedCertificate::Authority("between"), clients_);
    const IssuedCertificate own(client(), between);
    const std::string alone = write("alone.pem", own.Pem() + own.KeyPem());
    const std::string chain = write("chain.pem", own.Pem() + between.Pem() + own.KeyPem());
    for (const TlsVersion version : kBoth) {
        EXPECT_EQ(outcomeOf(serveDemanding(version), with(chain)).text, "");
        EXPECT_THAT(outcomeOf(serveDemanding(version), with(alone)).text, HasSubstr("unknown ca"));
    }
}

TEST_F(ClientCertificateTest, IsSaidToBeWantedWhenThereIsNone) {
    Endpoint endpoint = serveDemanding(TlsVersion::kOnly12);
    EXPECT_EQ(outcomeOf(endpoint, trusting(authority_)).text,
              endpoint.text() + ": the server wants a certificate of the client's (sslv3 alert handshake failure)");
    endpoint = serveDemanding(TlsVersion::kOnly13);
    EXPECT_EQ(outcomeOf(endpoint, trusting(authority_)).text,
              endpoint.text() + ": the server wants a certificate of the client's (tlsv13 alert certificate required)");
}

TEST_F(ClientCertificateTest, IsSaidToBeRefusedWhenTheServerTakesAnother) {
    const IssuedCertificate strange(client());
    const std::string path = write("strange.pem", strange.Pem() + strange.KeyPem());
    for (const TlsVersion version : kBoth) {
        const Endpoint endpoint = serveDemanding(version);
        EXPECT_THAT(outcomeOf(endpoint, with(path)).text,
                    MatchesRegex(endpoint.text() + ": the server wants a certificate of the client's, and does not " +
                                 "take that of " + path + " \\(.*alert.*\\)"));
    }
}

TEST_F(ClientCertificateTest, IsSaidToBeRefusedWhenItHasExpired) {
    auto options = client();
    options.validUntilDay = -1;
    const IssuedCertificate expired(options, clients_);
    const std::string path = write("expired.pem", expired.Pem() + expired.KeyPem());
    for (const TlsVersion version : kBoth) {
        EXPECT_THAT(outcomeOf(serveDemanding(version), with(path)).text, HasSubstr("alert certificate expired"));
    }
}

TEST_F(ClientCertificateTest, IsNotBlamedByAServerThatDoesNotWantOne) {
    support::ScriptedServer server([](support::Connection& peer) {
        peer.ReadSome();
        peer.Write(std::string("\x15\x03\x03\x00\x02\x02\x28", 7)); // handshake_failure
        peer.WaitForPeerClose();
    });
    const Endpoint endpoint(server.Address(), server.Listen(0));
    EXPECT_EQ(outcomeOf(endpoint, with(certPath_, keyPath_)).text,
              endpoint.text() + ": the TLS handshake failed: sslv3 alert handshake failure");
}

TEST_F(ClientCertificateTest, IsAnErrorWhenAFileCannotBeRead) {
    EXPECT_EQ(errorOf(with("/no/such/file")),
              "cannot read the client's certificate /no/such/file: No such file or directory");
    EXPECT_EQ(errorOf(with(certPath_, "/no/such/file")),
              "cannot read the key of the client's certificate /no/such/file: No such file or directory");
    const std::string folder = directory_.Path().string();
    EXPECT_EQ(errorOf(with(folder)), "cannot read the client's certificate " + folder + ": Is a directory");
}

TEST_F(ClientCertificateTest, IsAnErrorWhenThereIsNoneInTheFile) {
    for (const std::string& path : {keyPath_, write("empty.pem", "")}) {
        EXPECT_EQ(errorOf(with(path, keyPath_)),
                  "cannot use the client's certificate " + path + ": it holds no certificate");
    }
    EXPECT_EQ(errorOf(with("", keyPath_)), "there is a key of the client's, " + keyPath_ + ", and no certificate");
}

TEST_F(ClientCertificateTest, IsAnErrorWhenItIsBroken) {
    const std::string whole = own_.Pem();
    const std::string path = write("broken.pem", whole.substr(0, 100) + "!" + whole.substr(101));
    EXPECT_THAT(errorOf(with(path, keyPath_)), StartsWith("cannot read the client's certificate " + path + ": "));
    const std::string chain = write("broken-chain.pem", whole + whole.substr(0, 100) + "!" + whole.substr(101));
    EXPECT_THAT(errorOf(with(chain, keyPath_)), StartsWith("cannot read the client's certificate " + chain + ": "));
}

TEST_F(ClientCertificateTest, IsAnErrorWithoutItsKey) {
    EXPECT_EQ(errorOf(with(certPath_)),
              "cannot use the key of the client's certificate " + certPath_ + ": it holds no key that can be read");
}

TEST_F(ClientCertificateTest, IsAnErrorWithTheKeyOfAnother) {
    auto options = client();
    options.key = IssuedCertificate::Key::kRsa1024;
    for (const IssuedCertificate& other : {IssuedCertificate(client()), IssuedCertificate(options)}) {
        const std::string path = write("other.key", other.KeyPem());
        EXPECT_EQ(errorOf(with(certPath_, path)), "cannot use the key of the client's certificate " + path +
                                                      ": it does not belong to the client's certificate " + certPath_);
    }
}

TEST_F(ClientCertificateTest, IsAnErrorWhenItsKeyIsEncryptedAndNobodyIsAsked) {
    const std::string path = write("locked.key", own_.EncryptedKeyPem("secret"));
    const std::string expected =
        "cannot use the key of the client's certificate " + path + ": it is encrypted with a passphrase";
    EXPECT_EQ(errorOf(with(certPath_, path)), expected);
    const std::string both = write("both.pem", own_.Pem() + own_.EncryptedKeyPem("secret"));
    EXPECT_THAT(errorOf(with(both)), HasSubstr(both + ": it is encrypted with a passphrase"));
}

TEST_F(ClientCertificateTest, IsAnErrorWhenItIsTooWeak) {
    auto options = client();
    options.key = IssuedCertificate::Key::kRsa1024;
    const IssuedCertificate weak(options, clients_);
    const std::string path = write("weak.pem", weak.Pem() + weak.KeyPem());
    EXPECT_EQ(errorOf(with(path)), "cannot use the client's certificate " + path + ": ee key too small");
}

} // namespace
