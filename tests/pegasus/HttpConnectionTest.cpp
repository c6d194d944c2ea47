#include "http/HttpConnection.h"

#include "HttpConnectionFixture.h"

#include <Pegasus/Client/CIMClientException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using namespace std::chrono_literals;
using support::Connection;
using support::ScriptedServer;
using support::TlsMessage;
using support::TlsVersion;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr char kChallenge[] = "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"
                              "Content-Length: 4\r\n\r\nnope";

using Framing = HttpConnectionTest;
using Truncation = HttpConnectionTest;
using Limits = HttpConnectionTest;
using KeepAlive = HttpConnectionTest;
using Resending = HttpConnectionTest;
using TimeOuts = HttpConnectionTest;
using Authentication = HttpConnectionTest;
using Secure = HttpConnectionTest;

// ---- The request

TEST_F(HttpConnectionTest, SendsTheRequestInOnePiece) {
    std::string received;
    const std::uint16_t port = serve([&](Connection& peer) {
        received = peer.ReadSome();
        peer.Write(Answer("ok"));
    });
    auto connection = connectionTo(port);
    connection.post({"/cimom", "A: b\r\n", "question"}, Deadline(kAmple));
    EXPECT_EQ(readBody(connection, Deadline(kAmple)), "ok");
    EXPECT_EQ(received, "POST /cimom HTTP/1.1\r\nHost: " + support::LoopbackAddress() +
                            ":5988\r\nA: b\r\nContent-Length: 8\r\n\r\nquestion");
}

// ---- Where an answer ends

TEST_F(Framing, ReturnsTheTrailersBehindTheChunks) {
    EXPECT_EQ(bodyOf(ChunkedAnswer("5\r\nhello\r\n0\r\nCIMStatusCode: 6\r\nOther: x\r\n\r\n")), "hello");
    ASSERT_NE(trailers_.find("cimstatuscode"), nullptr);
    EXPECT_EQ(*trailers_.find("CIMStatusCode"), "6");
    EXPECT_EQ(trailers_.find("Transfer-Encoding"), nullptr) << "a field of the head is no trailer";
}

TEST_F(Framing, ReadsAnAnswerThatComesByteByByte) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadRequest();
        for (const char byte : ChunkedAnswer("3\r\nhel\r\n2\r\nlo\r\n0\r\nA: b\r\n\r\n")) {
            peer.Write({&byte, 1});
            std::this_thread::yield();
        }
        peer.WaitForPeerClose();
    }));
    EXPECT_EQ(exchange(connection), "hello");
    EXPECT_EQ(*trailers_.find("A"), "b");
}

TEST_F(Framing, ReadsABodyOfManyBuffers) {
    const std::string part(100'000, 'x');
    std::string chunks;
    for (int i = 0; i < 30; ++i) {
        chunks += "186a0\r\n" + part + "\r\n";
    }
    EXPECT_EQ(bodyOf(ChunkedAnswer(chunks + "0\r\n\r\n")).size(), 3'000'000U);
}

TEST_F(Framing, ReadsTheAnswersOfAProductionServer) {
    const char* const given = std::getenv("CIMHTTP_CAPTURES");
    const std::filesystem::path folder(given != nullptr ? given : CIMHTTP_CAPTURES);
    if (!std::filesystem::is_directory(folder)) {
        GTEST_SKIP() << "no captured answers in " << folder;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".http") {
            continue;
        }
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string answer(std::istreambuf_iterator<char>(file), {});
        const std::string body = bodyOf(answer);
        const bool refused = answer.find("HTTP/1.1 400") == 0;
        EXPECT_EQ(status_, refused ? 400U : 200U) << entry.path();
        EXPECT_THAT(body, refused ? ::testing::Matcher<std::string>("") : ::testing::EndsWith("</CIM>\n"))
            << entry.path();
        EXPECT_EQ(trailers_.find("CIMStatusCode") != nullptr, answer.find("\r\nCIMStatusCode: ") != std::string::npos)
            << entry.path();
    }
}

constexpr char kInterimAnswer[] = "HTTP/1.1 102 Processing\r\n\r\n";

ClientLimits withInterimAnswers(Uint32 count) {
    ClientLimits limits;
    limits.interimAnswers = count;
    return limits;
}

