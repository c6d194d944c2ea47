#include "HttpExchange.h"
#include "server/DemoServer.h"
#include "server/LoginDelays.h"
#include "server/RequestReader.h"
#include "support/LoopbackAddress.h"
#include "wire/CimRequest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using exchange::ClassName;
using exchange::Headers;
using exchange::OperationBody;
using exchange::OperationHeaders;
using exchange::Post;
using exchange::Send;
using exchange::Session;
using std::chrono::milliseconds;
using testing::HasSubstr;

constexpr milliseconds kMoment(20);
/// How often something is tried until it must have come about.
constexpr int kAttempts = 2000;

demo::DemoServerOptions Options(const demo::ListenerLimits& limits = {}) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.limits = limits;
    return options;
}

std::string Request(const std::string& method, const std::string& parameters, const Headers& more = {}) {
    auto headers = OperationHeaders(method);
    headers.insert(more.begin(), more.end());
    return Post(headers, OperationBody(method, parameters));
}

std::string GetSystem(const Headers& more = {}) { return Request("GetClass", ClassName("CIM_System"), more); }

/// All classes with all they have: a long answer.
std::string EnumerateClasses() {
    return Request("EnumerateClasses", "<IPARAMVALUE NAME=\"DeepInheritance\"><VALUE>TRUE</VALUE></IPARAMVALUE>"
                                       "<IPARAMVALUE NAME=\"LocalOnly\"><VALUE>FALSE</VALUE></IPARAMVALUE>");
}

/// More than a small request, with white space around a good one.
std::string LargeRequest() {
    return Post(OperationHeaders("GetClass"), OperationBody("GetClass", ClassName("CIM_System")) +
                                                  std::string(2 * demo::ListenerLimits::kSmallRequest, ' '));
}

TEST(Limits, RangesOfAnAnswerAreNotServed) {
    const demo::DemoServer server(Options());
    const std::string whole = Send(GetSystem()).body;
    std::string many = "bytes=0-";
    for (int i = 0; i < 400; ++i) {
        many += ",0-";
    }
    for (const std::string& range : {std::string("bytes=0-10"), std::string("bytes=-5"), many}) {
        const auto response = Send(GetSystem({{"Range", range}}));
        EXPECT_EQ(response.status, 200) << range;
        EXPECT_EQ(response.body, whole) << range;
    }
}

TEST(Limits, ARangeFieldOfTheGreatestLengthIsIgnored) {
    const demo::DemoServer server(Options());
    std::string longest = "bytes=0-";
    while (longest.size() + 20 < demo::RequestReader::kMaxHeaderLine) {
        longest += ",0-";
    }
    EXPECT_EQ(Send(GetSystem({{"Range", longest}})).status, 200);
}

TEST(Limits, ManyShortHeadersAreRefused) {
    const demo::DemoServer server(Options());
    const auto statusWith = [](std::size_t headers) {
        std::string request = GetSystem();
        std::string filler;
        for (std::size_t i = 0; i < headers; ++i) {
            filler += "a:b\r\n";
        }
        return Send(request.insert(request.find("\r\n") + 2, filler)).status;
    };
    EXPECT_EQ(statusWith(demo::RequestReader::kMaxHeaderLines / 2), 200);
    EXPECT_EQ(statusWith(demo::RequestReader::kMaxHeaderLines), 431);
}

TEST(Limits, ADocumentOfTooManyPartsIsRefusedBeforeItIsParsed) {
    const demo::DemoServer server(Options());
    const auto answerTo = [](const std::string& part, std::size_t count) {
        std::string parts = "<IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY>";
        for (std::size_t i = 0; i < count; ++i) {
            parts += part;
        }
        const auto response =
            Send(Request("GetClass", ClassName("CIM_System") + parts + "</VALUE.ARRAY></IPARAMVALUE>"));
        const auto detail = response.headers.find("pgerrordetail");
        return std::to_string(response.status) + ' ' + (detail == response.headers.end() ? "" : detail->second);
    };
    EXPECT_EQ(answerTo("<VALUE>x</VALUE>", demo::kMaxMarks / 2 - 50), "200 ");
    EXPECT_THAT(answerTo("<VALUE>x</VALUE>", demo::kMaxMarks / 2), HasSubstr("400 there%20are%20more%20than"));
    EXPECT_THAT(answerTo("<VALUE a=''/>", demo::kMaxMarks / 2), HasSubstr("400 there%20are%20more%20than"));
}

/// A server that takes one large request at a time.
demo::DemoServerOptions OneLargeRequest(milliseconds timeout) {
    demo::ListenerLimits limits;
    limits.largeRequests = 1;
    limits.placeTimeout = timeout;
    auto options = Options(limits);
    options.volumes = 100'000;
    return options;
}

