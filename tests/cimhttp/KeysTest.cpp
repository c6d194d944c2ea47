// One instance by its class and some keys, where nobody wants to write its path: `instance CLASS --key`.

#include "CimXml.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using support::TerminalProgram;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

using Texts = std::vector<std::string>;

std::string KeyXml(const std::string& name, const std::string& type, const std::string& value) {
    return "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE VALUETYPE=\"" + type + "\">" + value +
           "</KEYVALUE></KEYBINDING>";
}

/// TEST_Disk with the keys Name, Number, Made and Kind, the last of which has a value map.
class KeysTest : public testing::Test {
  protected:
    KeysTest() {
        server_.Listen(kHttpPort);
        const std::string key = QualifierXml("Key", "boolean", "TRUE");
        const std::string mapped = key + QualifierXml("ValueMap", {"1", "2"}) +
                                   QualifierXml("Values", std::vector<std::string>{"spinning", "solid"});
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
        server_.Answer("GetClass", "TEST_Disk",
                       ClassXml("TEST_Disk", "",
                                DeclarationXml("Number", "uint32", key) + DeclarationXml("Made", "datetime", key) +
                                    DeclarationXml("Kind", "uint16", mapped)));
        server_.Answer("EnumerateInstanceNames", "TEST_Disk",
                       Disk("sda", "1", "20261121083900.000000+060", "1") +
                           Disk("sda", "2", "20261121083900.000000+060", "2") +
                           Disk("sdb", "10", "20261122083900.000000+060", "2"));
        server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "found"));
    }

    static std::string Disk(const std::string& name, const std::string& number, const std::string& made,
                            const std::string& kind) {
        return "<INSTANCENAME CLASSNAME=\"TEST_Disk\">" + KeyXml("Name", "string", name) +
               KeyXml("Number", "numeric", number) + KeyXml("Made", "string", made) + KeyXml("Kind", "numeric", kind) +
               "</INSTANCENAME>";
    }

    static Texts Arguments(const std::string& address, const Texts& keys) {
        Texts arguments{"--host", address, "instance", "test_disk"};
        for (const std::string& key : keys) {
            arguments.insert(arguments.end(), {"--key", key});
        }
        return arguments;
    }

    ProgramRun Run(const Texts& keys) const { return RunCimhttp(Arguments(server_.Address(), keys)); }

    /// The instance that these keys lead to; empty for none.
    std::string Asked(const Texts& keys) {
        server_.ForgetCalls();
        const auto run = Run(keys);
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_THAT(run.output, StartsWith("Name  found\n"));
        const auto calls = server_.Calls();
        const auto last =
            std::find_if(calls.rbegin(), calls.rend(), [](const auto& call) { return call.method == "GetInstance"; });
        return last == calls.rend() ? std::string() : BoundKeys(last->http.body);
    }

    /// The values of the keys in a request.
    static std::string BoundKeys(const std::string& request) {
        std::string values;
        for (auto place = request.find("<KEYVALUE"); place != std::string::npos;
             place = request.find("<KEYVALUE", place + 1)) {
            const auto begin = request.find('>', place) + 1;
            values += (values.empty() ? "" : " ") + request.substr(begin, request.find('<', begin) - begin);
        }
        return values;
    }

    std::size_t CallsOf(const std::string& method) const {
        const auto calls = server_.Calls();
        return static_cast<std::size_t>(
            std::count_if(calls.begin(), calls.end(), [&](const auto& call) { return call.method == method; }));
    }

    support::CimServer server_;
};

} // namespace

TEST_F(KeysTest, TheOneInstanceThatFitsTheKeysIsShown) {
    EXPECT_THAT(Asked({"Name=sdb"}), HasSubstr("sdb"));
    EXPECT_EQ(CallsOf("EnumerateInstanceNames"), 1U);
    EXPECT_EQ(CallsOf("EnumerateInstances"), 0U);
    EXPECT_THAT(Asked({"NAME=sda", "number=2"}), AllOf(HasSubstr("sda"), HasSubstr("2 ")));
}