TEST_F(Framing, SkipsInterimAnswersInAnyNumberThatTheLimitAllows) {
    std::string interim;
    while (interim.size() < 3 * kMaxHeaderBytes) {
        interim += kInterimAnswer;
    }
    auto connection = connectionTo(serveInTurn({interim + Answer("hello")}));
    connection.setLimits(withInterimAnswers(10'000));
    EXPECT_EQ(exchange(connection), "hello");
}

// ---- Answers that break off

TEST_F(Truncation, IsAnErrorWhereverItHappens) {
    for (const std::string& whole : {Answer("hello"), ChunkedAnswer("5\r\nhello\r\n0\r\nA: b\r\n\r\n")}) {
        for (std::size_t size = 1; size < whole.size(); ++size) {
            EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(whole.substr(0, size)), HasSubstr("in the middle"))
                << whole.substr(0, size);
        }
    }
}

TEST_F(Truncation, ByAResetIsAnErrorToo) {
    std::promise<void> headRead;
    auto connection = connectionTo(serve([&](Connection& peer) {
        peer.ReadRequest();
        peer.Write("HTTP/1.1 200 OK\r\n\r\nhel");
        headRead.get_future().wait();
        peer.Reset();
    }));
    connection.post(kQuestion, Deadline(kAmple));
    headRead.set_value();
    EXPECT_THAT(MessageOf<CIMClientMalformedHTTPException>([&] { readBody(connection, Deadline(kAmple)); }),
                HasSubstr("lost in the middle of the answer: Connection reset"));
}

// ---- Limits

TEST_F(Limits, AllowHeadersUpToTheLimit) {
    const std::string answer = Answer("hello", "A: " + std::string(kMaxHeaderBytes - 100, 'x') + "\r\n");
    EXPECT_EQ(bodyOf(answer), "hello");
}

TEST_F(Limits, EndEndlessHeadersTrailersAndChunkLines) {
    for (const std::string& begin : {std::string("HTTP/1.1 200 "), std::string("HTTP/1.1 200 OK\r\nA: "),
                                     ChunkedAnswer("5;"), ChunkedAnswer("5\r\nhello\r\n0\r\nA: ")}) {
        EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(begin + std::string(3 * kMaxHeaderBytes, 'x')),
                    ::testing::AnyOf(HasSubstr("longer than 65536"), HasSubstr("not valid HTTP")))
            << begin;
    }
}

TEST_F(Limits, EndHeadersOfManyShortFields) {
    std::string answer = "HTTP/1.1 200 OK\r\n";
    while (answer.size() < 3 * kMaxHeaderBytes) {
        answer += "A: b\r\n";
    }
    EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(answer), HasSubstr("longer than 65536"));
}

std::string interimAnswers(int count) {
    std::string answers;
    for (int i = 0; i < count; ++i) {
        answers += kInterimAnswer;
    }
    return answers;
}

TEST_F(Limits, AllowAHundredInterimAnswersAndNotOneMore) {
    EXPECT_EQ(bodyOf(interimAnswers(100) + Answer("hello")), "hello");
    EXPECT_THAT(limitPassedBy(interimAnswers(101) + Answer("hello")), HasSubstr("one interim answer after the other"));
}

TEST_F(Limits, CountTheInterimAnswersOfEachAnswerAnew) {
    auto connection = connectionTo(serveInTurn({interimAnswers(60) + Answer("1"), interimAnswers(60) + Answer("2")}));
    EXPECT_THAT(exchanges(connection, 2), ElementsAre("1", "2"));
}

TEST_F(Limits, TakeTheNumberOfInterimAnswersFromTheClient) {
    auto connection = connectionTo(serve([](Connection& peer) {
        while (peer.ReadRequest() && peer.Write(interimAnswers(1) + Answer("hello"))) {
        }
    }));
    connection.setLimits(withInterimAnswers(0));
    EXPECT_THROW(exchange(connection), CIMClientMalformedHTTPException);
    connection.setLimits(withInterimAnswers(1));
    EXPECT_EQ(exchange(connection), "hello");
}

TEST_F(Limits, EndAStreamOfInterimAnswersThatNeverEnds) {
    EXPECT_THAT(limitPassedByEndless("", kInterimAnswer), HasSubstr("one interim answer after the other"));
}

TEST_F(Limits, EndStatusLinesFieldsAndChunkLinesThatNeverEnd) {
    const std::string chunked = ChunkedAnswer("");
    const std::vector<std::pair<std::string, std::string>> endless = {
        {"HTTP/1.1 200 ", "x"},
        {"HTTP/1.1 200 OK\r\n", "A: b\r\n"},
        {"HTTP/1.1 200 OK\r\nA:", " b\r\n"},
        {chunked, "0"},
        {chunked + "5;", "x"},
        {chunked + "5;a=\"", "b"},
        {chunked + "5\r\nhello\r\n", "0"},
        {chunked + "5\r\nhello\r\n0;", "x"},
        {chunked + "5\r\nhello\r\n0\r\n", "A: b\r\n"},
        {chunked + "5\r\nhello\r\n0\r\nA:", " b\r\n"},
        {chunked + "5\r\nhello\r\n0\r\nA: ", "b"},
    };
    for (const auto& [begin, part] : endless) {
        SCOPED_TRACE(begin + part);
        EXPECT_THAT(limitPassedByEndless(begin, part), HasSubstr("longer than 65536 bytes"));
    }
}

