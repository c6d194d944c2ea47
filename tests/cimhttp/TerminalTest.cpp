// cimhttp as a program that people use on a terminal.

#include "Failure.h"
#include "support/CimServer.h"
#include "support/ProgramRun.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <utility>

using cimhttp::Failure;
using support::TerminalProgram;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

class TerminalTest : public testing::Test {
  protected:
    TerminalTest() {
        server_.Listen(kHttpPort);
        server_.RequireUser("reader", "s3cret");
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
    }

    std::vector<std::string> ClassesAsReader() const {
        return {"--host", server_.Address(), "--user", "reader", "classes"};
    }

    std::string Question() const { return "Password of reader on http://" + server_.Address() + ": "; }

    support::CimServer server_;
};

} // namespace

TEST_F(TerminalTest, AsksForAPasswordWithoutShowingIt) {
    TerminalProgram program(CIMHTTP_PROGRAM, ClassesAsReader());
    ASSERT_TRUE(program.AwaitText(Question())) << program.Screen();
    EXPECT_FALSE(program.Echoes());
    program.Type("s3cret\r");
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.Screen(), Question() + "\r\nTEST_Disk\r\n");
    EXPECT_TRUE(program.Echoes());
}

TEST_F(TerminalTest, AMistypedPasswordCanBeCorrected) {
    TerminalProgram program(CIMHTTP_PROGRAM, ClassesAsReader());
    ASSERT_TRUE(program.AwaitText(Question())) << program.Screen();
    program.Type("oops\x15s3cret\r"); // Ctrl-U rubs out the line
    EXPECT_EQ(program.Wait(), 0) << program.Screen();
}

TEST_F(TerminalTest, DoesNotAskWhereThePasswordIsKnown) {
    TerminalProgram program(CIMHTTP_PROGRAM, ClassesAsReader(), {"CIMHTTP_PASSWORD=s3cret"});
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.Screen(), "TEST_Disk\r\n");
}

TEST_F(TerminalTest, InterruptingTheQuestionEndsTheProgramAndRestoresTheTerminal) {
    for (const auto& [key, signal] : {std::pair("\x03", SIGINT), std::pair("\x1c", SIGQUIT)}) {
        TerminalProgram program(CIMHTTP_PROGRAM, ClassesAsReader());
        ASSERT_TRUE(program.AwaitText(Question())) << program.Screen();
        EXPECT_FALSE(program.Echoes());
        program.Type(key);
        EXPECT_EQ(program.Wait(), -signal);
        EXPECT_TRUE(program.Echoes());
        EXPECT_THAT(program.Screen(), Not(HasSubstr("TEST_Disk")));
    }
}

TEST_F(TerminalTest, TheTerminalIsRestoredWhileTheProgramIsStopped) {
    // A shell with job control, which goes on when its job is stopped and continues it later.
    std::vector<std::string> words{"-c", "set -m; \"$@\"; echo the shell; read key; fg", "sh", CIMHTTP_PROGRAM};
    for (const std::string& word : ClassesAsReader()) {
        words.push_back(word);
    }
    TerminalProgram shell("/bin/sh", words);
    ASSERT_TRUE(shell.AwaitText(Question())) << shell.Screen();
    shell.Type("half\x1a"); // Ctrl-Z
    ASSERT_TRUE(shell.AwaitText("the shell")) << shell.Screen();
    EXPECT_TRUE(shell.Echoes());
    const std::size_t seen = shell.Screen().size();
    shell.Type("\r");
    ASSERT_TRUE(shell.AwaitText(Question(), seen)) << shell.Screen();
    EXPECT_FALSE(shell.Echoes());
    shell.Type("s3cret\r");
    EXPECT_EQ(shell.Wait(), 0) << shell.Screen();
    EXPECT_THAT(shell.Screen(), HasSubstr("TEST_Disk"));
}

TEST_F(TerminalTest, NoPasswordIsAFailure) {
    TerminalProgram program(CIMHTTP_PROGRAM, ClassesAsReader());
    ASSERT_TRUE(program.AwaitText(Question())) << program.Screen();
    program.Type("\x04");
    EXPECT_EQ(program.Wait(), 2);
    EXPECT_THAT(program.Screen(), HasSubstr("needs a password"));
}

TEST_F(TerminalTest, APipeThatNobodyReadsEndsTheProgramInSilence) {
    const support::TemporaryDirectory folder;
    // Opened for both ends first, so that neither waits for the other; then the end that reads goes.
    const std::string script = "mkfifo pipe && exec 3<>pipe 4>pipe 3<&- && \"$@\" >&4";
    std::vector<std::string> words{"-c", "cd \"$0\" && " + script, folder.Path().string(), CIMHTTP_PROGRAM};
    for (const std::string& word : ClassesAsReader()) {
        words.push_back(word);
    }
    const auto run = support::RunProgram("/bin/sh", words, {"CIMHTTP_PASSWORD=s3cret"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, Failure::kClosedPipe);
}
