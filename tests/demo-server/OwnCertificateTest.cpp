// Certificates that are given to the server, and those that it demands, before the clients `openssl s_client`, wbemcli
// and httplib.

#include "HttpExchange.h"
#include "TestPki.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ProgramRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

#include <algorithm>
#include <stdexcept>

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

constexpr int kHttpsPort = 5989;

std::string Request() {
    return exchange::Post(exchange::OperationHeaders("GetClass"),
                          exchange::OperationBody("GetClass", exchange::ClassName("CIM_System")));
}

std::string Port() { return support::LoopbackAddress() + ":5989"; }

class OwnCertificate : public testing::Test {
  protected:
    void SetUp() override {
        if (support::FindProgram("openssl").empty()) {
            GTEST_SKIP() << "openssl is not installed";
        }
    }

    /// One for all tests.
    static const TestPki& Pki() {
        static const TestPki pki(support::LoopbackAddress());
        return pki;
    }

    static demo::DemoServerOptions Options() {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        options.certificateFile = Pki().ServerChain();
        options.keyFile = Pki().ServerKey();
        return options;
    }

    static demo::DemoServerOptions OptionsThatDemand(const std::string& authorities) {
        demo::DemoServerOptions options = Options();
        options.clientAuthorityFile = authorities;
        return options;
    }

    /// All that `openssl s_client` prints while it sends a request, with the answer if there is one.
    static std::string SClient(const std::string& arguments) {
        const std::string file = Pki().Write("request", Request());
        const auto run = support::RunProgram(
            "/bin/sh", {"-c", "openssl s_client -ign_eof -connect " + Port() + ' ' + arguments + " < " + file});
        return run.output + run.errors;
    }

    static std::string Verifying() {
        return "-CAfile " + Pki().Root() + " -verify_ip " + support::LoopbackAddress() + ' ';
    }

    static std::string AsClientOf(const TestPki& pki) {
        return "-cert " + pki.Client() + " -cert_chain " + pki.Intermediate() + " -key " + pki.ClientKey() + ' ';
    }
    static std::string AsClient() { return AsClientOf(Pki()); }