TEST_F(Limits, AreNotReachedByBlanksBeforeAnAnswerWhichAreRefused) {
    for (const char* blanks : {"\r\n", "\n", " ", "\r\n\r\n"}) {
        EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(blanks + Answer("hello")), HasSubstr("not valid HTTP"));
        EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(kInterimAnswer + (blanks + Answer("hello"))),
                    HasSubstr("not valid HTTP"));
    }
}

TEST_F(Limits, ReadNothingThatComesAfterTheEndOfABody) {
    for (const char* surplus : {"x", "\r\n", "HTTP/1.1 200 OK\r\n\r\n"}) {
        for (const std::string& answer : {Answer("hello"), ChunkedAnswer("5\r\nhello\r\n0\r\n\r\n")}) {
            auto connection = connectionTo(serve(endless(answer, surplus)));
            EXPECT_THAT(exchanges(connection, 2), ElementsAre("hello", "hello"));
            EXPECT_EQ(connectionCount(), 2U);
        }
    }
}

// ---- One connection, many exchanges

TEST_F(KeepAlive, CarriesManyExchangesOverOneConnection) {
    auto connection = connectionTo(serveInTurn({Answer("1"), ChunkedAnswer("1\r\n2\r\n0\r\n\r\n"), Answer("3")}));
    EXPECT_THAT(exchanges(connection, 3), ElementsAre("1", "2", "3"));
    EXPECT_EQ(connectionCount(), 1U);
}

TEST_F(KeepAlive, EndsWhereTheServerSaysSo) {
    auto connection = connectionTo(
        serveInTurn({Answer("1", "Connection: close\r\n"), "HTTP/1.0 200 OK\r\nContent-Length: 1\r\n\r\n2",
                     "HTTP/1.0 200 OK\r\nConnection: keep-alive\r\nContent-Length: 1\r\n\r\n3", Answer("4")}));
    EXPECT_THAT(exchanges(connection, 4), ElementsAre("1", "2", "3", "4"));
    EXPECT_EQ(connectionCount(), 3U);
}

TEST_F(KeepAlive, EndsWhenTheAnswerIsLongerThanItSays) {
    auto connection = connectionTo(serveInTurn({Answer("1") + "surplus", Answer("2")}));
    EXPECT_THAT(exchanges(connection, 2), ElementsAre("1", "2"));
    EXPECT_EQ(connectionCount(), 2U);
}

TEST_F(KeepAlive, TakesNothingUnaskedForAnAnswer) {
    std::promise<void> sent;
    auto connection = connectionTo(serve([&](Connection& peer) {
        peer.ReadRequest();
        peer.Write(Answer(std::to_string(peer.Index())));
        if (peer.Index() == 0) {
            peer.Write("HTTP/1.1 408 Request Timeout\r\n\r\n");
            peer.WaitForDelivery();
            sent.set_value();
        }
        peer.WaitForPeerClose();
    }));
    EXPECT_EQ(exchange(connection), "0");
    sent.get_future().wait();
    EXPECT_EQ(exchange(connection), "1");
}

TEST_F(KeepAlive, EndsWithAnUnfinishedExchange) {
    auto connection = connectionTo(serveInTurn({Answer("1"), Answer("2")}));
    connection.post(kQuestion, Deadline(kAmple));
    EXPECT_EQ(exchange(connection), "2");
    EXPECT_EQ(connectionCount(), 2U);
}

TEST_F(KeepAlive, EndsWhenTheSinkThrows) {
    auto connection = connectionTo(serveInTurn({Answer("1"), Answer("2")}));
    connection.post(kQuestion, Deadline(kAmple));
    EXPECT_THROW(connection.readBody([](std::string_view) { throw CIMClientXmlException("bad"); }, Deadline(kAmple)),
                 CIMClientXmlException);
    EXPECT_EQ(exchange(connection), "2");
    EXPECT_EQ(connectionCount(), 2U);
}

TEST_F(KeepAlive, EndsAtOnceWithAnAnswerThatIsMalformed) {
    for (const std::string& answer : {std::string("garbage\r\n\r\n"), ChunkedAnswer("garbage\r\n")}) {
        std::promise<void> closed;
        auto connection = connectionTo(serve([&](Connection& peer) {
            peer.ReadRequest();
            peer.Write(answer);
            peer.WaitForPeerClose();
            closed.set_value();
        }));
        EXPECT_THROW(exchange(connection), CIMClientMalformedHTTPException);
        EXPECT_EQ(closed.get_future().wait_for(kAmple), std::future_status::ready) << answer;
    }
}

// ---- A server that closes between two requests

