// What cimhttp top shows on a real terminal, which keys do what, and how it leaves the terminal.

#include "CimXml.h"
#include "ProgramRun.h"
#include "TerminalScreen.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>

using support::TerminalProgram;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr const char* kUp = "\x1bOA";
constexpr const char* kDown = "\x1bOB";
constexpr const char* kRight = "\x1bOC";
constexpr const char* kEnd = "\x1bOF";
constexpr const char* kHome = "\x1bOH";

std::string FanXml(const std::string& name, const std::string& speed, const std::string& load = "50",
                   const std::string& turns = "1000") {
    return InstanceXml("TEST_Fan", name,
                       PropertyXml("Speed", "uint32", speed) + PropertyXml("Load", "uint16", load) +
                           PropertyXml("Turns", "uint64", turns));
}

/// The program on a terminal, as its user sees it.
class Top {
  public:
    explicit Top(const std::vector<std::string>& arguments, std::vector<std::string> environment = {},
                 TerminalProgram::Terminal terminal = {})
        : environment_(std::move(environment)),
          program_(CIMHTTP_PROGRAM, arguments, WithLocale(environment_), terminal),
          screen_(terminal.columns, terminal.lines) {}

    bool Await(const std::function<bool(const TerminalScreen&)>& condition) {
        return program_.AwaitScreen([&](const std::string& bytes) {
            Feed(bytes);
            return condition(screen_);
        });
    }

    bool AwaitText(const std::string& text) {
        return Await([&](const TerminalScreen& screen) { return screen.Text().find(text) != std::string::npos; });
    }

    bool AwaitNoText(const std::string& text) {
        return Await([&](const TerminalScreen& screen) { return screen.Text().find(text) == std::string::npos; });
    }

    /// Waits until the lines below the headings begin so.
    bool AwaitRows(const std::vector<std::string>& begins) {
        return Await([&](const TerminalScreen& screen) {
            const std::vector<std::string> lines = screen.Lines();
            for (std::size_t i = 0; i < begins.size(); ++i) {
                if (lines.at(i + 3).rfind(begins[i], 0) != 0) {
                    return false;
                }
            }
            return true;
        });
    }

    int Wait() {
        const int status = program_.Wait();
        Feed(program_.Screen());
        return status;
    }

    TerminalProgram& Program() { return program_; }
    void Type(const std::string& keys) { program_.Type(keys); }
    const TerminalScreen& Screen() const { return screen_; }
    std::string Text() const { return screen_.Text(); }

    /// After this, the screen is one of another size.
    void Resize(TerminalProgram::Terminal terminal) {
        Feed(program_.Screen());
        screen_ = TerminalScreen(terminal.columns, terminal.lines);
        program_.Resize(terminal);
    }

  private:
    static std::vector<std::string> WithLocale(std::vector<std::string> environment) {
        environment.emplace_back("LC_ALL=C.UTF-8"); // the first one of a name counts
        return environment;
    }

    void Feed(const std::string& bytes) {
        screen_.Feed(bytes.substr(fed_));
        fed_ = bytes.size();
    }

    std::vector<std::string> environment_;
    TerminalProgram program_;
    TerminalScreen screen_;
    std::size_t fed_ = 0;
};

class TopTest : public testing::Test {
  protected:
    TopTest() {
        server_.Listen(kHttpPort);
        Declare(server_);
    }

    static void Declare(support::CimServer& server) {
        for (const char* const name : {"Key", "Counter"}) {
            server.Answer("GetQualifier", name, QualifierDeclarationXml(name, "boolean"));
        }
        server.Answer("GetQualifier", "PUnit", QualifierDeclarationXml("PUnit", "string"));
        server.Answer("GetClass", "TEST_Fan",
                      ClassXml("TEST_Fan", "",
                               DeclarationXml("Speed", "uint32") +
                                   DeclarationXml("Load", "uint16", QualifierXml("PUnit", "string", "percent")) +
                                   DeclarationXml("Turns", "uint64", QualifierXml("Counter", "boolean", "TRUE"))));
    }

