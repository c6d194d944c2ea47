// What the operator of a machine says of its servers, whichever host connects to them.

#include "ScopedPolicy.h"
#include "TlsTest.h"
#include "provider/PolicyFault.h"
#include "provider/PolicyFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Kind = RemoteFailure::Kind;

namespace {

const std::string kDigits(64, 'A');

std::string Entry(const std::string& match, const std::string& forced, const std::string& defaults = "") {
    return R"({"match": ")" + match + R"(", "force": {)" + forced + R"(}, "default": {)" + defaults + "}}";
}

std::string Policy(const std::string& entries) { return R"({"servers": [)" + entries + "]}"; }

std::string Text(const std::string& name, const std::string& text) { return '"' + name + R"(": ")" + text + '"'; }

class PolicyTest : public TlsTest {
  protected:
    PolicyTest() { log_->ExpectInfos(); }

    /// The policy has one entry, for all servers.
    void Force(const std::string& options) { policy_.Write(Policy(Entry("*", options))); }
    void Default(const std::string& options) { policy_.Write(Policy(Entry("*", "", options))); }

    /// Every connection is refused, whatever the port and the host's options, for a reason with this text.
    void ExpectAllRefused(const std::string& text) {
        const std::size_t before = CountConnections({kHttpPort}) + 1; // with the one that counts
        for (const int port : {kHttpPort, kHttpsPort, kOtherPort}) {
            for (const TCIMContext& options : {TCIMContext{}, TCIMContext{{kTlsKey, TCIMValue(false)}}}) {
                ExpectRefused(port, options, text);
            }
        }
        EXPECT_EQ(CountConnections({kHttpPort}), before);
    }

    void ExpectRefused(int port, const TCIMContext& options, const std::string& text) {
        log_->Forget();
        EXPECT_EQ(StatusOn(port, options), TVYXStatusCode::eRemoteConnectionFailed) << text;
        EXPECT_EQ(FailureKind(), Kind::kPolicy);
        EXPECT_THAT(Failure()->text, HasSubstr(text));
        EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTPNamespace::connect failed: " + Failure()->text));
        EXPECT_THAT(log_->Infos(), IsEmpty());
    }

    /// What the log says that the policy decided, without the part that names the policy.
    std::string Decision(int port, TCIMContext options = {}) {
        log_->Forget();
        StatusOn(port, std::move(options));
        const auto lines = log_->Infos();
        if (lines.size() != 1) {
            return std::to_string(lines.size()) + " lines";
        }
        const std::string head = "TCimHTTPNamespace: policy " + policy_.Path() + ", ";
        EXPECT_THAT(lines.front(), StartsWith(head));
        return lines.front().substr(head.size());
    }

    ScopedPolicy policy_{Policy("")};
};

// --- Which servers -----------------------------------------------------------------------------------------------

TEST_F(PolicyTest, APolicyThatDoesNotMatchChangesNothing) {
    server_.ListenTls(kHttpsPort, Certificate());
    policy_.Write(Policy(Entry("*.storage.example", R"("tls": false, "namespace": "other", "timeout": 1)")));
    EXPECT_TRUE(IsRead(kHttpPort));
    EXPECT_TRUE(IsRead(kHttpsPort));
    EXPECT_EQ(StatusOn(kOtherPort), TVYXStatusCode::eSuccess);
    const auto nameSpace = Allocated();
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 65535000U);
    EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String("root/cimv2"));
    EXPECT_THAT(log_->Infos(), IsEmpty());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(PolicyTest, NoSpellingOfAServerEvadesThePolicy) {
    policy_.Write(
        Policy(Entry("127.*", Text("trust", "/ca.pem")) + "," + Entry("localhost", Text("trust", "/ca.pem"))));
    for (const std::string& host :
         {std::string("127.0.0.1"), std::string("127.1"), std::string("0x7f.1"), std::string("2130706433"),
          std::string("::ffff:127.0.0.1"), std::string("[::ffff:127.0.0.1]"), std::string("localhost"), std::string(),
          std::string("LocalHost."), std::string("[localhost]"), std::string("127.0.0.1\0x", 11),
          std::string("127.0.0.1 x"), std::string("localh\\111st")}) {
        const auto nameSpace = Allocated();
        EXPECT_EQ(StatusOf([&] { nameSpace->connect(host, "", "", kHttpPort); }),
                  TVYXStatusCode::eRemoteConnectionFailed)
            << host;
        ASSERT_TRUE(nameSpace->LastFailure());
        EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kPolicy) << host;
    }
}

