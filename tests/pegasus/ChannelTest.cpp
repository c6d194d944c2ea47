#include "http/Channel.h"

#include "FewDescriptors.h"
#include "FullPort.h"
#include "support/NameService.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Common/Exception.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using namespace std::chrono_literals;
using support::Connection;
using support::ScriptedServer;
using support::TestCertificate;
using support::TlsVersion;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr auto kAmple = 30s;
constexpr auto kShort = 100ms;
constexpr std::size_t kMoreThanBuffersHold = 64'000'000;

void Echo(Connection& peer) {
    for (std::string bytes; !(bytes = peer.ReadSome()).empty();) {
        peer.Write(bytes);
    }
}

/// What comes back from an echoing server, which shows that a channel works both ways.
std::string EchoOf(const std::string& text, Channel& channel) {
    channel.write(text, Deadline(kAmple));
    std::string echo(text.size(), '\0');
    std::size_t size = 0;
    while (size < echo.size()) {
        const std::size_t received = channel.readSome(&echo[size], echo.size() - size, Deadline(kAmple));
        if (received == 0) {
            break;
        }
        size += received;
    }
    return echo.substr(0, size);
}

template <typename E>
std::string ErrorOf(const Endpoint& endpoint, const SSLContext* tls = nullptr,
                    std::chrono::milliseconds limit = kAmple) {
    try {
        Channel::open(endpoint, tls, Deadline(limit));
    } catch (const E& error) {
        return std::string(error.getMessage().view());
    }
    ADD_FAILURE() << "the expected exception did not come";
    return {};
}

// ---- Finding and reaching the server

TEST(Channel, OpensToAnIpv4Literal) {
    ScriptedServer server(&Echo);
    const Endpoint endpoint(server.Address(), server.Listen(5988));
    EXPECT_EQ(EchoOf("hello", *Channel::open(endpoint, nullptr, Deadline(kAmple))), "hello");
}

TEST(Channel, OpensToAnIpv6LiteralWithAndWithoutBrackets) {
    ScriptedServer server(&Echo, "::1");
    std::uint16_t port = 0;
    try {
        port = server.Listen(0);
    } catch (const std::system_error& error) {
        GTEST_SKIP() << "no IPv6 here: " << error.what();
    }
    for (const char* host : {"::1", "[::1]"}) {
        EXPECT_EQ(EchoOf("hello", *Channel::open(Endpoint(host, port), nullptr, Deadline(kAmple))), "hello");
    }
}

TEST(Channel, OpensToANameAndTriesEachOfItsAddresses) {
    // "localhost" often stands for ::1 and 127.0.0.1, of which only the second accepts here.
    ScriptedServer server(&Echo, "127.0.0.1");
    const std::uint16_t port = server.Listen(0);
    for (const char* host : {"localhost", ""}) {
        EXPECT_EQ(EchoOf("hello", *Channel::open(Endpoint(host, port), nullptr, Deadline(kAmple))), "hello");
    }
}

TEST(Channel, TriesEachAddressOfANameUntilOneAccepts) {
    ScriptedServer server(&Echo);
    const std::uint16_t port = server.Listen(5988);
    const std::string refusing = support::SecondLoopbackAddress(); // on 127.0.0.1 and ::1 a real server may listen
    support::NameService names;
    names.Answer("several.test", {refusing, server.Address()});
    EXPECT_EQ(EchoOf("hello", *Channel::open({"several.test", port}, nullptr, Deadline(kAmple))), "hello");
    names.Answer("several.test", {refusing});
    EXPECT_THAT(ErrorOf<CannotConnectException>({"several.test", port}),
                StartsWith("cannot connect to several.test:5988: "));
}

TEST(Channel, ReportsAHostWithoutAddress) {
    support::NameService names;
    names.Answer("no-such-host.invalid", {});
    EXPECT_EQ(ErrorOf<InvalidLocatorException>({"no-such-host.invalid", 5988}),
              "cannot resolve no-such-host.invalid:5988: Name or service not known");
}

TEST(Channel, ReportsAPortThatIsNone) {
    EXPECT_THAT(ErrorOf<InvalidLocatorException>({"127.0.0.1", 65536}), HasSubstr("127.0.0.1:65536"));
}

TEST(Channel, ReportsThatNothingListens) {
    EXPECT_THAT(ErrorOf<CannotConnectException>({support::LoopbackAddress(), 5988}),
                HasSubstr("cannot connect to " + support::LoopbackAddress() + ":5988: Connection refused"));
}

