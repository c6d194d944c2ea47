// How cimhttp looks after the user while a server keeps it waiting.

#include "waiting/ProgressWait.h"

#include "server/DemoServer.h"
#include "support/FaultyServer.h"
#include "support/LoopbackAddress.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"
#include "waiting/BackgroundTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <iostream>
#include <memory>
#include <thread>

using support::TerminalProgram;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::uint16_t kHttpsPort = 5989;
constexpr const char* kInterrupt = "\x03";
constexpr const char* kErased = "\r\x1b[K";

/// Passes answers on until one is a method's response, `passed` others of its kind aside; that one never comes.
support::Fault SilentAt(const std::string& method, int passed = 0) {
    return [method, left = std::make_shared<std::atomic<int>>(passed)](auto& client, const std::string& answer) {
        const bool isKeptBack =
            answer.find("IMETHODRESPONSE NAME=\"" + method + '"') != std::string::npos && (*left)-- <= 0;
        (isKeptBack ? support::faults::StalledAt(0) : support::faults::StalledAt(answer.size()))(client, answer);
    };
}

/// A whole server. What stands before it is up to the test.
class ProgressWaitTest : public testing::Test {
  protected:
    std::unique_ptr<support::FaultyServer> Before(support::Fault fault) const {
        auto server =
            std::make_unique<support::FaultyServer>(support::SecondLoopbackAddress(), kHttpPort, std::move(fault));
        server->Listen(kHttpPort);
        return server;
    }

    static std::vector<std::string> Arguments(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress()});
        return arguments;
    }

  private:
    static demo::DemoServerOptions DemoOptions() {
        demo::DemoServerOptions options;
        options.address = support::SecondLoopbackAddress();
        options.volumes = 3;
        return options;
    }

    demo::DemoServer server_{DemoOptions()};
};

struct Wait {
    std::vector<std::string> arguments;
    std::string method; ///< whose answer does not come
    std::string line;   ///< what the terminal shows meanwhile
};

const std::vector<Wait> kWaits{
    {{"classes"}, "EnumerateClassNames", "reading the names of the classes, 0:0"},
    {{"tree"}, "EnumerateClasses", "reading the hierarchy of classes, 0:0"},
    {{"qualifiers"}, "EnumerateQualifiers", "reading the qualifiers, 0:0"},
    {{"class", "DEMO_StorageVolume"}, "GetClass", "reading the class DEMO_StorageVolume, 0:0"},
    {{"methods", "DEMO_StorageVolume"}, "GetClass", "reading the class DEMO_StorageVolume, 0:0"},
    {{"instances", "DEMO_StorageVolume"}, "GetClass", "reading the class DEMO_StorageVolume, 0:0"},
    {{"instances", "DEMO_StorageVolume"}, "OpenEnumerateInstances", "reading the instances of DEMO_StorageVolume, 0:0"},
    {{"instance", "DEMO_StorageVolume.DeviceID=\"a\""},
     "GetInstance",
     "reading the instance DEMO_StorageVolume.DeviceID=\"a\", 0:0"},
};

} // namespace

TEST_F(ProgressWaitTest, ATerminalShowsWhatIsReadAndAnInterruptEndsIt) {
    for (const Wait& wait : kWaits) {
        SCOPED_TRACE(wait.line);
        const auto server = Before(SilentAt(wait.method));
        TerminalProgram program(CIMHTTP_PROGRAM, Arguments(wait.arguments));
        ASSERT_TRUE(program.AwaitText(kErased + wait.line)) << program.Screen();
        program.Type(kInterrupt);
        EXPECT_EQ(program.Wait(), -SIGINT);
        EXPECT_THAT(program.Screen(), EndsWith(std::string(kErased) + "cimhttp: interrupted\r\n"));
        EXPECT_TRUE(program.Echoes());
    }
}

TEST_F(ProgressWaitTest, ALineThatTheTerminalIsTooNarrowForIsCutOff) {
    const auto server = Before(SilentAt("EnumerateClassNames"));
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"classes"}), {}, {20, 24});
    ASSERT_TRUE(program.AwaitText(std::string(kErased) + "reading the names o")) << program.Screen();
    program.Type(kInterrupt);
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_THAT(program.Screen(), Not(HasSubstr("of the")));
}

TEST_F(ProgressWaitTest, TheLineGoesBeforeTheOutputComes) {
    std::promise<void> release;
    const auto server = Before([released = release.get_future().share()](auto& client, const auto& answer) {
        released.wait();
        client.Write(answer);
    });
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"classes"}));
    EXPECT_TRUE(program.AwaitText("reading the names of the classes, ")) << program.Screen();
    release.set_value();
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Screen(), HasSubstr(std::string(kErased) + "CIM_"));
}