TEST_F(PolicyTest, WithoutEntriesAnyNameIsLeftToTheResolver) {
    const auto nameSpace = Allocated();
    nameSpace->connect(server_.Address() + std::string("\0x", 2), "", "", kHttpPort);
    EXPECT_TRUE(nameSpace->isConnected());
}

// --- Who decides -------------------------------------------------------------------------------------------------

TEST_F(PolicyTest, WhatIsForcedBeatsTheHostAndTheHostBeatsWhatIsDefault) {
    policy_.Write(Policy(Entry("*", R"("namespace": "forced")", R"("timeout": 1000, "connect.timeout": 2000)")));
    const auto nameSpace = Allocated({{kNamespaceKey, TCIMValue("root/own")}, {kTimeoutKey, TCIMValue(60000U)}});
    EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String("root/own"));
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String("forced"));
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 60000U);
    EXPECT_EQ(nameSpace->getPegClient()->getLimits().connectMilliseconds, 2000U);
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    EXPECT_EQ(server_.Calls().front().nameSpace, "forced");
}

TEST_F(PolicyTest, OfTheEntriesThatMatchTheFirstThatSetsAnOptionDecides) {
    policy_.Write(Policy(Entry("127.*", R"("timeout": 1000)", R"("namespace": "first")") + "," +
                         Entry("*.example", R"("timeout": 2000, "connect.timeout": 2000)") + "," +
                         Entry("*", R"("timeout": 3000, "connect.timeout": 3000)", R"("namespace": "third")")));
    const auto nameSpace = Allocated();
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 1000U);
    EXPECT_EQ(nameSpace->getPegClient()->getLimits().connectMilliseconds, 3000U);
    EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String("first"));
}

TEST_F(PolicyTest, LimitsCountForTheConnection) {
    Force(R"("limit.bytes": 100, "limit.objects": 7)");
    const auto nameSpace = Allocated();
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_EQ(nameSpace->getPegClient()->getLimits().answerObjects, 7U);
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    ASSERT_TRUE(nameSpace->LastFailure());
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kLimit);
    ServeClass("TEST_Disk", "", PropertyXml("One", "string") + PropertyXml("Two", "string"));
    Default(R"("limit.elements": 1)");
    EXPECT_FALSE(IsRead(kHttpPort));
    EXPECT_TRUE(IsRead(kHttpPort, {{kLimitElementsKey, TCIMValue(100U)}}));
}

TEST_F(PolicyTest, AnotherConnectionBeginsWithTheHostsOwnOptions) {
    const std::string other = "127.0.0.1"; // where nothing is connected to: on that port nothing is attempted
    policy_.Write(Policy(Entry(server_.Address(), R"("timeout": 1000, "limit.objects": 5, "namespace": "forced")")));
    const auto nameSpace = Allocated({{kTimeoutKey, TCIMValue(60000U)}});
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 1000U);
    nameSpace->disconnect();
    nameSpace->connect(other, "", "", kOtherPort);
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 60000U);
    EXPECT_EQ(nameSpace->getPegClient()->getLimits().answerObjects, 10000000U);
    EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String("root/cimv2"));
}

TEST_F(PolicyTest, AConnectionThatFailsLeavesTheOptionsOfTheOneBefore) {
    const auto nameSpace = Allocated({{kTimeoutKey, TCIMValue(60000U)}});
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    Force(R"("timeout": 1000, "limit.objects": 5, "namespace": "forced")");
    EXPECT_EQ(StatusOf([&] { nameSpace->connect(server_.Address(), "", "", kHttpPort); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_TRUE(nameSpace->isConnected());
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 60000U);
    EXPECT_EQ(nameSpace->getPegClient()->getLimits().answerObjects, 10000000U);
    EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String("root/cimv2"));
}

TEST_F(PolicyTest, EachConnectionReadsThePolicyAnew) {
    Force(R"("namespace": "one")");
    const auto nameSpace = Allocated();
    for (const char* const name : {"one", "two"}) {
        Force(Text("namespace", name));
        nameSpace->connect(server_.Address(), "", "", kHttpPort);
        EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String(name));
        nameSpace->disconnect();
    }
    policy_.Write("{");
    EXPECT_EQ(StatusOf([&] { nameSpace->connect(server_.Address(), "", "", kHttpPort); }),
              TVYXStatusCode::eRemoteConnectionFailed);
}

