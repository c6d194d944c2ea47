// Instances that are fetched in parts while the answer arrives, and a second client for what is asked meanwhile.

#include "Texts.h"
#include "support/CimServer.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Client/ArrivingInstances.h>
#include <Pegasus/Client/ExchangeObserver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace Pegasus;
using support::CimServer;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::SizeIs;

const CIMNamespaceName kNamespace("root/cimv2");

std::string Desk(int id) {
    const std::string number = std::to_string(id);
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"DEMO_Desk\"><KEYBINDING NAME=\"Id\">"
           "<KEYVALUE VALUETYPE=\"numeric\">" +
           number +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>"
           "<INSTANCE CLASSNAME=\"DEMO_Desk\"><PROPERTY NAME=\"Id\" TYPE=\"uint32\"><VALUE>" +
           number + "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>\n";
}

std::string Desks(int first, int count) {
    std::string desks;
    for (int id = first; id < first + count; ++id) {
        desks += Desk(id);
    }
    return desks;
}

const std::string kBegin =
    "<CIM><MESSAGE ID=\"1\"><SIMPLERSP><IMETHODRESPONSE NAME=\"EnumerateInstances\"><IRETURNVALUE>";
const std::string kEnd = "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";

std::string HeadOf(std::size_t length) {
    return "HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n";
}

void AppendTo(std::vector<std::string>& paths, const Array<CIMInstance>& instances) {
    for (const CIMInstance& instance : instances) {
        paths.push_back(Text(instance.getPath().toString()));
    }
}

/// The paths of all that is left; `count` is what each call asks for.
std::vector<std::string> Rest(ArrivingInstances& arriving, Uint32 count = 1) {
    std::vector<std::string> paths;
    while (!arriving.isAtEnd()) {
        AppendTo(paths, arriving.next(count));
    }
    return paths;
}

class ArrivingInstancesTest : public ::testing::Test {
  protected:
    void SetUp() override {
        port_ = server_.Listen(5988);
        client_.connect(String(server_.Address()), port_, "", "");
        Serve(Desks(1, 3));
    }

    void Serve(const std::string& desks) { server_.Answer("EnumerateInstances", "DEMO_Desk", desks); }

    std::string MessageOf(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const Exception& error) {
            return Text(error.getMessage());
        }
        return {};
    }

    CimServer server_;
    std::uint16_t port_ = 0;
    CIMClient client_;
};

TEST_F(ArrivingInstancesTest, ReturnsEveryInstanceWithItsPathInTheServersOrder) {
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    EXPECT_THAT(Rest(arriving), ElementsAre("DEMO_Desk.Id=1", "DEMO_Desk.Id=2", "DEMO_Desk.Id=3"));
    EXPECT_FALSE(arriving.isReceiving());
    EXPECT_THAT(arriving.next(), SizeIs(0));
    const std::string inParts = server_.Calls().back().http.body;
    client_.enumerateInstances(kNamespace, "DEMO_Desk");
    const std::string atOnce = server_.Calls().back().http.body;
    const auto call = [](const std::string& body) { return body.substr(body.find("<IMETHODCALL")); };
    EXPECT_EQ(call(inParts), call(atOnce));
    EXPECT_EQ(server_.ConnectionCount(), 1U);
}

TEST_F(ArrivingInstancesTest, SendsEveryParameter) {
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk", false, false, true, true,
                               CIMPropertyList(Array<CIMName>()));
    const auto parameters = server_.Calls().back().parameters;
    EXPECT_EQ(parameters.at("DeepInheritance"), "FALSE");
    EXPECT_EQ(parameters.at("LocalOnly"), "FALSE");
    EXPECT_EQ(parameters.at("IncludeQualifiers"), "TRUE");
    EXPECT_EQ(parameters.at("IncludeClassOrigin"), "TRUE");
    EXPECT_EQ(parameters.at("PropertyList"), "");
}

TEST_F(ArrivingInstancesTest, AnAnswerWithoutInstancesIsAtItsEndAfterOneCall) {
    Serve("");
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    EXPECT_FALSE(arriving.isAtEnd());
    EXPECT_THAT(arriving.next(), SizeIs(0));
    EXPECT_TRUE(arriving.isAtEnd());
}

