// Whom cimhttp talks to: how a server is verified, and what the user is told and asked.

#include "CimXml.h"
#include "FirstConnectionOnly.h"
#include "ProgramRun.h"
#include "connection/KnownServers.h"
#include "support/IssuedCertificate.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <memory>

using cimhttp::KnownServer;
using cimhttp::KnownServers;
using support::IssuedCertificate;
using support::ScriptedServer;
using support::TerminalProgram;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpsPort = 5989;
constexpr const char* kClasses = "TEST_Disk\n";
constexpr const char* kInterrupt = "\x03";

/// A CIM server over TLS that knows one class.
class SecureServer {
  public:
    SecureServer(const support::TlsOptions& options, std::uint16_t port, const std::string& address)
        : server_([this](support::Connection& connection) { Serve(connection); }, address),
          port_(server_.ListenTls(port, options)) {}

    std::uint16_t Port() const { return port_; }
    std::size_t ConnectionCount() const { return server_.ConnectionCount(); }

    /// Requests of CIM.
    int RequestCount() const { return requests_; }

  private:
    void Serve(support::Connection& connection) {
        while (const auto request = connection.ReadRequest()) {
            ++requests_;
            connection.Write(HttpAnswer(request->body, "<CLASSNAME NAME=\"TEST_Disk\"/>"));
        }
    }

    std::atomic<int> requests_{0};
    ScriptedServer server_;
    std::uint16_t port_;
};

class TrustTest : public testing::Test {
  protected:
    using Options = IssuedCertificate::Options;

    /// Options of a certificate that is good for the server's address.
    Options Good() const {
        Options options;
        options.extensions = {{"subjectAltName", "IP:" + address_ + ",DNS:server.example"}};
        return options;
    }

    IssuedCertificate Issued(const Options& options) const { return {options, authority_}; }

    support::TlsOptions Files(const IssuedCertificate& certificate) const {
        return {folder_.WriteFile("server.pem", certificate.Pem()),
                folder_.WriteFile("server.key", certificate.KeyPem()), support::TlsVersion::kCurrent, ""};
    }

    std::unique_ptr<SecureServer> Serve(const IssuedCertificate& certificate, std::uint16_t port = kHttpsPort) const {
        return std::make_unique<SecureServer>(Files(certificate), port, address_);
    }

    std::vector<std::string> Environment() const { return {"XDG_CONFIG_HOME=" + folder_.Path().string()}; }

    std::vector<std::string> Arguments(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", address_, "--tls"});
        return arguments;
    }

    /// Without a terminal.
    ProgramRun Run(const std::vector<std::string>& arguments) const {
        return RunCimhttp(Arguments(arguments), Environment());
    }

    ProgramRun RunAsReader(std::vector<std::string> arguments) const {
        auto environment = Environment();
        environment.emplace_back("CIMHTTP_PASSWORD=s3cret");
        arguments.insert(arguments.end(), {"--user", "reader"});
        return RunCimhttp(Arguments(arguments), environment);
    }

    TerminalProgram OnTerminal(const std::vector<std::string>& arguments) const {
        return {CIMHTTP_PROGRAM, Arguments(arguments), Environment(), {200, 24}};
    }

    /// Says yes to the server.
    void Trust() const {
        auto program = OnTerminal({"classes"});
        ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
        program.Type("yes\r");
        EXPECT_EQ(program.Wait(), 0) << program.Screen();
    }

    void ExpectRefused(const ProgramRun& run, const SecureServer& server, const std::string& part) const {
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("cimhttp: no connection to https://" + address_ + ": "));
        EXPECT_THAT(run.errors, HasSubstr(part));
        EXPECT_THAT(run.errors, Not(HasSubstr("leave out")));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_EQ(server.RequestCount(), 0);
    }

    KnownServers Known() const { return KnownServers((folder_.Path() / "cimhttp" / "known_servers.json").string()); }

    std::string HostAndPort() const { return address_ + ":5989"; }

    static constexpr const char* kQuestion = "? (yes or no) ";

    const std::string address_ = support::LoopbackAddress();
    const support::TemporaryDirectory folder_;
    const IssuedCertificate authority_{IssuedCertificate::Authority("the test's authority")};
    const std::string ca_ = folder_.WriteFile("ca.pem", authority_.Pem());
};

} // namespace