// --- Encryption --------------------------------------------------------------------------------------------------

TEST_F(PolicyTest, ForcedEncryptionCountsOnEveryPort) {
    server_.Stop();
    support::CimServer server(server_.Address());
    server.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", ""));
    server.ListenTls(kHttpPort, Certificate());
    server.ListenTls(kOtherPort, Certificate());
    Force(R"("tls": true)");
    EXPECT_TRUE(IsRead(kHttpPort)) << "a host that says nothing";
    EXPECT_TRUE(IsRead(kHttpPort, {{kTlsKey, TCIMValue(false)}}));
    EXPECT_TRUE(IsRead(kOtherPort));
    EXPECT_EQ(StatusOn(0), TVYXStatusCode::eRemoteConnectionFailed) << "there is no such port";
    EXPECT_EQ(FailureKind(), Kind::kOther);
    Default(R"("tls": true)");
    EXPECT_TRUE(IsRead(kHttpPort));
    EXPECT_FALSE(IsRead(kHttpPort, {{kTlsKey, TCIMValue(false)}}));
}

TEST_F(PolicyTest, ForcedVerificationRefusesAPlainConnection) {
    for (const std::string& option : {Text("trust", Certificate().CaFile()), Text("fingerprint", kDigits),
                                      Text("client.certificate", Certificate().CertificateFile())}) {
        Force(option);
        const std::string text = "is given for a connection that would not be encrypted";
        ExpectRefused(kHttpPort, {}, text);
        ExpectRefused(kOtherPort, {}, text);
        ExpectRefused(kHttpsPort, {{kTlsKey, TCIMValue(false)}}, text);
        EXPECT_THAT(Failure()->text, StartsWith("policy " + policy_.Path() + ": cimhttp."));
    }
    EXPECT_EQ(CountConnections({kHttpPort}), 0U);
}

