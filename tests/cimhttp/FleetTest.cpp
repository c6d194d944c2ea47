// What cimhttp makes of several servers.

#include "Fleet.h"

#include "ProgramRun.h"
#include "replay/ReplayListener.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TerminalProgram.h"
#include "support/TestCertificate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>

using nlohmann::json;
using support::ProgramRun;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

class FleetTest : public testing::Test {
  protected:
    /// The fans as `server/name`, in the order in which they are written.
    static std::vector<std::string> Fans(const ProgramRun& run) {
        std::vector<std::string> fans;
        for (const json& record : support::ParsedJson(run.output)) {
            fans.push_back(record.at("server").get<std::string>() + '/' +
                           record.at("properties").at("Name").at("value").get<std::string>());
        }
        return fans;
    }

    ProgramRun Instances(const std::string& servers, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"-c", servers, "instances", "TEST_Fan", "-o", "json"});
        return fleet_.Run(options);
    }

    static std::vector<std::string> Lines(const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    Fleet fleet_;
};

} // namespace

// --- Which servers -----------------------------------------------------------------------------------------------

TEST_F(FleetTest, APatternIsForTheConnectionsThatMatchInTheOrderOfTheirNames) {
    fleet_.Add("rack2", {"b"});
    fleet_.Add("rack1", {"a"});
    fleet_.Add("other", {"x"});
    const auto run = Instances("rack*");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(Fans(run), ElementsAre("rack1/a", "rack2/b"));
}

TEST_F(FleetTest, AListHasItsOwnOrderAndEachServerOnce) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    fleet_.Add("rack3", {"c"});
    EXPECT_THAT(Fans(Instances("rack3,rack1,rack*")), ElementsAre("rack3/c", "rack1/a", "rack2/b"));
}

TEST_F(FleetTest, AFileNamesAServerOrAPatternALine) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    fleet_.Add("other", {"x"});
    const std::string file = fleet_.WriteFile("servers", "# those downstairs\r\n\n  rack2 \r\nrack*\n");
    EXPECT_THAT(Fans(Instances('@' + file)), ElementsAre("rack2/b", "rack1/a"));
    EXPECT_THAT(Fans(Instances("other,@" + file)), ElementsAre("other/x", "rack2/b", "rack1/a"));
}

TEST_F(FleetTest, WhatNamesNoServerFailsBeforeAnyIsAsked) {
    const auto& server = fleet_.Add("rack1", {"a"});
    const auto expect = [&](const std::string& servers, const std::string& complaint) {
        const auto run = Instances(servers);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "cimhttp: " + complaint + "; 'cimhttp connection list' shows all\n");
    };
    expect("rack1,rakc1", "there is no connection 'rakc1' (did you mean rack1?)");
    expect("rack1,switch*", "no connection matches 'switch*'");
    expect(",", "',' names no connection");
    const std::string file = fleet_.WriteFile("servers", "rack1\nnobody\n");
    expect('@' + file, file + ", line 2: there is no connection 'nobody'");
    const std::string none = fleet_.WriteFile("none", "# nobody\n");
    expect('@' + none, "'@" + none + "' names no connection");
    EXPECT_EQ(server.ConnectionCount(), 0U);
}

TEST_F(FleetTest, AFileThatCannotBeReadIsNamed) {
    const auto run = Instances("@/nowhere/servers");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("/nowhere/servers cannot be read"));
}

TEST_F(FleetTest, OneServerByItsPlainNameIsWrittenAsEver) {
    const auto& server = fleet_.Add("rack1", {"a"});
    const std::string host = support::LoopbackAddress();
    for (const char* form : {"table", "plain", "json", "csv", "mof"}) {
        const auto named = fleet_.Run({"-c", "rack1", "instances", "TEST_Fan", "-o", form, "--as-completed"});
        const auto matched = fleet_.Run({"-c", "rack1*", "instances", "TEST_Fan", "-o", form});
        EXPECT_EQ(named.status, 0) << named.errors;
        EXPECT_THAT(named.output, Not(HasSubstr("rack1"))) << form;
        EXPECT_THAT(matched.output, HasSubstr("rack1")) << form;
    }
    EXPECT_GT(server.ConnectionCount(), 0U);
}