// --- Authorities -------------------------------------------------------------------------------------------------

TEST_F(TrustTest, AServerThatAnAuthorityVouchesForIsVerifiedWithoutAWord) {
    const auto server = Serve(Issued(Good()));
    const auto run = RunAsReader({"--ca", ca_, "classes"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output, kClasses);
    std::filesystem::create_directory(folder_.Path() / "authorities");
    folder_.WriteFile("authorities/one.pem", authority_.Pem());
    EXPECT_EQ(Run({"--ca", (folder_.Path() / "authorities").string(), "--verify", "classes"}).output, kClasses);
    auto program = OnTerminal({"--ca", ca_, "classes"});
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.Screen(), "TEST_Disk\r\n") << "nobody is asked";
}

TEST_F(TrustTest, AnExpiredCertificateIsRefusedWithItsDate) {
    Options options = Good();
    options.validUntilDay = -1;
    const IssuedCertificate certificate = Issued(options);
    const auto server = Serve(certificate);
    ExpectRefused(RunAsReader({"--ca", ca_, "classes"}), *server, "has expired on " + certificate.ValidUntil());
}

TEST_F(TrustTest, ACertificateOfTomorrowIsRefusedWithItsDate) {
    Options options = Good();
    options.validFromDay = 1;
    const IssuedCertificate certificate = Issued(options);
    const auto server = Serve(certificate);
    ExpectRefused(RunAsReader({"--ca", ca_, "classes"}), *server, "is not valid before " + certificate.ValidFrom());
}

TEST_F(TrustTest, ACertificateOfAnUnknownAuthorityIsRefusedWithTheAuthority) {
    const IssuedCertificate other(IssuedCertificate::Authority("some other authority"));
    const auto server = Serve({Good(), other});
    ExpectRefused(RunAsReader({"--ca", ca_, "classes"}), *server,
                  "which CN=some other authority has issued: give --ca FILE with that authority's certificate");
}

TEST_F(TrustTest, ACertificateForOtherNamesIsRefusedWithTheNames) {
    Options options;
    options.extensions = {{"subjectAltName", "DNS:storage.example,DNS:backup.example,IP:192.0.2.7"}};
    const auto server = Serve(Issued(options));
    ExpectRefused(RunAsReader({"--ca", ca_, "classes"}), *server,
                  "its certificate is not for " + address_ +
                      ", but for storage.example, backup.example, 192.0.2.7: use that name with --host");
}

TEST_F(TrustTest, ACertificateThatSignedItselfIsRefusedUntilItIsNamed) {
    const IssuedCertificate certificate(Good());
    const auto server = Serve(certificate);
    const auto refused = RunAsReader({"--ca", ca_, "classes"});
    ExpectRefused(refused, *server, "is signed by itself");
    EXPECT_THAT(refused.errors, HasSubstr("SHA-256 " + certificate.Fingerprint()));
    EXPECT_EQ(Run({"--ca", folder_.WriteFile("own.pem", certificate.Pem()), "classes"}).output, kClasses);
}

TEST_F(TrustTest, AFileThatIsNoCertificateIsNamed) {
    const auto server = Serve(Issued(Good()));
    const std::string file = folder_.WriteFile("nothing.pem", "nothing");
    ExpectRefused(RunAsReader({"--ca", file, "classes"}), *server, file);
    ExpectRefused(RunAsReader({"--ca", "/no/such/file", "classes"}), *server, "/no/such/file");
}

// --- Fingerprints ------------------------------------------------------------------------------------------------

TEST_F(TrustTest, AFingerprintAcceptsItsCertificateAndNoOther) {
    Options options;
    options.validUntilDay = -1; // of another name, too
    const IssuedCertificate certificate(options);
    const auto server = Serve(certificate);
    std::string bare = certificate.Fingerprint();
    bare.erase(std::remove(bare.begin(), bare.end(), ':'), bare.end());
    const auto run = Run({"--fingerprint", bare, "--verify", "classes"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output, kClasses);
    const IssuedCertificate other(options);
    const int requests = server->RequestCount();
    const auto refused = RunAsReader({"--fingerprint", other.Fingerprint(), "classes"});
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.errors, HasSubstr("its certificate is " + certificate.Fingerprint()));
    EXPECT_THAT(refused.errors, HasSubstr("and not " + other.Fingerprint() + ", which --fingerprint"));
    EXPECT_EQ(server->RequestCount(), requests);
}