TEST_F(PolicyTest, DefaultVerificationCountsWhereTheConnectionIsEncrypted) {
    const support::TestCertificate other(support::TestCertificate::Options{});
    server_.ListenTls(kHttpsPort, Certificate());
    Default(Text("trust", other.CaFile()));
    EXPECT_TRUE(IsRead(kHttpPort));
    EXPECT_EQ(StatusOn(kOtherPort), TVYXStatusCode::eSuccess);
    EXPECT_EQ(StatusOn(kHttpsPort), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(FailureKind(), Kind::kTls);
    EXPECT_TRUE(IsRead(kHttpsPort, {{kTrustKey, TCIMValue(Certificate().CaFile())}}));
    Default(Text("client.certificate", "/no/such/file"));
    EXPECT_TRUE(IsRead(kHttpPort));
    EXPECT_EQ(StatusOn(kHttpsPort), TVYXStatusCode::eRemoteConnectionFailed);
}

TEST_F(PolicyTest, EncryptionThatAPolicyTakesAwayIsNoWayAroundVerification) {
    const TCIMContext trust{{kTrustKey, TCIMValue(Certificate().CaFile())}};
    Force(R"("tls": false)");
    ExpectRefused(kHttpsPort, trust, "cimhttp.trust is given for a connection that would not be encrypted");
    Default(R"("tls": false)");
    ExpectRefused(kHttpsPort, trust, "cimhttp.trust is given for a connection that would not be encrypted");
    EXPECT_EQ(CountConnections({kHttpPort}), 0U);
}

TEST_F(PolicyTest, ForcedVerificationTakesThePlaceOfTheHostsOwn) {
    const support::TestCertificate other(support::TestCertificate::Options{});
    const std::string fingerprint = FingerprintOf(Certificate().CertificateFile());
    server_.ListenTls(kHttpsPort, Certificate());
    Force(Text("trust", other.CaFile()));
    EXPECT_EQ(StatusOn(kHttpsPort, {{kFingerprintKey, TCIMValue(fingerprint)}}),
              TVYXStatusCode::eRemoteConnectionFailed);
    Force(Text("trust", Certificate().CaFile()));
    EXPECT_EQ(StatusOn(kHttpsPort, {{kFingerprintKey, TCIMValue(kDigits)}}), TVYXStatusCode::eSuccess);
    Force(Text("fingerprint", kDigits));
    EXPECT_EQ(StatusOn(kHttpsPort, {{kTrustKey, TCIMValue(Certificate().CaFile())}}),
              TVYXStatusCode::eRemoteConnectionFailed);
    Force(Text("fingerprint", fingerprint));
    EXPECT_EQ(StatusOn(kHttpsPort, {{kTrustKey, TCIMValue(other.CaFile())}}), TVYXStatusCode::eSuccess);
    Default(Text("fingerprint", kDigits));
    EXPECT_EQ(StatusOn(kHttpsPort, {{kTrustKey, TCIMValue(Certificate().CaFile())}}), TVYXStatusCode::eSuccess)
        << "the host has decided";
}

TEST_F(PolicyTest, AForcedCertificateComesWithItsOwnKeyAlone) {
    server_.ListenTls(kHttpsPort, Certificate());
    const TCIMContext own{{kClientCertificateKey, TCIMValue("/own.pem")}, {kClientKeyKey, TCIMValue("/own.key")}};
    Force(Text("client.certificate", "/forced.pem"));
    EXPECT_THAT(Decision(kHttpsPort, own), EndsWith("client.certificate /forced.pem (forced; the host said /own.pem), "
                                                    "client.key none (forced; the host said /own.key)"));
    Default(Text("client.certificate", "/default.pem") + "," + Text("client.key", "/default.key"));
    EXPECT_THAT(Decision(kHttpsPort, {{kClientCertificateKey, TCIMValue("/own.pem")}}), EndsWith(": nothing"));
}

// --- The log -----------------------------------------------------------------------------------------------------

TEST_F(PolicyTest, ThePolicysDecisionIsLoggedOncePerConnection) {
    const std::string trust = Certificate().CaFile();
    server_.ListenTls(kHttpsPort, Certificate());
    policy_.Write(Policy(Entry("nobody", R"("tls": false)") + "," +
                         Entry("127.*", R"("tls": true, )" + Text("trust", trust), R"("timeout": 30000)")));
    EXPECT_EQ(Decision(kHttpsPort, {{kTrustKey, TCIMValue("/own.pem")}}),
              "entry 2 ('127.*'), for " + server_.Address() + ": tls true (forced), trust " + trust +
                  " (forced; the host said /own.pem), timeout 30000 (default)");
    policy_.Write(Policy(R"({"match": ["x", "127.?*"], "default": {"timeout": 30000}},)" + Entry("*", "")));
    EXPECT_EQ(Decision(kHttpsPort, {{kTimeoutKey, TCIMValue(5U)}}),
              "entry 1 ('127.?*'), entry 2 ('*'), for " + server_.Address() + ": nothing");
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(PolicyTest, NoPasswordIsLogged) {
    server_.ListenTls(kHttpsPort, Certificate());
    Force(Text("fingerprint", kDigits));
    const auto nameSpace = Allocated();
    EXPECT_EQ(StatusOf([&] { nameSpace->connect(server_.Address(), "reader", "s3cret", kHttpsPort); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_THAT(log_->Infos(), testing::SizeIs(1));
    for (const auto& lines : {log_->Infos(), log_->Errors(), log_->Debug()}) {
        EXPECT_THAT(lines, testing::Each(Not(HasSubstr("s3cret"))));
    }
    EXPECT_THAT(nameSpace->LastFailure()->text, Not(HasSubstr("s3cret")));
}

// --- The file ----------------------------------------------------------------------------------------------------

TEST_F(PolicyTest, APolicyThatIsNotUnderstoodRefusesEveryConnection) {
    for (const char* const content : {"", "{", "[]", R"({"servers": [{"match": "nobody", "forced": {}}]})"}) {
        policy_.Write(content);
        ExpectAllRefused("policy " + policy_.Path() + ": ");
    }
    EXPECT_EQ(Failure()->text, "policy " + policy_.Path() +
                                   ": entry 1 has a member that there is not: 'forced' (did you mean 'force'?)");
    policy_.Write("{\"servers\": [\n\noops");
    ExpectAllRefused("policy " + policy_.Path() + ": is no JSON: parse error at line 3");
}

TEST_F(PolicyTest, APolicyThatIsMissingOrCannotBeReadRefusesEveryConnection) {
    const support::TemporaryDirectory directory;
    const std::string folder = directory.Path().string();
    ScopedPolicy::Name(folder + "/none.json");
    ExpectAllRefused("policy " + folder + "/none.json: cannot be read: No such file or directory");
    ScopedPolicy::Name(folder);
    ExpectAllRefused("policy " + folder + ": is not a regular file");
    const std::string pipe = folder + "/pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    ScopedPolicy::Name(pipe);
    ExpectAllRefused("policy " + pipe + ": is not a regular file");
    ScopedPolicy::Name("policy.json");
    ExpectAllRefused("policy policy.json: is not an absolute path");
    ScopedPolicy::Name("/dev/null");
    ExpectAllRefused("policy /dev/null: is not a regular file");
}

TEST_F(PolicyTest, APolicyThatEverybodyCanWriteRefusesEveryConnection) {
    ASSERT_EQ(::chmod(policy_.Path().c_str(), 0646), 0);
    ExpectAllRefused("policy " + policy_.Path() + ": can be written by everybody");
    ASSERT_EQ(::chmod(policy_.Path().c_str(), 0664), 0);
    EXPECT_TRUE(IsRead(kHttpPort));
}

TEST_F(PolicyTest, APolicyOfAMebibyteIsReadAndALargerOneRefusesEveryConnection) {
    std::string content = Policy(Entry("*", R"("namespace": "large")"));
    content.resize(PolicyFile::kMaxBytes, ' ');
    policy_.Write(content);
    EXPECT_EQ(Decision(kHttpPort), "entry 1 ('*'), for " + server_.Address() + ": namespace large (forced)");
    policy_.Write(content + ' ');
    ExpectAllRefused("policy " + policy_.Path() + ": has more than 1048576 bytes");
}

TEST_F(PolicyTest, APolicyThatTheProcessMayNotReadRefusesEveryConnection) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root may read everything";
    }
    ASSERT_EQ(::chmod(policy_.Path().c_str(), 0), 0);
    ExpectAllRefused("policy " + policy_.Path() + ": cannot be read: Permission denied");
}

TEST_F(PolicyTest, TheVariableNamesTheFileAndAnEmptyOneDoesNot) {
    EXPECT_EQ(PolicyFile::OfMachine().Path(), policy_.Path());
    EXPECT_THROW(PolicyFile(policy_.Path() + ".none", false).Read(), PolicyFault);
    ScopedPolicy::Name("");
    EXPECT_EQ(PolicyFile::OfMachine().Path(), "/etc/cimhttp/policy.json");
    ::unsetenv(PolicyFile::kVariable);
    EXPECT_EQ(PolicyFile::OfMachine().Path(), "/etc/cimhttp/policy.json");
}

TEST_F(PolicyTest, TheUsualFileNeedNotBeThereButALinkToNothingIsAFault) {
    const support::TemporaryDirectory directory;
    const std::string path = (directory.Path() / "policy.json").string();
    EXPECT_EQ(PolicyFile(path, true).Read(), std::nullopt);
    EXPECT_EQ(PolicyFile(path + "/policy.json", true).Read(), std::nullopt);
    ASSERT_EQ(::symlink("nothing", path.c_str()), 0);
    EXPECT_THROW(PolicyFile(path, true).Read(), PolicyFault);
    directory.WriteFile("nothing", "{}");
    EXPECT_EQ(PolicyFile(path, true).Read(), "{}");
}

} // namespace