TEST_F(KeysTest, WithAllKeysTheInstanceIsReadWithoutAListOfPaths) {
    const std::string asked = Asked({"Name=a\"b", "number=7", "Made=20261121083900.000000+060", "Kind=2"});
    EXPECT_EQ(CallsOf("EnumerateInstanceNames"), 0U);
    EXPECT_THAT(asked, AllOf(HasSubstr("7"), HasSubstr("20261121083900.000000+060")));
    EXPECT_THAT(server_.Calls().back().method, "GetInstance");
}

TEST_F(KeysTest, ValuesMayBeAsTheyAreOrAsTheyAreShown) {
    EXPECT_THAT(Asked({"Made=2026-11-22 08:39:00 +01:00"}), HasSubstr("sdb"));
    EXPECT_THAT(Asked({"Made=2026-11-22 07:39"}), HasSubstr("sdb"));
    EXPECT_THAT(Asked({"Kind=spinning"}), HasSubstr(" 1"));
    EXPECT_THAT(Asked({"Number=10.0"}), HasSubstr("sdb"));
    EXPECT_EQ(Run({"Name=SDB"}).status, 5) << "case tells values apart";
    EXPECT_EQ(Run({"Kind=liquid"}).status, 5);
}

TEST_F(KeysTest, AllKeysMayBeAsTheyAreShown) {
    EXPECT_THAT(Asked({"Name=sdb", "Number=10", "Made=2026-11-22 08:39:00 +01:00", "Kind=solid"}), HasSubstr("sdb"));
    EXPECT_EQ(CallsOf("EnumerateInstanceNames"), 1U);
}

TEST_F(KeysTest, SeveralInstancesThatFitAreAFailureThatNamesTheKeyThatTellsThemApart) {
    const auto run = Run({"Name=sda"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "cimhttp: there are 2 instances of TEST_Disk with Name=sda: "
                          "TEST_Disk.Kind=1,Made=\"20261121083900.000000+060\",Name=\"sda\",Number=1 and "
                          "TEST_Disk.Kind=2,Made=\"20261121083900.000000+060\",Name=\"sda\",Number=2; "
                          "--key Kind=... tells them apart\n");
}

TEST_F(KeysTest, TheListOfThoseThatFitIsShort) {
    std::string paths;
    for (int i = 0; i < 50; ++i) {
        paths += Disk(std::string(1000, 'x'), std::to_string(i), "20261121083900.000000+060", "1");
    }
    server_.Answer("EnumerateInstanceNames", "TEST_Disk", paths);
    const auto run = Run({});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, AllOf(StartsWith("cimhttp: there are 50 instances of TEST_Disk: "),
                                  EndsWith("… and 45 more; --key Number=... tells them apart\n")));
    EXPECT_LT(run.errors.size(), 2000U);
}

TEST_F(KeysTest, WhereOneKeyIsNotEnoughThoseThatDifferAreNamed) {
    const std::string made = "20261121083900.000000+060";
    server_.Answer("EnumerateInstanceNames", "TEST_Disk",
                   Disk("a", "1", made, "1") + Disk("a", "2", made, "1") + Disk("b", "1", made, "1"));
    EXPECT_THAT(Run({}).errors, EndsWith("; --key Name=... and --key Number=... tell them apart\n"));
}

TEST_F(KeysTest, WhereNoInstanceFitsNothingIsFoundAndTheKeysAreNamed) {
    const auto run = Run({"Name=sdc"});
    EXPECT_EQ(run.status, 5);
    EXPECT_EQ(run.errors, "cimhttp: there is no instance of TEST_Disk with Name=sdc on http://" + server_.Address() +
                              "; its keys are Kind, Made, Name and Number, as in "
                              "TEST_Disk.Kind=1,Made=\"20261121083900.000000+060\",Name=\"sda\",Number=1\n");
    server_.Answer("EnumerateInstanceNames", "TEST_Disk", "");
    EXPECT_EQ(Run({}).errors, "cimhttp: there is no instance of TEST_Disk on http://" + server_.Address() + "\n");
    EXPECT_EQ(Run({}).status, 5);
}