TEST_F(ArrivingInstancesTest, ReadsTheTrailersOfAChunkedAnswer) {
    server_.SetFraming(CimServer::Framing::kChunked);
    Serve(Desks(1, 2000));
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    EXPECT_THAT(Rest(arriving, 10), SizeIs(2000));
    EXPECT_EQ(client_.enumerateInstances(kNamespace, "DEMO_Desk").size(), 2000U);
    EXPECT_EQ(server_.ConnectionCount(), 1U);
}

TEST_F(ArrivingInstancesTest, ClosedBeforeItsEndTheClientGoesOnOverANewConnection) {
    Serve(Desks(1, 5000));
    for (const bool isDestroyed : {false, true}) {
        auto arriving = std::make_unique<ArrivingInstances>(client_, kNamespace, "DEMO_Desk");
        EXPECT_GE(arriving->next().size(), 1U);
        EXPECT_TRUE(arriving->isReceiving());
        if (isDestroyed) {
            arriving.reset();
        } else {
            arriving->close();
            EXPECT_FALSE(arriving->isAtEnd());
            EXPECT_THAT(MessageOf([&] { arriving->next(); }), HasSubstr("closed"));
        }
        EXPECT_EQ(client_.enumerateInstances(kNamespace, "DEMO_Desk").size(), 5000U);
    }
    EXPECT_EQ(server_.ConnectionCount(), 3U);
}

TEST_F(ArrivingInstancesTest, RefusesToUseTheClientMeanwhile) {
    Serve(Desks(1, 5000));
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    arriving.next();
    EXPECT_THAT(MessageOf([&] { client_.getClass(kNamespace, "DEMO_Desk"); }), HasSubstr("the client is in use"));
    EXPECT_THAT(MessageOf([&] { client_.disconnect(); }), HasSubstr("the client is in use"));
    EXPECT_THAT(MessageOf([&] { ArrivingInstances(client_, kNamespace, "DEMO_Desk"); }),
                HasSubstr("the client is in use"));
    Rest(arriving);
    EXPECT_EQ(client_.enumerateInstances(kNamespace, "DEMO_Desk").size(), 5000U);
}

TEST_F(ArrivingInstancesTest, ThrowsTheServersErrorAfterTheInstancesBeforeIt) {
    server_.Fail("EnumerateInstances", "DEMO_Desk", 5, "no such class");
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    EXPECT_THAT(MessageOf([&] { arriving.next(); }), HasSubstr("no such class"));
    EXPECT_FALSE(arriving.isAtEnd());
    server_.Fail("EnumerateInstances", "DEMO_Desk", 5, "none", CimServer::ErrorPlace::kTrailers);
    ArrivingInstances second(client_, kNamespace, "DEMO_Desk");
    EXPECT_THROW(second.next(), CIMException);
}

TEST_F(ArrivingInstancesTest, WhatCameBeforeAnInvalidPartIsReturned) {
    Serve(Desks(1, 3) + "<UNKNOWN/>" + Desk(4));
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    std::vector<std::string> paths;
    AppendTo(paths, arriving.next(100));
    EXPECT_THAT(paths, ElementsAre("DEMO_Desk.Id=1", "DEMO_Desk.Id=2", "DEMO_Desk.Id=3"));
    EXPECT_FALSE(arriving.isReceiving());
    EXPECT_FALSE(arriving.isAtEnd());
    const std::string message = MessageOf([&] { arriving.next(); });
    EXPECT_EQ(message, MessageOf([&] { client_.enumerateInstances(kNamespace, "DEMO_Desk"); }));
    EXPECT_THAT(message, HasSubstr("UNKNOWN"));
}

TEST_F(ArrivingInstancesTest, WhatCameBeforeALimitIsReturned) {
    Serve(Desks(1, 100));
    ClientLimits limits;
    limits.answerObjects = 2;
    client_.setLimits(limits);
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    EXPECT_THAT(arriving.next(100).size(), AllOf(Ge(2U), Le(3U))) << "the one that is too many may be among them";
    EXPECT_THAT(MessageOf([&] { arriving.next(); }), HasSubstr("more than 2 objects"));
}

TEST_F(ArrivingInstancesTest, ATimeOutThatIsSetMeanwhileCounts) {
    Serve(Desks(1, 5000));
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    arriving.next();
    client_.setTimeout(0);
    const auto readOn = [&] {
        while (!arriving.isAtEnd()) {
            arriving.next();
        }
    };
    EXPECT_THROW(readOn(), ConnectionTimeoutException);
    client_.setTimeout(20000);
    EXPECT_EQ(client_.enumerateInstances(kNamespace, "DEMO_Desk").size(), 5000U);
}