/// A client whose large request is under way: it does not read the answer, which has begun.
std::unique_ptr<Session> StartLargeRequest() {
    auto session = std::make_unique<Session>();
    session->Write(Request("EnumerateInstances", ClassName("DEMO_StorageVolume") +
                                                     std::string(2 * demo::ListenerLimits::kSmallRequest, ' ')));
    EXPECT_TRUE(session->WaitForAnswer());
    return session;
}

TEST(Limits, ALargeRequestIsPutOffWhileOthersAreUnderWay) {
    const demo::DemoServer server(OneLargeRequest(kMoment));
    auto first = StartLargeRequest();
    auto refused = Send(LargeRequest());
    EXPECT_EQ(refused.status, 503);
    EXPECT_EQ(refused.headers["retry-after"], "1");
    EXPECT_EQ(Send(GetSystem()).status, 200);
}

TEST(Limits, ALargeRequestWaitsForTheOneBefore) {
    const demo::DemoServer server(OneLargeRequest(std::chrono::minutes(1)));
    auto first = StartLargeRequest();
    Session second;
    second.Write(LargeRequest());
    EXPECT_FALSE(second.WaitForAnswer(5 * kMoment));
    first.reset();
    EXPECT_EQ(second.Send("").status, 200);
}

TEST(Limits, ALongAnswerIsSentInChunksWhileTooManyAreKept) {
    std::string whole;
    {
        const demo::DemoServer server(Options());
        const auto response = Send(EnumerateClasses());
        EXPECT_FALSE(response.isChunked);
        whole = response.body;
    }
    ASSERT_GT(whole.size(), demo::ListenerLimits::kShortAnswer);
    demo::ListenerLimits limits;
    limits.longAnswers = 0;
    limits.placeTimeout = kMoment;
    const demo::DemoServer server(Options(limits));
    const auto response = Send(EnumerateClasses());
    EXPECT_TRUE(response.isChunked);
    EXPECT_EQ(response.body, whole);
    EXPECT_FALSE(Send(GetSystem()).isChunked);
}

std::string WithVersion10(std::string request) { return request.replace(request.find("HTTP/1.1"), 8, "HTTP/1.0"); }

TEST(Limits, AClientThatDoesNotKnowChunksIsPutOffWhileTooManyLongAnswersAreKept) {
    demo::ListenerLimits limits;
    limits.longAnswers = 0;
    limits.placeTimeout = kMoment;
    const demo::DemoServer server(Options(limits));
    auto refused = Send(WithVersion10(EnumerateClasses()));
    EXPECT_EQ(refused.status, 503);
    EXPECT_EQ(refused.headers["retry-after"], "1");
    EXPECT_EQ(Send(WithVersion10(GetSystem())).status, 200);
}

TEST(Limits, AClientThatDoesNotKnowChunksGetsNoAnswerOfAnyLength) {
    auto options = Options();
    options.volumes = 1200;
    const demo::DemoServer server(std::move(options));
    EXPECT_EQ(Send(WithVersion10(EnumerateClasses())).status, 200);
    EXPECT_EQ(Send(WithVersion10(Request("EnumerateInstances", ClassName("DEMO_StorageVolume")))).status, 505);
}

/// Connections that each send some bytes and then nothing.
std::vector<std::unique_ptr<Session>> Connect(std::size_t count, const std::string& bytes) {
    std::vector<std::unique_ptr<Session>> sessions;
    for (std::size_t i = 0; i < count; ++i) {
        sessions.push_back(std::make_unique<Session>());
        sessions.back()->Write(bytes);
    }
    return sessions;
}

/// Two threads for connections, of which a crowd can have each for a moment only.
demo::ListenerLimits FewThreads() {
    demo::ListenerLimits limits;
    limits.connections = 2;
    limits.waitingConnections = 10;
    limits.crowdedHead = kMoment;
    limits.crowdedMoment = kMoment;
    // Without the crowd, longer than the client of these tests waits for its answer.
    limits.idle = limits.request = std::chrono::minutes(2);
    return limits;
}

class CrowdedServer : public testing::TestWithParam<std::string> {};

TEST_P(CrowdedServer, ServesARequestAfterConnectionsWithoutWholeHeaders) {
    const demo::DemoServer server(Options(FewThreads()));
    const auto others = Connect(30, GetParam());
    EXPECT_EQ(Send(GetSystem()).status, 200);
}

INSTANTIATE_TEST_SUITE_P(SentSoFar, CrowdedServer, testing::Values("", "P", "POST /cimom HTTP/1.1\r\nHost: demo\r\n"));

