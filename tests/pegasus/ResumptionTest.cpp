// TLS sessions that a client resumes when it connects to its server again.

#include "HttpConnectionFixture.h"
#include "http/Descriptor.h"
#include "support/IssuedCertificate.h"
#include "support/TemporaryDirectory.h"
#include "tls/SessionCache.h"

#include <gmock/gmock.h>
#include <openssl/ssl.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <atomic>
#include <filesystem>
#include <mutex>

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using namespace Pegasus::tls;
using namespace std::chrono_literals;
using support::Connection;
using support::IssuedCertificate;
using support::TlsVersion;
using ::testing::Values;

/// A server that closes after each answer, with TLS of one version.
class ResumptionTest : public ::testing::TestWithParam<TlsVersion> {
  protected:
    /// Starts the server, anew where there was one, with this certificate.
    void serve(const IssuedCertificate& certificate, const std::string& clientAuthorityFile = "") {
        server_ = std::make_unique<support::ScriptedServer>([this](Connection& peer) {
            if (peer.ReadRequest()) {
                resumed_ += peer.IsResumed() ? 1 : 0;
                peer.Write(Answer("ok", "Connection: close\r\n"));
            }
        });
        port_ = server_->ListenTls(5989, {directory_.WriteFile("server.pem", certificate.Pem()),
                                          directory_.WriteFile("server.key", certificate.KeyPem()), GetParam(),
                                          clientAuthorityFile});
    }

    IssuedCertificate certificate() const {
        IssuedCertificate::Options options;
        options.extensions = {{"subjectAltName", "IP:" + address_}};
        return {options, authority_};
    }

    SSLContext trusting(SSLCertificateVerifyFunction* verify = nullptr) const {
        return {String(directory_.WriteFile("trusted.pem", authority_.Pem())), verify};
    }

    HttpConnection connectionWith(const SSLContext& tls) const { return {Endpoint(address_, port_), tls, {}}; }

    static void exchange(HttpConnection& connection, int count = 1) {
        for (int i = 0; i < count; ++i) {
            const Deadline deadline(kAmple);
            connection.post(kQuestion, deadline);
            connection.readBody([](std::string_view) {}, deadline);
        }
    }

    const std::string address_ = support::LoopbackAddress();
    const support::TemporaryDirectory directory_;
    const IssuedCertificate authority_{IssuedCertificate::Authority("test authority")};
    std::atomic<int> resumed_{0}; // handshakes, as the server sees them
    std::uint16_t port_ = 0;
    std::unique_ptr<support::ScriptedServer> server_;
};

INSTANTIATE_TEST_SUITE_P(Version, ResumptionTest, Values(TlsVersion::kOnly12, TlsVersion::kOnly13),
                         [](const auto& version) { return version.param == TlsVersion::kOnly12 ? "Tls12" : "Tls13"; });

TEST_P(ResumptionTest, SparesAllHandshakesOfAClientButTheFirst) {
    serve(certificate());
    HttpConnection connection = connectionWith(trusting());
    exchange(connection, 5);
    EXPECT_EQ(server_->ConnectionCount(), 5U);
    EXPECT_EQ(resumed_, 4);
}

TEST_P(ResumptionTest, IsForWhoVerifiesNothingAndForFingerprintsToo) {
    const IssuedCertificate shown = certificate();
    serve(shown);
    SSLContext pinned(String(), nullptr);
    pinned.setPeerFingerprint(String(shown.Fingerprint()));
    for (const SSLContext& tls : {SSLContext(String(), nullptr), pinned}) {
        resumed_ = 0;
        HttpConnection connection = connectionWith(tls);
        exchange(connection, 3);
        EXPECT_EQ(resumed_, 2);
    }
}

TEST_P(ResumptionTest, IsNotFromOneClientToTheNext) {
    serve(certificate());
    for (int i = 0; i < 2; ++i) {
        HttpConnection connection = connectionWith(trusting());
        exchange(connection);
    }
    EXPECT_EQ(resumed_, 0);
}

std::atomic<int> timesAsked{0};

TEST_P(ResumptionTest, IsNotForACallbackWhichIsAskedEachTime) {
    serve(certificate());
    timesAsked = 0;
    HttpConnection connection = connectionWith(trusting([](SSLCertificateInfo& info) {
        timesAsked += info.getErrorDepth() == 0 ? 1 : 0;
        return true;
    }));
    exchange(connection, 3);
    EXPECT_EQ(resumed_, 0);
    EXPECT_EQ(timesAsked, 3);
}

TEST_P(ResumptionTest, GoesOnAfterAServerThatHasForgottenTheSession) {
    serve(certificate());
    HttpConnection connection = connectionWith(trusting());
    exchange(connection, 2);
    server_.reset();
    serve(certificate());
    exchange(connection, 2);
    EXPECT_EQ(resumed_, 2) << "the second and the last";
}

