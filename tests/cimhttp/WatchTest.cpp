// What cimhttp watch writes, and what it does while the server is away.

#include "CimXml.h"
#include "ProgramRun.h"
#include "support/CimServer.h"
#include "support/ParsedJson.h"
#include "support/ScriptedServer.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using nlohmann::json;
using support::TerminalProgram;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

std::string FanXml(const std::string& name, int speed) {
    return InstanceXml("TEST_Fan", name, PropertyXml("Speed", "uint32", std::to_string(speed)));
}

/// A server with the class TEST_Fan. Each test says which instances there are.
void AnswerWithFans(support::CimServer& server, const std::string& instances) {
    server.Answer("GetQualifier", "Key", QualifierDeclarationXml("Key", "boolean"));
    server.Answer("GetClass", "TEST_Fan", ClassXml("TEST_Fan", "", DeclarationXml("Speed", "uint32")));
    server.Answer("EnumerateInstances", "TEST_Fan", instances);
}

class WatchTest : public testing::Test {
  protected:
    WatchTest() { server_.Listen(kHttpPort); }

    std::vector<std::string> Watch(std::vector<std::string> arguments = {}) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address(), "watch", "TEST_Fan", "--interval", "0.01"});
        return arguments;
    }

    static std::vector<json> Lines(const std::string& text) {
        std::vector<json> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(support::ParsedJson(line));
        }
        return lines;
    }

    support::CimServer server_;
};

} // namespace

TEST_F(WatchTest, JsonBeginsWithTheInstancesThatThereAre) {
    AnswerWithFans(server_, FanXml("b", 1) + FanXml("a", 2));
    const auto run = RunCimhttp(Watch({"--count", "0", "-o", "json"}));
    EXPECT_EQ(run.status, 0) << run.errors;
    const auto lines = Lines(run.output);
    ASSERT_EQ(lines.size(), 2U);
    json expected = {{"time", lines[0].at("time")},
                     {"round", 0},
                     {"change", "present"},
                     {"path", "TEST_Fan.Name=\"a\""},
                     {"class", "TEST_Fan"},
                     {"properties",
                      {{"Name", {{"type", "string"}, {"value", "a"}, {"text", "a"}}},
                       {"Speed", {{"type", "uint32"}, {"value", 2}, {"text", "2"}}}}}};
    EXPECT_EQ(lines[0], expected);
    EXPECT_EQ(lines[1].at("path"), "TEST_Fan.Name=\"b\"");
}