TEST_F(ArrivingInstancesTest, TheTimeBetweenTwoCallsDoesNotCount) {
    constexpr Uint32 kMilliseconds = 2000;
    Serve(Desks(1, 5000));
    client_.setTimeout(kMilliseconds);
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    arriving.next();
    std::this_thread::sleep_for(std::chrono::milliseconds(kMilliseconds));
    EXPECT_NO_THROW(Rest(arriving));
}

/// Counts what it is shown of answers.
class Counter : public ExchangeObserver {
  public:
    int ends = 0;
    std::vector<std::string> failures;

    void onRequest(std::string_view /*head*/, std::string_view /*body*/, Time /*time*/) override {}
    void onAnswerHead(std::string_view /*head*/, Time /*time*/) override {}
    void onAnswerBody(std::string_view part) override { bodyBytes += part.size(); }
    void onAnswerEnd(std::string_view /*trailers*/, Time /*time*/) override { ++ends; }
    void onFailure(const String& message, Time /*time*/) override { failures.push_back(Text(message)); }

    std::size_t bodyBytes = 0;
};

TEST_F(ArrivingInstancesTest, AnObserverSeesTheEndOrThatThereIsNone) {
    const auto counter = std::make_shared<Counter>();
    client_.setExchangeObserver(counter);
    ArrivingInstances whole(client_, kNamespace, "DEMO_Desk");
    Rest(whole);
    EXPECT_EQ(counter->ends, 1);
    EXPECT_THAT(counter->failures, IsEmpty());
    Serve(Desks(1, 5000));
    { ArrivingInstances part(client_, kNamespace, "DEMO_Desk"); }
    EXPECT_EQ(counter->ends, 1);
    EXPECT_THAT(counter->failures, ElementsAre("the operation was ended"));
}

TEST_F(ArrivingInstancesTest, AnObserverSeesTheRestOfAnAnswerThatIsRefused) {
    const auto counter = std::make_shared<Counter>();
    client_.setExchangeObserver(counter);
    const std::string desks = Desks(1, 3) + "<UNKNOWN/>" + Desks(4, 5000);
    Serve(desks);
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    EXPECT_EQ(arriving.next(100).size(), 3U);
    EXPECT_GT(counter->bodyBytes, desks.size());
}

/// Counts operations.
class Performance : public ClientOpPerformanceDataHandler {
  public:
    int operations = 0;
    Uint64 received = 0;

    void handleClientOpPerformanceData(const ClientOpPerformanceData& data) override {
        ++operations;
        received = data.responseSize;
    }
};

TEST_F(ArrivingInstancesTest, TheMeasurementIsMadeAtItsEnd) {
    Serve(Desks(1, 5000));
    Performance performance;
    client_.registerClientOpPerformanceDataHandler(performance);
    ArrivingInstances arriving(client_, kNamespace, "DEMO_Desk");
    arriving.next();
    EXPECT_EQ(performance.operations, 0);
    Rest(arriving);
    EXPECT_EQ(performance.operations, 1);
    EXPECT_GT(performance.received, Desks(1, 5000).size());
}

// --- A server that waits -------------------------------------------------------------------------------------------

/// Lets a server go on step by step.
class Steps {
  public:
    void Allow(int step) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            allowed_ = step;
        }
        changed_.notify_all();
    }
    void Await(int step) {
        std::unique_lock<std::mutex> lock(mutex_);
        EXPECT_TRUE(changed_.wait_for(lock, std::chrono::seconds(60), [&] { return allowed_ >= step; }));
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int allowed_ = 0;
};