// --- Nothing to verify by ----------------------------------------------------------------------------------------

TEST_F(TrustTest, WithoutATerminalAnUnknownServerIsWarnedOf) {
    const auto server = Serve(Issued(Good()));
    const auto run = Run({"classes"});
    EXPECT_EQ(run.output, kClasses);
    EXPECT_EQ(run.errors, "cimhttp: encrypted, but nobody has verified that this is " + address_ + "\n");
    EXPECT_THAT(Known().Read(), IsEmpty());
}

TEST_F(TrustTest, VerifyRefusesAnUnknownServerBeforeAnythingIsSent) {
    const auto server = Serve(Issued(Good()));
    ExpectRefused(Run({"--verify", "classes"}), *server, "nothing verifies the server, and --verify forbids to go on");
    auto program = OnTerminal({"--verify", "classes"});
    EXPECT_EQ(program.Wait(), 3) << program.Screen();
    EXPECT_EQ(server->ConnectionCount(), 0U);
}

// --- The question ------------------------------------------------------------------------------------------------

TEST_F(TrustTest, TheUserIsShownTheCertificateAndAskedOnce) {
    const IssuedCertificate certificate = Issued(Good());
    const auto server = Serve(certificate);
    auto program = OnTerminal({"classes"});
    ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
    for (const std::string& line :
         std::vector<std::string>{"subject    CN=cimhttp test server", "names      " + address_ + ", server.example",
                                  "issued by  CN=the test's authority",
                                  "valid      " + certificate.ValidFrom() + " to " + certificate.ValidUntil(),
                                  "SHA-256    " + certificate.Fingerprint()}) {
        // names come in the certificate's order
        EXPECT_THAT(program.Screen(), HasSubstr("    " + line + "\r\n"));
    }
    EXPECT_TRUE(program.Echoes());
    EXPECT_EQ(server->RequestCount(), 0);
    program.Type("yes\r");
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Screen(), testing::EndsWith("yes\r\nTEST_Disk\r\n"));
    EXPECT_EQ(Known().Find(HostAndPort()).value_or(KnownServer()).fingerprint, certificate.Fingerprint());

    auto again = OnTerminal({"classes"});
    EXPECT_EQ(again.Wait(), 0);
    EXPECT_EQ(again.Screen(), "TEST_Disk\r\n");
    const auto elsewhere = Run({"--verify", "classes"});
    EXPECT_EQ(elsewhere.errors, "");
    EXPECT_EQ(elsewhere.output, kClasses);
}

TEST_F(TrustTest, NoMeansThatNothingWasSent) {
    const auto server = Serve(Issued(Good()));
    for (const char* const answer : {"no\r", "n\r", "\r", "\x04"}) {
        auto program = OnTerminal({"classes"});
        ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
        program.Type(answer);
        EXPECT_EQ(program.Wait(), 3) << answer;
        EXPECT_THAT(program.Screen(), HasSubstr("its certificate is not trusted; nothing was sent"));
    }
    EXPECT_EQ(server->RequestCount(), 0);
    EXPECT_THAT(Known().Read(), IsEmpty());
}