TEST(Channel, GivesUpAtTheDeadlineWhenTheNameServiceIsSilent) {
    support::NameService names;
    names.BeSilentAbout("silent.test");
    for (const auto limit : {0ms, kShort}) {
        EXPECT_EQ(ErrorOf<ConnectionTimeoutException>({"silent.test", 5988}, nullptr, limit),
                  "silent.test:5988: its name was not resolved within " + std::to_string(limit.count()) + " ms");
    }
    names.WaitForLookups(2); // which go on, and do no harm when they end at last
}

/// The signals that a thread of this process blocks, as the system writes them.
std::string BlockedSignals(const std::filesystem::path& thread) {
    std::ifstream status(thread / "status");
    for (std::string word; status >> word;) {
        if (word == "SigBlk:") {
            status >> word;
            return word;
        }
    }
    return {};
}

std::string AllSignals() {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    std::string blocked = BlockedSignals("/proc/thread-self");
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return blocked;
}

TEST(Channel, LeavesSignalsToTheThreadsOfTheHost) {
    const std::string before = BlockedSignals("/proc/thread-self");
    support::NameService names;
    names.BeSilentAbout("silent.test");
    ErrorOf<ConnectionTimeoutException>({"silent.test", 5988}, nullptr, 0ms);
    names.WaitForLookups(1);
    EXPECT_EQ(BlockedSignals("/proc/thread-self"), before);
    std::vector<std::string> blocked;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        blocked.push_back(BlockedSignals(thread.path()));
    }
    EXPECT_THAT(blocked, Contains(AllSignals())) << "the thread that looks the name up";
}

TEST(Channel, GivesUpAtTheDeadlineWhenTheConnectionIsNotAccepted) {
    const FullPort port;
    if (!port.isFull()) {
        GTEST_SKIP() << "this system accepts connections for a program that does not";
    }
    try {
        Channel::open(port.endpoint(), nullptr, Deadline(kShort));
        FAIL() << "no exception";
    } catch (const ConnectionTimeoutException& error) {
        EXPECT_THAT(std::string(error.getMessage().view()), HasSubstr("was not accepted within 100 ms"));
    }
}

TEST(Channel, LeavesEachAddressItsShareOfTheTime) {
    const FullPort port;
    if (!port.isFull()) {
        GTEST_SKIP() << "this system accepts connections for a program that does not";
    }
    ScriptedServer server(&Echo, support::SecondLoopbackAddress());
    const Endpoint endpoint("several.test", server.Listen(static_cast<std::uint16_t>(port.endpoint().port())));
    support::NameService names;
    names.Answer("several.test", {support::LoopbackAddress(), server.Address()});
    EXPECT_EQ(EchoOf("hello", *Channel::open(endpoint, nullptr, Deadline(2s))), "hello");
}

TEST(Channel, ReportsThatThereIsNoDescriptorForIt) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizers need descriptors themselves, to look at objects";
#endif
    const Endpoint endpoint(support::LoopbackAddress(), 5988);
    const SSLContext tls(String(), nullptr);
    for (const SSLContext* settings : {static_cast<const SSLContext*>(nullptr), &tls}) {
        {
            const FewDescriptors none(0);
            EXPECT_THAT(
                ErrorOf<CannotConnectException>(endpoint, settings),
                AllOf(StartsWith("cannot connect to " + endpoint.text() + ": "), HasSubstr("Too many open files")));
        }
        const FewDescriptors one(1);
        EXPECT_THAT(ErrorOf<CannotConnectException>(endpoint, settings), HasSubstr("Connection refused"))
            << "it takes no more than one";
    }
}

TEST(Channel, SeesInputAndTheEndWithoutReading) {
    std::promise<void> closed;
    ScriptedServer server([&](Connection& peer) {
        peer.ReadSome();
        peer.Write("1");
        peer.ReadSome();
        peer.Write("2");
        peer.Close();
        peer.WaitForDelivery();
        closed.set_value();
    });
    const auto channel = Channel::open({server.Address(), server.Listen(5988)}, nullptr, Deadline(kAmple));
    EXPECT_FALSE(channel->hasInput());
    EXPECT_EQ(EchoOf("1", *channel), "1");
    EXPECT_FALSE(channel->hasInput());
    EXPECT_FALSE(channel->isClosedByPeer());
    channel->write("x", Deadline(kAmple));
    closed.get_future().wait();
    EXPECT_TRUE(channel->hasInput());
    EXPECT_TRUE(channel->isClosedByPeer());
}