    void Serve(const std::string& instances) { server_.Answer("EnumerateInstances", "TEST_Fan", instances); }

    std::vector<std::string> Arguments(std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"--host", server_.Address(), "top", "TEST_Fan", "--interval", "0.05"});
        return more;
    }

    support::CimServer server_;
};

} // namespace

TEST_F(TopTest, ShowsTheInstancesBelowTheirHeadings) {
    Serve(FanXml("b", "2000") + FanXml("a", "1500"));
    Top top(Arguments());
    // All at once, since another reading may be drawn between two looks.
    const auto isWhole = [&](const TerminalScreen& screen) {
        using testing::Value;
        const auto lines = screen.Lines();
        return Value(lines[0],
                     AllOf(StartsWith("TEST_Fan at http://" + server_.Address()), HasSubstr("every 0.05 s"))) &&
               lines[1] == "2 instances" &&
               Value(lines[2], AllOf(StartsWith("Name▲"), HasSubstr("Speed"), HasSubstr("Load"), HasSubstr("Turns/s"),
                                     EndsWith("last minute"))) &&
               Value(lines[3], AllOf(StartsWith("a "), HasSubstr("1500"))) &&
               Value(lines[4], AllOf(StartsWith("b "), HasSubstr("2000"))) &&
               Value(lines[23], StartsWith("q quit  ←→ sort"));
    };
    EXPECT_TRUE(top.Await(isWhole)) << top.Text();
    EXPECT_TRUE(top.Screen().IsAlternate());
    EXPECT_FALSE(top.Screen().IsCursorVisible());
}

TEST_F(TopTest, ABarShowsHowMuchAPercentageIsOfTheWhole) {
    Serve(FanXml("a", "1", "50"));
    Top top(Arguments());
    EXPECT_TRUE(top.AwaitText("50 % ████ ")) << top.Text();
}

TEST_F(TopTest, ABarShowsHowMuchANumberIsOfAnotherPropertyThatIsNotAskedFor) {
    server_.Answer("GetClass", "TEST_Fan",
                   ClassXml("TEST_Fan", "", DeclarationXml("Speed", "uint32") + DeclarationXml("MaxSpeed", "uint32")));
    Serve(
        InstanceXml("TEST_Fan", "a", PropertyXml("Speed", "uint32", "25") + PropertyXml("MaxSpeed", "uint32", "100")));
    Top top(Arguments({"--property", "Name,Speed"}));
    ASSERT_TRUE(top.AwaitText("25 ██ ")) << top.Text();
    EXPECT_THAT(top.Text(), Not(HasSubstr("MaxSpeed")));
}

TEST_F(TopTest, WithoutUtf8BarsAreOfAscii) {
    Serve(FanXml("a", "1", "50"));
    Top top(Arguments(), {"LC_ALL=C"});
    ASSERT_TRUE(top.AwaitText("50 % #### ")) << top.Text();
    EXPECT_THAT(top.Text(), HasSubstr("Name+"));
}

