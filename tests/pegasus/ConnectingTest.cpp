// On the way to a server: its addresses, which of them is taken, and how long each step may last.

#include "FewDescriptors.h"
#include "FullPort.h"
#include "Texts.h"
#include "http/HappyEyeballs.h"
#include "http/HttpConnection.h"
#include "support/NameService.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Common/Exception.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using namespace std::chrono_literals;
using support::LoopbackAddress;
using support::SecondLoopbackAddress;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr auto kAmple = 30s;
constexpr auto kShort = 100ms;
constexpr auto kNever = 24h; // of which a test does not see the end

constexpr char kLimit[] = ", the limit of each step of connecting";

const Endpoint kServer("several.test", 5988);

SocketAddress addressOf(const Endpoint& endpoint) { return resolve(endpoint, Deadline(kAmple)).front(); }

/// A port that listens; the system accepts its connections, and nobody takes them.
class OpenPort {
  public:
    explicit OpenPort(const std::string& host = SecondLoopbackAddress())
        : host_(host), listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        ::inet_pton(AF_INET, host.c_str(), &address.sin_addr);
        socklen_t size = sizeof address;
        EXPECT_EQ(::bind(listener_.number(), reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(::listen(listener_.number(), 16), 0);
        ::getsockname(listener_.number(), reinterpret_cast<sockaddr*>(&address), &size);
        port_ = ntohs(address.sin_port);
    }

    Endpoint endpoint() const { return {host_, port_}; }

  private:
    const std::string host_;
    const Descriptor listener_;
    Uint32 port_ = 0;
};

/// A port that refuses every connection: nothing listens there.
Endpoint closedPort(const std::string& host = LoopbackAddress()) { return {host, 5988}; }

Descriptor connectToAnyOf(const std::vector<Endpoint>& endpoints, const ConnectTime& time,
                          std::chrono::milliseconds attemptDelay = HappyEyeballs::kAttemptDelay) {
    std::vector<SocketAddress> addresses;
    for (const Endpoint& endpoint : endpoints) {
        addresses.push_back(addressOf(endpoint));
    }
    return HappyEyeballs(kServer, addresses, time, attemptDelay).run();
}

/// Where a socket is connected to.
Endpoint peerOf(const Descriptor& socket) {
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    ::getpeername(socket.number(), reinterpret_cast<sockaddr*>(&peer), &size);
    char host[INET_ADDRSTRLEN] = "";
    ::inet_ntop(AF_INET, &peer.sin_addr, host, sizeof host);
    return {host, ntohs(peer.sin_port)};
}

std::vector<std::string> order(const std::vector<std::string>& hosts) {
    std::vector<SocketAddress> addresses;
    for (const std::string& host : hosts) {
        addresses.push_back(addressOf({host, 5988}));
    }
    std::vector<std::string> ordered;
    for (const SocketAddress& address : interleaveFamilies(addresses)) {
        ordered.push_back(literalOf(address));
    }
    return ordered;
}

TEST(AddressOrder, AlternatesTheFamiliesBeginningWithThatOfTheFirstAddress) {
    EXPECT_THAT(order({"::1", "::2", "::3", "127.0.0.1", "127.0.0.2"}),
                ElementsAre("::1", "127.0.0.1", "::2", "127.0.0.2", "::3"));
    EXPECT_THAT(order({"127.0.0.1", "127.0.0.2", "::1", "127.0.0.3"}),
                ElementsAre("127.0.0.1", "::1", "127.0.0.2", "127.0.0.3"));
    EXPECT_THAT(order({"127.0.0.2", "127.0.0.1"}), ElementsAre("127.0.0.2", "127.0.0.1"));
    EXPECT_THAT(order({}), ElementsAre());
}

/// With a port that is silent.
class HappyEyeballsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!silent_.isFull()) {
            GTEST_SKIP() << "this system accepts connections for a program that does not";
        }
    }

    const FullPort silent_;
    const OpenPort open_;
};

TEST_F(HappyEyeballsTest, TriesTheNextAddressWhileOneIsSilent) {
    const Descriptor socket = connectToAnyOf({silent_.endpoint(), open_.endpoint()}, {Deadline(kNever), kNever});
    EXPECT_EQ(peerOf(socket).text(), open_.endpoint().text());
}

TEST_F(HappyEyeballsTest, TriesTheNextAddressAtOnceWhenOneRefuses) {
    const Descriptor socket = connectToAnyOf({closedPort(), open_.endpoint()}, {Deadline(kAmple), kNever}, kNever);
    EXPECT_EQ(peerOf(socket).text(), open_.endpoint().text());
}