TEST(Channel, SurvivesABrokenPipe) {
    std::promise<void> closed;
    ScriptedServer server([&](Connection& peer) {
        peer.Close();
        peer.WaitForDelivery();
        closed.set_value();
    });
    const auto channel = Channel::open({server.Address(), server.Listen(5988)}, nullptr, Deadline(kAmple));
    closed.get_future().wait();
    std::string large;
    large.resize(kMoreThanBuffersHold);
    try {
        channel->write(large, Deadline(kAmple));
        FAIL() << "no exception";
    } catch (const ConnectionLost& lost) {
        // The error that comes with SIGPIPE, which would end this process.
        EXPECT_EQ(lost.reason, "Broken pipe");
    }
}

/// How many of this process's descriptors a child process would inherit.
long InheritableDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::count_if(begin(descriptors), end(descriptors), [](const auto& entry) {
        const int flags = ::fcntl(std::stoi(entry.path().filename()), F_GETFD);
        return flags >= 0 && (flags & FD_CLOEXEC) == 0;
    });
}

TEST(Channel, IsNotInheritedByChildProcesses) {
    ScriptedServer server(&Echo);
    const Endpoint endpoint(server.Address(), server.Listen(5988));
    const long before = InheritableDescriptors();
    const auto channel = Channel::open(endpoint, nullptr, Deadline(kAmple));
    EXPECT_EQ(InheritableDescriptors(), before);
}

// ---- TLS

/// A TLS server with a certificate of the test's choice.
class Tls : public ::testing::Test {
  protected:
    Endpoint serve(const TestCertificate::Options& options, const std::string& host = support::LoopbackAddress()) {
        certificate_ = std::make_unique<TestCertificate>(options);
        server_ = std::make_unique<ScriptedServer>(&Echo, host == "localhost" ? "127.0.0.1" : host);
        return {host, server_->ListenTls(host == "localhost" ? 0 : 5989, *certificate_)};
    }

    /// A good certificate for the address that the server listens on.
    Endpoint serve() { return serve(TestCertificate::For(support::LoopbackAddress())); }

    SSLContext trusting(SSLCertificateVerifyFunction* verify = nullptr) const {
        return {String(certificate_->CaFile()), verify};
    }

    static std::string echoThrough(const Endpoint& endpoint, const SSLContext& tls) {
        return EchoOf("hello", *Channel::open(endpoint, &tls, Deadline(kAmple)));
    }

    std::string refusal(const Endpoint& endpoint, const SSLContext& tls) const {
        return ErrorOf<SSLException>(endpoint, &tls);
    }

    const SSLContext unverified_{String(), nullptr};
    std::unique_ptr<TestCertificate> certificate_;
    std::unique_ptr<ScriptedServer> server_;
};

TEST_F(Tls, EncryptsWithoutVerifyingWhenThereIsNothingToVerifyWith) {
    TestCertificate::Options options;
    options.expired = options.selfSigned = true;
    EXPECT_EQ(echoThrough(serve(options), unverified_), "hello");
}

TEST_F(Tls, AcceptsACertificateOfTheTrustStore) {
    const Endpoint endpoint = serve();
    EXPECT_EQ(echoThrough(endpoint, trusting()), "hello");
}

TEST_F(Tls, TakesAFolderOfHashedCertificatesAsTrustStore) {
    const Endpoint endpoint = serve();
    EXPECT_EQ(echoThrough(endpoint, SSLContext(String(certificate_->CaDirectory()), nullptr)), "hello");
}

TEST_F(Tls, ChecksAnAddressWithAZoneAsWell) {
    const TestCertificate::Options other = TestCertificate::For("192.0.2.1");
    for (const auto& options : {TestCertificate::For("::1"), other}) {
        certificate_ = std::make_unique<TestCertificate>(options);
        server_ = std::make_unique<ScriptedServer>(&Echo, "::1");
        std::uint16_t port = 0;
        try {
            port = server_->ListenTls(0, *certificate_);
        } catch (const std::system_error& error) {
            GTEST_SKIP() << "no IPv6 here: " << error.what();
        }
        const Endpoint endpoint("::1%1", port);
        if (options.ipAddresses == other.ipAddresses) {
            EXPECT_THAT(refusal(endpoint, trusting()), HasSubstr("IP address mismatch"));
        } else {
            EXPECT_EQ(echoThrough(endpoint, trusting()), "hello");
        }
    }
}