TEST_F(TopTest, KeysSortByTheNextColumnAndTurnTheOrderRound) {
    Serve(FanXml("a", "5") + FanXml("b", "300") + FanXml("c", "40"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitRows({"a", "b", "c"})) << top.Text();
    top.Type("r");
    ASSERT_TRUE(top.AwaitRows({"c", "b", "a"})) << top.Text();
    top.Type(std::string(kRight) + kRight); // numbers, the greatest first
    ASSERT_TRUE(top.AwaitText("Speed▼") && top.AwaitRows({"b", "c", "a"})) << top.Text();
    top.Type("r");
    ASSERT_TRUE(top.AwaitText("Speed▲") && top.AwaitRows({"a", "c", "b"})) << top.Text();
    top.Type("<<");
    EXPECT_TRUE(top.AwaitText("Name▲") && top.AwaitRows({"a", "b", "c"})) << top.Text();
}

TEST_F(TopTest, TheCommandLineSaysHowToBegin) {
    Serve(FanXml("a", "5") + FanXml("b", "300") + FanXml("c", "40"));
    Top top(Arguments({"--property", "Name,Load", "--sort", "speed:desc", "--where", "Name!=a", "--limit", "1"}));
    ASSERT_TRUE(top.AwaitText("Speed▼")) << top.Text();
    ASSERT_TRUE(top.AwaitRows({"b"})) << top.Text();
    EXPECT_THAT(top.Text(), HasSubstr("2 instances of 3, the first 1"));
    EXPECT_THAT(top.Text(), Not(HasSubstr("\nc")));
    EXPECT_THAT(top.Text(), Not(HasSubstr("Turns")));
}

TEST_F(TopTest, AFilterKeepsTheRowsThatHaveItsText) {
    Serve(FanXml("Front", "1") + FanXml("back", "2") + FanXml("front2", "3"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("\nback")) << top.Text();
    top.Type("/fRxq\x7f\x7fOn");
    ASSERT_TRUE(top.AwaitNoText("\nback") && top.AwaitText("2 with 'fron'")) << top.Text();
    ASSERT_TRUE(top.AwaitText("\nFront ") && top.AwaitText("\nfront2 ") && top.AwaitText("filter: fron_"))
        << top.Text();
    top.Type("\r");
    ASSERT_TRUE(top.AwaitNoText("filter: ")) << top.Text();
    EXPECT_TRUE(top.AwaitText("2 with 'fron'")) << top.Text();
    top.Type("/\x1b");
    EXPECT_TRUE(top.AwaitText("\nback")) << top.Text();
}

TEST_F(TopTest, APauseHoldsTheRowsAndEnds) {
    Serve(FanXml("a", "1111"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("1111")) << top.Text();
    top.Type("p");
    ASSERT_TRUE(top.AwaitText("PAUSED")) << top.Text();
    Serve(FanXml("a", "2222"));
    top.Type("r");
    ASSERT_TRUE(top.AwaitText("Name▼")) << top.Text();
    EXPECT_TRUE(top.AwaitText("1111")) << top.Text();
    top.Type("p");
    ASSERT_TRUE(top.AwaitText("2222")) << top.Text();
    EXPECT_TRUE(top.AwaitNoText("PAUSED")) << top.Text();
}

TEST_F(TopTest, ColumnsCanBeChosen) {
    Serve(FanXml("a", "1111"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("1111")) << top.Text();
    top.Type("c");
    ASSERT_TRUE(top.AwaitText("[x] Speed")) << top.Text();
    top.Type(std::string(kDown) + kDown + kDown + kUp + " "); // Name, Load, Speed, Turns
    ASSERT_TRUE(top.AwaitText("[ ] Speed")) << top.Text();
    top.Type("\r");
    ASSERT_TRUE(top.AwaitText("Turns/s")) << top.Text();
    EXPECT_TRUE(top.AwaitNoText("Speed")) << top.Text();
    EXPECT_TRUE(top.AwaitNoText("1111")) << top.Text();
}

TEST_F(TopTest, HelpTellsOfTheKeys) {
    Serve(FanXml("a", "1111"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("1111")) << top.Text();
    top.Type("?");
    ASSERT_TRUE(top.AwaitText("turn the order round")) << top.Text();
    top.Type(" ");
    ASSERT_TRUE(top.AwaitText("1111")) << top.Text();
    top.Type("q");
    EXPECT_EQ(top.Wait(), 0);
}

TEST_F(TopTest, CountersShowHowMuchMoreTheyHaveEachSecond) {
    Serve(FanXml("a", "1", "50", "1000"));
    Top top(Arguments({"--property", "Name,Turns"}));
    ASSERT_TRUE(top.AwaitText(" 0/s")) << top.Text();
    Serve(FanXml("a", "1", "50", "7"));
    ASSERT_TRUE(top.AwaitText("1 time a counter was less than before")) << top.Text();
    EXPECT_TRUE(top.AwaitText(" 0/s")) << top.Text();
}

TEST_F(TopTest, TheRowsOfAServerThatGoesStayUntilItComesBack) {
    Serve(FanXml("a", "1111"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("1111")) << top.Text();
    server_.Stop();
    ASSERT_TRUE(top.AwaitText("! no reading since ")) << top.Text();
    EXPECT_TRUE(top.AwaitText("1111")) << top.Text();
    support::CimServer again(server_.Address());
    Declare(again);
    again.Answer("EnumerateInstances", "TEST_Fan", FanXml("a", "2222"));
    again.Listen(kHttpPort);
    ASSERT_TRUE(top.AwaitText("2222")) << top.Text();
    EXPECT_TRUE(top.AwaitNoText("! no reading")) << top.Text();
    top.Type("q");
    EXPECT_EQ(top.Wait(), 0);
    EXPECT_THAT(top.Text(), HasSubstr("cimhttp: the server was away 1 time, the last time: no reading since "));
}

TEST_F(TopTest, WhatIsMissingIsSaidAndMakesTheExitStatus) {
    Serve(InstanceXml("TEST_Fan", "a", PropertyXml("Odd", "string", "x") + PropertyXml("Speed", "uint32", "77")));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("\n! ") && top.AwaitText("77")) << top.Text();
    EXPECT_TRUE(top.AwaitText("Odd")) << top.Text();
    top.Type("q");
    EXPECT_EQ(top.Wait(), 7);
    EXPECT_THAT(top.Text(), HasSubstr("--log warning lists all"));
}

TEST_F(TopTest, ATerminalOfAnotherSizeIsDrawnAnew) {
    Serve(FanXml("a", "1111") + FanXml("b", "2222") + FanXml("c", "3333"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("3333")) << top.Text();
    top.Resize({30, 6}); // two lines of head, the headings, two rows, the keys
    ASSERT_TRUE(top.AwaitText("\nb") && top.AwaitText("q quit")) << top.Text();
    EXPECT_TRUE(top.AwaitNoText("\nc")) << top.Text();
    EXPECT_TRUE(top.AwaitText("\nq quit")) << top.Text();
    EXPECT_THAT(top.Screen().Lines()[5], StartsWith("q quit"));
    top.Resize({100, 30});
    ASSERT_TRUE(top.AwaitText("\nc") && top.AwaitText("last minute")) << top.Text();
    EXPECT_TRUE(top.Await([](const TerminalScreen& screen) { return screen.Lines()[29].rfind("q quit", 0) == 0; }))
        << top.Text();
    top.Resize({1, 1});
    top.Resize({80, 24});
    ASSERT_TRUE(top.AwaitText("\nc")) << top.Text();
}

TEST_F(TopTest, TheTerminalIsRestoredHoweverItEnds) {
    Serve(FanXml("a", "1111"));
    const std::vector<std::function<void(Top&)>> ends{[](Top& top) { top.Type("q"); },
                                                      [](Top& top) { top.Type("\x03"); },
                                                      [](Top& top) { top.Program().Signal(SIGINT); },
                                                      [](Top& top) {
                                                          top.Program().Signal(SIGTERM);
                                                          top.Program().Signal(SIGTERM);
                                                      }};
    for (const auto& end : ends) {
        Top top(Arguments());
        ASSERT_TRUE(top.AwaitText("1111")) << top.Text();
        EXPECT_FALSE(top.Program().Echoes());
        end(top);
        // The second signal may come when the terminal is restored already, and ends the program as ever then.
        EXPECT_THAT(top.Wait(), testing::AnyOf(0, -SIGTERM)) << top.Text();
        EXPECT_TRUE(top.Program().Echoes());
        EXPECT_FALSE(top.Screen().IsAlternate());
        EXPECT_TRUE(top.Screen().IsCursorVisible());
    }
}

TEST_F(TopTest, AFailureThatWaitingDoesNotMendEndsItOnARestoredTerminal) {
    Serve(FanXml("a", "1111"));
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("1111")) << top.Text();
    server_.RequireUser("reader", "s3cret");
    EXPECT_EQ(top.Wait(), 4);
    EXPECT_FALSE(top.Screen().IsAlternate());
    EXPECT_TRUE(top.Program().Echoes());
    EXPECT_THAT(top.Text(), HasSubstr("give --user NAME"));
}

TEST_F(TopTest, TheTerminalIsRestoredWhileTheProgramIsStopped) {
    Serve(FanXml("a", "1111"));
    const support::TemporaryDirectory folder;
    const std::string number = (folder.Path() / "process").string();
    std::vector<std::string> words{"-c",
                                   "set -m; sh -c 'echo $$ >\"$0\"; exec \"$@\"' \"$@\"; echo the shell; read key; fg",
                                   "sh", number, CIMHTTP_PROGRAM};
    for (const std::string& word : Arguments()) {
        words.push_back(word);
    }
    for (const bool isKey : {true, false}) {
        TerminalProgram shell("/bin/sh", words, {"LC_ALL=C.UTF-8"});
        ASSERT_TRUE(shell.AwaitText("1111")) << shell.Screen();
        const std::size_t begun = shell.Screen().size();
        if (isKey) {
            shell.Type("\x1a"); // Ctrl-Z
        } else {
            ::kill(std::stoi(ReadFile(number)), SIGTSTP);
        }
        ASSERT_TRUE(shell.AwaitText("the shell", begun)) << shell.Screen();
        EXPECT_TRUE(shell.Echoes());
        EXPECT_THAT(shell.Screen().substr(begun), HasSubstr("\x1b[?1049l"));
        const std::size_t seen = shell.Screen().size();
        shell.Type("\r");
        ASSERT_TRUE(shell.AwaitText("1111", seen)) << shell.Screen();
        EXPECT_FALSE(shell.Echoes());
        shell.Type("q");
        EXPECT_EQ(shell.Wait(), 0) << shell.Screen();
    }
}

TEST_F(TopTest, WithoutATerminalItIsWatch) {
    Serve(FanXml("a", "1111"));
    const auto run = RunCimhttp(Arguments({"--count", "1", "--sort", "Speed"}));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "cimhttp: there is no terminal: this is 'watch', without --sort and --limit\n");
    EXPECT_THAT(run.output, HasSubstr("1 instance"));
    for (const char* const terminal : {"TERM=dumb", "TERM=there-is-no-such-terminal", "TERM="}) {
        TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"--count", "1"}), {terminal});
        EXPECT_EQ(program.Wait(), 0) << program.Screen();
        EXPECT_THAT(program.Screen(), AllOf(HasSubstr("cimhttp: the terminal of TERM is not known"),
                                            HasSubstr("1 instance"), Not(HasSubstr("\x1b[H"))));
    }
}

TEST_F(TopTest, ItEndsAfterSoManyReadings) {
    Serve(FanXml("a", "1111"));
    Top top(Arguments({"--count", "3"}));
    EXPECT_EQ(top.Wait(), 0) << top.Text();
    EXPECT_FALSE(top.Screen().IsAlternate());
    std::size_t readings = 0;
    for (const auto& call : server_.Calls()) {
        readings += call.method == "EnumerateInstances" ? 1 : 0;
    }
    EXPECT_EQ(readings, 3U);
}

TEST_F(TopTest, AServerThatIsNotThereAtFirstIsNotWaitedFor) {
    server_.Stop();
    Top top(Arguments());
    EXPECT_EQ(top.Wait(), 3);
    EXPECT_FALSE(top.Screen().IsAlternate());
}

TEST_F(TopTest, KeysCountWhileAServerKeepsItWaiting) {
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
                                           ? InstanceXml("TEST_Fan", "a") + InstanceXml("TEST_Fan", "b")
                                           : "";
            connection.Write(HttpAnswer(request->body, result));
        }
    });
    server.Listen(kHttpPort);
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("waiting for 1 s")) << top.Text();
    top.Type("r");
    ASSERT_TRUE(top.AwaitRows({"b", "a"})) << top.Text();
    top.Type("q");
    EXPECT_EQ(top.Wait(), 0);
    EXPECT_FALSE(top.Screen().IsAlternate());
    EXPECT_TRUE(top.Program().Echoes());
}

