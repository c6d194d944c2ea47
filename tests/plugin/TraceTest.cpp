// What a host learns of all that the plug-in sends and receives, from the file that it names.

#include "TlsTest.h"
#include "support/TemporaryDirectory.h"

#include <sys/stat.h>

#include <fstream>
#include <sstream>

using namespace NQORVYX20;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using Kind = RemoteFailure::Kind;

namespace {

class TraceTest : public TlsTest {
  protected:
    TraceTest() { log_->ExpectWarnings(); }

    std::string Trace() const {
        std::ostringstream text;
        text << std::ifstream(path_).rdbuf();
        return text.str();
    }

    /// The lines with numbers and times, without these and without what is said after the words.
    std::string Titles() const {
        std::string titles;
        std::istringstream lines(Trace());
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("=== ", 0) == 0) {
                EXPECT_THAT(line, MatchesRegex("=== [0-9]+  [0-9-]+T[0-9:]+\\.[0-9]{6}Z  .*"));
                const std::string rest = line.substr(line.find("Z  ") + 3);
                titles += rest.substr(0, rest.find_first_of(",:")) + '\n';
            }
        }
        return titles;
    }

    static std::string WithoutTimes(const std::string& titles) {
        std::string text;
        std::istringstream lines(titles);
        for (std::string line; std::getline(lines, line);) {
            text += line.substr(0, line.find(" after ")) + '\n';
        }
        return text;
    }

    TCIMContext Options() const { return {{kTraceKey, TCIMValue(path_)}}; }

    support::TemporaryDirectory folder_;
    std::string path_ = folder_.Path() / "trace";
};

TEST_F(TraceTest, TheFileReadsLikeTheConversation) {
    ServeClass("TEST_Disk", "", KeyXml());
    auto options = Options();
    options[kReadingKey] = TCIMValue(kFaithfulReading);
    ASSERT_TRUE(IsRead(kHttpPort, options));
    EXPECT_THAT(WithoutTimes(Titles()), StartsWith("connecting to " + server_.Address() +
                                                   "\nrequest\nend of the request\nanswer\nend of the answer\n"));
    EXPECT_THAT(Trace(), HasSubstr("POST /cimom HTTP/1.1\r\nHost: "));
    EXPECT_THAT(Trace(), HasSubstr("HTTP/1.1 200 "));
    EXPECT_THAT(Trace(), HasSubstr("<CLASS NAME=\"TEST_Disk\""));
}

TEST_F(TraceTest, TheFileIsForItsOwnerAloneAndWrittenOnAtItsEnd) {
    ASSERT_TRUE(IsRead(kHttpPort, Options()));
    struct stat status {};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const std::string before = Trace();
    ASSERT_TRUE(IsRead(kHttpPort, Options()));
    EXPECT_THAT(Trace(), StartsWith(before));
    EXPECT_GT(Trace().size(), before.size());
}

TEST_F(TraceTest, TheFileHasNoCredentials) {
    server_.RequireUser("reader", "secret");
    const auto nameSpace = Allocated(Options());
    nameSpace->connect(server_.Address(), "reader", "secret", kHttpPort);
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    EXPECT_THAT(Trace(), AllOf(HasSubstr("HTTP/1.1 401 "), HasSubstr("Authorization: (left out)\r\n")));
    EXPECT_THAT(Trace(), Not(HasSubstr("Basic c")));
}

TEST_F(TraceTest, TheFileTellsWhyThereIsNoConnection) {
    EXPECT_EQ(StatusOn(kOtherPort, {{kTraceKey, TCIMValue(path_)}, {kTlsKey, TCIMValue(false)}}),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_THAT(Titles(), StartsWith("connecting to " + server_.Address() + "\nfailed after "));
    EXPECT_THAT(Trace(), HasSubstr(Failure()->text));
}

TEST_F(TraceTest, TheFileTellsHowMuchCameOfAnAnswerThatFailed) {
    server_.AnswerNextWith("HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nContent-Length: 20\r\n\r\n<CIM>");
    EXPECT_FALSE(IsRead(kHttpPort, Options()));
    EXPECT_THAT(WithoutTimes(Titles()), HasSubstr("\nanswer\nend of what came of the answer\nfailed\n"));
    EXPECT_THAT(Trace(), HasSubstr("\r\n\r\n<CIM>\n=== "));
    EXPECT_THAT(Trace(), HasSubstr("  end of what came of the answer, 5 bytes in its body after "));
}

TEST_F(TraceTest, AFileThatCannotBeWrittenEndsTheOperation) {
    for (const std::string& path : {folder_.Path().string(), std::string("/dev/full")}) {
        EXPECT_EQ(StatusOn(kHttpPort, {{kTraceKey, TCIMValue(path)}}), TVYXStatusCode::eRemoteConnectionFailed);
        EXPECT_EQ(FailureKind(), Kind::kOther);
        EXPECT_THAT(Failure()->text, StartsWith("the trace file " + path + " cannot be written: "));
    }
}

TEST_F(TraceTest, WithoutTheKeyNothingIsWritten) {
    ASSERT_TRUE(IsRead(kHttpPort));
    EXPECT_THAT(Trace(), IsEmpty());
}

} // namespace