TEST_F(FleetTest, ACheckIsOfOneServer) {
    const auto& server = fleet_.Add("rack1", {"a"});
    const auto run = fleet_.Run({"-c", "rack*", "check", "TEST_Fan"});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.output, StartsWith("UNKNOWN - a check is of one server"));
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(server.ConnectionCount(), 0U);
}

// --- How they are written ----------------------------------------------------------------------------------------

TEST_F(FleetTest, ATableNamesTheServerFirst) {
    fleet_.Add("rack1", {"a", "b"});
    fleet_.Add("rack2", {"c"});
    const auto run = fleet_.Run({"-c", "rack*", "instances", "TEST_Fan"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "Server  Name  Speed\n"
                          "------  ----  -----\n"
                          "rack1   a         3\n"
                          "rack1   b         3\n"
                          "rack2   c         3\n");
}

TEST_F(FleetTest, CsvHasTheHeadingsOnceAndTheServerFirst) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    const auto run = fleet_.Run({"-c", "rack*", "instances", "TEST_Fan", "-o", "csv", "--property", "Speed"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "Server,Path,Property,Type,Value,Text\r\n"
                          "rack1,\"TEST_Fan.Name=\"\"a\"\"\",Speed,uint32,3,3\r\n"
                          "rack2,\"TEST_Fan.Name=\"\"b\"\"\",Speed,uint32,3,3\r\n");
}

TEST_F(FleetTest, ListsAndLinesNameTheServer) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    EXPECT_EQ(fleet_.Run({"-c", "rack*", "instances", "TEST_Fan", "-o", "plain"}).output, "Server  rack1\n"
                                                                                          "Name    a\n"
                                                                                          "Speed   3\n"
                                                                                          "\n"
                                                                                          "Server  rack2\n"
                                                                                          "Name    b\n"
                                                                                          "Speed   3\n");
    EXPECT_EQ(fleet_.Run({"-c", "rack*", "classes"}).output, "rack1: TEST_Fan\nrack2: TEST_Fan\n");
    EXPECT_THAT(fleet_.Run({"-c", "rack*", "class", "TEST_Fan"}).output,
                testing::MatchesRegex("// rack1\nclass TEST_Fan(.|\n)*\n};\n\n// rack2\nclass TEST_Fan(.|\n)*"));
}

TEST_F(FleetTest, EveryJsonIsAnArrayOfRecordsWithTheServer) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    EXPECT_EQ(support::ParsedJson(fleet_.Run({"-c", "rack*", "classes", "-o", "json"}).output),
              json({{{"server", "rack1"}, {"name", "TEST_Fan"}}, {{"server", "rack2"}, {"name", "TEST_Fan"}}}));
    const json classes = support::ParsedJson(fleet_.Run({"-c", "rack*", "class", "TEST_Fan", "-o", "json"}).output);
    ASSERT_EQ(classes.size(), 2U);
    EXPECT_EQ(classes[1].at("server"), "rack2");
    EXPECT_EQ(classes[1].at("name"), "TEST_Fan");
    const json infos = support::ParsedJson(fleet_.Run({"-c", "rack*", "info", "-o", "json"}).output);
    ASSERT_EQ(infos.size(), 2U);
    EXPECT_EQ(infos[0].at("server"), "rack1");
    EXPECT_THAT(infos[0].at("url").get<std::string>(), StartsWith("http://" + support::LoopbackAddress()));
}

