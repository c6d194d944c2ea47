// cimhttp doctor: what works of a server, step by step.

#include "CimXml.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::uint16_t kHttpsPort = 5989;

/// What was found of one check.
struct Finding {
    std::string result;
    bool hasTime;
    std::string remark;
};

class DoctorTest : public testing::Test {
  protected:
    struct Visit {
        int status;
        std::vector<std::string> results; ///< in order
        std::map<std::string, Finding> findings;

        const Finding& At(const std::string& check) const { return findings.at(check); }
    };

    static Visit Examine(std::vector<std::string> arguments, const std::vector<std::string>& environment = {}) {
        arguments.insert(arguments.end(), {"doctor", "-o", "json"});
        const auto run = RunCimhttp(arguments, environment);
        Visit visit{run.status, {}, {}};
        for (const json& row : support::ParsedJsonOrDiscarded(run.output)) {
            visit.results.push_back(row.at("result"));
            visit.findings[row.at("check")] = {row.at("result"), row.at("ms").is_number(), row.at("remark")};
        }
        EXPECT_EQ(visit.results.size(), 8U) << run.output << run.errors;
        return visit;
    }

    static void ExpectNotTried(const Visit& visit, std::size_t from) {
        for (std::size_t i = from; i < visit.results.size(); ++i) {
            EXPECT_EQ(visit.results[i], "not tried") << i;
        }
    }

    const std::string address_ = support::LoopbackAddress();
    const support::TemporaryDirectory folder_;
};

demo::DemoServerOptions OptionsOf(const std::string& address) {
    demo::DemoServerOptions options;
    options.address = address;
    return options;
}

} // namespace

TEST_F(DoctorTest, AServerInGoodHealthPassesEverything) {
    const demo::DemoServer server(OptionsOf(address_));
    const auto visit = Examine({"--host", address_});
    EXPECT_EQ(visit.status, 0);
    EXPECT_THAT(visit.results,
                ElementsAre("passed", "passed", "not used", "passed", "passed", "passed", "passed", "passed"));
    EXPECT_EQ(visit.At("name look-up").remark, address_);
    EXPECT_EQ(visit.At("TCP").remark, "port 5988");
    EXPECT_EQ(visit.At("namespace").remark, "root/cimv2");
    EXPECT_THAT(visit.At("class operations").remark, testing::ContainsRegex("^[0-9]+ classes$"));
    EXPECT_THAT(visit.At("qualifiers").remark, testing::ContainsRegex("^[0-9]+ declarations$"));
    EXPECT_EQ(visit.At("enumeration").remark, "CIM_ComputerSystem: 1 instance");
    for (const char* check : {"name look-up", "TCP", "login", "class operations", "qualifiers", "enumeration"}) {
        EXPECT_TRUE(visit.At(check).hasTime) << check;
    }
}

TEST_F(DoctorTest, TlsSaysWhatItIsVerifiedBy) {
    const demo::DemoServer server(OptionsOf(address_));
    const std::string ca = folder_.WriteFile("ca.pem", server.CertificatePem());
    EXPECT_THAT(Examine({"--host", address_, "--tls"}).At("TLS").remark, HasSubstr("; not verified: give --ca FILE"));
    const auto visit = Examine({"--host", address_, "--tls", "--ca", ca});
    EXPECT_EQ(visit.status, 0);
    EXPECT_EQ(visit.At("TLS").result, "passed");
    EXPECT_TRUE(visit.At("TLS").hasTime);
    EXPECT_EQ(visit.At("TLS").remark, "TLSv1.3; verified by the authorities in " + ca);
}

TEST_F(DoctorTest, AnUnknownNameLeavesTheRestUntried) {
    const auto visit = Examine({"--host", "no-such..host"});
    EXPECT_EQ(visit.status, 3);
    EXPECT_EQ(visit.results.front(), "failed");
    EXPECT_THAT(visit.At("name look-up").remark, HasSubstr("check the spelling"));
    ExpectNotTried(visit, 1);
}