TEST_F(TrustTest, AnUnclearAnswerIsAskedForAgain) {
    const auto server = Serve(Issued(Good()));
    auto program = OnTerminal({"classes"});
    ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
    program.Type("perhaps\r");
    ASSERT_TRUE(program.AwaitText("Answer yes or no: ")) << program.Screen();
    program.Type("Y\r");
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(TrustTest, AnInterruptAtTheQuestionEndsTheProgram) {
    const auto server = Serve(Issued(Good()));
    auto program = OnTerminal({"classes"});
    ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
    program.Type(kInterrupt);
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_EQ(server->RequestCount(), 0);
    EXPECT_THAT(Known().Read(), IsEmpty());
}

TEST_F(TrustTest, WhatIsAcceptedIsWhatWasShown) {
    auto server = Serve(Issued(Good()));
    auto program = OnTerminal({"classes"});
    ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
    server.reset();
    server = Serve(Issued(Good())); // somebody else steps in while the user reads
    program.Type("yes\r");
    EXPECT_EQ(program.Wait(), 3);
    EXPECT_THAT(program.Screen(), HasSubstr("THE CERTIFICATE HAS CHANGED"));
    EXPECT_EQ(server->RequestCount(), 0);
}

TEST_F(TrustTest, ACertificateCannotSteerTheTerminalOrPushItsFingerprintAway) {
    Options options = Good();
    options.commonName = "ok\x1b[2J\x1b]0;x\x07\r\nSHA-256 \xe2\x80\xae"
                         "dab\xc2\x9b"
                         "31m";
    options.extensions = {{"subjectAltName", "DNS:a\x1b[31m.example"}};
    for (int i = 0; i < 200; ++i) {
        options.extensions.front().second += ",DNS:host" + std::to_string(i) + ".example";
    }
    const IssuedCertificate certificate = Issued(options);
    const auto server = Serve(certificate);
    auto program = OnTerminal({"classes"});
    ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
    EXPECT_THAT(program.Screen(), Not(HasSubstr("\x1b[2J")));
    EXPECT_THAT(program.Screen(), Not(HasSubstr("\x1b]0")));
    EXPECT_THAT(program.Screen(), Not(HasSubstr("\x1b[31m")));
    EXPECT_THAT(program.Screen(), Not(HasSubstr("\x07")));
    EXPECT_THAT(program.Screen(), Not(HasSubstr("\xe2\x80\xae")));
    EXPECT_THAT(program.Screen(), Not(HasSubstr("\r\nSHA-256")));
    EXPECT_THAT(program.Screen(), ContainsRegex(" and 191 more\r\n"));
    EXPECT_THAT(program.Screen(), HasSubstr("    SHA-256    " + certificate.Fingerprint() + "\r\n"));
    program.Type("yes\r");
    EXPECT_EQ(program.Wait(), 0) << program.Screen();
    EXPECT_THAT(Run({"connection", "known", "-o", "csv"}).output, Not(HasSubstr("\x1b")));
}

TEST_F(TrustTest, EachPortOfAHostIsKnownByItself) {
    const auto one = Serve(Issued(Good()));
    const auto other = Serve(Issued(Good()), 0);
    Trust();
    const auto run = Run({"--port", std::to_string(other->Port()), "classes"});
    EXPECT_THAT(run.errors, HasSubstr("nobody has verified"));
}

// --- Known servers -----------------------------------------------------------------------------------------------

TEST_F(TrustTest, AChangedCertificateIsRefusedWithBothFingerprintsAndAWayOut) {
    const IssuedCertificate first = Issued(Good());
    auto server = Serve(first);
    Trust();
    server.reset();
    const IssuedCertificate second = Issued(Good());
    server = Serve(second);
    const auto run = RunAsReader({"classes"});
    ExpectRefused(run, *server, "THE CERTIFICATE HAS CHANGED: it was " + first.Fingerprint() + " since 20");
    EXPECT_THAT(run.errors, HasSubstr("now it is " + second.Fingerprint()));
    EXPECT_THAT(run.errors, HasSubstr("'cimhttp connection forget " + HostAndPort() + "'"));
    auto program = OnTerminal({"classes"});
    EXPECT_EQ(program.Wait(), 3) << "nobody is asked";

    EXPECT_EQ(RunCimhttp({"connection", "forget", HostAndPort()}, Environment()).errors, "");
    Trust();
    EXPECT_EQ(Run({"--verify", "classes"}).output, kClasses);
}

TEST_F(TrustTest, AKnownServerWithoutATimeIsKnownAllTheSame) {
    const auto server = Serve(Issued(Good()));
    Known().Keep(HostAndPort(), {IssuedCertificate(Good()).Fingerprint(), "", ""});
    ExpectRefused(Run({"classes"}), *server, " since an unknown time, and now it is ");
}

TEST_F(TrustTest, AnAuthorityCountsMoreThanWhatIsKnown) {
    auto server = Serve(Issued(Good()));
    Trust();
    server.reset();
    server = Serve(Issued(Good()));
    EXPECT_EQ(Run({"--ca", ca_, "classes"}).output, kClasses);
}

TEST_F(TrustTest, KnownServersAreListedAndForgotten) {
    const auto run = [&](const std::vector<std::string>& arguments) { return RunCimhttp(arguments, Environment()); };
    EXPECT_EQ(run({"connection", "known"}).output, "no known servers\n");
    const IssuedCertificate certificate = Issued(Good());
    const auto server = Serve(certificate);
    Trust();
    EXPECT_THAT(run({"connection", "known", "-o", "json"}).output,
                HasSubstr("{\"server\":\"" + HostAndPort() + "\",\"sha256\":\"" + certificate.Fingerprint() +
                          "\",\"since\":\"20"));
    EXPECT_EQ(run({"connection", "forget", address_}).status, 0) << "5989 is the usual port";
    EXPECT_EQ(run({"connection", "known"}).output, "no known servers\n");
    const auto again = run({"connection", "forget", address_});
    EXPECT_EQ(again.status, 2);
    EXPECT_THAT(again.errors, HasSubstr("there is no known server " + HostAndPort()));
    EXPECT_EQ(run({"connection", "forget"}).status, 2);
    EXPECT_EQ(run({"connection", "known", "lab"}).status, 2);
}

TEST_F(TrustTest, AFileOfKnownServersThatCannotBeReadLetsNobodyPass) {
    const auto server = Serve(Issued(Good()));
    std::filesystem::create_directories(folder_.Path() / "cimhttp");
    folder_.WriteFile("cimhttp/known_servers.json", "{");
    const auto run = Run({"classes"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("known_servers.json"));
    EXPECT_EQ(server->ConnectionCount(), 0U);
    EXPECT_EQ(Run({"--ca", ca_, "classes"}).status, 0);
}

TEST_F(TrustTest, WhereThereIsNoFolderTheAnswerCountsForOnce) {
    const auto server = Serve(Issued(Good()));
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"classes"}));
    ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
    EXPECT_THAT(program.Screen(), HasSubstr("Trust it? (yes or no)"));
    program.Type("yes\r");
    EXPECT_EQ(program.Wait(), 0) << program.Screen();
}