TEST_F(FleetTest, ColumnsThatOnlySomeServersHaveStandAmongThoseOfAll) {
    fleet_.Add("rack1", {"a"});
    auto& other = fleet_.Add("rack2", {});
    other.Answer("GetClass", "TEST_Fan",
                 "<CLASS NAME=\"TEST_Fan\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
                 "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY><PROPERTY NAME=\"Maker\" "
                 "TYPE=\"string\"/></CLASS>");
    other.Answer("EnumerateInstances", "TEST_Fan",
                 "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Fan\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
                 "VALUETYPE=\"string\">b</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"TEST_Fan\">"
                 "<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>b</VALUE></PROPERTY><PROPERTY NAME=\"Maker\" "
                 "TYPE=\"string\"><VALUE>ACME</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>");
    EXPECT_EQ(fleet_.Run({"-c", "rack*", "instances", "TEST_Fan"}).output, "Server  Name  Maker  Speed\n"
                                                                           "------  ----  -----  -----\n"
                                                                           "rack1   a     –          3\n"
                                                                           "rack2   b     ACME       –\n");
    EXPECT_EQ(fleet_.Run({"-c", "rack*", "instances", "TEST_Fan", "--wide"}).output,
              "Server,Class,Path,Name,Maker,Speed\r\n"
              "rack1,TEST_Fan,\"TEST_Fan.Name=\"\"a\"\"\",a,,3\r\n"
              "rack2,TEST_Fan,\"TEST_Fan.Name=\"\"b\"\"\",b,ACME,\r\n");
}

// --- What goes wrong ---------------------------------------------------------------------------------------------

TEST_F(FleetTest, WhatOneServerLacksCostsNoOther) {
    fleet_.Add("rack1", {"a"});
    fleet_.AddDead("rack2");
    fleet_.AddFaulty("rack3", support::faults::StalledAt(20));
    fleet_.AddFaulty("rack4", support::faults::ResetAt(20));
    auto& locked = fleet_.Add("rack5", {"x"});
    locked.RequireUser("reader", "secret");
    fleet_.AddConnection("rack5", locked.Listen(0), R"(,"user":"reader","password":"wrong")");
    fleet_.Add("rack6", {"b"});
    const auto run = Instances("rack*", {"--timeout", "5"});
    EXPECT_EQ(run.status, 8);
    EXPECT_THAT(Fans(run), ElementsAre("rack1/a", "rack6/b"));
    const auto errors = Lines(run.errors);
    ASSERT_EQ(errors.size(), 4U) << run.errors;
    EXPECT_THAT(errors[0], StartsWith("cimhttp: rack2: no connection to http://"));
    EXPECT_THAT(errors[1], StartsWith("cimhttp: rack3: the class TEST_Fan cannot be read from http://"));
    EXPECT_THAT(errors[1], HasSubstr("; a server has 5 seconds for all that it is asked, --timeout gives more"));
    EXPECT_THAT(errors[2], StartsWith("cimhttp: rack4: the class TEST_Fan cannot be read from http://"));
    EXPECT_THAT(errors[3], StartsWith("cimhttp: rack5: the class TEST_Fan cannot be read from http://"));
}

TEST_F(FleetTest, AServerHasItsTimeoutForAllOfItsAnswersTogether) {
    fleet_.AddFaulty("rack1", support::faults::Delayed(std::chrono::milliseconds(1400))); // several answers
    fleet_.AddDead("rack2");
    EXPECT_EQ(fleet_.Run({"-c", "rack1", "--timeout", "60", "instances", "TEST_Fan"}).status, 0);
    const auto run = Instances("rack*", {"--timeout", "2"});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.errors, HasSubstr("a server has 2 seconds for all that it is asked"));
}

TEST_F(FleetTest, TheExitStatusOfAllIsThatOfEachWhereThisIsTheSame) {
    fleet_.AddDead("dead1");
    fleet_.AddDead("dead2");
    fleet_.Add("good1", {"a"});
    fleet_.Add("good2", {}).Fail("GetClass", "TEST_Fan", 6, "no such class");
    const auto dead = Instances("dead*");
    EXPECT_EQ(dead.status, 3);
    EXPECT_EQ(dead.output, "");
    EXPECT_EQ(Instances("good1,dead1").status, 8);
    EXPECT_EQ(Instances("good2,dead1").status, 8);
    EXPECT_EQ(Instances("good2,").status, 5);
}

