// What --trace and --stats tell of a command's conversation with its server.

#include "CimXml.h"
#include "InProcessRun.h"
#include "support/CimServer.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fstream>
#include <sstream>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class TraceOptionTest : public testing::Test {
  protected:
    TraceOptionTest() {
        server_.Listen(5988);
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"CIM_Disk\"/>");
    }

    support::ProgramRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return RunInProcess(arguments);
    }

    std::string Trace() const {
        std::ostringstream text;
        text << std::ifstream(path_).rdbuf();
        return text.str();
    }

    support::CimServer server_;
    support::TemporaryDirectory folder_;
    const std::string path_ = folder_.Path() / "trace";
};

TEST_F(TraceOptionTest, TheTraceReadsLikeTheConversation) {
    const auto run = Run({"--trace", path_, "classes"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(Trace(), AllOf(StartsWith("=== "), HasSubstr("  connecting to " + server_.Address() + ":5988\n"),
                               HasSubstr("CIMMethod: EnumerateClassNames"), HasSubstr("<CLASSNAME NAME=\"CIM_Disk\"/>"),
                               HasSubstr("  end of the answer, ")));
}

TEST_F(TraceOptionTest, TheTraceIsNewAndForItsOwnerAlone) {
    std::ofstream(path_) << "from before";
    ASSERT_EQ(::chmod(path_.c_str(), 0666), 0);
    Run({"--trace", path_, "classes"});
    EXPECT_THAT(Trace(), StartsWith("=== "));
    struct stat status {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(TraceOptionTest, TheTraceTellsOfACommandThatFails) {
    const auto refused = Run({"--trace", path_, "--port", "1", "classes"});
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(Trace(),
                AllOf(HasSubstr("  connecting to " + server_.Address() + ":1\n"), HasSubstr("  failed after ")));

    server_.AnswerNextWith("HTTP/1.1 500 Broken\r\nContent-Length: 0\r\n\r\n");
    EXPECT_NE(Run({"--trace", path_, "classes"}).status, 0);
    EXPECT_THAT(Trace(), HasSubstr("HTTP/1.1 500 Broken\r\n"));
}

TEST_F(TraceOptionTest, TheTraceHasNoPassword) {
    server_.RequireUser("reader", "secret");
    std::ofstream(folder_.Path() / "password") << "secret\n";
    const auto run = Run({"--trace", path_, "-u", "reader", "--password-file", folder_.Path() / "password", "classes"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(Trace(), AllOf(HasSubstr("Authorization: (left out)"), Not(HasSubstr("Basic cmVhZGVy"))));
}

TEST_F(TraceOptionTest, AFileThatCannotBeMadeIsWrongUsageAndNothingIsSent) {
    const auto run = Run({"--trace", folder_.Path() / "no" / "trace", "classes"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("no/trace cannot be written: "));
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(TraceOptionTest, ATraceThatCannotBeWrittenMakesTheCommandFail) {
    const auto run = Run({"--trace", "/dev/full", "classes"});
    EXPECT_NE(run.status, 0);
    EXPECT_THAT(run.errors, HasSubstr("the trace file /dev/full cannot be written: "));
}

TEST_F(TraceOptionTest, TheStatisticsTellWhatEachKindOfOperationTook) {
    const auto run = Run({"--stats", "classes"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "CIM_Disk\n");
    EXPECT_THAT(run.errors, AllOf(HasSubstr("operation"), HasSubstr("EnumerateClassNames                 1"),
                                  HasSubstr("all                                 1"),
                                  HasSubstr(" " + std::to_string(server_.Calls().back().http.body.size()) + " ")));
}

TEST_F(TraceOptionTest, TheStatisticsAreThereForACommandThatFails) {
    server_.Fail("EnumerateClassNames", "", 1, "not today");
    const auto run = Run({"--stats", "classes"});
    EXPECT_NE(run.status, 0);
    EXPECT_THAT(run.errors, AllOf(HasSubstr("EnumerateClassNames                 1"), HasSubstr("not today")));
}

TEST_F(TraceOptionTest, WithoutTheOptionsThereIsNeither) {
    const auto run = Run({"classes"});
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_THAT(Trace(), IsEmpty());
}

} // namespace