/// Answers one request on each connection, then ends the connection in the given way when the next one has come.
ScriptedServer::Script oneAnswerThen(void (Connection::*end)()) {
    return [end](Connection& peer) {
        peer.ReadRequest();
        peer.Write(Answer(std::to_string(peer.Index())));
        peer.ReadRequest();
        (peer.*end)();
    };
}

TEST_F(Resending, HidesThatTheServerClosedTheConnection) {
    auto connection = connectionTo(serve(oneAnswerThen(&Connection::Close)));
    EXPECT_THAT(exchanges(connection, 3), ElementsAre("0", "1", "2"));
}

TEST_F(Resending, HidesThatTheServerResetTheConnection) {
    auto connection = connectionTo(serve(oneAnswerThen(&Connection::Reset)));
    EXPECT_THAT(exchanges(connection, 2), ElementsAre("0", "1"));
}

TEST_F(Resending, HidesThatTheServerClosedWithoutWaiting) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadRequest();
        peer.Write(Answer(std::to_string(peer.Index())));
    }));
    EXPECT_THAT(exchanges(connection, 4), ElementsAre("0", "1", "2", "3"));
}

TEST_F(Resending, IsNotNeededWhenTheServerClosesAConnectionThatWasNeverUsed) {
    std::promise<void> closed;
    auto connection = connectionTo(serve([&](Connection& peer) {
        if (peer.Index() == 0) {
            peer.Close();
            peer.WaitForDelivery();
            closed.set_value();
            return;
        }
        peer.ReadRequest();
        peer.Write(Answer("1"));
    }));
    connection.open(Deadline(kAmple));
    closed.get_future().wait();
    EXPECT_EQ(exchange(connection), "1");
}

TEST_F(Resending, HappensOnce) {
    std::atomic<int> requests{0};
    auto connection = connectionTo(serve([&](Connection& peer) {
        while (peer.ReadRequest()) {
            if (++requests > 1) {
                return;
            }
            peer.Write(Answer("1"));
        }
    }));
    EXPECT_EQ(exchange(connection), "1");
    EXPECT_THAT(MessageOf<CannotConnectException>([&] { exchange(connection); }), HasSubstr("without an answer"));
    EXPECT_EQ(requests, 3);
}

TEST_F(Resending, NeverHappensOnANewConnection) {
    std::atomic<int> requests{0};
    auto connection = connectionTo(serve([&](Connection& peer) {
        peer.ReadRequest();
        ++requests;
    }));
    EXPECT_THROW(exchange(connection), CannotConnectException);
    EXPECT_EQ(requests, 1);
}

TEST_F(Resending, NeverHappensWhenAnAnswerHasBegun) {
    std::atomic<int> requests{0};
    auto connection = connectionTo(serve([&](Connection& peer) {
        while (peer.ReadRequest()) {
            if (++requests > 1) {
                peer.Write("H");
                return;
            }
            peer.Write(Answer("1"));
        }
    }));
    EXPECT_EQ(exchange(connection), "1");
    EXPECT_THROW(exchange(connection), CIMClientMalformedHTTPException);
    EXPECT_EQ(requests, 2);
}

TEST_F(Resending, SurvivesAServerThatResetsWhileALargeRequestIsOnItsWay) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadSome();
        peer.Reset();
    }));
    EXPECT_THROW(connection.post(largeRequest(), Deadline(kAmple)), CannotConnectException);
}

TEST_F(Resending, NeverHappensWhenAnAnswerHasBegunWhereverItEnds) {
    const std::string answer = Answer("hello", "A: b\r\n");
    for (std::size_t size = 0; size < answer.size(); ++size) {
        std::atomic<int> requests{0};
        auto connection = connectionTo(serve([&requests, begin = answer.substr(0, size)](Connection& peer) {
            while (peer.ReadRequest()) {
                const bool breaksOff = ++requests == 2;
                if (!peer.Write(breaksOff ? begin : Answer("whole")) || breaksOff) {
                    return;
                }
            }
        }));
        EXPECT_EQ(exchange(connection), "whole");
        if (size == 0) {
            EXPECT_EQ(exchange(connection), "whole") << "no answer had begun";
            EXPECT_EQ(requests, 3);
            continue;
        }
        EXPECT_THROW(exchange(connection), CIMClientMalformedHTTPException) << size;
        EXPECT_EQ(requests, 2) << size;
        EXPECT_EQ(exchange(connection), "whole") << "the connection is opened again";
    }
}

TEST_F(Resending, NeverHappensAfterAnInterimAnswer) {
    std::atomic<int> requests{0};
    auto connection = connectionTo(serve([&](Connection& peer) {
        while (peer.ReadRequest()) {
            const bool breaksOff = ++requests > 1;
            if (!peer.Write(breaksOff ? "HTTP/1.1 100 Continue\r\n\r\n" : Answer("1")) || breaksOff) {
                return;
            }
        }
    }));
    EXPECT_EQ(exchange(connection), "1");
    EXPECT_THROW(exchange(connection), CIMClientMalformedHTTPException);
    EXPECT_EQ(requests, 2);
}