TEST_F(Tls, AcceptsACertificateForTheHostName) {
    const Endpoint endpoint = serve(TestCertificate::For("localhost"), "localhost");
    EXPECT_EQ(echoThrough(endpoint, trusting()), "hello");
}

TEST_F(Tls, RefusesACertificateForAnotherName) {
    const Endpoint endpoint = serve(TestCertificate::For("example.org"), "localhost");
    EXPECT_THAT(refusal(endpoint, trusting()), HasSubstr("hostname mismatch"));
}

TEST_F(Tls, SaysWhyItRefusesACertificate) {
    const auto good = TestCertificate::For(support::LoopbackAddress());
    auto expired = good;
    expired.expired = true;
    auto notYetValid = good;
    notYetValid.notYetValid = true;
    auto selfSigned = good;
    selfSigned.selfSigned = true;
    const std::vector<std::pair<TestCertificate::Options, const char*>> refused = {
        {TestCertificate::For("192.0.2.1"), "IP address mismatch"},
        {expired, "certificate has expired"},
        {notYetValid, "certificate is not yet valid"},
        {selfSigned, "self-signed certificate"},
    };
    for (const auto& [options, why] : refused) {
        const Endpoint endpoint = serve(options);
        EXPECT_THAT(refusal(endpoint, trusting()),
                    AllOf(StartsWith(endpoint.text() + ": the server's certificate was refused: it "),
                          EndsWith(std::string(" (") + why + ')')));
        EXPECT_EQ(echoThrough(endpoint, unverified_), "hello") << "it is refused only by who checks it";
    }
}

TEST_F(Tls, SaysThatItDoesNotKnowACertificatesAuthority) {
    const TestCertificate other(TestCertificate::Options{"cimhttp test server", {}, {}, false, false, true});
    const Endpoint endpoint = serve();
    EXPECT_EQ(refusal(endpoint, SSLContext(String(other.CertificateFile()), nullptr)),
              endpoint.text() + ": the server's certificate was refused: its issuer CN=cimhttp test authority is not "
                                "trusted (unable to get local issuer certificate)");
}

TEST_F(Tls, RefusesACertificateOfAnotherAuthorityOfTheSameName) {
    const TestCertificate other(TestCertificate::For(support::LoopbackAddress()));
    EXPECT_THAT(refusal(serve(), SSLContext(String(other.CaFile()), nullptr)),
                HasSubstr("refused: certificate signature failure"));
}

TEST_F(Tls, AcceptsASelfSignedCertificateThatIsItselfInTheTrustStore) {
    auto options = TestCertificate::For(support::LoopbackAddress());
    options.selfSigned = true;
    const Endpoint endpoint = serve(options);
    EXPECT_EQ(echoThrough(endpoint, SSLContext(String(certificate_->CertificateFile()), nullptr)), "hello");
}

TEST_F(Tls, NamesATrustStoreThatCannotBeRead) {
    EXPECT_THAT(refusal(serve(), SSLContext(String("/no/such/store.pem"), nullptr)),
                HasSubstr("cannot read the trust store /no/such/store.pem"));
}

TEST_F(Tls, NamesARandomFileThatCannotBeRead) {
    EXPECT_THAT(refusal(serve(), SSLContext(String(), nullptr, String("/no/such/file"))),
                HasSubstr("cannot read the random file /no/such/file"));
    EXPECT_EQ(echoThrough(serve(), SSLContext(String(), nullptr, String("/dev/urandom"))), "hello");
}

// A verification callback is a plain function, so what it sees and says goes through these.
std::vector<std::string> seen;

Boolean RememberAndAccept(SSLCertificateInfo& info) {
    seen.push_back(std::to_string(info.getErrorDepth()) + ' ' + std::string(info.getSubjectName().view()) + " by " +
                   std::string(info.getIssuerName().view()) + ' ' + std::to_string(info.getErrorCode()) + ' ' +
                   std::to_string(info.getResponseCode()));
    return true;
}

Boolean AcceptWhatPassed(SSLCertificateInfo& info) { return info.getResponseCode() == 1; }