TEST(Limits, AnIdleConnectionMakesRoomForOthersAtOnce) {
    auto limits = FewThreads();
    limits.crowdedHead = limits.crowdedMoment = limits.idle;
    const demo::DemoServer server(Options(limits));
    std::vector<std::unique_ptr<Session>> idle;
    for (std::size_t i = 0; i < limits.connections; ++i) {
        idle.push_back(std::make_unique<Session>());
        EXPECT_EQ(idle.back()->Send(GetSystem({{"Connection", "keep-alive"}})).status, 200);
    }
    EXPECT_EQ(Send(GetSystem()).status, 200);
}

TEST(Limits, AnIdleConnectionIsKeptWhileNobodyWaits) {
    const demo::DemoServer server(Options(FewThreads()));
    Session session;
    EXPECT_EQ(session.Send(GetSystem({{"Connection", "keep-alive"}})).status, 200);
    std::this_thread::sleep_for(3 * kMoment);
    EXPECT_EQ(session.Send(GetSystem()).status, 200);
}

TEST(Limits, ARequestThatTakesTooLongIsCutOff) {
    demo::ListenerLimits limits;
    limits.request = 5 * kMoment;
    const demo::DemoServer server(Options(limits));
    Session session;
    session.Write(LargeRequest().substr(0, 2000));
    bool isLeft = false;
    for (int i = 0; i < kAttempts && !isLeft; ++i) {
        session.Write(" ");
        isLeft = session.WaitForAnswer(kMoment / 4);
    }
    EXPECT_TRUE(isLeft);
}

TEST(Limits, AReaderThatIsTooSlowIsDisconnected) {
    demo::ListenerLimits limits;
    limits.answerWait = 50 * kMoment;
    limits.slowestReader = std::size_t{1} << 40U;
    auto options = Options(limits);
    options.volumes = 1'000'000;
    const demo::DemoServer server(std::move(options));
    Session session(32768);
    session.Write(Request("EnumerateInstances", ClassName("DEMO_StorageVolume"), {{"TE", "trailers"}}));
    // It takes something well within the time that it has, again and again.
    bool isLeft = false;
    for (int i = 0; i < kAttempts && !isLeft; ++i) {
        std::this_thread::sleep_for(2 * kMoment);
        isLeft = !session.WaitForAnswer();
    }
    EXPECT_TRUE(isLeft);
}

TEST(Limits, AReaderThatIsFastEnoughGetsItsAnswer) {
    demo::ListenerLimits limits;
    limits.answerWait = milliseconds(1);
    limits.slowestReader = 1;
    auto options = Options(limits);
    options.volumes = 500;
    const demo::DemoServer server(std::move(options));
    Session session(65536);
    session.Write(Request("EnumerateInstances", ClassName("DEMO_StorageVolume"), {{"TE", "trailers"}}));
    std::this_thread::sleep_for(5 * kMoment);
    EXPECT_THAT(session.Send("").body, HasSubstr("</CIM>"));
}

/// With name a and a wrong password.
std::string Guess() { return GetSystem({{"Authorization", "Basic YTpk"}}); }

demo::DemoServerOptions WithUser() {
    auto options = Options();
    options.users.Add("a", "b");
    return options;
}

TEST(Limits, SimultaneousGuessesOfPasswordsArePutOffAndOtherLoginsAreNot) {
    const demo::DemoServer server(WithUser());
    const std::string address = support::SecondLoopbackAddress();
    for (int i = 0; i < demo::LoginDelays::kFreeFailures; ++i) {
        EXPECT_EQ(Session(0, address).Send(Guess()).status, 401);
    }
    std::vector<std::unique_ptr<Session>> guessers;
    for (int i = 0; i < 60; ++i) {
        guessers.push_back(std::make_unique<Session>(0, address));
        guessers.back()->Write(Guess());
    }
    EXPECT_EQ(Send(GetSystem({{"Authorization", "Basic YTpi"}})).status, 200);
    int putOff = 0;
    for (const auto& guesser : guessers) {
        auto response = guesser->Send("");
        if (response.status == 429) {
            ++putOff;
            EXPECT_EQ(response.headers["retry-after"], "2");
        }
    }
    EXPECT_GT(putOff, 0);
}

TEST(Limits, RequestsWithoutCredentialsAreNoFailedLogins) {
    const demo::DemoServer server(WithUser());
    for (int i = 0; i < 60; ++i) {
        EXPECT_EQ(Send(GetSystem()).status, 401);
    }
    const auto users = Connect(4, GetSystem({{"Authorization", "Basic YTpi"}}));
    for (const auto& user : users) {
        EXPECT_EQ(user->Send("").status, 200); // of several at once, some would be put off
    }
}

} // namespace
