// Instances that are written while the rest of them is still to be read.

#include "ProgramRun.h"
#include "commands/HeldInstances.h"
#include "server/AccessLog.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using support::CimServer;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr int kHeld = 10000; // what is brought into order

std::string Name(int number) { return "n" + std::to_string(100000 + number); }

std::string Value(const std::string& text) { return "<VALUE>" + text + "</VALUE>"; }

struct TestProperty {
    std::string name;
    std::string type;
    std::string value;
};

std::string InstanceWith(int number, const std::vector<TestProperty>& more) {
    std::string xml;
    for (const auto& property : more) {
        xml += "<PROPERTY NAME=\"" + property.name + "\" TYPE=\"" + property.type + "\">" + Value(property.value) +
               "</PROPERTY>";
    }
    return "<VALUE.INSTANCEWITHPATH><INSTANCEPATH><NAMESPACEPATH><HOST>far</HOST><LOCALNAMESPACEPATH>"
           "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH></NAMESPACEPATH>"
           "<INSTANCENAME CLASSNAME=\"T\"><KEYBINDING NAME=\"Name\"><KEYVALUE>" +
           Name(number) +
           "</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH><INSTANCE CLASSNAME=\"T\">"
           "<PROPERTY NAME=\"Name\" TYPE=\"string\">" +
           Value(Name(number)) + "</PROPERTY>" + xml + "</INSTANCE></VALUE.INSTANCEWITHPATH>";
}

std::string Instance(int number) { return InstanceWith(number, {}); }

/// The instances with the numbers from `last` down to `first`, so that their order is not that of their paths.
std::string Instances(int first, int last) {
    std::string xml;
    for (int number = last; number >= first; --number) {
        xml += Instance(number);
    }
    return xml;
}

/// The lines from this one on.
std::vector<std::string> Lines(const std::string& text, std::size_t from = 0) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return {lines.begin() + static_cast<std::ptrdiff_t>(std::min(from, lines.size())), lines.end()};
}

/// A server with a class T, of which the test says the instances.
class StreamTest : public testing::Test {
  protected:
    void SetUp() override {
        server_.Listen(kHttpPort);
        server_.Answer("EnumerateQualifiers", "", "");
        server_.Answer("GetClass", "T",
                       "<CLASS NAME=\"T\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
                       "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY></CLASS>");
    }

    /// Two portions, of which the first has more than is held.
    void ServeMany() {
        server_.AnswerPortion("OpenEnumerateInstances", "T", Instances(2, kHeld + 2), "next");
        server_.AnswerPortion("PullInstancesWithPath", "next", Instances(0, 1), "");
    }

    /// The class with more properties, more instances than are held, which have a Size, and then this one.
    void ServeMore(const std::string& last) {
        server_.Answer("GetClass", "T",
                       "<CLASS NAME=\"T\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
                       "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY><PROPERTY NAME=\"Late\" "
                       "TYPE=\"string\"></PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"></PROPERTY></CLASS>");
        std::string first;
        for (int number = 1; number <= kHeld + 1; ++number) {
            first += InstanceWith(number, {{"Size", "uint64", std::to_string(number % 10)}});
        }
        server_.AnswerPortion("OpenEnumerateInstances", "T", first, "next");
        server_.AnswerPortion("PullInstancesWithPath", "next", last, "");
    }

    static auto Run(std::vector<std::string> arguments) {
        std::vector<std::string> all{"--host", support::LoopbackAddress(), "instances", "T"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return RunCimhttp(all);
    }

    CimServer server_;
};

TEST_F(StreamTest, AFewInstancesAreInTheOrderOfTheirPaths) {
    server_.AnswerPortion("OpenEnumerateInstances", "T", Instances(1, 2), "next");
    server_.AnswerPortion("PullInstancesWithPath", "next", Instances(0, 0), "");
    const auto run = Run({"-o", "csv"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "Path,Property,Type,Value,Text\r\n"
                          "\"T.Name=\"\"n100000\"\"\",Name,string,n100000,n100000\r\n"
                          "\"T.Name=\"\"n100001\"\"\",Name,string,n100001,n100001\r\n"
                          "\"T.Name=\"\"n100002\"\"\",Name,string,n100002,n100002\r\n");
}

TEST_F(StreamTest, ManyInstancesAreInTheOrderOfTheServerEachOnce) {
    ServeMany();
    const auto run = Run({"--wide"});
    EXPECT_EQ(run.status, 0) << run.errors;
    const auto lines = Lines(run.output, 0);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kHeld) + 4U);
    EXPECT_EQ(lines[0], "Class,Path,Name\r");
    EXPECT_THAT(lines[1], HasSubstr(Name(kHeld + 2)));
    EXPECT_THAT(lines[kHeld + 2], HasSubstr(Name(1)));
    EXPECT_THAT(lines[kHeld + 3], HasSubstr(Name(0)));
}

TEST_F(StreamTest, JsonAndMofAreWholeAlsoOfMany) {
    ServeMany();
    const auto json = Run({"-o", "json"});
    EXPECT_EQ(json.status, 0);
    const auto lines = Lines(json.output, kHeld + 2);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[0], HasSubstr("n100001"));
    EXPECT_THAT(lines[0], testing::EndsWith(","));
    EXPECT_THAT(lines[1], HasSubstr("n100000"));
    EXPECT_EQ(lines[2], "]");
    EXPECT_THAT(json.output, StartsWith("[\n{"));
    const auto mof = Lines(Run({"-o", "mof"}).output);
    EXPECT_EQ(std::count(mof.begin(), mof.end(), "instance of T"), kHeld + 3);
}

