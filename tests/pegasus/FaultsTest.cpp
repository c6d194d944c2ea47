// The client before answers of a real server that come to harm on their way: each operation ends in the exception that
// fits, within its time-out, and the client can be used afterwards.

#include "server/DemoServer.h"
#include "support/FaultyServer.h"
#include "support/LoopbackAddress.h"

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

namespace {

using namespace Pegasus;
using namespace std::chrono_literals;
namespace faults = support::faults;

constexpr std::uint16_t kServerPort = 5988;
constexpr Uint32 kShort = 200;   // milliseconds, for what must time out
constexpr Uint32 kAmple = 30000; // for what must succeed or fail by itself

const CIMNamespaceName kNamespace("root/cimv2");

class FaultsTest : public ::testing::Test {
  protected:
    /// A client whose answers suffer a fault.
    std::unique_ptr<CIMClient> clientBehind(support::Fault fault, Uint32 timeout = kAmple) {
        faulty_ = std::make_unique<support::FaultyServer>(support::LoopbackAddress(), kServerPort, std::move(fault));
        auto client = std::make_unique<CIMClient>();
        client->setTimeout(timeout);
        client->connect(String(faulty_->Address()), faulty_->Listen(0), "", "");
        return client;
    }

    /// What an operation through a fault ends in: the kind of the exception, "" for success.
    std::string outcome(support::Fault fault, Uint32 timeout = kAmple) {
        const auto client = clientBehind(std::move(fault), timeout);
        std::string result = outcomeOf(*client);
        // A client that has failed is still good for the next operation, which fails alike or not at all.
        EXPECT_EQ(outcomeOf(*client), result);
        return result;
    }

    static std::string outcomeOf(CIMClient& client) {
        try {
            const Array<CIMInstance> volumes = client.enumerateInstances(kNamespace, "DEMO_StorageVolume");
            return volumes.size() == kVolumes ? "" : "too few instances";
        } catch (const CIMClientMalformedHTTPException&) {
            return "malformed HTTP";
        } catch (const CIMClientHTTPErrorException&) {
            return "HTTP error";
        } catch (const CIMClientXmlException&) {
            return "malformed XML";
        } catch (const CIMClientResponseException&) {
            return "another response";
        } catch (const ConnectionTimeoutException&) {
            return "time-out";
        } catch (const CannotConnectException&) {
            return "no connection";
        } catch (const CIMException&) {
            return "CIM error";
        }
    }

    /// The right answer to the operation.
    std::string rightAnswer() {
        std::string right;
        const auto client = clientBehind([&](support::Connection& connection, const std::string& answer) {
            right = answer;
            connection.Write(answer);
        });
        EXPECT_EQ(outcomeOf(*client), "");
        faulty_.reset(); // waits for the script
        return right;
    }

    static constexpr Uint32 kVolumes = 2;

  private:
    static demo::DemoServerOptions options() {
        demo::DemoServerOptions result;
        result.address = support::LoopbackAddress();
        result.volumes = kVolumes;
        return result;
    }

    const demo::DemoServer server_{options()};
    std::unique_ptr<support::FaultyServer> faulty_;
};

TEST_F(FaultsTest, AnAnswerThatBreaksOffIsMalformedWhereverItDoes) {
    const std::string answer = rightAnswer();
    const std::size_t head = answer.find("\r\n\r\n") + 4;
    for (const std::size_t bytes :
         {std::size_t{1}, head / 2, head, head + 1, (head + answer.size()) / 2, answer.size() - 1}) {
        EXPECT_EQ(outcome(faults::TruncatedAt(bytes)), "malformed HTTP") << bytes;
    }
    EXPECT_EQ(outcome(faults::TruncatedAt(answer.size())), "");
}

TEST_F(FaultsTest, AConnectionThatIsResetIsAnErrorWhereverItIs) {
    const std::size_t size = rightAnswer().size();
    for (const std::size_t bytes : {std::size_t{1}, size / 2, size - 1}) {
        EXPECT_EQ(outcome(faults::ResetAt(bytes)), "malformed HTTP") << bytes;
    }
}

TEST_F(FaultsTest, AConnectionThatEndsWithoutAnAnswerIsNoConnection) {
    for (const auto& fault : {faults::TruncatedAt(0), faults::ResetAt(0)}) {
        EXPECT_EQ(outcome(fault), "no connection");
    }
}

TEST_F(FaultsTest, AnAnswerThatStopsRunsIntoTheTimeOutWhereverItDoes) {
    const std::size_t size = rightAnswer().size();
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, size / 2, size - 1}) {
        EXPECT_EQ(outcome(faults::StalledAt(bytes), kShort), "time-out") << bytes;
    }
}

TEST_F(FaultsTest, ALateAnswerIsAnAnswer) { EXPECT_EQ(outcome(faults::Delayed(100ms)), ""); }

TEST_F(FaultsTest, ADrippingAnswerIsCutOffByTheTimeOutOfTheWholeOperation) {
    EXPECT_EQ(outcome(faults::Dripped(20ms), kShort), "time-out");
    EXPECT_EQ(outcome(faults::Dripped(0ms)), "");
}

TEST_F(FaultsTest, ASecondAnswerIsNotTakenForThatOfTheNextOperation) {
    const auto client = clientBehind(faults::Doubled());
    EXPECT_EQ(outcomeOf(*client), "");
    EXPECT_EQ(client->enumerateInstances(kNamespace, "DEMO_OperatingSystem").size(), 1U);
}

TEST_F(FaultsTest, AnAnswerWithAChangedByteIsAnErrorOrHasAnotherValue) {
    const std::string answer = rightAnswer();
    const std::size_t step = answer.size() / 61;
    for (std::size_t byte = 0; byte < answer.size(); byte += step) {
        const auto client = clientBehind(faults::GarbledAt(byte));
        // Nothing but the exceptions of the client comes out.
        outcomeOf(*client);
    }
    EXPECT_EQ(outcome(faults::GarbledAt(0)), "malformed HTTP");
    EXPECT_EQ(outcome(faults::GarbledAt(answer.find("<IRETURNVALUE>"))), "malformed XML");
    EXPECT_EQ(outcome(faults::GarbledAt(answer.find("</CIM>"))), "malformed XML");
}

TEST_F(FaultsTest, AWrongLengthIsAnErrorOrATimeOut) {
    EXPECT_EQ(outcome(faults::WithLengthOffBy(-20)), "malformed XML");
    EXPECT_EQ(outcome(faults::WithLengthOffBy(1), kShort), "time-out");
}

TEST_F(FaultsTest, AnAnswerToAnotherMessageIsNoAnswer) {
    EXPECT_EQ(outcome(faults::WithMessageId("another")), "another response");
}

TEST_F(FaultsTest, AnEndlessAnswerIsCutOffByALimitOrTheTimeOut) {
    EXPECT_EQ(outcome(faults::Endless("CIMOperation: MethodResponse\r\n")), "malformed HTTP");
    EXPECT_EQ(outcome(faults::Endless("<VALUE.NAMEDINSTANCE>")), "malformed XML");
    // Objects of which each is right have no limit.
    const std::string answer = rightAnswer();
    const std::string end = "</VALUE.NAMEDINSTANCE>";
    const auto begin = answer.find("<VALUE.NAMEDINSTANCE>");
    EXPECT_EQ(outcome(faults::Endless(answer.substr(begin, answer.find(end) + end.size() - begin)), kShort),
              "time-out");
}

} // namespace
