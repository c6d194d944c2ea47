#include "HttpExchange.h"
#include "server/Certificate.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <openssl/ssl.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>

namespace {

constexpr int kHttpsPort = 5989;

demo::DemoServerOptions Options() {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    return options;
}

httplib::Result Ask(httplib::SSLClient& client) {
    httplib::Headers headers;
    for (const auto& [name, value] : exchange::OperationHeaders("GetClass")) {
        headers.emplace(name, value);
    }
    return client.Post("/cimom", headers, exchange::OperationBody("GetClass", exchange::ClassName("CIM_System")),
                       "application/xml; charset=utf-8");
}

TEST(Tls, AClientThatTrustsTheCertificateVerifiesTheServer) {
    const demo::DemoServer server(Options());
    const std::string file = testing::TempDir() + "demo-server-" + support::LoopbackAddress() + ".pem";
    ASSERT_TRUE(std::ofstream(file) << server.CertificatePem());
    httplib::SSLClient client(support::LoopbackAddress(), kHttpsPort);
    client.set_ca_cert_path(file);
    client.enable_server_certificate_verification(true);
    const auto result = Ask(client);
    ASSERT_TRUE(result) << to_string(result.error());
    EXPECT_EQ(result->status, 200);
    EXPECT_THAT(result->body, testing::HasSubstr("<CLASS NAME=\"CIM_System\""));
    ::unlink(file.c_str());
}

TEST(Tls, AClientThatDoesNotTrustTheCertificateIsNotConnected) {
    const demo::DemoServer server(Options());
    httplib::SSLClient client(support::LoopbackAddress(), kHttpsPort);
    client.enable_server_certificate_verification(true);
    EXPECT_EQ(Ask(client).error(), httplib::Error::SSLServerVerification);
}

/// What one TLS record of an answer carries.
std::string FirstRecordOfTheAnswer(const std::string& request) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kHttpsPort);
    ::inet_pton(AF_INET, support::LoopbackAddress().c_str(), &address.sin_addr);
    const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    std::array<char, 65536> buffer{};
    int count = 0;
    {
        const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_client_method()),
                                                                        &SSL_CTX_free);
        const std::unique_ptr<SSL, decltype(&SSL_free)> tls(SSL_new(context.get()), &SSL_free);
        SSL_set_fd(tls.get(), handle);
        EXPECT_EQ(SSL_connect(tls.get()), 1);
        EXPECT_GT(SSL_write(tls.get(), request.data(), static_cast<int>(request.size())), 0);
        count = SSL_read(tls.get(), buffer.data(), static_cast<int>(buffer.size())); // of one record, as ever
    }
    ::close(handle);
    return {buffer.data(), static_cast<std::size_t>(std::max(count, 0))};
}

TEST(Tls, AShortAnswerIsOneRecordHeadersAndAll) {
    const demo::DemoServer server(Options());
    exchange::Headers headers = exchange::OperationHeaders("GetQualifier");
    headers["TE"] = "trailers"; // and so in chunks
    const std::string record = FirstRecordOfTheAnswer(exchange::Post(
        headers, exchange::OperationBody("GetQualifier",
                                         "<IPARAMVALUE NAME=\"QualifierName\"><VALUE>Key</VALUE></IPARAMVALUE>")));
    EXPECT_THAT(record, testing::StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(record, testing::HasSubstr("Transfer-Encoding: chunked"));
    EXPECT_THAT(record, testing::EndsWith("\r\n0\r\n\r\n"));
}

TEST(Tls, EachServerHasACertificateOfItsOwn) {
    EXPECT_NE(demo::Certificate("127.0.0.1").Pem(), demo::Certificate("127.0.0.1").Pem());
    EXPECT_THAT(demo::Certificate("demo.example").Pem(), testing::StartsWith("-----BEGIN CERTIFICATE-----"));
}

} // namespace