TEST_F(FleetTest, WhatCannotBeShownOfSomeServersMakesTheStatusSeven) {
    fleet_.Add("rack1", {"a"});
    auto& server = fleet_.Add("rack2", {});
    server.Answer("EnumerateInstances", "TEST_Fan",
                  "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Fan\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
                  "VALUETYPE=\"string\">b</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"TEST_Fan\">"
                  "<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>b</VALUE></PROPERTY><PROPERTY NAME=\"Speed\" "
                  "TYPE=\"uint32\"><VALUE>fast</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>");
    const auto run = Instances("rack*");
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(Fans(run), ElementsAre("rack1/a", "rack2/b"));
    EXPECT_THAT(run.errors, StartsWith("cimhttp: rack2: 1 value could not be taken over"));
    EXPECT_EQ(Lines(run.errors).size(), 1U);
}

TEST_F(FleetTest, NobodyIsAskedForAPassword) {
    auto& locked = fleet_.Add("rack1", {"a"});
    locked.RequireUser("reader", "secret");
    fleet_.AddConnection("rack1", locked.Listen(0), R"(,"user":"reader")");
    support::TerminalProgram program(CIMHTTP_PROGRAM, {"-c", "rack*", "classes"}, {fleet_.Environment()}, {200, 24});
    EXPECT_EQ(program.Wait(), 2);
    EXPECT_THAT(program.Screen(), HasSubstr("cimhttp: rack1: the user reader needs a password: give --password-file"));
    EXPECT_EQ(locked.ConnectionCount(), 0U);
}

TEST_F(FleetTest, NobodyIsAskedToTrustAServer) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    const demo::DemoServer server(options);
    fleet_.AddConnection("rack1", 5989, R"(,"tls":true)");
    fleet_.WriteFile("cimhttp/connections.json",
                     R"({"rack1":{"host":")" + support::LoopbackAddress() + R"(","tls":true}})");
    support::TerminalProgram program(CIMHTTP_PROGRAM, {"-c", "rack*", "classes"}, {fleet_.Environment()}, {200, 24});
    EXPECT_EQ(program.Wait(), 3);
    EXPECT_THAT(program.Screen(), HasSubstr("'cimhttp connection test rack1' asks"));
}

TEST_F(FleetTest, AnInterruptEndsAll) {
    for (const char* name : {"rack1", "rack2"}) {
        fleet_.AddFaulty(name, support::faults::StalledAt(0));
    }
    support::TerminalProgram program(CIMHTTP_PROGRAM, {"-c", "rack*", "classes"}, {fleet_.Environment()}, {200, 24});
    ASSERT_TRUE(program.AwaitText("0 of 2 servers"));
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_THAT(program.Screen(), HasSubstr("cimhttp: interrupted"));
}

TEST_F(FleetTest, ATraceIsAFileForEachServer) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    const auto together = Instances("rack*", {"--trace", fleet_.Path("trace")});
    EXPECT_EQ(together.status, 2);
    EXPECT_THAT(together.errors, HasSubstr("trace.{server}"));
    EXPECT_EQ(Instances("rack*", {"--trace", fleet_.Path("trace-{server}")}).status, 0);
    EXPECT_THAT(support::ReadFile(fleet_.Path("trace-rack1")), HasSubstr("TEST_Fan"));
    EXPECT_THAT(support::ReadFile(fleet_.Path("trace-rack2")), HasSubstr("TEST_Fan"));
}