TEST_F(TopTest, NothingOfAServersTextSteersTheTerminal) {
    const std::string steering = "&#27;[2J&#27;]0;title&#7;\xc2\x9b"
                                 "5n\xe2\x80\xaejust&#10;text"
                                 "\xe6\xbc\xa2\xe5\xad\x97 e\xcc\x81 ";
    std::string marks;
    for (int i = 0; i < 10000; ++i) {
        marks += "\xcc\x81";
    }
    const std::string longText(std::size_t{1} << 20U, 'x');
    server_.Answer("GetClass", "TEST_Fan", ClassXml("TEST_Fan", "", DeclarationXml("Text", "string")));
    Serve(InstanceXml("TEST_Fan", "a", PropertyXml("Text", "string", steering)) +
          InstanceXml("TEST_Fan", "b", PropertyXml("Text", "string", longText)) +
          InstanceXml("TEST_Fan", "c", PropertyXml("Text", "string", "m" + marks)) +
          InstanceXml("TEST_Fan", "d", PropertyXml("Text", "string", "quiet")));
    Top top(Arguments({"--property", "Name,Text"}), {}, {120, 24});
    ASSERT_TRUE(top.AwaitText("quiet")) << top.Text();
    EXPECT_THAT(top.Text(), HasSubstr("漢字 e\xcc\x81"));
    EXPECT_THAT(top.Text(), HasSubstr("xxxx…"));
    top.Type("/漢");
    EXPECT_TRUE(top.AwaitText("1 with '漢'")) << top.Text();
    top.Type("\x1bq");
    EXPECT_EQ(top.Wait(), 0) << top.Text();
    EXPECT_THAT(top.Screen().Unknown(), testing::IsEmpty());
    EXPECT_LT(top.Program().Screen().size(), std::size_t{100000});
}