    static std::string ErrorOf(demo::DemoServerOptions options) {
        try {
            const demo::DemoServer server(std::move(options));
            return "";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }

    static std::string ErrorOf(const std::string& certificate, const std::string& key) {
        demo::DemoServerOptions options = Options();
        options.certificateFile = certificate;
        options.keyFile = key;
        return ErrorOf(std::move(options));
    }
};

constexpr const char* kAnswer = "HTTP/1.1 200 OK";
constexpr const char* kVerified = "Verify return code: 0 (ok)";

TEST_F(OwnCertificate, IsVerifiedThroughItsChainUpToTheRoot) {
    const demo::DemoServer server(Options());
    for (const std::string version : {"-tls1_2", "-tls1_3"}) {
        const std::string seen = SClient(Verifying() + version);
        EXPECT_THAT(seen, HasSubstr(kVerified)) << version;
        EXPECT_THAT(seen, HasSubstr(kAnswer)) << version;
        EXPECT_THAT(seen, ContainsRegex("0 s:CN = server")) << version;
        EXPECT_THAT(seen, ContainsRegex("1 s:CN = intermediate")) << version;
    }
    EXPECT_THAT(SClient("-CAfile " + Pki().Root() + " -verify_ip 192.0.2.1"), Not(HasSubstr(kVerified)));
}

TEST_F(OwnCertificate, WithoutItsChainIsNotVerifiedByAClientThatKnowsOnlyTheRoot) {
    auto options = Options();
    options.certificateFile = Pki().Server();
    const demo::DemoServer server(std::move(options));
    EXPECT_THAT(SClient(Verifying()), HasSubstr("unable to get local issuer certificate"));
    EXPECT_THAT(SClient("-partial_chain -CAfile " + Pki().Intermediate()), HasSubstr(kVerified));
}

TEST_F(OwnCertificate, CanBeInOneFileWithItsKeyInAnyOrder) {
    const std::string certificates = support::ReadFile(Pki().ServerChain());
    const std::string key = support::ReadFile(Pki().ServerKey());
    for (const std::string& text : {certificates + key, "Bag Attributes\n" + key + "some words\n" + certificates}) {
        auto options = Options();
        options.certificateFile = Pki().Write("both.pem", text);
        options.keyFile.clear();
        const demo::DemoServer server(std::move(options));
        EXPECT_THAT(SClient(Verifying()), AllOf(HasSubstr(kVerified), HasSubstr(kAnswer)));
        EXPECT_EQ(server.CertificatePem(), certificates) << "with the chain, and without the key";
    }
}

TEST_F(OwnCertificate, CanHaveAnRsaKeyInAnOlderForm) {
    const std::string key = Pki().Path("rsa.key");
    const std::string certificate = Pki().Path("rsa.pem");
    TestPki::OpenSsl("req -x509 -days 2 -subj /CN=rsa -newkey rsa:2048 -noenc -batch -keyout " + key + " -out " +
                     certificate + " -addext subjectAltName=IP:" + support::LoopbackAddress());
    TestPki::OpenSsl("rsa -traditional -in " + key + " -out " + key + ".old");
    EXPECT_THAT(support::ReadFile(key + ".old"), HasSubstr("BEGIN RSA PRIVATE KEY"));
    auto options = Options();
    options.certificateFile = certificate;
    options.keyFile = key + ".old";
    const demo::DemoServer server(std::move(options));
    EXPECT_THAT(SClient("-CAfile " + certificate), AllOf(HasSubstr(kVerified), HasSubstr(kAnswer)));
}

TEST_F(OwnCertificate, FileThatCannotBeUsedIsNamedInTheError) {
    const std::string garbage = Pki().Write("garbage.pem", "nothing\n");
    std::string text = support::ReadFile(Pki().Server());
    text.replace(text.find('\n') + 9, 4, "AAAA");
    const std::string damaged = Pki().Write("damaged.pem", support::ReadFile(Pki().Server()) + text);
    std::string keyText = support::ReadFile(Pki().ServerKey());
    keyText.replace(keyText.find('\n') + 9, 4, "AAAA");
    const std::string damagedKey = Pki().Write("damaged.key", keyText);
    const std::string encrypted = Pki().Path("encrypted.key");
    TestPki::OpenSsl("pkey -aes256 -passout pass:secret -in " + Pki().ServerKey() + " -out " + encrypted);

    const std::string certificate = Pki().ServerChain();
    const std::string key = Pki().ServerKey();
    EXPECT_EQ(ErrorOf(certificate, key), "");
    EXPECT_EQ(ErrorOf("/no/such.pem", key), "cannot read /no/such.pem");
    EXPECT_EQ(ErrorOf(certificate, "/no/such.key"), "cannot read /no/such.key");
    EXPECT_EQ(ErrorOf("/tmp", key), "cannot read /tmp");
    EXPECT_EQ(ErrorOf(garbage, key), garbage + " holds no certificate");
    EXPECT_EQ(ErrorOf(key, key), key + " holds no certificate");
    EXPECT_EQ(ErrorOf(damaged, key), damaged + ": certificate 2 in it is damaged");
    EXPECT_EQ(ErrorOf(certificate, certificate), certificate + " holds no private key");
    EXPECT_EQ(ErrorOf(certificate, ""), certificate + " holds no private key");
    EXPECT_EQ(ErrorOf(certificate, damagedKey), "the private key in " + damagedKey + " is damaged");
    EXPECT_THAT(ErrorOf(certificate, encrypted), HasSubstr("the private key in " + encrypted + " is encrypted"));
    EXPECT_EQ(ErrorOf(certificate, Pki().ClientKey()),
              "the private key in " + Pki().ClientKey() + " is not that of the first certificate in " + certificate);
    EXPECT_EQ(ErrorOf(OptionsThatDemand("/no/such.pem")), "cannot read /no/such.pem");
    EXPECT_EQ(ErrorOf(OptionsThatDemand(garbage)), garbage + " holds no certificate");
    auto options = Options();
    options.certificateFile.clear();
    EXPECT_THROW(demo::DemoServer(std::move(options)), std::invalid_argument);
}

TEST_F(OwnCertificate, FileThatIsTooWeakForOpenSslIsNamedInTheError) {
    const std::string key = Pki().Path("weak.key");
    const std::string certificate = Pki().Path("weak.pem");
    TestPki::OpenSsl("req -x509 -days 2 -subj /CN=weak -newkey rsa:512 -noenc -batch -keyout " + key + " -out " +
                     certificate);
    EXPECT_EQ(ErrorOf(certificate, key),
              "OpenSSL does not take the certificate in " + certificate + ": ee key too small");
}

TEST_F(OwnCertificate, IsNotShownInVersionsOfTlsBelow12) {
    const demo::DemoServer server(Options());
    for (const std::string version : {"-tls1", "-tls1_1"}) {
        const std::string seen = SClient(version + " -cipher DEFAULT@SECLEVEL=0");
        EXPECT_THAT(seen, HasSubstr("alert protocol version")) << version;
        EXPECT_THAT(seen, Not(HasSubstr(kAnswer))) << version;
    }
}

TEST_F(OwnCertificate, OfAClientIsDemandedOverHttpsAlone) {
    const demo::DemoServer server(OptionsThatDemand(Pki().Root()));
    EXPECT_THAT(SClient(Verifying() + "-tls1_2"), AllOf(HasSubstr("alert handshake failure"), Not(HasSubstr(kAnswer))));
    EXPECT_THAT(SClient(Verifying() + "-tls1_3"),
                AllOf(HasSubstr("alert certificate required"), Not(HasSubstr(kAnswer))));
    for (const std::string version : {"-tls1_2", "-tls1_3"}) {
        EXPECT_THAT(SClient(Verifying() + AsClient() + version),
                    AllOf(HasSubstr(kVerified), HasSubstr(kAnswer), HasSubstr("Acceptable client certificate CA names"),
                          HasSubstr("CN = root")))
            << version;
    }
    EXPECT_EQ(exchange::Send(Request()).status, 200);
}

TEST_F(OwnCertificate, OfAClientMustBeSignedByTheAuthority) {
    const TestPki strangers(support::LoopbackAddress());
    const demo::DemoServer server(OptionsThatDemand(strangers.Root()));
    for (const std::string version : {"-tls1_2", "-tls1_3"}) {
        EXPECT_THAT(SClient(AsClient() + version), AllOf(HasSubstr("alert unknown ca"), Not(HasSubstr(kAnswer))));
    }
    EXPECT_THAT(SClient(AsClientOf(strangers)), HasSubstr(kAnswer));
}

TEST_F(OwnCertificate, OfAClientMustBeMeantForClients) {
    const std::string extensions = Pki().Write("wrong.ext", "extendedKeyUsage=serverAuth\n");
    TestPki::OpenSsl("x509 -req -days 2 -in " + Pki().Path("client.csr") + " -CA " + Pki().Root() + " -CAkey " +
                     Pki().Path("root.key") + " -extfile " + extensions + " -out " + Pki().Path("wrong.pem"));
    const demo::DemoServer server(OptionsThatDemand(Pki().Root()));
    EXPECT_THAT(SClient("-cert " + Pki().Path("wrong.pem") + " -key " + Pki().ClientKey()),
                AllOf(HasSubstr("alert unsupported certificate"), Not(HasSubstr(kAnswer))));
}

TEST_F(OwnCertificate, OfAClientMayBeSignedByAnAuthorityThatIsNoRoot) {
    const demo::DemoServer server(OptionsThatDemand(Pki().Intermediate()));
    EXPECT_THAT(SClient("-cert " + Pki().Client() + " -key " + Pki().ClientKey()), HasSubstr(kAnswer));
}

TEST_F(OwnCertificate, OfAClientIsStillGoodWhenItsSessionIsResumed) {
    const demo::DemoServer server(OptionsThatDemand(Pki().Root()));
    const std::string session = Pki().Path("session");
    const std::string version = "-tls1_2 ";
    EXPECT_THAT(SClient(version + AsClient() + "-sess_out " + session), HasSubstr(kAnswer));
    EXPECT_THAT(SClient(version + AsClient() + "-sess_in " + session),
                AllOf(HasSubstr("Reused, TLSv1.2"), HasSubstr(kAnswer)));
}

TEST_F(OwnCertificate, IsWhatClientLibrariesVerifyAndAnswerWithTheirOwn) {
    const demo::DemoServer server(OptionsThatDemand(Pki().Intermediate())); // httplib's client sends no chain
    const auto ask = [](httplib::SSLClient client) {
        client.set_ca_cert_path(Pki().Root());
        client.enable_server_certificate_verification(true);
        httplib::Headers headers;
        for (const auto& [name, value] : exchange::OperationHeaders("GetClass")) {
            headers.emplace(name, value);
        }
        const auto result =
            client.Post("/cimom", headers, exchange::OperationBody("GetClass", exchange::ClassName("CIM_System")),
                        "application/xml; charset=utf-8");
        return result ? result->status : 0;
    };
    const std::string host = support::LoopbackAddress();
    EXPECT_EQ(ask(httplib::SSLClient(host, kHttpsPort, Pki().Client(), Pki().ClientKey())), 200);
    EXPECT_EQ(ask(httplib::SSLClient(host, kHttpsPort)), 0);
}

/// The output of wbemcli that lists the profiles.
std::string Profiles(const std::string& arguments) {
    const auto run = support::RunProgram(
        "/bin/sh", {"-c", "wbemcli ein " + arguments + " https://" + Port() + "/interop:CIM_RegisteredProfile"});
    return run.output + run.errors;
}

TEST_F(OwnCertificate, IsGoodEnoughForWbemcliWithOneOfItsOwn) {
    if (support::FindProgram("wbemcli").empty()) {
        GTEST_SKIP() << "wbemcli is not installed";
    }
    const demo::DemoServer server(OptionsThatDemand(Pki().Root()));
    const std::string trusting = "-cacert " + Pki().Root();
    const std::string showing = " -clientcert " + Pki().Client() + " -clientkey " + Pki().ClientKey();
    EXPECT_THAT(Profiles(trusting + showing), HasSubstr("cimhttp:BaseServer"));
    EXPECT_THAT(Profiles(trusting), Not(HasSubstr("cimhttp:BaseServer")));
    EXPECT_THAT(Profiles("-cacert " + Pki().Path("client.pem") + showing), Not(HasSubstr("cimhttp:BaseServer")));
}

} // namespace