Boolean RefuseAll(SSLCertificateInfo&) { return false; }

Boolean Throw(SSLCertificateInfo&) { throw std::runtime_error("from the callback"); }

TEST_F(Tls, ShowsTheCallbackEachCertificate) {
    seen.clear();
    const Endpoint endpoint = serve();
    EXPECT_EQ(echoThrough(endpoint, trusting(&RememberAndAccept)), "hello");
    EXPECT_THAT(seen, ElementsAre("1 /CN=cimhttp test authority by /CN=cimhttp test authority 0 1",
                                  "0 /CN=cimhttp test server by /CN=cimhttp test authority 0 1"));
}

TEST_F(Tls, LetsTheCallbackAcceptWhatItsOwnCheckRefused) {
    seen.clear();
    EXPECT_EQ(echoThrough(serve(TestCertificate::For("192.0.2.1")), SSLContext(String(), &RememberAndAccept)), "hello");
    const std::string certificate = "0 /CN=cimhttp test server by /CN=cimhttp test authority ";
    EXPECT_THAT(seen, Contains(certificate + "20 0")) << "unable to get local issuer certificate";
    EXPECT_THAT(seen, Contains(certificate + "64 0")) << "IP address mismatch";
    EXPECT_EQ(seen.back(), certificate + "0 1") << "an error that was accepted is not shown again";
}

TEST_F(Tls, ShowsTheCallbackNamesInUtf8) {
    seen.clear();
    auto options = TestCertificate::For(support::LoopbackAddress());
    options.commonName = "J\xC3\xBCrgens \xE2\x82\xAC";
    const Endpoint endpoint = serve(options);
    EXPECT_EQ(echoThrough(endpoint, trusting(&RememberAndAccept)), "hello");
    EXPECT_THAT(seen, Contains(HasSubstr("/CN=" + options.commonName + " by /CN=cimhttp test authority")));
}

TEST_F(Tls, LetsTheCallbackRefuseWhatItsOwnCheckAccepted) {
    const Endpoint endpoint = serve();
    EXPECT_THAT(refusal(endpoint, trusting(&RefuseAll)), HasSubstr("the verification callback refused it"));
}

TEST_F(Tls, SaysWhyWhenTheCallbackAgreesWithARefusal) {
    const Endpoint endpoint = serve(TestCertificate::For("192.0.2.1"));
    EXPECT_THAT(refusal(endpoint, trusting(&AcceptWhatPassed)), HasSubstr("IP address mismatch"));
}

TEST_F(Tls, LetsTheCallbacksExceptionThrough) {
    const Endpoint endpoint = serve();
    const SSLContext tls = trusting(&Throw);
    EXPECT_THROW(Channel::open(endpoint, &tls, Deadline(kAmple)), std::runtime_error);
}

TEST_F(Tls, OffersNothingOlderThanTls12) {
    std::string hello;
    ScriptedServer server([&](Connection& peer) { hello = peer.ReadSome(); });
    ErrorOf<SSLException>({server.Address(), server.Listen(5989)}, &unverified_);
    server.Stop();
    // The extension supported_versions (RFC 8446, 4.2.1): four bytes of versions, 1.3 and 1.2.
    EXPECT_THAT(hello, HasSubstr(std::string("\x00\x2b\x00\x05\x04\x03\x04\x03\x03", 9)));
}

TEST_F(Tls, TellsTheServerByWhichNameItIsSought) {
    support::NameService names;
    names.Answer("wanted.test", {support::LoopbackAddress()});
    for (const std::string& host : {std::string("wanted.test"), support::LoopbackAddress()}) {
        std::string hello;
        ScriptedServer server([&](Connection& peer) { hello = peer.ReadSome(); });
        ErrorOf<SSLException>({host, server.Listen(5989)}, &unverified_);
        server.Stop();
        // A server's name is a DNS name (RFC 6066, 3), never an address.
        EXPECT_EQ(hello.find(host) != std::string::npos, host == "wanted.test") << host;
    }
}