TEST_F(FleetTest, ARecordingIsAFileForEachServerAndPlaysAsIt) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    EXPECT_EQ(fleet_.Run({"-c", "rack*", "record", fleet_.Path("together"), "instances", "TEST_Fan"}).status, 2);
    const auto run = fleet_.Run({"-c", "rack*", "record", fleet_.Path("{server}.rec"), "instances", "TEST_Fan"});
    EXPECT_EQ(run.status, 0) << run.errors;
    demo::Recording recording(support::ReadFile(fleet_.Path("rack2.rec")));
    const demo::ReplayListener player(
        recording, [](const auto&) {}, support::SecondLoopbackAddress(), 5988, nullptr);
    const auto played =
        RunCimhttp({"--host", support::SecondLoopbackAddress(), "instances", "TEST_Fan", "-o", "plain"});
    EXPECT_THAT(played.output, HasSubstr("Name   b"));
    EXPECT_THAT(played.output, Not(HasSubstr("Name   a")));
}

TEST_F(FleetTest, StatisticsAreOfAllServersTogether) {
    for (const char* const name : {"rack1", "rack2", "rack3"}) {
        fleet_.Add(name, {"a"});
    }
    const auto run = Instances("rack*", {"--stats"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, testing::ContainsRegex("\nEnumerateInstances +3 "));
}

TEST_F(FleetTest, EachServerIsVerifiedByItsOwnAuthority) {
    const support::TestCertificate good(support::TestCertificate::For(support::LoopbackAddress()));
    const support::TestCertificate other(support::TestCertificate::For(support::LoopbackAddress()));
    std::vector<std::unique_ptr<support::CimServer>> servers;
    for (int i = 0; i < 6; ++i) {
        auto& server = *servers.emplace_back(std::make_unique<support::CimServer>());
        AnswerWithFans(server, {"fan" + std::to_string(i)});
        fleet_.AddConnection("rack" + std::to_string(i), server.ListenTls(0, good),
                             R"(,"tls":true,"ca":")" + (i == 4 ? other : good).CaFile() + '"');
    }
    const auto run = Instances("rack*");
    EXPECT_EQ(run.status, 8);
    EXPECT_THAT(Fans(run), ElementsAre("rack0/fan0", "rack1/fan1", "rack2/fan2", "rack3/fan3", "rack5/fan5"));
    EXPECT_THAT(run.errors, testing::ContainsRegex("rack4: no connection to https://.*certificate"));
}

TEST_F(FleetTest, TheLogNamesTheServer) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {}).Fail("GetClass", "TEST_Fan", 1, "broken");
    const auto run = Instances("rack*", {"--log", "error"});
    EXPECT_EQ(run.status, 8);
    EXPECT_THAT(run.errors, testing::ContainsRegex(" error rack2: "));
    EXPECT_THAT(run.errors, Not(testing::ContainsRegex(" error rack1: ")));
}

