// `count`: how many instances each class has, read from their names alone.

#include "CimXml.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/ScriptedServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

using Texts = std::vector<std::string>;

/// A server with the tree TEST_Device (TEST_Disk (TEST_FastDisk), TEST_Tape) and the class TEST_User.
class CountTest : public testing::Test {
  protected:
    CountTest() {
        server_.Listen(kHttpPort);
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Device\"/>");
        server_.Answer("EnumerateClasses", "",
                       ClassXml("TEST_Device", "") + ClassXml("TEST_Disk", "TEST_Device") +
                           ClassXml("TEST_FastDisk", "TEST_Disk") + ClassXml("TEST_Tape", "TEST_Device") +
                           ClassXml("TEST_User", ""));
        const std::string fast = PathXml("TEST_FastDisk", "f1") + PathXml("TEST_FastDisk", "f2");
        const std::string disks = PathXml("TEST_Disk", "d1") + fast;
        server_.Answer("EnumerateInstanceNames", "TEST_FastDisk", fast);
        server_.Answer("EnumerateInstanceNames", "TEST_Disk", disks);
        server_.Answer("EnumerateInstanceNames", "TEST_Tape", "");
        server_.Answer("EnumerateInstanceNames", "TEST_Device", disks);
        server_.Answer("EnumerateInstanceNames", "TEST_User", PathXml("TEST_User", "u1"));
    }

    ProgramRun Run(Texts arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address(), "count"});
        return RunCimhttp(arguments);
    }

    /// The classes that the server was asked for the instances of.
    Texts AskedFor() const {
        Texts classes;
        for (const auto& call : server_.Calls()) {
            if (call.method == "EnumerateInstanceNames") {
                classes.push_back(call.parameters.at("ClassName"));
            }
        }
        std::sort(classes.begin(), classes.end());
        return classes;
    }

    support::CimServer server_;
};

} // namespace

TEST_F(CountTest, AnInstanceCountsForItsOwnClass) {
    const auto run = Run({});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "Class          Count\n"
                          "-------------  -----\n"
                          "TEST_Disk          1\n"
                          "TEST_FastDisk      2\n"
                          "TEST_User          1\n"
                          "\n4 instances of 3 classes\n");
    EXPECT_EQ(run.errors, "");
}

TEST_F(CountTest, EachTopClassIsAskedForOnceAndNoOther) {
    Run({});
    EXPECT_THAT(AskedFor(), ElementsAre("TEST_Device", "TEST_User"));
    server_.ForgetCalls();
    Run({"test_*disk"});
    EXPECT_THAT(AskedFor(), ElementsAre("TEST_Disk"));
    server_.ForgetCalls();
    Run({"*T*k*"});
    EXPECT_THAT(AskedFor(), ElementsAre("TEST_Disk"));
}

TEST_F(CountTest, APatternSelectsAlsoAmongSubclasses) {
    EXPECT_EQ(Run({"test_device", "-o", "plain", "--all"}).output, "TEST_Device 0\n");
    EXPECT_EQ(Run({"*DISK", "-o", "plain"}).output, "TEST_Disk 1\nTEST_FastDisk 2\n");
    const auto none = Run({"nothing", "-o", "json"});
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.output, "[\n]\n");
    EXPECT_EQ(none.errors,
              "cimhttp: no class matches; without the pattern there are 5 (a part of a name is '*nothing*')\n");
}

TEST_F(CountTest, ClassesWithoutInstancesAreShownWhenAskedFor) {
    EXPECT_EQ(Run({"--all", "-o", "csv"}).output,
              "Class,Count\r\nTEST_Device,0\r\nTEST_Disk,1\r\nTEST_FastDisk,2\r\nTEST_Tape,0\r\nTEST_User,1\r\n");
    EXPECT_EQ(Run({"TEST_Tape"}).output, "0 instances of 0 classes\n");
}

TEST_F(CountTest, JsonHasNumbers) {
    EXPECT_EQ(support::ParsedJson(Run({"*disk", "-o", "json"}).output),
              support::ParsedJson(R"([{"class": "TEST_Disk", "count": 1}, {"class": "TEST_FastDisk", "count": 2}])"));
}

