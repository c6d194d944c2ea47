// Instances that are handed over while the answer arrives.

#include "Texts.h"
#include "support/CimServer.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Client/ExchangeObserver.h>
#include <Pegasus/Client/InstanceStream.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using support::CimServer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

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

class InstanceStreamTest : public ::testing::Test {
  protected:
    void SetUp() override {
        client_.connect(String(server_.Address()), server_.Listen(5988), "", "");
        server_.Answer("EnumerateInstances", "DEMO_Desk", Desk(1) + Desk(2) + Desk(3));
    }

    InstanceStream::Taker TakeUpTo(std::size_t count) {
        return [this, count](const CIMInstance& desk) {
            taken_.push_back(Text(desk.getPath().toString()));
            return taken_.size() < count;
        };
    }

    CimServer server_;
    CIMClient client_;
    InstanceStream stream_{client_};
    std::vector<std::string> taken_;
};

TEST_F(InstanceStreamTest, HandsOverEveryInstanceWithItsPath) {
    EXPECT_TRUE(stream_.enumerateInstances(kNamespace, "DEMO_Desk", TakeUpTo(4)));
    EXPECT_THAT(taken_, ElementsAre("DEMO_Desk.Id=1", "DEMO_Desk.Id=2", "DEMO_Desk.Id=3"));
    const std::string streamed = server_.Calls().back().http.body;
    client_.enumerateInstances(kNamespace, "DEMO_Desk");
    const std::string collected = server_.Calls().back().http.body;
    const auto call = [](const std::string& body) { return body.substr(body.find("<IMETHODCALL")); };
    EXPECT_EQ(call(streamed), call(collected));
}

TEST_F(InstanceStreamTest, SendsEveryParameter) {
    stream_.enumerateInstances(kNamespace, "DEMO_Desk", TakeUpTo(9), false, false, true, true,
                               CIMPropertyList(Array<CIMName>()));
    const auto parameters = server_.Calls().back().parameters;
    EXPECT_EQ(parameters.at("DeepInheritance"), "FALSE");
    EXPECT_EQ(parameters.at("LocalOnly"), "FALSE");
    EXPECT_EQ(parameters.at("IncludeQualifiers"), "TRUE");
    EXPECT_EQ(parameters.at("IncludeClassOrigin"), "TRUE");
    EXPECT_EQ(parameters.at("PropertyList"), "");
}

TEST_F(InstanceStreamTest, EndsWhenTheTakerWantsNoMore) {
    EXPECT_FALSE(stream_.enumerateInstances(kNamespace, "DEMO_Desk", TakeUpTo(2)));
    EXPECT_THAT(taken_, ElementsAre("DEMO_Desk.Id=1", "DEMO_Desk.Id=2"));
    EXPECT_EQ(client_.enumerateInstances(kNamespace, "DEMO_Desk").size(), 3U); // on a new connection
    EXPECT_EQ(server_.ConnectionCount(), 2U);
}

TEST_F(InstanceStreamTest, LetsThroughWhatTheTakerThrows) {
    const auto fail = [](const CIMInstance& /*desk*/) -> bool { throw std::runtime_error("enough"); };
    EXPECT_THROW(stream_.enumerateInstances(kNamespace, "DEMO_Desk", fail), std::runtime_error);
    const auto failAsAServer = [](const CIMInstance& /*desk*/) -> bool { throw CIMException(CIM_ERR_FAILED); };
    EXPECT_THROW(stream_.enumerateInstances(kNamespace, "DEMO_Desk", failAsAServer), CIMException);
    const auto runOut = [](const CIMInstance& /*desk*/) -> bool { throw std::bad_alloc(); };
    EXPECT_THROW(stream_.enumerateInstances(kNamespace, "DEMO_Desk", runOut), std::bad_alloc);
    EXPECT_EQ(client_.enumerateInstances(kNamespace, "DEMO_Desk").size(), 3U);
}

/// Counts what it is shown of answers.
class Counter : public ExchangeObserver {
  public:
    std::size_t bodyBytes = 0;
    int failures = 0;