TEST_F(StreamTest, ATableOfManyIsInTheOrderOfTheServerToo) {
    ServeMany();
    const auto run = Run({});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.errors, IsEmpty());
    const auto lines = Lines(run.output);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kHeld) + 5U);
    EXPECT_EQ(lines[0], "Name");
    EXPECT_EQ(lines[1], "-------");
    EXPECT_EQ(lines[2], Name(kHeld + 2));
    EXPECT_EQ(lines[kHeld + 4], Name(0));
}

TEST_F(StreamTest, ListsOfManyHaveAllOfThem) {
    ServeMany();
    const auto lines = Lines(Run({"-o", "plain"}).output);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), ""), kHeld + 2);
    EXPECT_EQ(lines.front(), "Name  " + Name(kHeld + 2));
    EXPECT_EQ(lines.back(), "Name  " + Name(0));
    EXPECT_EQ(lines.size(), 2U * kHeld + 5U);
}

TEST_F(StreamTest, ATableOfManySaysWhichColumnsHaveValuesOnlyLater) {
    ServeMore(InstanceWith(0, {{"Late", "string", "at last"}}));
    const auto run = Run({});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Lines(run.output)[0], "Name     Size");
    EXPECT_EQ(run.errors, "cimhttp: columns are left out that have values only after the first 1000 instances: Late; "
                          "-o plain shows all\n");
    EXPECT_THAT(Run({"-o", "plain"}).output, HasSubstr("at last"));
    EXPECT_THAT(Run({"--property", "Name,Late"}).output, HasSubstr("at last")) << "what is asked for is there";
}

TEST_F(StreamTest, ATableOfManyHasWiderTextsWholeWhereLinesMayBeOfAnyWidth) {
    ServeMore(InstanceWith(0, {{"Size", "uint64", "4000000000"}}));
    const auto run = Run({});
    EXPECT_EQ(Lines(run.output).back(), Name(0) + "  4000000000");
    EXPECT_THAT(run.errors, IsEmpty());
}

TEST_F(StreamTest, ATableOfManyCutsNumbersForWhichATerminalHasNoRoomAndSaysSo) {
    ServeMore(InstanceWith(0, {{"Size", "uint64", "18446744073709551615"}}));
    const auto run = [](const std::string& width) {
        return support::RunProgram("/bin/sh", {"-c", "COLUMNS=" + width + " \"$@\"", "sh", CIMHTTP_PROGRAM, "--host",
                                               support::LoopbackAddress(), "instances", "T"});
    };
    const auto wide = run("40");
    EXPECT_EQ(Lines(wide.output).back(), Name(0) + "  18446744073709551615");
    EXPECT_THAT(wide.errors, IsEmpty());
    const auto narrow = run("24");
    EXPECT_EQ(Lines(narrow.output).back(), Name(0) + "  18446744073709…");
    EXPECT_EQ(narrow.errors, "cimhttp: numbers that end in … are cut off; -o plain shows all\n");
}

