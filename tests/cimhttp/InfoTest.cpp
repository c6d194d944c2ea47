// What `info` says of a server beyond the connection: what it calls itself, and what it can do.

#include "CimXml.h"
#include "LinkServer.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using nlohmann::json;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr unsigned kFailed = 1; // of CIM
constexpr unsigned kAccessDenied = 2;
constexpr unsigned kInvalidClass = 5;
constexpr unsigned kNotSupported = 7;

class InfoTest : public testing::Test {
  protected:
    InfoTest() {
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
        server_.Answer("EnumerateQualifiers", "", "");
    }

    ProgramRun Run(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"--host", server_.Address(), "info"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunCimhttp(arguments);
    }

    json Json(int status = 0) const {
        const auto run = Run({"-o", "json"});
        EXPECT_EQ(run.status, status) << run.errors;
        return support::ParsedJson(run.output);
    }

    LinkServer server_;
};

} // namespace

TEST(InfoOfTheDemoServer, HasItsNameItsInteropNamespaceAndItsOperations) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    const demo::DemoServer server(options);
    const auto text = RunCimhttp({"--host", support::LoopbackAddress(), "info"});
    EXPECT_EQ(text.status, 0) << text.errors;
    EXPECT_THAT(text.output, ContainsRegex("\ninterop     interop\nproduct     demo-server\nversion     [^\n]+\n"));
    EXPECT_THAT(text.output,
                ContainsRegex("\noperations  EnumerateClassNames [0-9.]+ ms; EnumerateQualifiers [0-9.]+ ms; "
                              "pulled enumerations [0-9.]+ ms; AssociatorNames [0-9.]+ ms\n"));
    const json info =
        support::ParsedJson(RunCimhttp({"--host", support::LoopbackAddress(), "info", "-o", "json"}).output);
    EXPECT_EQ(info.at("interop"), "interop");
    EXPECT_EQ(info.at("product"), "demo-server");
    EXPECT_EQ(info.at("operations"), support::ParsedJson(R"({"EnumerateClassNames": "supported",
        "EnumerateQualifiers": "supported", "pulled enumerations": "supported", "AssociatorNames": "supported"})"));
}

TEST(InfoOfTheDemoServer, HasForWhomAndSinceWhenItsCertificateIs) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    const demo::DemoServer server(options);
    const auto run = RunCimhttp({"--host", support::LoopbackAddress(), "--tls", "info", "-o", "json"});
    EXPECT_EQ(run.status, 0) << run.errors;
    const json info = support::ParsedJson(run.output);
    EXPECT_TRUE(info.at("names").is_array());
    EXPECT_FALSE(info.at("names").empty());
    EXPECT_LT(info.at("valid_from").get<std::string>(), info.at("valid_until").get<std::string>());
}

TEST_F(InfoTest, SaysWhatTheServerDoesNotSupportAndWhatFails) {
    server_.Fail("EnumerateClassNames", "", kNotSupported);
    server_.Fail("EnumerateQualifiers", "", kFailed);
    server_.Fail("OpenEnumerateInstancePaths", "CIMHTTP_NoSuchClass", kNotSupported);
    server_.Answer("EnumerateInstanceNames", "CIM_ComputerSystem", PathXml("CIM_ComputerSystem", "s"));
    server_.Fail("AssociatorNames", "s", kNotSupported);
    EXPECT_THAT(
        Run().output,
        AllOf(
            HasSubstr("\nclasses     not supported\n"),
            HasSubstr("\noperations  EnumerateClassNames not supported; EnumerateQualifiers fails: "
                      "CIM_ERR_FAILED: no luck; pulled enumerations not supported; AssociatorNames not supported\n")));
    const json info = Json(7);
    EXPECT_TRUE(info.at("classes").is_null());
    EXPECT_EQ(info.at("operations").at("EnumerateClassNames"), "not supported");
    EXPECT_EQ(info.at("operations").at("EnumerateQualifiers"), "fails: CIM_ERR_FAILED: no luck");
    EXPECT_EQ(info.at("operations").at("AssociatorNames"), "not supported");
}

TEST_F(InfoTest, TellsPulledEnumerationsByTheErrorAboutAClassThatThereIsNot) {
    server_.Fail("OpenEnumerateInstancePaths", "CIMHTTP_NoSuchClass", kInvalidClass);
    EXPECT_EQ(Json().at("operations").at("pulled enumerations"), "supported");
    EXPECT_THAT(Run().output, ContainsRegex("; pulled enumerations [0-9.]+ ms; "));
    server_.Fail("OpenEnumerateInstancePaths", "CIMHTTP_NoSuchClass", kFailed);
    EXPECT_EQ(Json().at("operations").at("pulled enumerations"), "not supported");
    server_.Fail("OpenEnumerateInstancePaths", "CIMHTTP_NoSuchClass", kAccessDenied);
    EXPECT_EQ(Json(7).at("operations").at("pulled enumerations"), "fails: CIM_ERR_ACCESS_DENIED: no luck");
}

TEST_F(InfoTest, MakesNothingUpWhereThereIsNoInteropNamespace) {
    const json info = Json();
    EXPECT_EQ(info.at("classes"), 1);
    EXPECT_TRUE(info.at("interop").is_null());
    EXPECT_FALSE(info.contains("product"));
    EXPECT_EQ(info.at("operations").at("AssociatorNames"), "not tried");
    EXPECT_THAT(Run().output,
                AllOf(HasSubstr("\ninterop     not found: CIM_ObjectManager in interop: CIM_ERR_NOT_FOUND: no luck; "
                                "CIM_ObjectManager in root/interop: "),
                      HasSubstr("AssociatorNames not tried, for want of an instance\n")));
}

TEST_F(InfoTest, ShowsAsMuchOfTheObjectManagerAsThereIs) {
    server_.Answer("GetClass", "root/interop:CIM_ObjectManager",
                   ClassXml("CIM_ObjectManager", "", DeclarationXml("Version", "string")));
    server_.Answer("EnumerateInstances", "root/interop:CIM_ObjectManager",
                   InstanceXml("CIM_ObjectManager", "acme", PropertyXml("Version", "string", "2.1")));
    server_.Answer("AssociatorNames", "root/interop:acme", "");
    const json info = Json();
    EXPECT_EQ(info.at("interop"), "root/interop");
    EXPECT_EQ(info.at("product"), "acme");
    EXPECT_EQ(info.at("version"), "2.1");
    EXPECT_FALSE(info.contains("description"));
    EXPECT_EQ(info.at("operations").at("AssociatorNames"), "supported");
}

TEST_F(InfoTest, FailsWhereTheClassesCannotBeListed) {
    server_.Fail("EnumerateClassNames", "", kFailed);
    const auto run = Run();
    EXPECT_EQ(run.status, 6);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("cimhttp: the classes of http://" + server_.Address() + " cannot be listed"));
}