TEST_F(KeysTest, WhatIsNoKeyIsRefusedBeforeThePathsAreRead) {
    const auto run = Run({"Nmae=sda"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, "cimhttp: the class TEST_Disk has no key Nmae (did you mean Name or Made?); its "
                          "keys are Kind, Made, Name and Number\n");
    EXPECT_EQ(CallsOf("EnumerateInstanceNames"), 0U);
    server_.ForgetCalls();
    EXPECT_THAT(Run({"Name"}).errors, HasSubstr("'Name' is not a key such as 'Name=eth0'"));
    EXPECT_THAT(Run({"=sda"}).errors, HasSubstr("'=sda' is not a key such as 'Name=eth0'"));
    EXPECT_THAT(Run({"Name=a", "NAME=b"}).errors, HasSubstr("the key NAME is given twice"));
    const auto path =
        RunCimhttp({"--host", server_.Address(), "instance", "TEST_Disk.Name=\"a\"", "--key", "Number=1"});
    EXPECT_EQ(path.status, 2);
    EXPECT_THAT(path.errors, HasSubstr("--key goes with the name of a class"));
    EXPECT_TRUE(server_.Calls().empty());
}

TEST_F(KeysTest, TheOnlyInstanceNeedsNoKey) {
    server_.Answer("EnumerateInstanceNames", "TEST_Disk", Disk("only", "1", "20261121083900.000000+060", "1"));
    EXPECT_THAT(Asked({}), HasSubstr("only"));
}

TEST_F(KeysTest, AServerThatDoesNotDescribeItsClassesHasKeysToo) {
    server_.Fail("GetClass", "TEST_Disk", 7, "not here");
    EXPECT_THAT(Asked({"name=sdb"}), HasSubstr("sdb"));
    EXPECT_THAT(Run({"Colour=red"}).errors, HasSubstr("has no key Colour; its keys are Kind, Made, Name and Number"));
    EXPECT_EQ(Run({"Colour=red"}).status, 2);
}

TEST_F(KeysTest, AnInstanceOfASubclassIsFoundByAllItsKeys) {
    server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", ""));
    server_.Answer("GetClass", "TEST_FastDisk", ClassXml("TEST_FastDisk", "TEST_Disk"));
    server_.Answer("EnumerateInstanceNames", "TEST_Disk", PathXml("TEST_FastDisk", "sda"));
    server_.Fail("GetInstance", "", 6, "no such instance");
    EXPECT_EQ(Run({"Name=sda"}).status, 5);
    const auto calls = server_.Calls();
    EXPECT_THAT(calls.back().http.body, HasSubstr("TEST_FastDisk"));
    EXPECT_EQ(CallsOf("GetInstance"), 2U);
}

TEST_F(KeysTest, AtATerminalOneIsChosenByItsNumber) {
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments(server_.Address(), {"Name=sda"}), {"NO_COLOR=1"});
    ASSERT_TRUE(program.AwaitText("Which one (1-2, or nothing)? ")) << program.Screen();
    EXPECT_THAT(program.Screen(), HasSubstr("#  Kind  Made                       Name  Number\r\n"));
    EXPECT_THAT(program.Screen(), HasSubstr("2  2     20261121083900.000000+060  sda   2\r\n"));
    const std::size_t seen = program.Screen().size();
    program.Type("3\r");
    ASSERT_TRUE(program.AwaitText("Which one (1-2, or nothing)? ", seen)) << program.Screen();
    program.Type("2\r");
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Screen(), HasSubstr("\r\nName  found\r\n"));
    EXPECT_THAT(BoundKeys(server_.Calls().back().http.body), HasSubstr("2"));
    EXPECT_EQ(CallsOf("GetInstance"), 1U);
}