TEST_F(StreamTest, ATableOfManySaysThatItDoesNotTellClassesApart) {
    server_.Answer("GetClass", "U",
                   "<CLASS NAME=\"U\" SUPERCLASS=\"T\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
                   "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY><PROPERTY NAME=\"Own\" "
                   "TYPE=\"string\"></PROPERTY></CLASS>");
    std::string other = Instance(0);
    for (auto place = other.find("\"T\""); place != std::string::npos; place = other.find("\"T\"")) {
        other.replace(place, 3, "\"U\"");
    }
    ServeMore(other);
    const std::string remark = "cimhttp: other classes come after the first 1000 instances, and the table does not say "
                               "which; -o plain does\n";
    EXPECT_EQ(Run({}).errors, remark);
    EXPECT_EQ(Run({"--deep"}).errors,
              remark + "cimhttp: properties that only subclasses have are left out; -o plain shows them\n");
}

TEST_F(StreamTest, NoInstanceOfManyThatMatchesIsNoTable) {
    ServeMany();
    const auto run = Run({"--where", "Name=x"});
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(run.errors, "cimhttp: no instance matches; without --where there are 10003\n");
}

TEST_F(StreamTest, InstancesWithManyPropertiesAreBroughtIntoOrderInSmallerNumbers) {
    const cimhttp::HeldInstances held{10, 100};
    EXPECT_EQ(held.Count(0), 10U);
    EXPECT_EQ(held.Count(10), 10U);
    EXPECT_EQ(held.Count(11), 9U);
    EXPECT_EQ(held.Count(1000), 1U);
}

TEST_F(StreamTest, ACollectionOfManyHasAllOfThem) {
    ServeMany();
    const support::TemporaryDirectory directory;
    const std::string document = directory.WriteFile("c.xml", "<vyx version=\"1\"><class name=\"T\"/></vyx>");
    const auto run = RunCimhttp({"--host", support::LoopbackAddress(), "collect", document});
    EXPECT_EQ(run.status, 0) << run.errors;
    const auto instances = support::ParsedJson(run.output).at("classes").at(0).at("instances");
    ASSERT_EQ(instances.size(), static_cast<std::size_t>(kHeld) + 3U);
    EXPECT_EQ(instances.front().at("properties").at("Name").at("value"), Name(kHeld + 2));
    EXPECT_EQ(instances.back().at("properties").at("Name").at("value"), Name(0));
}

TEST_F(StreamTest, ManyPortionsAreWrittenInTheirOrder) {
    server_.AnswerPortion("OpenEnumerateInstances", "T", Instances(500, kHeld + 500), "p1");
    for (int portion = 1; portion <= 4; ++portion) {
        const std::string next = portion < 4 ? "p" + std::to_string(portion + 1) : "";
        server_.AnswerPortion("PullInstancesWithPath", "p" + std::to_string(portion),
                              Instances((4 - portion) * 125, (4 - portion) * 125 + 124), next);
    }
    const auto run = Run({"-o", "csv"});
    EXPECT_EQ(run.status, 0) << run.errors;
    std::string expected = "Path,Property,Type,Value,Text\r\n";
    for (int number = kHeld + 500; number >= 0; --number) {
        expected += "\"T.Name=\"\"" + Name(number) + "\"\"\",Name,string," + Name(number) + ',' + Name(number) + "\r\n";
    }
    EXPECT_TRUE(run.output == expected); // too long to be shown
}

TEST_F(StreamTest, AFailureAfterSomePortionsKeepsAllBeforeIt) {
    server_.AnswerPortion("OpenEnumerateInstances", "T", Instances(20, kHeld + 20), "p1");
    server_.AnswerPortion("PullInstancesWithPath", "p1", Instances(10, 19), "p2");
    server_.Fail("PullInstancesWithPath", "p2", 27, "enough");
    const auto run = Run({"-o", "csv"});
    EXPECT_EQ(run.status, 6);
    EXPECT_THAT(run.errors, HasSubstr("the instances of T cannot be read"));
    EXPECT_EQ(Lines(run.output, 1).size(), static_cast<std::size_t>(kHeld) + 11U);
}