TEST_F(DoctorTest, AClosedPortLeavesTheRestUntried) {
    const auto visit = Examine({"--host", address_, "--port", "15988"});
    EXPECT_EQ(visit.status, 3);
    EXPECT_EQ(visit.At("TCP").result, "failed");
    EXPECT_THAT(visit.At("TCP").remark, HasSubstr("nothing listens on port 15988; is the CIM server running?"));
    ExpectNotTried(visit, 2);
}

TEST_F(DoctorTest, ACertificateThatIsRefusedIsAFailureOfTls) {
    const demo::DemoServer server(OptionsOf(address_));
    const auto visit = Examine({"--host", address_, "--tls", "--fingerprint", std::string(64, 'a')});
    EXPECT_EQ(visit.status, 3);
    EXPECT_EQ(visit.At("TCP").result, "passed");
    EXPECT_EQ(visit.At("TLS").result, "failed");
    EXPECT_THAT(visit.At("TLS").remark, HasSubstr("its certificate is "));
    ExpectNotTried(visit, 3);
}

TEST_F(DoctorTest, APortThatDoesNotSpeakTlsIsAFailureOfTls) {
    support::CimServer server(address_);
    server.Listen(kHttpsPort);
    const auto visit = Examine({"--host", address_, "--tls", "--timeout", "1"});
    EXPECT_EQ(visit.status, 3);
    EXPECT_EQ(visit.At("TLS").result, "failed");
    ExpectNotTried(visit, 3);
}

TEST_F(DoctorTest, ARefusedLoginLeavesTheRestUntried) {
    support::CimServer server(address_);
    server.Listen(kHttpPort);
    server.RequireUser("reader", "s3cret");
    const auto visit = Examine({"--host", address_, "--user", "reader"}, {"CIMHTTP_PASSWORD=guess"});
    EXPECT_EQ(visit.status, 4);
    EXPECT_EQ(visit.At("login").result, "failed");
    EXPECT_THAT(visit.At("login").remark, HasSubstr("does not accept the user reader with this password"));
    ExpectNotTried(visit, 4);
    EXPECT_THAT(Examine({"--host", address_}).At("login").remark, HasSubstr("give --user NAME"));
    server.Answer("EnumerateClassNames", "", "");
    EXPECT_EQ(Examine({"--host", address_, "--user", "reader"}, {"CIMHTTP_PASSWORD=s3cret"}).At("login").remark,
              "as reader");
}

TEST_F(DoctorTest, AnUnknownNamespaceIsToldFromAFailedLogin) {
    const demo::DemoServer server(OptionsOf(address_));
    const auto visit = Examine({"--host", address_, "--namespace", "root/nowhere"});
    EXPECT_EQ(visit.status, 6);
    EXPECT_EQ(visit.At("login").result, "passed");
    EXPECT_EQ(visit.At("namespace").result, "failed");
    EXPECT_THAT(visit.At("namespace").remark, HasSubstr("--namespace names another"));
    ExpectNotTried(visit, 5);
}