TEST_F(KeysTest, AnEmptyAnswerToTheQuestionEndsTheProgram) {
    for (const char* keys : {"\r", "\x04"}) {
        TerminalProgram program(CIMHTTP_PROGRAM, Arguments(server_.Address(), {}), {"NO_COLOR=1"});
        ASSERT_TRUE(program.AwaitText("Which one (1-3, or nothing)? ")) << program.Screen();
        program.Type(keys);
        EXPECT_EQ(program.Wait(), 0);
        EXPECT_THAT(program.Screen(), Not(HasSubstr("found")));
    }
    EXPECT_EQ(CallsOf("GetInstance"), 0U);
}

TEST_F(KeysTest, MoreThanAHundredInstancesThatFitAreAFailureAndNoQuestion) {
    std::string paths;
    for (int i = 0; i < 101; ++i) {
        paths += Disk("sda", std::to_string(i), "20261121083900.000000+060", "1");
    }
    server_.Answer("EnumerateInstanceNames", "TEST_Disk", paths);
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments(server_.Address(), {}), {"NO_COLOR=1"});
    EXPECT_EQ(program.Wait(), 2);
    EXPECT_THAT(program.Screen(), HasSubstr("there are 101 instances"));
}

TEST_F(KeysTest, KeysAreListedInEveryFormWithOneRequest) {
    const auto keys = [&](const Texts& more) {
        Texts arguments{"--host", server_.Address(), "instances", "TEST_Disk", "--keys"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunCimhttp(arguments);
    };
    server_.Answer("EnumerateInstanceNames", "TEST_Disk", PathXml("TEST_FastDisk", "b=c") + PathXml("TEST_Disk", ""));
    EXPECT_EQ(keys({}).output, "Class          Name\n-------------  ----\nTEST_Disk\nTEST_FastDisk  b=c\n");
    EXPECT_EQ(keys({"-o", "plain"}).output, "Name=\n\nName=b=c\n");
    EXPECT_EQ(keys({"-o", "csv"}).output, "Class,Name\r\nTEST_Disk,\"\"\r\nTEST_FastDisk,b=c\r\n");
    EXPECT_EQ(keys({"-o", "json"}).output, "[\n{\"class\":\"TEST_Disk\",\"keys\":{\"Name\":\"\"}},\n"
                                           "{\"class\":\"TEST_FastDisk\",\"keys\":{\"Name\":\"b=c\"}}\n]\n");
    EXPECT_EQ(keys({"--exact"}).output, "Name\n----\n\n");
    EXPECT_EQ(CallsOf("EnumerateInstanceNames"), 5U);
    EXPECT_EQ(server_.Calls().size(), 5U);
    EXPECT_EQ(keys({"--sort", "Name"}).status, 2);
    EXPECT_EQ(keys({"--paths"}).status, 2);
    EXPECT_EQ(keys({"-o", "mof"}).status, 2);
}

TEST(Keys, OfEveryTypeLeadToTheirInstance) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas.push_back({CIMHTTP_SECOND_SCHEMA, ReadFile(CIMHTTP_SECOND_SCHEMA)});
    const demo::DemoServer server(options);
    for (const char* const cls : {"WH_Thing", "WH_Ticket", "WH_Sample", "WH_Shipment", "DEMO_HostedFileSystem"}) {
        const Texts classCommand{"--host", support::LoopbackAddress(), "instances", cls};
        auto list = classCommand;
        list.insert(list.end(), {"--keys", "-o", "json", "--limit", "8"});
        auto paths = classCommand;
        paths.insert(paths.end(), {"--paths", "-o", "json", "--limit", "8"});
        const auto keys = support::ParsedJson(RunCimhttp(list).output);
        const auto expected = support::ParsedJson(RunCimhttp(paths).output);
        ASSERT_FALSE(keys.empty()) << cls;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            Texts arguments{"--host", support::LoopbackAddress(), "-o", "json", "instance", cls};
            for (const auto& [name, value] : keys.at(i).at("keys").items()) {
                const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
                arguments.insert(arguments.end(), {"--key", name + '=' + text});
            }
            const auto run = RunCimhttp(arguments);
            EXPECT_EQ(run.status, 0) << run.errors;
            EXPECT_EQ(support::ParsedJson(run.output).at(0).at("path"), expected.at(i));
        }
    }
}