TEST_F(HttpConnectionTest, ReadsTheAnswerOfAServerThatDoesNotWantTheWholeRequest) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadSome();
        peer.Write("HTTP/1.1 413 Too Large\r\nConnection: close\r\nContent-Length: 5\r\n\r\nlarge");
    }));
    const Deadline deadline(kAmple);
    EXPECT_EQ(connection.post(largeRequest(), deadline).status, 413U);
    EXPECT_EQ(readBody(connection, deadline), "large");
}

// ---- Deadlines

TEST_F(TimeOuts, EndTheWaitForASilentServer) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadRequest();
        if (peer.Index() > 0) {
            peer.Write(Answer("awake"));
        }
        peer.WaitForPeerClose();
    }));
    connection.open(Deadline(kAmple));
    const std::string message = MessageOf<ConnectionTimeoutException>([&] { exchange(connection, kShort); });
    EXPECT_EQ(message, support::LoopbackAddress() + ":5988: no complete answer came within 100 ms");
    EXPECT_EQ(exchange(connection), "awake");
    EXPECT_EQ(connectionCount(), 2U);
}

TEST_F(TimeOuts, CloseTheConnectionAtOnce) {
    for (const char* begin : {"", "HTTP/1.1 200 OK\r\n", "HTTP/1.1 200 OK\r\n\r\nhel"}) {
        std::promise<void> closed;
        auto connection = connectionTo(serve([&](Connection& peer) {
            peer.Write(begin);
            peer.WaitForPeerClose();
            closed.set_value();
        }));
        EXPECT_THROW(exchange(connection, kShort), ConnectionTimeoutException);
        EXPECT_EQ(closed.get_future().wait_for(kAmple), std::future_status::ready) << begin;
    }
}

/// Sends one text again and again, with pauses, until the peer has enough.
void Drip(Connection& peer, const std::string& text) {
    while (peer.Write(text)) {
        std::this_thread::sleep_for(5ms);
    }
}

TEST_F(TimeOuts, EndAnAnswerThatDripsForever) {
    const std::string chunked = ChunkedAnswer("");
    const std::vector<std::pair<std::string, std::string>> drips = {
        {"", "HTTP/1.1 100 Continue\r\n\r\n"},
        {"HTTP/1.1 200 ", "x"},
        {"HTTP/1.1 200 OK\r\n", "a: b\r\n"},
        {"HTTP/1.1 200 OK\r\nX:", " y\r\n"},
        {"HTTP/1.1 200 OK\r\n\r\n", "x"},
        {"HTTP/1.1 200 OK\r\nContent-Length: 18446744073709551615\r\n\r\n", "x"},
        {chunked, "0"},
        {chunked + "5;", "x"},
        {chunked, "1\r\nx\r\n"},
        {chunked + "0\r\n", "a: b\r\n"},
    };
    for (const auto& [begin, drop] : drips) {
        auto connection = connectionTo(serve([begin = begin, drop = drop](Connection& peer) {
            peer.ReadRequest();
            peer.Write(begin);
            Drip(peer, drop);
        }));
        EXPECT_THROW(exchange(connection, kShort), ConnectionTimeoutException) << begin << drop;
    }
}

TEST_F(TimeOuts, EndAStreamOfInterimAnswersThatNeverPauses) {
    auto connection = connectionTo(serve(endless("", kInterimAnswer)));
    connection.setLimits(withInterimAnswers(std::numeric_limits<Uint32>::max()));
    EXPECT_THROW(exchange(connection, kShort), ConnectionTimeoutException);
}

TEST_F(TimeOuts, EndABodyThatNeverPauses) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadRequest();
        peer.Write("HTTP/1.1 200 OK\r\n\r\n");
        const std::string part(100'000, 'x');
        while (peer.Write(part)) {
        }
    }));
    const Deadline deadline(kShort);
    connection.post(kQuestion, deadline);
    EXPECT_THROW(connection.readBody([](std::string_view) {}, deadline), ConnectionTimeoutException);
}

TEST_F(TimeOuts, EndAnAnswerThatStopsWhereverItDoes) {
    const std::string answer = ChunkedAnswer("5\r\nhello\r\n0\r\nA: b\r\n\r\n");
    for (const char* last : {"HTTP", "OK", "chunked\r\n\r\n", "\n5", "hel", "hello\r\n0\r\n", "A: b\r\n"}) {
        const std::string begin = answer.substr(0, answer.find(last) + std::string(last).size());
        auto connection = connectionTo(serve([begin](Connection& peer) {
            peer.ReadRequest();
            peer.Write(peer.Index() == 0 ? begin : Answer("awake"));
            peer.WaitForPeerClose();
        }));
        EXPECT_THROW(exchange(connection, kShort), ConnectionTimeoutException) << begin;
        EXPECT_EQ(exchange(connection), "awake") << begin;
    }
}

