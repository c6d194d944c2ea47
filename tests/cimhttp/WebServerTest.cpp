// The program's own web server: who is let in, and what it takes from clients.

#include "web/WebServer.h"

#include "Failure.h"
#include "support/LoopbackAddress.h"
#include "support/TemporaryDirectory.h"
#include "support/TestCertificate.h"
#include "web/QueryText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

#include <crypt.h>

#include <array>
#include <future>
#include <optional>

using cimhttp::WebAccess;
using cimhttp::WebPlace;
using cimhttp::WebServer;
using testing::HasSubstr;

namespace {

constexpr int kPort = 9989;

/// A hash by bcrypt of the least cost.
std::string Hashed(const std::string& password) {
    crypt_data data{};
    std::array<char, CRYPT_GENSALT_OUTPUT_SIZE> salt{};
    ::crypt_gensalt_rn("$2b$", 4, nullptr, 0, salt.data(), static_cast<int>(salt.size()));
    return ::crypt_r(password.c_str(), salt.data(), &data);
}

class WebServerTest : public testing::Test {
  protected:
    static WebPlace Place() { return {support::LoopbackAddress(), kPort}; }

    void Start(const WebAccess& access = {}, const cimhttp::WebLimits& limits = {}) {
        server_.emplace(
            Place(), access,
            [](const cimhttp::WebRequest& request) {
                if (request.path == "/broken") {
                    throw std::runtime_error("it broke");
                }
                std::string text = request.path;
                for (const auto& [name, value] : request.parameters) {
                    text.append("|").append(name).append("=").append(value);
                }
                return cimhttp::WebAnswer{200, "text/plain", text};
            },
            limits);
    }

    static httplib::Client Client() { return httplib::Client(support::LoopbackAddress(), kPort); }

    WebAccess AccessIn(const std::string& text) const { return WebAccess::InFile(folder_.WriteFile("web.yml", text)); }

    std::string ErrorOf(const std::string& text) const {
        try {
            AccessIn(text);
        } catch (const cimhttp::Failure& failure) {
            return failure.what();
        }
        return "";
    }