TEST_F(DoctorTest, AServerThatIsNoCimServerFailsAtTheFirstAnswer) {
    support::CimServer server(address_);
    server.Listen(kHttpPort);
    server.AnswerNextWith("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    const auto visit = Examine({"--host", address_});
    EXPECT_EQ(visit.status, 6);
    EXPECT_EQ(visit.At("login").result, "failed");
    EXPECT_THAT(visit.At("login").remark, HasSubstr("is it a CIM server that answers there?"));
    ExpectNotTried(visit, 4);
}

TEST_F(DoctorTest, AServerWithoutClassesAndQualifiersIsReadAllTheSame) {
    support::CimServer server(address_);
    server.Listen(kHttpPort);
    for (const auto& [method, object] :
         {std::pair("EnumerateClassNames", ""), std::pair("EnumerateQualifiers", ""),
          std::pair("GetClass", "CIM_ComputerSystem"), std::pair("GetClass", "CIM_OperatingSystem")}) {
        server.Fail(method, object, 7, "no such operation here");
    }
    server.Fail("EnumerateInstances", "CIM_ComputerSystem", 5, "no such class");
    server.Answer("EnumerateInstances", "CIM_OperatingSystem", InstanceXml("CIM_OperatingSystem", "one"));
    const auto visit = Examine({"--host", address_});
    EXPECT_EQ(visit.status, 6);
    EXPECT_THAT(visit.results,
                ElementsAre("passed", "passed", "not used", "passed", "passed", "failed", "failed", "passed"));
    for (const char* check : {"class operations", "qualifiers"}) {
        EXPECT_THAT(visit.At(check).remark, AllOf(StartsWith("not supported ("), HasSubstr("no such operation here")));
    }
    EXPECT_EQ(visit.At("enumeration").remark, "CIM_OperatingSystem: 1 instance");
}

TEST_F(DoctorTest, NothingIsSaidOfANamespaceThatNoAnswerShows) {
    support::CimServer server(address_);
    server.Listen(kHttpPort);
    for (const auto& [method, object] :
         {std::pair("EnumerateClassNames", ""), std::pair("EnumerateQualifiers", ""),
          std::pair("GetClass", "CIM_ComputerSystem"), std::pair("EnumerateInstances", "CIM_ComputerSystem")}) {
        server.Fail(method, object, 7, "nothing here");
    }
    const auto visit = Examine({"--host", address_});
    EXPECT_EQ(visit.At("login").result, "passed");
    EXPECT_EQ(visit.At("namespace").result, "not tried");
    EXPECT_EQ(visit.At("enumeration").result, "failed");
}

TEST_F(DoctorTest, WithoutTheUsualClassesTheFirstThatHasNoSubclassIsEnumerated) {
    support::CimServer server(address_);
    server.Listen(kHttpPort);
    server.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Top\"/><CLASSNAME NAME=\"TEST_Leaf\"/>");
    server.Answer("EnumerateClasses", "",
                  "<CLASS NAME=\"TEST_Top\"/><CLASS NAME=\"TEST_Leaf\" SUPERCLASS=\"TEST_Top\"/>");
    server.Answer("EnumerateQualifiers", "", "");
    server.Answer("GetClass", "TEST_Leaf", ClassXml("TEST_Leaf", ""));
    server.Answer("EnumerateInstances", "TEST_Leaf", "");
    EXPECT_EQ(Examine({"--host", address_}).At("enumeration").remark, "TEST_Leaf: 0 instances");
}

TEST_F(DoctorTest, AValueThatCannotBeTakenOverFailsTheEnumeration) {
    support::CimServer server(address_);
    server.Listen(kHttpPort);
    server.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"CIM_OperatingSystem\"/>");
    server.Answer("EnumerateQualifiers", "", "");
    server.Answer("GetClass", "CIM_OperatingSystem",
                  ClassXml("CIM_OperatingSystem", "", DeclarationXml("Size", "uint32")));
    server.Answer("EnumerateInstances", "CIM_OperatingSystem",
                  InstanceXml("CIM_OperatingSystem", "one", PropertyXml("Size", "string", "large")));
    const auto visit = Examine({"--host", address_});
    EXPECT_EQ(visit.status, 7);
    EXPECT_EQ(visit.At("enumeration").result, "failed");
    EXPECT_THAT(visit.At("enumeration").remark, HasSubstr("Size"));
}

TEST_F(DoctorTest, TheTableHasALineForEachCheckAndWhatToTry) {
    const auto run = RunCimhttp({"--host", "no-such..host", "doctor"});
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.output, testing::ContainsRegex("\nname look-up +failed +[0-9.]+  no host of this name is known"));
    EXPECT_THAT(run.output, testing::ContainsRegex("\nenumeration +not tried +–\n"));
}