TEST_F(FleetTest, AConnectionIsKeptUnderOneNameAtATime) {
    fleet_.Add("rack1", {"a"});
    const auto run = fleet_.Run({"-c", "rack*", "connection", "list"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
}

// --- How many at once, in which order ----------------------------------------------------------------------------

namespace {

/// Counts how many servers are asked at once, and lets none of them answer before a number of them is.
class Gate {
  public:
    explicit Gate(std::size_t needed) : needed_(needed) {}

    void Pass() {
        std::unique_lock<std::mutex> lock(mutex_);
        greatest_ = std::max(greatest_, ++inside_);
        changed_.notify_all();
        changed_.wait_for(lock, std::chrono::minutes(1), [&] { return greatest_ >= needed_; });
        // leaves time for another one that must not come
        changed_.wait_for(lock, std::chrono::milliseconds(100), [&] { return greatest_ > needed_; });
        --inside_;
    }

    std::size_t Greatest() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return greatest_;
    }

  private:
    const std::size_t needed_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::size_t inside_ = 0;
    std::size_t greatest_ = 0;
};

} // namespace

// What the servers of these tests share lives as long as they do.

TEST_F(FleetTest, NoMoreServersThanThatAreAskedAtOnce) {
    constexpr std::size_t kParallel = 3;
    const auto gate = std::make_shared<Gate>(kParallel);
    for (const char* name : {"rack1", "rack2", "rack3", "rack4", "rack5", "rack6", "rack7", "rack8", "rack9"}) {
        fleet_.AddFaulty(name, [gate](support::Connection& client, const std::string& answer) {
            gate->Pass();
            client.Write(answer);
        });
    }
    const auto run = fleet_.Run({"-c", "rack*", "--parallel", "3", "classes"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(gate->Greatest(), kParallel);
}

TEST_F(FleetTest, TheOrderIsThatOfTheListHoweverLateTheFirstIs) {
    const auto secondIsDone = std::make_shared<std::promise<void>>();
    const auto second = std::make_shared<std::shared_future<void>>(secondIsDone->get_future());
    const auto connections = std::make_shared<std::atomic<int>>(0);
    fleet_.AddFaulty("rack1", [second](support::Connection& client, const std::string& answer) {
        second->wait_for(std::chrono::minutes(1));
        client.Write(answer);
    });
    fleet_.AddScripted("rack2", [secondIsDone, connections](support::Connection& client) {
        while (const auto request = client.ReadRequest()) {
            client.Write(FanAnswer(request->body));
        }
        if ((*connections)++ == 0) { // the program has read all, and closed the connection
            secondIsDone->set_value();
        }
    });
    EXPECT_THAT(Fans(Instances("rack*")), ElementsAre("rack1/faulty", "rack2/faulty"));
    EXPECT_EQ(second->wait_for(std::chrono::seconds(0)), std::future_status::ready);
    EXPECT_THAT(Fans(Instances("rack*", {"--as-completed"})),
                testing::UnorderedElementsAre("rack1/faulty", "rack2/faulty"));
}

// --- A whole room ------------------------------------------------------------------------------------------------

TEST_F(FleetTest, AmongFortyServersThoseThatAreWellAreReadAndTheOthersNamed) {
    constexpr int kServers = 40;
    constexpr int kFirstPort = 6000; // below those that the system gives
    std::vector<std::unique_ptr<demo::DemoServer>> servers;
    std::vector<std::string> well;
    std::size_t failing = 0;
    for (int i = 0; i < kServers; ++i) {
        const std::string name = "rack" + std::to_string(100 + i);
        const int kind = i % 20; // of twenty, two are dead, one trickles, one resets its connections
        if (kind == 3 || kind == 11) {
            fleet_.AddDead(name);
        } else if (kind == 7) {
            fleet_.AddFaulty(name, support::faults::Dripped(std::chrono::milliseconds(50)));
        } else if (kind == 15) {
            fleet_.AddFaulty(name, support::faults::ResetAt(100));
        } else {
            demo::DemoServerOptions options;
            options.address = support::LoopbackAddress();
            options.httpPort = kFirstPort + 2 * i;
            options.httpsPort = options.httpPort + 1;
            options.volumes = 3;
            servers.push_back(std::make_unique<demo::DemoServer>(options));
            fleet_.AddConnection(name, static_cast<std::uint16_t>(options.httpPort));
            well.insert(well.end(), 3, name);
            continue;
        }
        ++failing;
    }
    const auto run = fleet_.Run(
        {"-c", "rack*", "--parallel", "8", "--timeout", "15", "instances", "DEMO_StorageVolume", "-o", "json"});
    EXPECT_EQ(run.status, 8) << run.errors;
    std::vector<std::string> named;
    for (const json& record : support::ParsedJson(run.output)) {
        named.push_back(record.at("server"));
    }
    EXPECT_EQ(named, well);
    EXPECT_EQ(Lines(run.errors).size(), failing) << run.errors;
    EXPECT_THAT(Lines(run.errors), testing::Each(testing::ContainsRegex("^cimhttp: rack1[0-9][0-9]: ")));
}

// --- collect and watch -------------------------------------------------------------------------------------------

namespace {

constexpr const char* kDocument = "<vyx version=\"1\"><class name=\"TEST_Fan\"/></vyx>";

} // namespace

TEST_F(FleetTest, CollectWritesALineForEachServerIntoOneFile) {
    fleet_.Add("rack1", {"a", "b"});
    fleet_.AddDead("rack2");
    fleet_.Add("rack3", {"c"});
    const std::string document = fleet_.WriteFile("requested.xml", kDocument);
    const std::string file = fleet_.WriteFile("collected.jsonl", "as it was\n");
    const auto run = fleet_.Run({"-c", "rack*", "collect", document, "--out", file});
    EXPECT_EQ(run.status, 8);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, StartsWith("cimhttp: rack2: no connection to http://"));
    const auto lines = Lines(support::ReadFile(file));
    ASSERT_EQ(lines.size(), 3U);
    const json first = support::ParsedJson(lines[0]);
    EXPECT_EQ(first.at("server"), "rack1");
    EXPECT_THAT(first.at("url").get<std::string>(), StartsWith("http://"));
    EXPECT_EQ(first.at("classes").at(0).at("instances").size(), 2U);
    EXPECT_EQ(first.at("complete"), true);
    const json second = support::ParsedJson(lines[1]);
    EXPECT_EQ(second.at("server"), "rack2");
    EXPECT_EQ(second.at("complete"), false);
    EXPECT_THAT(second.at("failure").get<std::string>(), StartsWith("no connection to http://"));
    EXPECT_EQ(support::ParsedJson(lines[2]).at("server"), "rack3");
    EXPECT_EQ(fleet_.Run({"-c", "rack*", "collect", document}).output, support::ReadFile(file));
}

TEST_F(FleetTest, CollectLeavesTheFileAsItWasWhereAllServersFail) {
    fleet_.AddDead("rack1");
    fleet_.AddDead("rack2");
    const std::string document = fleet_.WriteFile("requested.xml", kDocument);
    const std::string file = fleet_.WriteFile("collected.jsonl", "as it was\n");
    EXPECT_EQ(fleet_.Run({"-c", "rack*", "collect", document, "--out", file}).status, 3);
    EXPECT_EQ(support::ReadFile(file), "as it was\n");
}

TEST_F(FleetTest, CollectWritesAFileForEachServerWhereItsNameIsInTheFiles) {
    fleet_.Add("rack1", {"a", "b"});
    fleet_.AddDead("rack2");
    fleet_.Add("rack3", {"c"});
    const std::string document = fleet_.WriteFile("requested.xml", kDocument);
    fleet_.WriteFile("rack2.json", "as it was\n");
    const auto run = fleet_.Run({"-c", "rack*", "collect", document, "--out", fleet_.Path("{server}.json")});
    EXPECT_EQ(run.status, 8);
    const json first = support::ParsedJson(support::ReadFile(fleet_.Path("rack1.json")));
    EXPECT_EQ(first.at("server"), "rack1");
    EXPECT_EQ(first.at("classes").at(0).at("instances").size(), 2U);
    EXPECT_EQ(support::ReadFile(fleet_.Path("rack2.json")), "as it was\n");
    EXPECT_EQ(support::ParsedJson(support::ReadFile(fleet_.Path("rack3.json"))).at("server"), "rack3");
}

TEST_F(FleetTest, CollectWritesAPageForEachServer) {
    fleet_.Add("rack1", {"a", "b"});
    fleet_.AddDead("rack2");
    const std::string document = fleet_.WriteFile("requested.xml", kDocument);
    fleet_.WriteFile("rack2.html", "as it was\n");
    const auto run = fleet_.Run({"-c", "rack*", "collect", document, "--html", fleet_.Path("{server}.html")});
    EXPECT_EQ(run.status, 8);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(support::ReadFile(fleet_.Path("rack1.html")), StartsWith("<!DOCTYPE html>"));
    EXPECT_EQ(support::ReadFile(fleet_.Path("rack2.html")), "as it was\n");
}

TEST_F(FleetTest, CollectMakesNoPageOfSeveralServersTogether) {
    const auto& server = fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    const std::string document = fleet_.WriteFile("requested.xml", kDocument);
    const auto run = fleet_.Run({"-c", "rack*", "collect", document, "--html", fleet_.Path("all.html")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("--html needs {server} in the file's name"));
    EXPECT_EQ(server.ConnectionCount(), 0U);
}

TEST_F(FleetTest, CollectComplainsOfItsDocumentOnce) {
    const auto& server = fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    const auto run = fleet_.Run({"-c", "rack*", "collect", fleet_.WriteFile("requested.xml", "<vyx/>")});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(Lines(run.errors).size(), 1U) << run.errors;
    EXPECT_EQ(server.ConnectionCount(), 0U);
}

TEST_F(FleetTest, WatchNamesTheServerOfEachLine) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    const auto run =
        fleet_.Run({"-c", "rack*", "watch", "TEST_Fan", "--interval", "0.01", "--count", "1", "-o", "json"});
    EXPECT_EQ(run.status, 0) << run.errors;
    std::set<std::string> fans;
    for (const std::string& line : Lines(run.output)) {
        const json record = support::ParsedJson(line);
        EXPECT_EQ(record.at("change"), "present");
        fans.insert(record.at("server").get<std::string>() + '/' + record.at("path").get<std::string>());
    }
    EXPECT_THAT(fans, ElementsAre("rack1/TEST_Fan.Name=\"a\"", "rack2/TEST_Fan.Name=\"b\""));
    const auto text = fleet_.Run({"-c", "rack*", "watch", "TEST_Fan", "--interval", "0.01", "--count", "0"});
    EXPECT_THAT(Lines(text.output), testing::Each(testing::ContainsRegex("^rack[12]: ")));
}

TEST_F(FleetTest, WatchTellsOnceOfAServerThatIsAwayAndTriesItAgain) {
    fleet_.Add("rack1", {"a"});
    const auto failures = std::make_shared<std::atomic<int>>(0);
    fleet_.AddFaulty("rack2", [failures](support::Connection& client, const std::string& answer) {
        if ((*failures)++ < 3) {
            client.Reset();
        } else {
            client.Write(answer);
        }
    });
    const auto run =
        fleet_.Run({"-c", "rack*", "watch", "TEST_Fan", "--interval", "0.01", "--count", "0", "-o", "json"});
    EXPECT_EQ(run.status, 0) << run.errors;
    std::vector<std::string> ofSecond;
    for (const std::string& line : Lines(run.output)) {
        const json record = support::ParsedJson(line);
        if (record.at("server") == "rack2") {
            ofSecond.push_back(record.at("change"));
        }
    }
    std::sort(ofSecond.begin(), ofSecond.end());
    EXPECT_THAT(ofSecond, ElementsAre("back", "lost", "present"));
    EXPECT_THAT(run.output, HasSubstr("rack1"));
}

TEST_F(FleetTest, WatchEndsWithWhatCannotChangeByWaiting) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {}).Fail("GetClass", "TEST_Fan", 6, "no such class");
    const auto run = fleet_.Run({"-c", "rack*", "watch", "TEST_Fan", "--interval", "0.01", "--count", "1"});
    EXPECT_EQ(run.status, 8);
    EXPECT_THAT(run.errors, StartsWith("cimhttp: rack2: there is no class TEST_Fan on http://"));
    EXPECT_THAT(run.output, HasSubstr("rack1: "));
}

TEST_F(FleetTest, WatchRefusesMoreServersThanItMayConnectTo) {
    fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"b"});
    const auto run = fleet_.Run({"-c", "rack*", "--parallel", "1", "watch", "TEST_Fan"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("each of the 2 servers: --parallel allows 1"));
}

TEST_F(FleetTest, AnInterruptEndsAWatchOfSeveralServersInGoodOrder) {
    fleet_.Add("rack1", {"a"});
    fleet_.AddFaulty("rack2", support::faults::StalledAt(0));
    support::TerminalProgram program(CIMHTTP_PROGRAM, {"-c", "rack*", "watch", "TEST_Fan"}, {fleet_.Environment()},
                                     {200, 24});
    ASSERT_TRUE(program.AwaitText("rack1: "));
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), 0);
}