    void onRequest(std::string_view /*head*/, std::string_view /*body*/, Time /*time*/) override {}
    void onAnswerHead(std::string_view /*head*/, Time /*time*/) override {}
    void onAnswerBody(std::string_view part) override { bodyBytes += part.size(); }
    void onAnswerEnd(std::string_view /*trailers*/, Time /*time*/) override {}
    void onFailure(const String& /*message*/, Time /*time*/) override { ++failures; }
};

TEST_F(InstanceStreamTest, EndsAtOnceAlsoWhenItIsObserved) {
    std::string desks;
    while (desks.size() < 2000000) {
        desks += Desk(1);
    }
    server_.Answer("EnumerateInstances", "DEMO_Desk", desks);
    const auto counter = std::make_shared<Counter>();
    client_.setExchangeObserver(counter);
    EXPECT_FALSE(stream_.enumerateInstances(kNamespace, "DEMO_Desk", TakeUpTo(1)));
    EXPECT_LT(counter->bodyBytes, desks.size() / 2);
    EXPECT_EQ(counter->failures, 1);
}

TEST_F(InstanceStreamTest, AnObserverMayBeTakenAwayMeanwhile) {
    client_.setExchangeObserver(std::make_shared<Counter>());
    EXPECT_TRUE(stream_.enumerateInstances(kNamespace, "DEMO_Desk", [this](const CIMInstance& desk) {
        client_.setExchangeObserver(nullptr);
        taken_.push_back(Text(desk.getPath().toString()));
        return true;
    }));
    EXPECT_EQ(taken_.size(), 3U);
}

TEST_F(InstanceStreamTest, RefusesToUseTheClientMeanwhile) {
    const auto use = [this](const std::function<void()>& operation) {
        std::string message;
        stream_.enumerateInstances(kNamespace, "DEMO_Desk", [&](const CIMInstance& /*desk*/) {
            try {
                operation();
            } catch (const Exception& error) {
                message = Text(error.getMessage());
            }
            return false;
        });
        return message;
    };
    EXPECT_THAT(use([&] { client_.enumerateInstances(kNamespace, "DEMO_Desk"); }), HasSubstr("the client is in use"));
    EXPECT_THAT(use([&] { client_.disconnect(); }), HasSubstr("the client is in use"));
    EXPECT_TRUE(stream_.enumerateInstances(kNamespace, "DEMO_Desk", TakeUpTo(4)));
}

TEST_F(InstanceStreamTest, ReportsTheServersError) {
    server_.Fail("EnumerateInstances", "DEMO_Desk", 5, "no such class", CimServer::ErrorPlace::kTrailers);
    EXPECT_THROW(stream_.enumerateInstances(kNamespace, "DEMO_Desk", TakeUpTo(4)), CIMException);
}

TEST(InstanceStreamOfASlowServerTest, HandsOverAnInstanceBeforeTheNextHasArrived) {
    std::promise<void> firstTaken;
    support::ScriptedServer server([&](support::Connection& connection) {
        connection.ReadRequest();
        const std::string begin = "<CIM><MESSAGE ID=\"1\"><SIMPLERSP><IMETHODRESPONSE NAME=\"EnumerateInstances\">"
                                  "<IRETURNVALUE>" +
                                  Desk(1);
        const std::string end = Desk(2) + "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
        connection.Write("HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nContent-Length: " +
                         std::to_string(begin.size() + end.size()) + "\r\n\r\n" + begin);
        firstTaken.get_future().wait(); // or nothing goes on
        connection.Write(end);
    });
    CIMClient client;
    client.connect(String(server.Address()), server.Listen(5988), "", "");
    int count = 0;
    EXPECT_TRUE(InstanceStream(client).enumerateInstances(kNamespace, "DEMO_Desk", [&](const CIMInstance& /*desk*/) {
        if (++count == 1) {
            firstTaken.set_value();
        }
        return true;
    }));
    EXPECT_EQ(count, 2);
}

} // namespace