// --- Certificates of clients -------------------------------------------------------------------------------------

TEST_F(TrustTest, AServerThatAsksForACertificateGetsTheUsersOwn) {
    for (const auto version : {support::TlsVersion::kOnly12, support::TlsVersion::kOnly13}) {
        support::TlsOptions options = Files(Issued(Good()));
        options.version = version;
        options.clientAuthorityFile = ca_;
        const SecureServer server(options, kHttpsPort, address_);
        const auto without = RunAsReader({"--ca", ca_, "classes"});
        EXPECT_EQ(without.status, 3);
        EXPECT_THAT(without.errors, HasSubstr("give --cert FILE and --key FILE"));
        EXPECT_EQ(server.RequestCount(), 0);
        const IssuedCertificate own = Issued({});
        const std::string cert = folder_.WriteFile("own.pem", own.Pem());
        const std::string key = folder_.WriteFile("own.key", own.KeyPem());
        const auto with = Run({"--ca", ca_, "--cert", cert, "--key", key, "classes"});
        EXPECT_EQ(with.errors, "");
        EXPECT_EQ(with.output, kClasses);
        // Behind the command, the option of the same name is about the instance.
        const auto instance =
            Run({"--ca", ca_, "--cert", cert, "--key", key, "instance", "TEST_Disk", "--key", "Name=a"});
        EXPECT_EQ(instance.status, 6) << instance.errors; // the server's answer is none, but it has come
        EXPECT_EQ(
            Run({"--ca", ca_, "--cert", folder_.WriteFile("both.pem", own.Pem() + own.KeyPem()), "classes"}).output,
            kClasses);
    }
}

TEST_F(TrustTest, AServerThatEndsTheHandshakeForWantOfACertificateIsStillShown) {
    support::TlsOptions options = Files(Issued(Good()));
    options.version = support::TlsVersion::kOnly12;
    options.clientAuthorityFile = ca_;
    const SecureServer server(options, kHttpsPort, address_);
    auto program = OnTerminal({"classes"});
    ASSERT_TRUE(program.AwaitText(kQuestion)) << program.Screen();
    program.Type("yes\r");
    EXPECT_EQ(program.Wait(), 3);
    EXPECT_THAT(program.Screen(), HasSubstr("give --cert FILE and --key FILE"));
}

// --- Everything that knows a server ------------------------------------------------------------------------------