TEST_F(HappyEyeballsTest, TriesTheNextAddressWhenTheTimeOfOneIsOver) {
    const Descriptor socket =
        connectToAnyOf({silent_.endpoint(), open_.endpoint()}, {Deadline(kAmple), kShort}, kNever);
    EXPECT_EQ(peerOf(socket).text(), open_.endpoint().text());
}

TEST_F(HappyEyeballsTest, TakesTheFirstAddressThatAccepts) {
    const OpenPort other;
    const Descriptor socket = connectToAnyOf({open_.endpoint(), other.endpoint()}, {Deadline(kAmple), kAmple}, kNever);
    EXPECT_EQ(peerOf(socket).text(), open_.endpoint().text());
}

TEST_F(HappyEyeballsTest, ClosesAllSocketsButTheConnectedOne) {
    const std::size_t before = openDescriptors();
    {
        const Descriptor socket = connectToAnyOf(
            {silent_.endpoint(), silent_.endpoint(), closedPort(), open_.endpoint()}, {Deadline(kAmple), kAmple}, 1ms);
        EXPECT_EQ(openDescriptors(), before + 1);
    }
    EXPECT_THROW(connectToAnyOf({silent_.endpoint(), closedPort()}, {Deadline(kAmple), kShort}),
                 CannotConnectException);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(HappyEyeballsTest, TellsWhyEachAddressFailed) {
    const std::string first = LoopbackAddress();
    const std::string second = SecondLoopbackAddress();
    EXPECT_EQ(MessageOf<CannotConnectException>([&] {
                  connectToAnyOf({closedPort(first), closedPort(second)}, {Deadline(kAmple), kAmple});
              }),
              "cannot connect to several.test:5988: Connection refused (" + first + "); Connection refused (" + second +
                  ")");
    EXPECT_EQ(MessageOf<CannotConnectException>([&] {
                  connectToAnyOf({silent_.endpoint(), closedPort(second)}, {Deadline(kAmple), kShort}, 1ms);
              }),
              "cannot connect to several.test:5988: Connection refused (" + second +
                  "); the connection was not accepted within 100 ms" + kLimit + " (" + first + ")");
}

TEST_F(HappyEyeballsTest, NamesTheAddressOnlyWhereThereAreSeveral) {
    EXPECT_EQ(MessageOf<CannotConnectException>([&] {
                  connectToAnyOf({closedPort()}, {Deadline(kAmple), kAmple});
              }),
              "cannot connect to several.test:5988: Connection refused");
}

TEST_F(HappyEyeballsTest, IsATimeOutWhenNoAddressSaysAnything) {
    EXPECT_EQ(MessageOf<ConnectionTimeoutException>([&] {
                  connectToAnyOf({silent_.endpoint()}, {Deadline(kNever), kShort});
              }),
              std::string("several.test:5988: the connection was not accepted within 100 ms") + kLimit);
    EXPECT_THAT(MessageOf<ConnectionTimeoutException>([&] {
                    connectToAnyOf({silent_.endpoint(), silent_.endpoint()}, {Deadline(kNever), kShort}, 1ms);
                }),
                HasSubstr("(" + LoopbackAddress() + "); the connection was not accepted within 100 ms"));
}

TEST_F(HappyEyeballsTest, IsATimeOutWhenTheOperationsTimeIsOver) {
    EXPECT_EQ(MessageOf<ConnectionTimeoutException>([&] {
                  connectToAnyOf({silent_.endpoint()}, {Deadline(kShort), kNever});
              }),
              "several.test:5988: the connection was not accepted within 100 ms");
    EXPECT_THAT(MessageOf<ConnectionTimeoutException>([&] {
                    connectToAnyOf({closedPort(), silent_.endpoint()}, {Deadline(kShort), kNever});
                }),
                HasSubstr("Connection refused"));
    for (const Endpoint& endpoint : {open_.endpoint(), closedPort(), silent_.endpoint()}) {
        EXPECT_EQ(MessageOf<ConnectionTimeoutException>([&] {
                      connectToAnyOf({endpoint}, {Deadline(0ms), kNever});
                  }),
                  "several.test:5988: the connection was not accepted within 0 ms");
    }
}

TEST_F(HappyEyeballsTest, GivesNoAddressTimeWhenTheLimitIsZero) {
    EXPECT_THROW(connectToAnyOf({open_.endpoint()}, {Deadline(kNever), 0ms}), ConnectionTimeoutException);
}

TEST_F(HappyEyeballsTest, TellsThatThereIsNoDescriptor) {
    const std::vector<SocketAddress> addresses{addressOf(open_.endpoint())};
#if !defined(__SANITIZE_ADDRESS__) // which needs descriptors itself, to look at objects
    {
        const FewDescriptors none(0);
        EXPECT_EQ(MessageOf<CannotConnectException>([&] { HappyEyeballs(kServer, addresses, Deadline(kAmple)).run(); }),
                  "cannot connect to several.test:5988: Too many open files");
    }
#endif
    EXPECT_TRUE(HappyEyeballs(kServer, addresses, Deadline(kAmple)).run());
}

/// Disturbs this process with a signal each millisecond, which ends every system call that waits.
class Disturbance {
  public:
    Disturbance() {
        struct sigaction action {};
        action.sa_handler = [](int) { ++count_; };
        ::sigaction(SIGALRM, &action, &before_);
        set(1000);
    }
    ~Disturbance() {
        set(0);
        ::sigaction(SIGALRM, &before_, nullptr);
    }
    Disturbance(const Disturbance&) = delete;
    Disturbance& operator=(const Disturbance&) = delete;

    static int count() { return count_; }

  private:
    static void set(suseconds_t microseconds) {
        const itimerval timer{{0, microseconds}, {0, microseconds}};
        ::setitimer(ITIMER_REAL, &timer, nullptr);
    }

    static inline volatile std::sig_atomic_t count_ = 0;
    struct sigaction before_ {};
};

TEST_F(HappyEyeballsTest, IsNotEndedBySignals) {
    const Disturbance disturbance;
    EXPECT_THROW(connectToAnyOf({silent_.endpoint()}, {Deadline(kNever), kShort}), ConnectionTimeoutException);
    EXPECT_TRUE(connectToAnyOf({silent_.endpoint(), open_.endpoint()}, {Deadline(kAmple), kAmple}));
    EXPECT_GT(Disturbance::count(), 0);
}

// ---- The other steps

/// What opening a channel ends in when each step has little time, and the operation all of it.
std::string timeOutOf(const Endpoint& endpoint, const SSLContext* tls = nullptr) {
    return MessageOf<ConnectionTimeoutException>([&] { Channel::open(endpoint, tls, {Deadline(kNever), kShort}); });
}

TEST(ConnectingSteps, HoldTheNameServiceToTheirLimit) {
    support::NameService names;
    names.BeSilentAbout("silent.test");
    EXPECT_EQ(timeOutOf({"silent.test", 5988}),
              std::string("silent.test:5988: its name was not resolved within 100 ms") + kLimit);
}

TEST(ConnectingSteps, ResolveANameWithAStackThatSufficesAndNoMore) {
    constexpr std::size_t kKiB = 1024;
    support::NameService names;
    names.BeSilentAbout("silent.test");
    timeOutOf({"silent.test", 5988});
    names.WaitForLookups(1);
    EXPECT_GE(names.StackOfLookup(), 256 * kKiB);
    EXPECT_LE(names.StackOfLookup(), 1024 * kKiB);
}

TEST(ConnectingSteps, HoldTheHandshakeToTheirLimit) {
    const OpenPort port;
    const SSLContext tls(String(), nullptr);
    EXPECT_EQ(timeOutOf(port.endpoint(), &tls),
              port.endpoint().text() + ": the TLS handshake was not complete within 100 ms" + kLimit);
}

TEST(ConnectingSteps, AreHeldToTheirLimitsWhenTheConnectionIsOpenedAgainToo) {
    support::ScriptedServer server([](support::Connection& peer) {
        peer.ReadRequest();
        peer.Write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    });
    support::NameService names;
    names.Answer("moody.test", {server.Address()});
    HttpConnection connection(Endpoint("moody.test", server.Listen(5988)), std::nullopt, {});
    const Deadline deadline(kNever);
    connection.post({"/cimom", "", ""}, deadline);
    connection.readBody([](std::string_view) {}, deadline);

    names.BeSilentAbout("moody.test");
    ClientLimits limits;
    limits.connectMilliseconds = 100;
    connection.setLimits(limits);
    EXPECT_EQ(MessageOf<ConnectionTimeoutException>([&] {
                  connection.post({"/cimom", "", ""}, deadline);
              }),
              std::string("moody.test:5988: its name was not resolved within 100 ms") + kLimit);
}

} // namespace