TEST_F(WatchTest, EveryLineOfJsonHasATimeWithItsZone) {
    AnswerWithFans(server_, FanXml("a", 2));
    for (const json& line : Lines(RunCimhttp(Watch({"--count", "0", "-o", "json"}), {"TZ=XXX-05:30"}).output)) {
        EXPECT_THAT(line.at("time").get<std::string>(),
                    MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\+05:30"));
    }
}

TEST_F(WatchTest, JsonTellsWhatIsNewWhatHasChangedAndWhatHasGone) {
    AnswerWithFans(server_, FanXml("a", 1) + FanXml("b", 1));
    TerminalProgram program(CIMHTTP_PROGRAM, Watch({"--count", "1000000", "-o", "json"}));
    ASSERT_TRUE(program.AwaitText("Name=\\\"b\\\"")) << program.Screen();
    server_.Answer("EnumerateInstances", "TEST_Fan", InstanceXml("TEST_Fan", "a") + FanXml("c", 3));
    ASSERT_TRUE(program.AwaitText("Name=\\\"c\\\"")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Screen(), HasSubstr(R"(,"change":"changed","path":"TEST_Fan.Name=\"a\"",)"));
    EXPECT_THAT(program.Screen(),
                HasSubstr(R"("path":"TEST_Fan.Name=\"a\"","class":"TEST_Fan","properties":{"Speed":{"old":{"value":1,)"
                          R"("text":"1"},"new":{"value":null,"text":""}}}})"));
    EXPECT_THAT(program.Screen(), HasSubstr(R"("path":"TEST_Fan.Name=\"b\"","class":"TEST_Fan","properties":{}})"));
    EXPECT_THAT(program.Screen(), HasSubstr(R"("path":"TEST_Fan.Name=\"c\"","class":"TEST_Fan","properties":{"Name":)"
                                            R"({"type":"string","value":"c","text":"c"},"Speed":)"));
}

TEST_F(WatchTest, NullAndAnEmptyTextAreToldApart) {
    AnswerWithFans(server_, FanXml("a", 7));
    TerminalProgram program(CIMHTTP_PROGRAM, Watch());
    ASSERT_TRUE(program.AwaitText("1 instance")) << program.Screen();
    server_.Answer("EnumerateInstances", "TEST_Fan", InstanceXml("TEST_Fan", "a"));
    EXPECT_TRUE(program.AwaitText("Speed: 7 → –\r\n")) << program.Screen();
}

TEST_F(WatchTest, AReferenceThatPointsElsewhereHasChanged) {
    const auto reference = [](const std::string& name) {
        return "<PROPERTY.REFERENCE NAME=\"Next\" REFERENCECLASS=\"TEST_Fan\"><VALUE.REFERENCE>" +
               PathXml("TEST_Fan", name) + "</VALUE.REFERENCE></PROPERTY.REFERENCE>";
    };
    AnswerWithFans(server_, InstanceXml("TEST_Fan", "a", reference("b")));
    server_.Answer("GetClass", "TEST_Fan",
                   ClassXml("TEST_Fan", "", "<PROPERTY.REFERENCE NAME=\"Next\" REFERENCECLASS=\"TEST_Fan\"/>"));
    TerminalProgram program(CIMHTTP_PROGRAM, Watch());
    ASSERT_TRUE(program.AwaitText("1 instance")) << program.Screen();
    server_.Answer("EnumerateInstances", "TEST_Fan", InstanceXml("TEST_Fan", "a", reference("c")));
    EXPECT_TRUE(program.AwaitText("Next: TEST_Fan.Name=\"b\" → TEST_Fan.Name=\"c\"\r\n")) << program.Screen();
}

TEST_F(WatchTest, AServerThatGoesAndComesBackIsWaitedFor) {
    AnswerWithFans(server_, FanXml("a", 1));
    TerminalProgram program(CIMHTTP_PROGRAM, Watch(), {"NO_COLOR=1"});
    ASSERT_TRUE(program.AwaitText("1 instance")) << program.Screen();
    server_.Stop();
    ASSERT_TRUE(program.AwaitText("  ! ")) << program.Screen();
    support::CimServer again(server_.Address());
    AnswerWithFans(again, FanXml("a", 2));
    again.Listen(kHttpPort);
    ASSERT_TRUE(program.AwaitText("  ! the server answers again\r\n")) << program.Screen();
    ASSERT_TRUE(program.AwaitText("Speed: 1 → 2")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Screen(), Not(HasSubstr("cimhttp:"))) << "nothing is missing in the end";
}

TEST_F(WatchTest, JsonTellsWhenTheServerIsLostAndWhenItIsBack) {
    AnswerWithFans(server_, FanXml("a", 1));
    TerminalProgram program(CIMHTTP_PROGRAM, Watch({"-o", "json"}));
    ASSERT_TRUE(program.AwaitText("present")) << program.Screen();
    server_.Stop();
    ASSERT_TRUE(program.AwaitText(R"("change":"lost","reason":")")) << program.Screen();
    support::CimServer again(server_.Address());
    AnswerWithFans(again, FanXml("a", 1));
    again.Listen(kHttpPort);
    EXPECT_TRUE(program.AwaitText(R"("change":"back"})")) << program.Screen();
}

TEST_F(WatchTest, AWaitForTheServerCanBeInterrupted) {
    AnswerWithFans(server_, FanXml("a", 1));
    TerminalProgram program(CIMHTTP_PROGRAM, {"--host", server_.Address(), "watch", "TEST_Fan", "--interval", "3600"});
    ASSERT_TRUE(program.AwaitText("1 instance")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(WatchTest, AnInterruptWhileItReadsStillTellsWhatIsMissing) {
    server_.Stop();
    support::ScriptedServer server([](support::Connection& connection) {
        int readings = 0;
        for (auto request = connection.ReadRequest(); request; request = connection.ReadRequest()) {
            const std::string method = MethodIn(request->body);
            if (method == "EnumerateInstances" && readings++ > 0) {
                connection.WaitForPeerClose();
                return;
            }
            const std::string result = method == "GetClass" ? ClassXml("TEST_Fan", "")
                                       : method == "EnumerateInstances"
                                           ? InstanceXml("TEST_Fan", "a", PropertyXml("Odd", "string", "x"))
                                           : "";
            connection.Write(HttpAnswer(request->body, result));
        }
    });
    server.Listen(kHttpPort);
    TerminalProgram program(CIMHTTP_PROGRAM, Watch());
    ASSERT_TRUE(program.AwaitText("reading the instances of TEST_Fan, 0:0")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), 7);
    EXPECT_THAT(program.Screen(), EndsWith("; --log warning lists all\r\n"));
}

TEST_F(WatchTest, ALoginThatIsRefusedLaterEndsTheWatch) {
    AnswerWithFans(server_, FanXml("a", 1));
    TerminalProgram program(CIMHTTP_PROGRAM, Watch());
    ASSERT_TRUE(program.AwaitText("1 instance")) << program.Screen();
    server_.RequireUser("reader", "s3cret");
    EXPECT_EQ(program.Wait(), 4);
    EXPECT_THAT(program.Screen(), HasSubstr("give --user NAME\r\n"));
}

TEST_F(WatchTest, AClassThatTheServerNoLongerHasEndsTheWatch) {
    AnswerWithFans(server_, FanXml("a", 1));
    TerminalProgram program(CIMHTTP_PROGRAM, Watch());
    ASSERT_TRUE(program.AwaitText("1 instance")) << program.Screen();
    server_.Fail("GetClass", "TEST_Fan", 6, "gone");
    server_.Fail("EnumerateInstances", "TEST_Fan", 5, "gone");
    EXPECT_EQ(program.Wait(), 5);
}

TEST_F(WatchTest, AServerThatIsNotThereAtFirstIsNotWaitedFor) {
    server_.Stop();
    EXPECT_EQ(RunCimhttp(Watch()).status, 3);
}