TEST_F(TrustTest, ANamedConnectionKeepsWhatItIsVerifiedBy) {
    const auto server = Serve(Issued(Good()));
    ASSERT_EQ(Run({"connection", "add", "lab", "--ca", ca_}).errors, "");
    const auto run = RunCimhttp({"connection", "test", "lab"}, Environment());
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output, "https://" + address_ + " answers: 1 class\n");
    const IssuedCertificate other(Good());
    EXPECT_EQ(RunCimhttp({"-c", "lab", "--fingerprint", other.Fingerprint(), "classes"}, Environment()).status, 3);
}

TEST_F(TrustTest, ADocumentNamesTheAuthority) {
    const auto server = Serve(Issued(Good()));
    const auto document = [&](const std::string& ca) {
        return folder_.WriteFile("requested.xml", "<vyx version=\"1\"><network address=\"" + address_ +
                                                      "\"/><network ssl=\"true\"/><network ca=\"" + ca +
                                                      "\"/><class name=\"TEST_None\"/></vyx>");
    };
    EXPECT_THAT(RunCimhttp({"collect", document(ca_)}).errors, Not(HasSubstr("nobody has verified")));
    EXPECT_GT(server->RequestCount(), 0);
    const int requests = server->RequestCount();
    const IssuedCertificate other(IssuedCertificate::Authority("some other authority"));
    const auto refused = RunCimhttp({"collect", document(folder_.WriteFile("other.pem", other.Pem()))});
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(server->RequestCount(), requests);
}

TEST_F(TrustTest, APolicyOfTheMachineThatForbidsAConnectionIsTold) {
    const auto server = Serve(Issued(Good()));
    const std::string policy = folder_.WriteFile(
        "policy.json", "{\"servers\": [{\"match\": \"*\", \"force\": {\"tls\": false, \"timeout\": 30000}}]}");
    auto environment = Environment();
    environment.push_back("CIMHTTP_POLICY=" + policy);
    const auto run = RunCimhttp(Arguments({"--ca", ca_, "classes"}), environment);
    ExpectRefused(run, *server, "policy " + policy + ": ");
    environment.back() = "CIMHTTP_POLICY=/no/such/policy.json";
    ExpectRefused(RunCimhttp(Arguments({"--ca", ca_, "classes"}), environment), *server, "/no/such/policy.json");
}

TEST_F(TrustTest, NobodyIsAskedOrWarnedWhereThePolicyVerifiesTheServer) {
    const auto server = Serve(Issued(Good()));
    const std::string policy =
        folder_.WriteFile("policy.json", R"({"servers": [{"match": "*", "default": {"trust": ")" + ca_ + R"("}}]})");
    auto environment = Environment();
    environment.push_back("CIMHTTP_POLICY=" + policy);
    const auto run = RunCimhttp(Arguments({"--verify", "classes"}), environment);
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"classes"}), environment, {200, 24});
    EXPECT_EQ(program.Wait(), 0) << program.Screen();
    EXPECT_THAT(RunCimhttp(Arguments({"doctor"}), environment).output,
                HasSubstr("verified as this machine's policy says"));
}

TEST_F(TrustTest, APolicyThatDoesNotTrustTheServerRefusesItWithoutAQuestion) {
    const IssuedCertificate other(IssuedCertificate::Authority("some other authority"));
    const auto server = Serve(Issued(Good()));
    const std::string policy =
        folder_.WriteFile("policy.json", R"({"servers": [{"match": "*", "force": {"trust": ")" +
                                             folder_.WriteFile("other.pem", other.Pem()) + R"("}}]})");
    auto environment = Environment();
    environment.push_back("CIMHTTP_POLICY=" + policy);
    ExpectRefused(RunCimhttp(Arguments({"classes"}), environment), *server,
                  "no authority that this machine's policy for connections names has signed");
}

TEST_F(TrustTest, InfoSaysWhyThereIsNothingToSeeOfTls) {
    const auto server = Serve(Issued(Good()), 0);
    const FirstConnectionOnly before(address_, kHttpsPort,
                                     server->Port()); // the plug-in's; the one that looks comes next
    const auto run = Run({"--ca", ca_, "info"});
    EXPECT_EQ(run.status, 7) << run.errors;
    EXPECT_THAT(run.output, ContainsRegex("\nTLS +could not be looked at: [^\n]+\nclasses +1\n"));
}