TEST_F(TopTest, TenThousandInstancesCanBeScrolledThrough) {
    std::string instances;
    for (int i = 10000; i < 20000; ++i) {
        instances += FanXml("fan" + std::to_string(i), std::to_string(i));
    }
    Serve(instances);
    Top top(Arguments());
    ASSERT_TRUE(top.AwaitText("fan10019")) << top.Text();
    EXPECT_THAT(top.Text(), HasSubstr("10000 instances"));
    top.Type(kEnd);
    ASSERT_TRUE(top.AwaitText("fan19999")) << top.Text();
    EXPECT_THAT(top.Text(), HasSubstr("from the 9981. on"));
    top.Type("\x1b[5~"); // a page up
    ASSERT_TRUE(top.AwaitText("fan19979")) << top.Text();
    top.Type(kHome);
    ASSERT_TRUE(top.AwaitText("fan10000")) << top.Text();
    top.Type(kDown);
    ASSERT_TRUE(top.AwaitText("fan10020")) << top.Text();
    top.Type("/19998\r");
    ASSERT_TRUE(top.AwaitText("1 with '19998'")) << top.Text();
    top.Type("q");
    EXPECT_EQ(top.Wait(), 0);
}

TEST(TopWithDemoServer, ShowsTheProcessesOfThisMachine) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    const demo::DemoServer server(options);
    Top top({"--host", options.address, "top", "CIM_Process", "--interval", "0.05", "--property",
             "Handle,Name,KernelModeTime"},
            {}, {100, 24});
    ASSERT_TRUE(top.AwaitText("KernelModeTime/s")) << top.Text();
    EXPECT_TRUE(top.AwaitText(" % ")) << top.Text();
    top.Type("q");
    EXPECT_EQ(top.Wait(), 0);
}