    support::TemporaryDirectory folder_;
    std::optional<WebServer> server_;
};

TEST_F(WebServerTest, PassesOnPathAndParameters) {
    Start();
    auto client = Client();
    client.set_url_encode(false);
    EXPECT_EQ(client.Get("/a?b=c%20d&e=%26&b=z&f+g")->body, "/a|b=c d|e=&|f g=");
    EXPECT_EQ(client.Head("/a")->body, "");
    EXPECT_EQ(client.Head("/abc")->get_header_value("Content-Length"), "4");
    EXPECT_EQ(server_->Url(), "http://" + support::LoopbackAddress() + ":9989");
}

TEST_F(WebServerTest, AnswersSeveralRequestsOverOneConnection) {
    Start();
    auto client = Client();
    client.set_keep_alive(true);
    for (const std::string path : {"/a", "/b", "/c"}) {
        EXPECT_EQ(client.Get(path)->body, path);
    }
}

TEST_F(WebServerTest, OnlyReads) {
    Start();
    EXPECT_EQ(Client().Post("/a", "", "text/plain")->status, 405);
    EXPECT_EQ(Client().Delete("/a")->get_header_value("Allow"), "GET, HEAD");
    EXPECT_GE(Client().Post("/a", "body", "text/plain")->status, 400);
}

TEST_F(WebServerTest, AFailureIsAnAnswer) {
    Start();
    const auto answer = Client().Get("/broken");
    EXPECT_EQ(answer->status, 500);
    EXPECT_EQ(answer->body, "it broke\n");
}

TEST_F(WebServerTest, HeadersAreBounded) {
    Start();
    const auto answer = Client().Get("/a", {{"X-Long", std::string(100000, 'x')}});
    EXPECT_TRUE(!answer || answer->status == 400);
    EXPECT_EQ(Client().Get("/a")->status, 200);
}

TEST_F(WebServerTest, ConnectionsAreBounded) {
    cimhttp::WebLimits limits;
    limits.connections = 1;
    Start({}, limits);
    auto first = Client();
    first.set_keep_alive(true);
    EXPECT_TRUE(first.Get("/a"));
    EXPECT_FALSE(Client().Get("/a"));
    EXPECT_TRUE(first.Get("/b"));
}

TEST_F(WebServerTest, AskForALoginAndTakeNoOther) {
    WebAccess access;
    access.users = {{"alice", Hashed("secret")}};
    Start(access);
    EXPECT_EQ(Client().Get("/a")->status, 401);
    EXPECT_EQ(Client().Get("/a")->get_header_value("WWW-Authenticate"), "Basic realm=\"cimhttp\"");
    const auto status = [](const std::string& user, const std::string& password) {
        auto client = Client();
        client.set_basic_auth(user, password);
        return client.Get("/a")->status;
    };
    EXPECT_EQ(status("alice", "secret"), 200);
    EXPECT_EQ(status("alice", "secret"), 200);
    EXPECT_EQ(status("alice", "Secret"), 401);
    EXPECT_EQ(status("bob", "secret"), 401);
    EXPECT_EQ(status("", ""), 401);
    for (const char* const header : {"Basic", "Basic ", "Basic YWxpY2U", "Basic ====", "Basic !!!!", "Bearer secret"}) {
        EXPECT_EQ(Client().Get("/a", {{"Authorization", header}})->status, 401) << header;
    }
}

TEST_F(WebServerTest, SpeaksTlsAsTheFileSays) {
    const support::TestCertificate certificate(support::TestCertificate::For(support::LoopbackAddress()));
    Start(AccessIn("tls_server_config:\n  cert_file: " + certificate.CertificateFile() +
                   "\n  key_file: " + certificate.KeyFile() +
                   "\n  min_version: TLS13\nbasic_auth_users:\n  alice: " + Hashed("secret") + "\n"));
    EXPECT_EQ(server_->Url(), "https://" + support::LoopbackAddress() + ":9989");
    EXPECT_FALSE(Client().Get("/a"));
    httplib::SSLClient client(support::LoopbackAddress(), kPort);
    client.set_ca_cert_path(certificate.CaFile());
    client.enable_server_certificate_verification(true);
    EXPECT_EQ(client.Get("/a")->status, 401);
    client.set_basic_auth("alice", "secret");
    EXPECT_EQ(client.Get("/a")->body, "/a");
}

TEST_F(WebServerTest, DemandsCertificatesOfClientsWhereTheFileSaysSo) {
    const support::TestCertificate certificate(support::TestCertificate::For(support::LoopbackAddress()));
    Start(AccessIn("tls_server_config: {cert_file: " + certificate.CertificateFile() +
                   ", key_file: " + certificate.KeyFile() +
                   ", client_auth_type: RequireAndVerifyClientCert, client_ca_file: " + certificate.CaFile() + "}"));
    httplib::SSLClient stranger(support::LoopbackAddress(), kPort);
    stranger.set_ca_cert_path(certificate.CaFile());
    EXPECT_FALSE(stranger.Get("/a"));
    httplib::SSLClient known(support::LoopbackAddress(), kPort, certificate.CertificateFile(), certificate.KeyFile());
    known.set_ca_cert_path(certificate.CaFile());
    EXPECT_EQ(known.Get("/a")->status, 200);
}

TEST_F(WebServerTest, RefusesByNameWhatItDoesNotSupport) {
    EXPECT_THAT(ErrorOf("rate_limit: 1\n"), HasSubstr("line 1: 'rate_limit' is not known"));
    EXPECT_THAT(ErrorOf("tls_server_config:\n  cert_file: a\n  key_file: b\n  cipher_suites: [x]\n"),
                HasSubstr("line 4: 'cipher_suites' is not known"));
    EXPECT_THAT(ErrorOf("tls_server_config: {cert_file: a}\n"), HasSubstr("needs cert_file and key_file"));
    EXPECT_THAT(ErrorOf("tls_server_config: {cert_file: a, key_file: b, client_ca_file: c}\n"),
                HasSubstr("client_ca_file goes with"));
    EXPECT_THAT(ErrorOf("tls_server_config: {cert_file: a, key_file: b, client_auth_type: RequestClientCert}\n"),
                HasSubstr("client_auth_type 'RequestClientCert' is not supported"));
    EXPECT_THAT(ErrorOf("tls_server_config: {cert_file: a, key_file: b, min_version: TLS10}\n"),
                HasSubstr("min_version 'TLS10' is not supported"));
    EXPECT_THAT(ErrorOf("basic_auth_users: {alice: secret}\n"),
                HasSubstr("the hash of alice's password is none of bcrypt"));
    EXPECT_EQ(ErrorOf("http_server_config: {http2: false}\n"), "");
    EXPECT_EQ(ErrorOf(""), "");
}

TEST_F(WebServerTest, FilesThatCannotBeUsedAreNamed) {
    WebAccess access;
    access.certificate = (folder_.Path() / "none.pem").string();
    access.key = access.certificate;
    try {
        Start(access);
        FAIL();
    } catch (const cimhttp::Failure& failure) {
        EXPECT_THAT(failure.what(), HasSubstr("the certificate " + access.certificate + " cannot be used"));
    }
}

TEST_F(WebServerTest, APortIsListenedOnOnce) {
    Start();
    EXPECT_THROW(WebServer(Place(), {}, [](const auto&) { return cimhttp::WebAnswer(); }), cimhttp::Failure);
}

TEST_F(WebServerTest, RequestsThatAreBeingAnsweredAreNotCutOff) {
    std::promise<void> begun;
    std::promise<void> go;
    server_.emplace(Place(), WebAccess(), [&](const cimhttp::WebRequest& /*request*/) {
        begun.set_value();
        go.get_future().wait();
        return cimhttp::WebAnswer{200, "text/plain", "whole"};
    });
    auto answer = std::async(std::launch::async, [] { return Client().Get("/a"); });
    begun.get_future().wait();
    auto end = std::async(std::launch::async, [this] { server_.reset(); });
    go.set_value();
    const auto result = answer.get();
    end.wait();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->body, "whole");
}

TEST(WebPlaceTest, IsAnAddressWithAPort) {
    EXPECT_EQ(WebPlace::In("127.0.0.1:9989").address, "127.0.0.1");
    EXPECT_EQ(WebPlace::In("localhost:1").address, "127.0.0.1");
    EXPECT_EQ(WebPlace::In("[::1]:9989").address, "::1");
    EXPECT_EQ(WebPlace::In(":9989").address, "::");
    EXPECT_EQ(WebPlace::In(":9989").port, 9989);
    for (const char* const text : {"", "9989", "a:", "a:0", "a:65536", "a:b"}) {
        EXPECT_THROW(WebPlace::In(text), cimhttp::Failure) << text;
    }
}

TEST(QueryTextTest, IsDecoded) {
    using Parameters = std::map<std::string, std::string>;
    EXPECT_EQ(cimhttp::QueryParameters("a=%41%zz&b=%4&c=%"), (Parameters{{"a", "A%zz"}, {"b", "%4"}, {"c", "%"}}));
    EXPECT_EQ(cimhttp::QueryParameters(""), Parameters());
}

} // namespace
