// `cimhttp record`, and the demo server that plays what was recorded.

#include "ProgramRun.h"
#include "replay/ReplayListener.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <memory>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr int kHttpPort = 5988;
constexpr const char* kPassword = "open sesame";
constexpr const char* kEncodedLogin = "cmVhZGVyOm9wZW4gc2VzYW1l"; // reader and the password, as Basic sends them

using Words = std::vector<std::string>;

class RecordTest : public testing::Test {
  protected:
    static demo::DemoServerOptions Options() {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        options.volumes = 3;
        options.users.Add("reader", kPassword);
        return options;
    }

    ProgramRun Run(const Words& command) const {
        Words arguments{"--host", support::LoopbackAddress(), "--user", "reader"};
        arguments.insert(arguments.end(), command.begin(), command.end());
        return RunCimhttp(arguments,
                          {std::string("CIMHTTP_PASSWORD=") + kPassword, "XDG_CONFIG_HOME=" + folder_.Path().string()});
    }

    ProgramRun Record(Words command) const {
        command.insert(command.begin(), {"record", file_});
        return Run(command);
    }

    /// The recording takes the server's place.
    void Replay() {
        server_.reset();
        recording_ = std::make_unique<demo::Recording>(ReadFile(file_));
        listener_ = std::make_unique<demo::ReplayListener>(
            *recording_, [this](const std::string& request) { unknown_.push_back(request); },
            support::LoopbackAddress(), kHttpPort, nullptr);
    }

    support::TemporaryDirectory folder_;
    const std::string file_ = (folder_.Path() / "server.rec").string();
    std::unique_ptr<demo::DemoServer> server_ = std::make_unique<demo::DemoServer>(Options());
    Words unknown_;
    std::unique_ptr<demo::Recording> recording_;
    std::unique_ptr<demo::ReplayListener> listener_;
};

} // namespace

TEST_F(RecordTest, WhatWasRecordedIsPlayedToTheSameCommandsWithTheSameResults) {
    const std::vector<Words> commands{{"instances", "DEMO_AllTypes", "-o", "json"},
                                      {"classes"},
                                      {"class", "DEMO_AllTypes"},
                                      {"instances", "CIM_StorageVolume"},
                                      {"instance", "DEMO_AllTypes.InstanceID=\"greatest\""},
                                      {"class", "DEMO_Nothing"}};
    std::vector<ProgramRun> recorded;
    for (const Words& command : commands) {
        recorded.push_back(Record(command));
    }
    Replay();
    for (std::size_t i = 0; i < commands.size(); ++i) {
        const auto played = Run(commands[i]);
        EXPECT_EQ(played.output, recorded[i].output) << commands[i].front();
        EXPECT_EQ(played.status, recorded[i].status) << played.errors;
    }
    EXPECT_THAT(recorded[0].output, HasSubstr("greatest"));
    EXPECT_EQ(recorded.back().status, 5);
    EXPECT_THAT(unknown_, testing::IsEmpty());
}

TEST_F(RecordTest, AnAnswerThatCannotBeReadIsPlayedAndFailsInTheSameWay) {
    server_.reset();
    support::CimServer server;
    server.Listen(kHttpPort);
    const std::string head = "HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nContent-Type: application/xml\r\n";
    const std::string begin = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">";
    const std::vector<std::string> answers{
        head + "Content-Length: 84\r\n\r\n" + begin + "<SIMPLERSP></CIM>",
        head + "Content-Length: 1000\r\n\r\n" + begin,
        head + "Transfer-Encoding: chunked\r\n\r\n5\r\n<CIM \r\n",
        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 6\r\n\r\n<html>",
        "HTTP/1.1 500 Broken\r\nContent-Length: 4\r\n\r\noops",
    };
    const auto command = [](std::size_t number) { return Words{"class", "TEST_" + std::to_string(number)}; };
    std::vector<ProgramRun> recorded;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        server.AnswerNextWith(answers[i]);
        recorded.push_back(Record(command(i)));
    }
    server.Stop();
    Replay();
    for (std::size_t i = 0; i < answers.size(); ++i) {
        const auto played = Run(command(i));
        EXPECT_EQ(played.status, recorded[i].status) << answers[i];
        EXPECT_NE(played.errors, "");
        EXPECT_THAT(recorded[i].errors, testing::EndsWith(played.errors)) << answers[i];
    }
    EXPECT_THAT(unknown_, testing::IsEmpty());
}

TEST_F(RecordTest, ARecordingHoldsNoCredentialsAndIsForItsOwnerAlone) {
    EXPECT_EQ(Record({"instances", "CIM_StorageVolume"}).status, 0);
    EXPECT_THAT(ReadFile(file_),
                AllOf(HasSubstr("<IMETHODCALL NAME=\"OpenEnumerateInstances\">"), HasSubstr("HTTP/1.1 401"),
                      HasSubstr("CIMMethod: OpenEnumerateInstances"), HasSubstr("volume-0000002"),
                      Not(HasSubstr(kPassword)), Not(HasSubstr(kEncodedLogin))));
    struct stat status {};
    ASSERT_EQ(::stat(file_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(RecordTest, SaysOnceThatTheFileGetsWhatTheServerTells) {
    const auto run = Record({"classes"});
    EXPECT_EQ(run.output, Run({"classes"}).output);
    EXPECT_EQ(run.errors, "cimhttp: " + file_ +
                              " gets all that the server tells, without passwords; look at it before you pass it on\n");
}

TEST_F(RecordTest, WhatWasNotRecordedIsAnErrorThatNamesIt) {
    EXPECT_EQ(Record({"classes"}).status, 0);
    Replay();
    const auto run = Run({"class", "CIM_System"});
    EXPECT_EQ(run.status, 6);
    EXPECT_THAT(run.errors, HasSubstr("not recorded"));
    EXPECT_THAT(unknown_, testing::Contains("GetClass of CIM_System in root/cimv2"));
}

TEST_F(RecordTest, AFileThatOthersMayReadIsRefusedAndSoIsWhatIsNoFile) {
    folder_.WriteFile("server.rec", "");
    ASSERT_EQ(::chmod(file_.c_str(), 0644), 0);
    const auto run = Record({"classes"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("chmod 600"));
    EXPECT_EQ(ReadFile(file_), "");
    EXPECT_EQ(Run({"record", folder_.Path().string(), "classes"}).status, 2);
    EXPECT_EQ(Run({"record", "/dev/null", "classes"}).status, 2);
}

TEST_F(RecordTest, IsATraceOfItsOwn) {
    const auto run = Run({"--trace", folder_.Path() / "trace", "record", file_, "classes"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("leave out --trace"));
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(RecordTest, NeedsAFileAndACommand) {
    for (const Words& words : {Words{"record"}, Words{"record", "file.rec"}, Words{"record", file_, "nothing"},
                               Words{"record", file_, "record", file_, "classes"}}) {
        const auto run = Run(words);
        EXPECT_EQ(run.status, 2) << run.output;
        EXPECT_THAT(run.errors, HasSubstr("see cimhttp record --help"));
    }
}
