// The namespaces of a server: who tells them, and what is said when nobody does.

#include "CimXml.h"
#include "LinkServer.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr unsigned kFailed = 1; // of CIM

class NamespacesTest : public testing::Test {
  protected:
    ProgramRun Run(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"--host", server_.Address(), "namespaces"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunCimhttp(arguments);
    }

    /// Lets a class have instances with these names in a namespace.
    void Have(const std::string& nameSpace, const std::string& cls, const std::vector<std::string>& names) {
        std::string paths;
        for (const std::string& name : names) {
            paths += PathXml(cls, name);
        }
        server_.Answer("EnumerateInstanceNames", nameSpace + ':' + cls, paths);
    }

    LinkServer server_;
};

} // namespace

TEST(NamespacesOfTheDemoServer, AreSortedAndSayWhereTheyComeFrom) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    const demo::DemoServer server(options);
    const std::vector<std::string> command{"--host", support::LoopbackAddress(), "namespaces", "-o"};
    const auto run = [&](const char* form) {
        auto arguments = command;
        arguments.emplace_back(form);
        const auto result = RunCimhttp(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.output;
    };
    EXPECT_EQ(run("plain"), "interop\nroot/cimv2\n");
    EXPECT_EQ(run("csv"), "Name\r\ninterop\r\nroot/cimv2\r\n");
    EXPECT_EQ(support::ParsedJson(run("json")), support::ParsedJson(R"({"namespaces": ["interop", "root/cimv2"],
                                                       "source": {"class": "CIM_Namespace", "namespace": "interop"}})"));
}

TEST_F(NamespacesTest, AreThoseOfTheInteropNamespaceWhateverItsName) {
    Have("root/PG_InterOp", "CIM_Namespace", {"root/cimv2", "/root/PG_InterOp", "root/CIMv2"});
    Have("root", "__Namespace", {"nobody"});
    const auto run = Run();
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "root/cimv2\nroot/PG_InterOp\n");
    std::vector<std::string> asked;
    for (const auto& call : server_.Calls()) {
        asked.push_back(call.nameSpace);
    }
    EXPECT_EQ(asked, (std::vector<std::string>{"interop", "root/interop", "root/PG_InterOp"}));
}

TEST_F(NamespacesTest, AreLookedForBelowRootWithoutAnInteropNamespace) {
    Have("interop", "CIM_Namespace", {});
    Have("root", "__Namespace", {"sub", "cimv2"});
    Have("root/sub", "__Namespace", {"deep"});
    const json result = support::ParsedJson(Run({"-o", "json"}).output);
    EXPECT_EQ(result.at("namespaces"), json({"root", "root/cimv2", "root/sub", "root/sub/deep"}));
    EXPECT_EQ(result.at("source"), support::ParsedJson(R"({"class": "__Namespace", "namespace": "root"})"));
}

TEST_F(NamespacesTest, ANamespaceThatDoesNotTellWhatIsBelowItIsReported) {
    Have("root", "__Namespace", {"sub", "cimv2"});
    server_.Fail("EnumerateInstanceNames", "root/sub:__Namespace", kFailed);
    const auto run = Run();
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.output, "root\nroot/cimv2\nroot/sub\n");
    EXPECT_THAT(run.errors, StartsWith("cimhttp: not every namespace tells what is below it; the first: root/sub: "));
}

TEST_F(NamespacesTest, OfAServerThatTellsNoneAreNotMadeUp) {
    server_.Fail("EnumerateInstanceNames", "interop:CIM_Namespace", 3);
    Have("root/interop", "CIM_Namespace", {});
    const auto run = Run();
    EXPECT_EQ(run.status, 5);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    for (const char* part :
         {"does not tell its namespaces: CIM_Namespace in interop: CIM_ERR_INVALID_NAMESPACE",
          "; CIM_Namespace in root/interop: it has none; ", "; CIM_Namespace in root/PG_InterOp: CIM_ERR_NOT_FOUND",
          "; __Namespace in root: CIM_ERR_NOT_FOUND", "; __Namespace in root/cimv2: CIM_ERR_NOT_FOUND"}) {
        EXPECT_THAT(run.errors, HasSubstr(part));
    }
}

TEST(NamespacesOfAServer, ThatLetsNobodyInAreAskedForOnce) {
    support::CimServer server;
    server.Listen(5988);
    server.RequireUser("reader", "s3cret");
    const auto run = RunCimhttp({"--host", server.Address(), "namespaces"});
    EXPECT_EQ(run.status, 4);
    EXPECT_EQ(server.Calls().size(), 1U);
}