TEST_P(ResumptionTest, LetsACertificateThatHasChangedBeVerified) {
    const IssuedCertificate shown = certificate();
    SSLContext pinned(String(), nullptr);
    pinned.setPeerFingerprint(String(shown.Fingerprint()));
    for (const SSLContext& tls : {trusting(), pinned}) {
        server_.reset();
        serve(shown);
        HttpConnection connection = connectionWith(tls);
        exchange(connection, 2);
        server_.reset();
        serve(IssuedCertificate(IssuedCertificate::Options{}));
        EXPECT_THROW(exchange(connection), SSLException);
        EXPECT_THROW(exchange(connection), SSLException) << "the refused handshake has left nothing to resume";
        server_.reset();
        serve(shown);
        exchange(connection);
    }
}

TEST_P(ResumptionTest, IsNotTriedAgainAfterAHandshakeThatFailed) {
    serve(certificate());
    HttpConnection connection = connectionWith(trusting());
    exchange(connection);
    server_.reset();
    std::mutex connections;         // each has a thread
    std::vector<std::size_t> sizes; // of what the client says first, which has the session in it
    support::ScriptedServer deaf([&](Connection& peer) {
        const std::size_t size = peer.ReadSome().size();
        const std::lock_guard lock(connections);
        sizes.push_back(size);
    });
    deaf.Listen(port_);
    EXPECT_THROW(exchange(connection), SSLException);
    EXPECT_THROW(exchange(connection), SSLException);
    deaf.Stop();
    ASSERT_EQ(sizes.size(), 2U);
    EXPECT_GT(sizes[0], sizes[1] + 100);
}

TEST_P(ResumptionTest, IsForClientsWithACertificateToo) {
    const IssuedCertificate own(IssuedCertificate::Options{}, authority_);
    const std::string path = directory_.WriteFile("client.pem", own.Pem() + own.KeyPem());
    const String trustStore = trusting().getTrustStore();
    serve(certificate(), std::string(trustStore.view()));
    HttpConnection connection = connectionWith(SSLContext(trustStore, String(path), String()));
    exchange(connection, 3);
    EXPECT_EQ(resumed_, 2);
}

TEST_P(ResumptionTest, NeedsNoFileAgain) {
    serve(certificate());
    const std::string path = directory_.WriteFile("passing.pem", authority_.Pem());
    HttpConnection connection = connectionWith(SSLContext(String(path), nullptr));
    exchange(connection);
    std::filesystem::remove(path);
    exchange(connection);
    server_.reset();
    serve(certificate());
    exchange(connection);
    EXPECT_EQ(resumed_, 1) << "a whole handshake needs none either";
}

// ---- How long a session is resumed

/// Shakes hands with a server and reads from it, with a cache of one's own.
bool resumes(SSL_CTX& context, SessionCache& cache, const std::string& address, std::uint16_t port) {
    const Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    ::inet_pton(AF_INET, address.c_str(), &peer.sin_addr);
    EXPECT_EQ(::connect(socket.number(), reinterpret_cast<const sockaddr*>(&peer), sizeof peer), 0);
    const std::unique_ptr<SSL, Freeing<&SSL_free>> session(SSL_new(&context));
    SSL_set_fd(session.get(), socket.number());
    cache.attachTo(*session);
    EXPECT_EQ(SSL_connect(session.get()), 1);
    cache.noteHandshake(*session);
    constexpr std::string_view kRequest = "POST / HTTP/1.1\r\nContent-Length: 0\r\n\r\n";
    SSL_write(session.get(), kRequest.data(), static_cast<int>(kRequest.size()));
    char buffer[256];
    EXPECT_GT(SSL_read(session.get(), buffer, sizeof buffer), 0); // session tickets come with it
    SSL_set_shutdown(session.get(), SSL_SENT_SHUTDOWN | SSL_RECEIVED_SHUTDOWN);
    return SSL_session_reused(session.get()) == 1;
}

TEST_P(ResumptionTest, EndsSomeTimeAfterTheServerWasVerified) {
    serve(certificate());
    const OpenSslContextPtr context(SSL_CTX_new(TLS_client_method()));
    SessionCache::useFor(*context);
    SessionCache forLong;
    EXPECT_FALSE(resumes(*context, forLong, address_, port_));
    EXPECT_TRUE(resumes(*context, forLong, address_, port_));
    EXPECT_TRUE(resumes(*context, forLong, address_, port_));
    SessionCache forNoTime(0s);
    EXPECT_FALSE(resumes(*context, forNoTime, address_, port_));
    EXPECT_FALSE(resumes(*context, forNoTime, address_, port_));
}

} // namespace