// The parts of each of these take longer than the limit only when they are taken together.
constexpr auto kPart = 75ms;

TEST_F(TimeOuts, CountHeadAndBodyTogether) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadRequest();
        for (const char* part : {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n", "hello"}) {
            std::this_thread::sleep_for(kPart);
            peer.Write(part);
        }
        peer.WaitForPeerClose();
    }));
    EXPECT_THROW(exchange(connection, kShort), ConnectionTimeoutException);
}

TEST_F(TimeOuts, CountAChallengeAndTheAnswerAfterItTogether) {
    auto connection = connectionTo(serve([](Connection& peer) {
                                       for (const std::string& answer : {std::string(kChallenge), Answer("1")}) {
                                           peer.ReadRequest();
                                           std::this_thread::sleep_for(kPart);
                                           peer.Write(answer);
                                       }
                                       peer.WaitForPeerClose();
                                   }),
                                   {"ada", "secret"});
    EXPECT_THROW(exchange(connection, kShort), ConnectionTimeoutException);
}

TEST_F(TimeOuts, CountBothConnectionsOfARequestThatIsSentAgainTogether) {
    auto connection = connectionTo(serve([](Connection& peer) {
        peer.ReadRequest();
        if (peer.Index() == 0) {
            peer.Write(Answer("1"));
            peer.ReadRequest();
            std::this_thread::sleep_for(kPart);
            return;
        }
        std::this_thread::sleep_for(kPart);
        peer.Write(Answer("2"));
    }));
    EXPECT_EQ(exchange(connection), "1");
    EXPECT_THROW(exchange(connection, kShort), ConnectionTimeoutException);
}

TEST_F(TimeOuts, EndARequestThatTheServerDoesNotRead) {
    std::promise<void> done;
    auto connection = connectionTo(serve([&](Connection&) { done.get_future().wait(); }));
    EXPECT_THROW(connection.post(largeRequest(), Deadline(kShort)), ConnectionTimeoutException);
    done.set_value();
}

TEST_F(TimeOuts, MayBeVeryLong) {
    auto connection = connectionTo(serveInTurn({Answer("1")}));
    EXPECT_EQ(exchange(connection, 65'535'000ms), "1");
    EXPECT_GT(Deadline(std::chrono::milliseconds(0xffffffffU)).remaining(), 24h);
}

// ---- Basic authentication

const Credentials kAda{"ada", "s:cret"};
constexpr char kAdasAuthorization[] = "Basic YWRhOnM6Y3JldA==";

TEST_F(Authentication, AnswersAChallengeAndFromThenOnNeedsNone) {
    auto connection = connectionTo(serveInTurn({Answer("open"), kChallenge, Answer("1"), Answer("2")}), kAda);
    EXPECT_EQ(exchange(connection), "open");
    EXPECT_EQ(exchange(connection), "1");
    EXPECT_EQ(exchange(connection), "2");
    EXPECT_THAT(authorizations(), ElementsAre("", "", kAdasAuthorization, kAdasAuthorization));
    EXPECT_EQ(connectionCount(), 1U);
}

TEST_F(Authentication, LastsWhenTheConnectionIsOpenedAgain) {
    auto connection = connectionTo(serveInTurn({kChallenge, Answer("1", "Connection: close\r\n"), Answer("2")}), kAda);
    EXPECT_THAT(exchanges(connection, 2), ElementsAre("1", "2"));
    EXPECT_THAT(authorizations(), ElementsAre("", kAdasAuthorization, kAdasAuthorization));
}

TEST_F(Authentication, IsTriedOnce) {
    auto connection = connectionTo(serveInTurn({kChallenge, kChallenge, kChallenge}), kAda);
    EXPECT_EQ(exchange(connection), "nope");
    EXPECT_EQ(status_, 401U);
    EXPECT_EQ(exchange(connection), "nope");
    EXPECT_THAT(authorizations(), ElementsAre("", kAdasAuthorization, kAdasAuthorization));
}

TEST_F(Authentication, NeedsAUser) {
    auto connection = connectionTo(serveInTurn({kChallenge}));
    exchange(connection);
    EXPECT_EQ(status_, 401U);
    EXPECT_THAT(authorizations(), ElementsAre(""));
}

TEST_F(Authentication, IsForBasicChallengesOnly) {
    auto connection = connectionTo(
        serveInTurn({"HTTP/1.1 401 No\r\nWWW-Authenticate: Negotiate\r\n"
                     "WWW-Authenticate: Digest realm=\"a, Basic b\", nonce=\"x\"\r\nContent-Length: 0\r\n\r\n"}),
        kAda);
    exchange(connection);
    EXPECT_EQ(status_, 401U);
    EXPECT_THAT(authorizations(), ElementsAre(""));
}

