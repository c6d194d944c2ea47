// The profiles that a server says it conforms to, and the instances with which they begin.

#include "CimXml.h"
#include "LinkServer.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr unsigned kFailed = 1; // of CIM
constexpr unsigned kNotSupported = 7;

/// A server with two profiles in `root/interop`.
class ProfilesTest : public testing::Test {
  protected:
    ProfilesTest() {
        const std::string organization = QualifierXml("ValueMap", std::vector<std::string>{"1", "2"}) +
                                         QualifierXml("Values", std::vector<std::string>{"Other", "DMTF"});
        server_.Answer("EnumerateQualifiers", "", "");
        server_.Answer("GetClass", "root/interop:CIM_RegisteredProfile",
                       ClassXml("CIM_RegisteredProfile", "",
                                DeclarationXml("RegisteredOrganization", "uint16", organization) +
                                    DeclarationXml("OtherRegisteredOrganization", "string") +
                                    DeclarationXml("RegisteredName", "string") +
                                    DeclarationXml("RegisteredVersion", "string")));
        server_.Answer("EnumerateInstances", "root/interop:CIM_RegisteredProfile",
                       Profile("p2", "1", "Lamps", PropertyXml("OtherRegisteredOrganization", "string", "ACME")) +
                           Profile("p1", "2", "Fan", PropertyXml("RegisteredVersion", "string", "1.1.0")));
        server_.Answer("AssociatorNames", "p1",
                       "<OBJECTPATH>" + WholePathXml(PathXml("TEST_Fan", "f")) + "</OBJECTPATH>");
        server_.Answer("AssociatorNames", "p2", "");
    }

    static std::string Profile(const std::string& id, const std::string& organization, const std::string& name,
                               const std::string& more) {
        return InstanceXml("CIM_RegisteredProfile", id,
                           PropertyXml("RegisteredOrganization", "uint16", organization) +
                               PropertyXml("RegisteredName", "string", name) + more);
    }

    ProgramRun Run(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"--host", server_.Address(), "profiles"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunCimhttp(arguments);
    }

    LinkServer server_;
};

} // namespace

TEST(ProfilesOfTheDemoServer, HaveTheSystemAndItsPortsAsCentralInstances) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    const demo::DemoServer server(options);
    const std::vector<std::string> host{"--host", support::LoopbackAddress(), "-o", "json"};
    const auto read = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), host.begin(), host.end());
        const auto run = RunCimhttp(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return support::ParsedJson(run.output);
    };
    const json profiles = read({"profiles"});
    ASSERT_EQ(profiles.size(), 2U);
    const std::vector<std::string> classes{"DEMO_ComputerSystem", "DEMO_NetworkPort"};
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        EXPECT_EQ(profiles.at(i).at("organization"), "DMTF");
        const json instances = read({"instances", classes[i], "--paths"});
        const json& central = profiles.at(i).at("central_instances");
        ASSERT_EQ(central.size(), instances.size());
        for (std::size_t j = 0; j < central.size(); ++j) {
            EXPECT_THAT(central.at(j).get<std::string>(),
                        EndsWith("/root/cimv2:" + instances.at(j).get<std::string>()));
        }
    }
    EXPECT_EQ(profiles.at(0).at("name"), "Base Server");
    EXPECT_EQ(read({"instance", profiles.at(0).at("path")}).at(0).at("properties").at("RegisteredName").at("value"),
              "Base Server");
}

TEST_F(ProfilesTest, HaveOrganizationNameVersionAndCentralInstances) {
    EXPECT_EQ(Run().output, "Organization  Name   Version  Central instances\n"
                            "------------  -----  -------  ---------------------------------------------\n"
                            "ACME          Lamps  –\n"
                            "DMTF          Fan    1.1.0    //server.example/root/cimv2:TEST_Fan.Name=\"f\"\n");
    const auto run = Run({"-o", "json"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(support::ParsedJson(run.output), support::ParsedJson(R"([
        {"organization": "ACME", "name": "Lamps", "version": null, "central_instances": [],
         "path": "root/interop:CIM_RegisteredProfile.Name=\"p2\""},
        {"organization": "DMTF", "name": "Fan", "version": "1.1.0",
         "central_instances": ["//server.example/root/cimv2:TEST_Fan.Name=\"f\""],
         "path": "root/interop:CIM_RegisteredProfile.Name=\"p1\""}])"));
    EXPECT_THAT(Run({"-o", "csv"}).output,
                AllOf(HasSubstr("\r\nACME,Lamps,,[]\r\n"), HasSubstr("\r\nDMTF,Fan,1.1.0,\"[\"\"//server.example/")));
}

TEST_F(ProfilesTest, AreAskedForTheirElementsInTheirOwnNamespace) {
    Run();
    const auto calls = server_.Calls();
    const auto call = std::find_if(calls.begin(), calls.end(), [](const auto& one) {
        return one.method == "AssociatorNames" && one.object == "p1";
    });
    ASSERT_NE(call, calls.end());
    EXPECT_EQ(call->nameSpace, "root/interop");
    EXPECT_THAT(call->body,
                AllOf(HasSubstr("<CLASSNAME NAME=\"CIM_ElementConformsToProfile\"/>"),
                      HasSubstr("<VALUE>ConformantStandard</VALUE>"), HasSubstr("<VALUE>ManagedElement</VALUE>")));
}

TEST_F(ProfilesTest, WithoutAssociationsHaveUnknownCentralInstancesAndNotNone) {
    server_.Fail("AssociatorNames", "p1", kNotSupported);
    server_.Fail("AssociatorNames", "p2", kNotSupported);
    const auto run = Run({"-o", "json"});
    EXPECT_EQ(run.status, 7);
    for (const json& profile : support::ParsedJson(run.output)) {
        EXPECT_TRUE(profile.at("central_instances").is_null());
    }
    EXPECT_THAT(run.errors, StartsWith("cimhttp: the central instances of 2 profiles are not known; the first: "));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    EXPECT_THAT(Run().output, HasSubstr("DMTF          Fan    1.1.0    –\n"));
    EXPECT_THAT(Run({"-o", "csv"}).output, HasSubstr("\r\nDMTF,Fan,1.1.0,\r\n"));
}

TEST_F(ProfilesTest, AProfileWhoseCentralInstancesCannotBeReadDoesNotHideTheOthers) {
    server_.Fail("AssociatorNames", "p2", kFailed);
    const auto run = Run({"-o", "json"});
    EXPECT_EQ(run.status, 7);
    EXPECT_TRUE(support::ParsedJson(run.output).at(0).at("central_instances").is_null());
    EXPECT_EQ(support::ParsedJson(run.output).at(1).at("central_instances").size(), 1U);
    EXPECT_THAT(run.errors, HasSubstr("of 1 profile are not known"));
}

TEST(ProfilesOfAServer, WithoutAnInteropNamespaceAreNotMadeUp) {
    const LinkServer server;
    const auto run = RunCimhttp({"--host", server.Address(), "profiles"});
    EXPECT_EQ(run.status, 5);
    EXPECT_EQ(run.output, "");
    for (const char* part : {"does not tell its profiles: ", "CIM_RegisteredProfile in interop: ",
                             "CIM_RegisteredProfile in root/interop: ", "CIM_RegisteredProfile in root/PG_InterOp: "}) {
        EXPECT_THAT(run.errors, HasSubstr(part));
    }
}