TEST_F(StreamTest, ConditionsSelectAmongManyInstances) {
    ServeMany();
    const auto run = Run({"-o", "csv", "--where", "Name=n10000*"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Lines(run.output, 1).size(), 10U);
    const auto none = Run({"-o", "csv", "--where", "Name=x"});
    EXPECT_EQ(none.output, "Path,Property,Type,Value,Text\r\n");
    EXPECT_EQ(none.errors, "cimhttp: no instance matches; without --where there are 10003\n");
}

TEST_F(StreamTest, SortingAndLimitingReadAllInstancesFirst) {
    ServeMany();
    EXPECT_THAT(Run({"-o", "csv", "--limit", "1"}).output, HasSubstr("n100000"));
    EXPECT_THAT(Lines(Run({"-o", "csv", "--sort", "Name"}).output, 1)[0], HasSubstr("n100000"));
}

TEST_F(StreamTest, AFailureAfterTheFirstInstancesKeepsTheseAndIsReported) {
    ServeMany();
    server_.Fail("PullInstancesWithPath", "next", 27, "enough");
    const auto run = Run({"-o", "csv"});
    EXPECT_EQ(run.status, 6);
    EXPECT_THAT(run.errors, HasSubstr("the instances of T cannot be read"));
    EXPECT_EQ(Lines(run.output, 1).size(), static_cast<std::size_t>(kHeld) + 1U);
}

TEST_F(StreamTest, AFailureAmongTheFirstInstancesWritesNothing) {
    server_.AnswerPortion("OpenEnumerateInstances", "T", Instances(0, 9), "next");
    server_.Fail("PullInstancesWithPath", "next", 27, "enough");
    const auto run = Run({"-o", "csv"});
    EXPECT_EQ(run.status, 6);
    EXPECT_THAT(run.output, IsEmpty());
}

// --- Servers that send all instances in one answer -----------------------------------------------------------------

TEST_F(StreamTest, OneAnswerOfManyIsInTheOrderOfTheServerInEveryForm) {
    server_.Answer("EnumerateInstances", "T", Instances(0, kHeld + 2));
    const auto csv = Run({"-o", "csv"});
    EXPECT_EQ(csv.status, 0) << csv.errors;
    std::string expected = "Path,Property,Type,Value,Text\r\n";
    for (int number = kHeld + 2; number >= 0; --number) {
        expected += "\"T.Name=\"\"" + Name(number) + "\"\"\",Name,string," + Name(number) + ',' + Name(number) + "\r\n";
    }
    EXPECT_TRUE(csv.output == expected); // too long to be shown
    const auto portions = [this](const std::string& form) {
        const auto atOnce = Run({"-o", form}).output;
        ServeMany();
        const auto inPortions = Run({"-o", form}).output;
        server_.Fail("OpenEnumerateInstances", "T", 7, "not here");
        return atOnce == inPortions;
    };
    for (const char* form : {"json", "mof", "plain", "table"}) {
        EXPECT_TRUE(portions(form)) << form;
    }
    EXPECT_EQ(server_.ConnectionCount(), 9U) << "one for each run";
}

TEST_F(StreamTest, AFailureInTheMiddleOfOneAnswerKeepsAllBeforeIt) {
    const support::TemporaryDirectory directory;
    const std::string document = directory.WriteFile("c.xml", "<vyx version=\"1\"><class name=\"T\"/></vyx>");
    server_.Answer("EnumerateInstances", "T", Instances(0, 2 * kHeld) + "<UNKNOWN/>");
    const auto run = Run({"-o", "csv"});
    EXPECT_EQ(run.status, 6);
    EXPECT_THAT(run.errors, HasSubstr("the instances of T cannot be read"));
    EXPECT_EQ(Lines(run.output, 1).size(), 2 * static_cast<std::size_t>(kHeld) + 1U);
    const auto collected = RunCimhttp({"--host", support::LoopbackAddress(), "collect", document});
    EXPECT_EQ(collected.status, 7);
    EXPECT_THAT(collected.errors, HasSubstr("the instances of T cannot be read"));
    EXPECT_THAT(support::ParsedJson(collected.output).at("classes"), IsEmpty()) << "no class without all instances";
    server_.Answer("EnumerateInstances", "T", Instances(1, kHeld) + "<UNKNOWN/>");
    EXPECT_THAT(Run({"-o", "csv"}).output, IsEmpty()) << "all of these might still be brought into order";
}

/// A server that sends one answer without end.
class StreamOfAnEndlessAnswerTest : public testing::Test {
  protected:
    void SetUp() override { server_.Listen(kHttpPort); }

    static std::vector<std::string> Arguments(const std::string& form) {
        return {CIMHTTP_PROGRAM, "--host", support::LoopbackAddress(), "instances", "T", "-o", form};
    }

  private:
    static void Serve(support::Connection& client) {
        while (const auto request = client.ReadRequest()) {
            const auto between = [&](const std::string& begin) {
                const std::size_t from = request->body.find(begin) + begin.size();
                return request->body.substr(from, request->body.find('"', from) - from);
            };
            const std::string method = between("IMETHODCALL NAME=\"");
            const std::string begin = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"" +
                                      between("MESSAGE ID=\"") +
                                      "\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"" + method + "\">";
            const std::string head = "HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\n";
            if (method == "EnumerateInstances") {
                client.Write(head + "Connection: close\r\n\r\n");
                client.Write(begin + "<IRETURNVALUE>");
                for (int number = 0; client.Write(Instance(number)); ++number) {
                }
                return;
            }
            const std::string body =
                begin +
                (method == "GetClass" ? "<IRETURNVALUE><CLASS NAME=\"T\"><PROPERTY NAME=\"Name\" TYPE=\"string\"/>"
                                        "</CLASS></IRETURNVALUE>"
                                      : "<ERROR CODE=\"7\"/>") +
                "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
            client.Write(head + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n");
            client.Write(body);
        }
    }

    support::ScriptedServer server_{Serve};
};

TEST_F(StreamOfAnEndlessAnswerTest, AReaderThatGoesEndsIt) {
    for (const char* form : {"csv", "json", "mof", "plain", "table"}) {
        std::vector<std::string> arguments{"-c", "\"$@\" | head -n 3", "sh"};
        for (const std::string& argument : Arguments(form)) {
            arguments.push_back(argument);
        }
        const auto run = support::RunProgram("/bin/sh", arguments);
        EXPECT_EQ(Lines(run.output).size(), 3U) << form;
    }
}

TEST_F(StreamOfAnEndlessAnswerTest, AnInterruptEndsIt) {
    auto arguments = Arguments("csv");
    arguments.erase(arguments.begin());
    support::TerminalProgram program(CIMHTTP_PROGRAM, arguments);
    ASSERT_TRUE(program.AwaitText(Name(20000))) << "the answer has not ended";
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), -SIGINT);
}