constexpr char kRefusal[] = "HTTP/1.1 401 Unauthorized\r\nContent-Length: 4\r\n\r\nnope";

TEST_F(Authentication, AnswersARefusalThatNamesNoScheme) {
    auto connection = connectionTo(serveInTurn({kRefusal, Answer("1"), Answer("2")}), kAda);
    EXPECT_THAT(exchanges(connection, 2), ElementsAre("1", "2"));
    EXPECT_THAT(authorizations(), ElementsAre("", kAdasAuthorization, kAdasAuthorization));
}

TEST_F(Authentication, AnswersARefusalThatNamesNoSchemeOnce) {
    auto connection = connectionTo(serveInTurn({kRefusal, kRefusal, kRefusal}), kAda);
    EXPECT_EQ(exchange(connection), "nope");
    EXPECT_EQ(status_, 401U);
    EXPECT_THAT(authorizations(), ElementsAre("", kAdasAuthorization));
}

TEST_F(Authentication, IsNotGivenToARefusalOfAnotherKind) {
    for (const char* status : {"403 Forbidden", "407 Proxy Authentication Required", "500 No"}) {
        auto connection = connectionTo(serve([status](Connection& peer) {
                                           std::string seen;
                                           while (const auto request = peer.ReadRequest()) {
                                               seen += request->Header("Authorization");
                                               peer.Write("HTTP/1.1 " + std::string(status) + "\r\nContent-Length: " +
                                                          std::to_string(seen.size()) + "\r\n\r\n" + seen);
                                           }
                                       }),
                                       kAda);
        EXPECT_THAT(exchanges(connection, 2), ElementsAre("", "")) << status;
    }
}

TEST_F(Authentication, FindsBasicAmongOtherSchemes) {
    auto connection = connectionTo(
        serveInTurn({"HTTP/1.1 401 No\r\nwww-authenticate: Digest realm=\"a\", nonce=\"\\\"x\", BASIC realm=\"b\"\r\n"
                     "Content-Length: 0\r\n\r\n",
                     Answer("1")}),
        kAda);
    EXPECT_EQ(exchange(connection), "1");
}

TEST_F(Authentication, OpensAgainAfterAChallengeWithoutLength) {
    auto connection = connectionTo(
        serveInTurn({"HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\n\r\n", Answer("1")}), kAda);
    EXPECT_EQ(exchange(connection), "1");
    EXPECT_EQ(connectionCount(), 2U);
}

TEST_F(Authentication, SurvivesAServerThatClosesAfterItsChallenge) {
    auto connection = connectionTo(serve([](Connection& peer) {
                                       peer.ReadRequest();
                                       peer.Write(peer.Index() == 0 ? kChallenge : Answer("1"));
                                   }),
                                   kAda);
    EXPECT_EQ(exchange(connection), "1");
}

TEST_F(Authentication, SurvivesAChallengeThatBreaksOff) {
    auto connection =
        connectionTo(serve([](Connection& peer) {
                         peer.ReadRequest();
                         const std::string challenge(kChallenge);
                         peer.Write(peer.Index() == 0 ? challenge.substr(0, challenge.size() - 2) : Answer("1"));
                     }),
                     kAda);
    EXPECT_EQ(exchange(connection), "1");
}

TEST_F(Authentication, ReportsAChallengeThatComesAfterASuccess) {
    auto connection = connectionTo(serveInTurn({kChallenge, Answer("1"), kChallenge, Answer("2")}), kAda);
    EXPECT_THAT(exchanges(connection, 2), ElementsAre("1", "nope"));
    EXPECT_EQ(status_, 401U);
    EXPECT_EQ(exchange(connection), "2") << "one refusal is not the end";
    EXPECT_EQ(connectionCount(), 1U);
}

TEST_F(Authentication, EncodesCredentialsOfAnyCharacters) {
    const std::vector<std::pair<Credentials, const char*>> encoded = {
        {{"ada", ""}, "Basic YWRhOg=="},
        {{"a", "b"}, "Basic YTpi"},
        {{"ada", ":s:c:"}, "Basic YWRhOjpzOmM6"},
        {{"\xC3\xA4"
          "da",
          "\xE2\x82\xAC \xF0\x9F\x98\x80"},
         "Basic w6RkYTrigqwg8J+YgA=="},
        {{"ada", std::string(7, '>')}, "Basic YWRhOj4+Pj4+Pj4="},
    };
    for (const auto& [credentials, authorization] : encoded) {
        std::promise<std::string> received;
        auto connection = connectionTo(serve([&received](Connection& peer) {
                                           peer.ReadRequest();
                                           peer.Write(kChallenge);
                                           received.set_value(peer.ReadRequest()->Header("Authorization"));
                                           peer.Write(Answer("1"));
                                       }),
                                       credentials);
        EXPECT_EQ(exchange(connection), "1");
        EXPECT_EQ(received.get_future().get(), authorization);
    }
}