TEST_F(CountTest, CountsAreSortedAndLimited) {
    EXPECT_EQ(Run({"-o", "plain", "--sort", "count:desc"}).output, "TEST_FastDisk 2\nTEST_Disk 1\nTEST_User 1\n");
    EXPECT_EQ(Run({"-o", "plain", "--sort", "Count,Class:desc"}).output, "TEST_User 1\nTEST_Disk 1\nTEST_FastDisk 2\n");
    const auto run = Run({"--limit", "1", "--sort", "count:desc"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, AllOf(HasSubstr("TEST_FastDisk      2\n"), HasSubstr("\n4 instances of 3 classes\n")));
    EXPECT_EQ(run.errors, "cimhttp: 1 of 3 classes shown; without --limit all are\n");
    const auto wrong = Run({"--sort", "name"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.errors, "cimhttp: 'name' is nothing to sort counts by: there are class and count\n");
}

TEST_F(CountTest, AClassThatFailsIsNamedAndItsSubclassesAreAskedFor) {
    server_.Fail("EnumerateInstanceNames", "TEST_Device", 1, "out of order");
    const auto run = Run({});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.output, "Class          Count\n"
                          "-------------  -----\n"
                          "TEST_Device        –\n"
                          "TEST_Disk          1\n"
                          "TEST_FastDisk      2\n"
                          "TEST_User          1\n"
                          "\nat least 4 instances of 3 classes\n");
    EXPECT_THAT(run.errors, AllOf(HasSubstr("the class TEST_Device cannot be read"), HasSubstr("out of order"),
                                  HasSubstr("\ncimhttp: 1 class could not be counted\n")));
    EXPECT_THAT(AskedFor(), ElementsAre("TEST_Device", "TEST_Disk", "TEST_Tape", "TEST_User"));
    EXPECT_THAT(Run({"-o", "csv"}).output, HasSubstr("TEST_Device,\r\n"));
    EXPECT_EQ(support::ParsedJson(Run({"-o", "json"}).output).at(0).at("count"), nullptr);
}

TEST(Count, ClassesWithoutAnAnswerAreNotAskedForOneByOne) {
    std::atomic<int> asked{0};
    support::ScriptedServer server([&](support::Connection& client) {
        while (const auto request = client.ReadRequest()) {
            if (MethodIn(request->body) == "EnumerateClasses") {
                client.Write(HttpAnswer(request->body, ClassXml("TEST_A", "") + ClassXml("TEST_B", "TEST_A") +
                                                           ClassXml("TEST_C", "TEST_A") + ClassXml("TEST_D", "")));
            } else if (ClassIn(request->body) == "TEST_D") {
                client.Write(HttpAnswer(request->body, PathXml("TEST_D", "d")));
            } else {
                ++asked;
                return;
            }
        }
    });
    server.Listen(kHttpPort);
    const auto run = RunCimhttp({"--host", server.Address(), "count", "-o", "csv"});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.output, "Class,Count\r\nTEST_A,\r\nTEST_B,\r\nTEST_C,\r\nTEST_D,1\r\n");
    EXPECT_THAT(run.errors, AllOf(HasSubstr("the class TEST_A cannot be read"), HasSubstr("closed the connection"),
                                  HasSubstr("\ncimhttp: 3 classes could not be counted\n")));
    EXPECT_LE(asked, 2) << "the client may try again once, and nobody else";
}

TEST(Count, AServerThatIsGoneOrLetsNobodyInIsAskedNothingMore) {
    for (const auto& [answer, status] :
         {std::pair("", 3), std::pair("HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"
                                      "Content-Length: 0\r\n\r\n",
                                      4)}) {
        std::mutex connections; // each has a thread
        std::set<std::string> asked;
        support::ScriptedServer server([&, text = std::string(answer)](support::Connection& client) {
            while (const auto request = client.ReadRequest()) {
                if (MethodIn(request->body) == "EnumerateClasses") {
                    client.Write(HttpAnswer(request->body, ClassXml("TEST_A", "") + ClassXml("TEST_B", "") +
                                                               ClassXml("TEST_C", "") + ClassXml("TEST_D", "")));
                } else {
                    const std::lock_guard lock(connections);
                    asked.insert(ClassIn(request->body));
                    client.Write(text);
                    return;
                }
            }
        });
        server.Listen(kHttpPort);
        const auto run = RunCimhttp({"--host", server.Address(), "count"});
        server.Stop();
        EXPECT_EQ(run.status, status) << run.errors;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(asked.size(), status == 3 ? 2U : 1U);
    }
}

TEST_F(CountTest, ClassesTakeALimitToo) {
    const auto run = RunCimhttp({"--host", server_.Address(), "classes", "--limit", "1"});
    EXPECT_EQ(run.errors, "");
    server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_B\"/><CLASSNAME NAME=\"TEST_A\"/>");
    const auto two = RunCimhttp({"--host", server_.Address(), "classes", "--limit", "1", "-o", "json"});
    EXPECT_EQ(two.output, "[\"TEST_A\"]\n");
    EXPECT_EQ(two.errors, "cimhttp: 1 of 2 classes shown; without --limit all are\n");
}

TEST(Count, AgreesWithWbemcli) {
    if (support::FindProgram("wbemcli").empty()) {
        GTEST_SKIP() << "wbemcli is not installed";
    }
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.volumes = 7;
    options.schemas.push_back({CIMHTTP_SECOND_SCHEMA, ReadFile(CIMHTTP_SECOND_SCHEMA)});
    const demo::DemoServer server(options);
    const std::string place = support::LoopbackAddress() + ":5988/root/cimv2:";
    const auto counted =
        support::ParsedJson(RunCimhttp({"--host", support::LoopbackAddress(), "count", "--all", "-o", "json"}).output);
    std::map<std::string, std::size_t> counts;
    for (const json& row : counted) {
        counts[row.at("class")] = row.at("count");
    }
    EXPECT_EQ(counts.at("DEMO_StorageVolume"), 7U);
    std::size_t compared = 0;
    for (const auto& [name, count] : counts) {
        if (name.find("Process") != std::string::npos) {
            continue; // come and go meanwhile
        }
        const auto run = support::RunProgram(support::FindProgram("wbemcli"), {"ein", "http://" + place + name});
        ASSERT_EQ(run.status, 0) << run.errors;
        std::istringstream lines(run.output);
        std::size_t ofClass = 0;
        for (std::string line; std::getline(lines, line);) {
            ofClass += line.rfind(place + name + '.', 0) == 0 || line == place + name ? 1 : 0;
        }
        EXPECT_EQ(count, ofClass) << name;
        compared += ofClass > 0 ? 1 : 0;
    }
    EXPECT_GT(compared, 10U);
}