TEST(ArrivingInstancesOfASlowServerTest, HoldsNoMoreThanArrivesBetweenTwoCalls) {
    constexpr int kParts = 50;
    constexpr int kDesks = 20;
    Steps steps;
    support::ScriptedServer server([&](support::Connection& connection) {
        connection.ReadRequest();
        std::string body = kBegin;
        for (int part = 0; part < kParts; ++part) {
            body += Desks(part * kDesks, kDesks);
        }
        body += kEnd;
        connection.Write(HeadOf(body.size()) + kBegin);
        for (int part = 0; part < kParts; ++part) {
            steps.Await(part); // what came before has been returned
            connection.Write(Desks(part * kDesks, kDesks));
        }
        connection.Write(kEnd);
    });
    CIMClient client;
    client.connect(String(server.Address()), server.Listen(5988), "", "");
    ArrivingInstances arriving(client, kNamespace, "DEMO_Desk");
    std::size_t count = 0;
    std::size_t most = 0;
    while (!arriving.isAtEnd()) {
        const std::size_t some = arriving.next(1000000).size();
        most = std::max(most, some);
        count += some;
        steps.Allow(static_cast<int>(count / kDesks));
    }
    EXPECT_EQ(count, static_cast<std::size_t>(kParts * kDesks));
    EXPECT_LE(most, static_cast<std::size_t>(kDesks));
}

TEST(ArrivingInstancesOfASlowServerTest, ReceivesNoMoreThanItIsAskedFor) {
    constexpr std::size_t kWholeBytes = std::size_t{200} << 20U;
    const std::string desks = Desks(1, 1000);
    std::atomic<std::size_t> written{0};
    support::ScriptedServer server([&](support::Connection& connection) {
        connection.ReadRequest();
        connection.Write(HeadOf(kWholeBytes) + kBegin);
        while (written < kWholeBytes && connection.Write(desks)) {
            written += desks.size();
        }
    });
    CIMClient client;
    client.connect(String(server.Address()), server.Listen(5988), "", "");
    {
        ArrivingInstances arriving(client, kNamespace, "DEMO_Desk");
        EXPECT_GE(arriving.next(100).size(), 1U);
        EXPECT_GE(arriving.next(100).size(), 1U);
    }
    server.Stop();
    EXPECT_LT(written, kWholeBytes / 4);
}

TEST(ArrivingInstancesOfASlowServerTest, WhatCameBeforeTheConnectionIsCutIsReturned) {
    support::ScriptedServer server([&](support::Connection& connection) {
        connection.ReadRequest();
        connection.Write(HeadOf(100000) + kBegin + Desks(1, 3) + "<VALUE.NAMEDINSTANCE>");
    });
    CIMClient client;
    client.connect(String(server.Address()), server.Listen(5988), "", "");
    ArrivingInstances arriving(client, kNamespace, "DEMO_Desk");
    std::vector<std::string> paths;
    const auto readOn = [&] {
        while (!arriving.isAtEnd()) {
            AppendTo(paths, arriving.next(100));
        }
    };
    EXPECT_THROW(readOn(), CIMClientMalformedHTTPException);
    EXPECT_THAT(paths, SizeIs(3));
}

// --- A second client -----------------------------------------------------------------------------------------------

TEST_F(ArrivingInstancesTest, ASecondClientIsConnectedLikeTheFirstOneWhichIsInUse) {
    Serve(Desks(1, 5000));
    server_.RequireUser("reader", "secret");
    CIMClient first;
    first.connect(String(server_.Address()), port_, "reader", "secret");
    first.setTimeout(12345);
    first.setLenient(true);
    ClientLimits limits;
    limits.answerObjects = 6000;
    first.setLimits(limits);
    ArrivingInstances arriving(first, kNamespace, "DEMO_Desk");
    arriving.next();
    CIMClient second;
    second.connectLike(first);
    server_.ForgetCalls();
    EXPECT_EQ(second.enumerateInstances(kNamespace, "DEMO_Desk").size(), 5000U);
    EXPECT_THAT(server_.Calls(), SizeIs(1)) << "it need not be asked for the credentials";
    EXPECT_EQ(second.getTimeout(), 12345U);
    EXPECT_TRUE(second.isLenient());
    EXPECT_EQ(second.getLimits().answerObjects, 6000U);
    first.setTimeout(54321);
    const std::size_t connections = server_.ConnectionCount();
    second.connectLike(first);
    EXPECT_EQ(second.getTimeout(), 54321U);
    EXPECT_EQ(server_.ConnectionCount(), connections);
    EXPECT_GT(Rest(arriving).size(), 0U);
}

TEST_F(ArrivingInstancesTest, ThereIsNothingToConnectLikeWithoutAConnection) {
    client_.disconnect();
    CIMClient second;
    EXPECT_THROW(second.connectLike(client_), NotConnectedException);
    EXPECT_THROW(second.getClass(kNamespace, "DEMO_Desk"), NotConnectedException);
}

} // namespace