// ---- With TLS underneath

TEST_F(Secure, LosesNothingOfAnAnswerWhoseEndComesWithTheEndOfTheConnection) {
    const std::string large(3'000'000, 'x');
    const std::string chunk = "2dc6c0\r\n" + large + "\r\n0\r\nA: b\r\n\r\n";
    for (const auto end : {&Connection::Close, &Connection::CloseWithoutAlert}) {
        for (const std::string& answer : {Answer(large), ChunkedAnswer(chunk), "HTTP/1.1 200 OK\r\n\r\n" + large}) {
            auto connection = secureConnectionTo(serveTls([&answer, end](Connection& peer) {
                peer.ReadRequest();
                peer.Write(answer);
                (peer.*end)();
            }));
            EXPECT_THAT(exchanges(connection, 2), ElementsAre(large, large)) << answer.substr(0, 60);
            EXPECT_EQ(connectionCount(), 2U);
        }
    }
}

TEST_F(Secure, ReportsAnAnswerThatBreaksOff) {
    for (const auto end : {&Connection::Close, &Connection::CloseWithoutAlert}) {
        for (const std::string& begin :
             {std::string("HTTP/1.1 200"), Answer("hello").substr(0, 40), ChunkedAnswer("5\r\nhello\r\n0\r\n")}) {
            auto connection = secureConnectionTo(serveTls([begin, end](Connection& peer) {
                peer.ReadRequest();
                peer.Write(begin);
                (peer.*end)();
            }));
            EXPECT_THAT(MessageOf<CIMClientMalformedHTTPException>([&] { exchange(connection); }),
                        HasSubstr("in the middle of the answer"))
                << begin;
        }
    }
}

const std::vector<std::pair<TlsVersion, TlsMessage>> kTlsMessages = {{TlsVersion::kOnly13, TlsMessage::kSessionTicket},
                                                                     {TlsVersion::kOnly13, TlsMessage::kKeyUpdate},
                                                                     {TlsVersion::kOnly12, TlsMessage::kHelloRequest}};

TEST_F(Secure, IsNotDisturbedByWhatTlsSendsBetweenTwoAnswers) {
    for (const auto& [version, message] : kTlsMessages) {
        std::promise<void> sent;
        auto connection = secureConnectionTo(serveTls(
            [&sent, message = message](Connection& peer) {
                peer.ReadRequest();
                peer.Write(Answer(std::to_string(peer.Index())));
                if (peer.Index() == 0) {
                    peer.Send(message);
                    peer.WaitForDelivery();
                    sent.set_value();
                }
                while (peer.ReadRequest() && peer.Write(Answer("1"))) {
                }
            },
            version));
        EXPECT_EQ(exchange(connection), "0");
        sent.get_future().wait();
        EXPECT_THAT(exchanges(connection, 2), ElementsAre("1", "1"));
        EXPECT_LE(connectionCount(), 2U);
    }
}

TEST_F(Secure, IsNotDisturbedByWhatTlsSendsWithinAnAnswer) {
    for (const TlsMessage message : {TlsMessage::kSessionTicket, TlsMessage::kKeyUpdate}) {
        auto connection = secureConnectionTo(serveTls([message](Connection& peer) {
            while (peer.ReadRequest()) {
                for (const char* part : {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhel", "lo"}) {
                    peer.Send(message);
                    peer.Write(part);
                }
            }
        }));
        EXPECT_THAT(exchanges(connection, 3), ElementsAre("hello", "hello", "hello"));
        EXPECT_EQ(connectionCount(), 1U);
    }
}

TEST_F(Secure, TakesNothingUnaskedForAnAnswerThoughItHasReceivedItAlready) {
    std::promise<void> headRead;
    std::promise<void> sent;
    auto connection = secureConnectionTo(serveTls([&](Connection& peer) {
        peer.ReadRequest();
        if (peer.Index() > 0) {
            peer.Write(Answer("good"));
            return;
        }
        peer.Write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n");
        headRead.get_future().wait();
        peer.Write("hello");
        peer.Write(Answer("bad"));
        peer.WaitForDelivery();
        sent.set_value();
        peer.WaitForPeerClose();
    }));
    const Deadline deadline(kAmple);
    connection.post(kQuestion, deadline);
    headRead.set_value();
    sent.get_future().wait();
    EXPECT_EQ(readBody(connection, deadline), "hello");
    EXPECT_EQ(exchange(connection), "good");
}

} // namespace