TEST_F(Tls, SpeaksTheVersionsThatAreSafeAndNoOther) {
    const auto options = TestCertificate::For(support::LoopbackAddress());
    const TestCertificate certificate(options);
    ScriptedServer server(&Echo);
    const auto endpoint = [&](TlsVersion version) {
        return Endpoint(server.Address(), server.ListenTls(0, certificate, version));
    };
    for (const TlsVersion version : {TlsVersion::kOnly12, TlsVersion::kOnly13}) {
        EXPECT_EQ(echoThrough(endpoint(version), unverified_), "hello");
    }
    for (const TlsVersion version : {TlsVersion::kOnly10, TlsVersion::kOnly11}) {
        EXPECT_THAT(refusal(endpoint(version), unverified_), HasSubstr("the TLS handshake failed: "));
    }
}

TEST_F(Tls, ReportsAServerThatDoesNotSpeakIt) {
    ScriptedServer server([](Connection& peer) {
        peer.ReadSome();
        peer.Write("HTTP/1.1 400 Bad Request\r\n\r\n");
        peer.WaitForPeerClose();
    });
    EXPECT_THAT(ErrorOf<SSLException>({server.Address(), server.Listen(5988)}, &unverified_),
                HasSubstr(":5988: the TLS handshake failed: wrong version number (the server does not seem to speak "
                          "TLS on this port)"));
}

TEST_F(Tls, ReportsAServerThatClosesInTheHandshake) {
    ScriptedServer server([](Connection& peer) { peer.ReadSome(); });
    EXPECT_THAT(ErrorOf<SSLException>({server.Address(), server.Listen(5988)}, &unverified_),
                HasSubstr("the server closed the connection"));
}

TEST_F(Tls, GivesUpASilentHandshakeAtTheDeadline) {
    ScriptedServer server([](Connection& peer) { peer.WaitForPeerClose(); });
    const Endpoint endpoint(server.Address(), server.Listen(5988));
    EXPECT_THROW(Channel::open(endpoint, &unverified_, Deadline(kShort)), ConnectionTimeoutException);
}

TEST_F(Tls, GivesUpAHandshakeThatDripsAtTheDeadline) {
    ScriptedServer server([](Connection& peer) {
        // A record with a handshake message that is almost as long as a record can be, and does not end in time.
        peer.Write("\x16\x03\x03\x3f\xff\x02");
        while (peer.Write("x")) {
            std::this_thread::sleep_for(5ms);
        }
    });
    const Endpoint endpoint(server.Address(), server.Listen(5988));
    EXPECT_THROW(Channel::open(endpoint, &unverified_, Deadline(kShort)), ConnectionTimeoutException);
}

TEST_F(Tls, GivesUpARequestThatTheServerDoesNotReadAtTheDeadline) {
    std::promise<void> done;
    const TestCertificate certificate(TestCertificate::For(support::LoopbackAddress()));
    ScriptedServer server([&](Connection&) { done.get_future().wait(); });
    const Endpoint endpoint(server.Address(), server.ListenTls(5989, certificate));
    const auto channel = Channel::open(endpoint, &unverified_, Deadline(kAmple));
    std::string large;
    large.resize(kMoreThanBuffersHold);
    EXPECT_THROW(channel->write(large, Deadline(kShort)), ConnectionTimeoutException);
    done.set_value();
}

TEST_F(Tls, SurvivesABrokenPipe) {
    std::promise<void> closed;
    const TestCertificate certificate(TestCertificate::For(support::LoopbackAddress()));
    ScriptedServer server([&](Connection& peer) {
        peer.Close();
        peer.WaitForDelivery();
        closed.set_value();
    });
    const Endpoint endpoint(server.Address(), server.ListenTls(5989, certificate));
    const auto channel = Channel::open(endpoint, &unverified_, Deadline(kAmple));
    closed.get_future().wait();
    std::string large;
    large.resize(kMoreThanBuffersHold);
    try {
        channel->write(large, Deadline(kAmple));
        FAIL() << "no exception";
    } catch (const ConnectionLost& lost) {
        EXPECT_EQ(lost.reason, "Broken pipe");
    }
}

TEST_F(Tls, SurvivesAServerThatResetsTheConnection) {
    const TestCertificate certificate(TestCertificate::For(support::LoopbackAddress()));
    ScriptedServer server([](Connection& peer) {
        peer.ReadSome();
        peer.Reset();
    });
    const Endpoint endpoint(server.Address(), server.ListenTls(5989, certificate));
    const auto channel = Channel::open(endpoint, &unverified_, Deadline(kAmple));
    std::string large;
    large.resize(kMoreThanBuffersHold);
    EXPECT_THROW(channel->write(large, Deadline(kAmple)), ConnectionLost);
}

} // namespace