// --- The demo server -----------------------------------------------------------------------------------------------

/// A server with more instances than anybody waits for, which keeps a log.
class StreamOfTheDemoServerTest : public testing::Test {
  protected:
    /// The operations that were asked for, once the server has ended.
    std::string EndAndReadLog() {
        server_.reset();
        return log_.str();
    }

    static std::vector<std::string> Arguments() {
        return {"--host", support::LoopbackAddress(), "instances", "DEMO_StorageVolume", "--property", "Name",
                "--wide"};
    }

  private:
    static demo::DemoServerOptions Options(demo::AccessLog& log) {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        options.volumes = 10'000'000;
        options.accessLog = &log;
        return options;
    }

    std::ostringstream log_;
    demo::AccessLog accessLog_{log_};
    std::optional<demo::DemoServer> server_{std::in_place, Options(accessLog_)};
};

TEST_F(StreamOfTheDemoServerTest, AnInterruptIsPassedOnToTheServer) {
    support::TerminalProgram program(CIMHTTP_PROGRAM, Arguments());
    ASSERT_TRUE(program.AwaitText("volume-0009999")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_THAT(program.Screen(), HasSubstr("cimhttp: interrupted"));
    EXPECT_THAT(EndAndReadLog(), HasSubstr(" CloseEnumeration "));
}

/// In each form that need not know all instances.
class FormsOfTheDemoServersStreamTest : public StreamOfTheDemoServerTest,
                                        public testing::WithParamInterface<std::string> {};

TEST_P(FormsOfTheDemoServersStreamTest, TheFirstRowsAreThereLongBeforeTheLastAndAReaderThatGoesEndsTheEnumeration) {
    const auto run = support::RunProgram("/bin/sh", {"-c", "\"$@\" | head -n 3", "sh", CIMHTTP_PROGRAM, "--host",
                                                     support::LoopbackAddress(), "instances", "DEMO_StorageVolume",
                                                     "--property", "Name", "-o", GetParam()});
    EXPECT_EQ(Lines(run.output).size(), 3U);
    EXPECT_THAT(run.output, HasSubstr(GetParam() == "mof" ? "instance of DEMO_StorageVolume" : "volume-0000000"));
    EXPECT_THAT(EndAndReadLog(), HasSubstr(" CloseEnumeration "));
}

INSTANTIATE_TEST_SUITE_P(In, FormsOfTheDemoServersStreamTest, testing::Values("csv", "json", "mof", "plain", "table"),
                         [](const auto& tested) { return tested.param; });

} // namespace