TEST_F(ProgressWaitTest, InstancesOfSeveralClassesAreShownWholeOrNotAtAll) {
    const auto server = Before([](auto& client, const std::string& answer) {
        const bool hasInstances = answer.find("VALUE.INSTANCEWITHPATH") != std::string::npos;
        support::faults::StalledAt(hasInstances ? answer.size() / 2 : answer.size())(client, answer);
    });
    TerminalProgram program(CIMHTTP_PROGRAM,
                            Arguments({"instances", "CIM_LogicalDevice", "--deep", "--property", "Caption"}));
    ASSERT_TRUE(program.AwaitText("reading the instances of CIM_LogicalDevice, ")) << program.Screen();
    program.Type(kInterrupt);
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_THAT(program.Screen(), Not(HasSubstr("Caption")));
}

TEST_F(ProgressWaitTest, AServerThatIsSlowToConnectToCanBeLeft) {
    support::ScriptedServer server([](auto& connection) { connection.WaitForPeerClose(); });
    server.Listen(kHttpsPort); // where no handshake comes
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"--tls", "classes"}));
    ASSERT_TRUE(program.AwaitText("connecting to https://" + server.Address() + ", 0:0")) << program.Screen();
    program.Type(kInterrupt);
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_THAT(program.Screen(), EndsWith("cimhttp: interrupted\r\n"));
}

TEST_F(ProgressWaitTest, WatchEndsInGoodOrderWhileItReads) {
    for (const int rounds : {0, 1, 2}) {
        const auto server = Before(SilentAt("OpenEnumerateInstances", rounds));
        TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"watch", "DEMO_StorageVolume", "--interval", "0.001"}));
        ASSERT_TRUE(program.AwaitText("reading the instances of DEMO_StorageVolume, 0:0")) << program.Screen();
        program.Type(kInterrupt);
        EXPECT_EQ(program.Wait(), 0);
        EXPECT_THAT(program.Screen(), EndsWith(kErased));
    }
}

TEST_F(ProgressWaitTest, CollectIsLeftWithoutAFileWhileItConnects) {
    support::ScriptedServer server([](auto& connection) { connection.WaitForPeerClose(); });
    server.Listen(kHttpsPort);
    const support::TemporaryDirectory directory;
    const std::string document =
        directory.WriteFile("requested.xml", "<vyx version=\"1\"><network address=\"x\"/><class name=\"T\"/></vyx>");
    const std::string result = (directory.Path() / "result.json").string();
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"--tls", "collect", document, "--out", result}));
    ASSERT_TRUE(program.AwaitText("connecting to ")) << program.Screen();
    program.Type(kInterrupt);
    EXPECT_EQ(program.Wait(), -SIGINT);
    EXPECT_FALSE(std::filesystem::exists(result));
}

TEST_F(ProgressWaitTest, ALogTakesThePlaceOfTheLine) {
    const auto server = Before(SilentAt("EnumerateClassNames"));
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"--timeout", "1", "--log", "error", "classes"}));
    EXPECT_EQ(program.Wait(), 3);
    EXPECT_THAT(program.Screen(), Not(HasSubstr("reading the names")));
}

TEST(LateWork, EndsTheProgramAsTheOneWhoWaitsSays) {
    const auto wait = [](bool hasOwnEnd) {
        const cimhttp::ProgressWait usual(std::cerr, false, 0, [] {});
        const auto own = usual.EndingLateWorkBy([](const cimhttp::Failure& failure) {
            std::cerr << "own words about what is " << failure.what() << std::endl;
            std::_Exit(42);
        });
        const cimhttp::ProgressWait::Limit limit{
            std::chrono::milliseconds(1), [] { return cimhttp::Failure(cimhttp::Failure::kConnection, "late"); }};
        (hasOwnEnd ? own : usual)
            .Run(
                "what never comes", [] { ::pause(); }, limit);
    };
    EXPECT_EXIT(wait(true), testing::ExitedWithCode(42), "own words about what is late");
    EXPECT_EXIT(wait(false), testing::ExitedWithCode(3), "cimhttp: late");
}

TEST(StoppedWork, HasItsTimeToEndAlsoAfterItHasNotified) {
    std::promise<void> hasNotified;
    cimhttp::BackgroundTask task([&](const cimhttp::BackgroundTask::Notify& notify) {
        notify();
        hasNotified.set_value();
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // so that somebody waits for it
    });
    hasNotified.get_future().wait();
    EXPECT_TRUE(cimhttp::ProgressWait::AwaitEnd(task));
}

TEST(AwaitedWork, IsLeftToGoOnWhenItHasBroughtEnough) {
    const cimhttp::ProgressWait wait(std::cerr, false, 0, [] { FAIL(); });
    std::atomic<int> brought = 0;
    std::promise<void> mayEnd;
    cimhttp::BackgroundTask task([&](const cimhttp::BackgroundTask::Notify& notify) {
        while (brought < 3) {
            ++brought;
            notify();
        }
        mayEnd.get_future().wait();
        throw cimhttp::Failure(cimhttp::Failure::kOther, "told at the end");
    });
    wait.Await("parts", task, {}, {}, [&] { return brought == 3; });
    mayEnd.set_value();
    while (!task.Wait(std::chrono::milliseconds(100))) {
    }
    wait.Await("parts", task, {}, {}, [&] { return brought == 3; }); // what it brought comes before its failure
    EXPECT_THROW(wait.Await("parts", task, {}, {}, [] { return false; }), cimhttp::Failure);
}
