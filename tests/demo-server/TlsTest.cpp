#include "HttpExchange.h"

#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <httplib.h>

#include <fstream>

namespace {

constexpr int kHttpsPort = 5989;

demo::DemoServerOptions Options() {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    return options;
}

httplib::Result Ask(httplib::SSLClient& client) {
    httplib::Headers headers;
    for (const auto& [name, value] : exchange::OperationHeaders("GetClass"))
        headers.emplace(name, value);
    return client.Post("/cimom", headers, exchange::OperationBody("GetClass", exchange::ClassName("CIM_System")),
                       "application/xml; charset=utf-8");
}

TEST(Tls, AClientThatTrustsTheCertificateVerifiesTheServer) {
    const demo::DemoServer server(Options());
    const std::string file = testing::TempDir() + "demo-server-" + support::LoopbackAddress() + ".pem";
    ASSERT_TRUE(std::ofstream(file) << server.CertificatePem());
    httplib::SSLClient client(support::LoopbackAddress(), kHttpsPort);
    client.set_ca_cert_path(file.c_str());
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

TEST(Tls, EachServerHasACertificateOfItsOwn) {
    EXPECT_NE(demo::Certificate("127.0.0.1").Pem(), demo::Certificate("127.0.0.1").Pem());
    EXPECT_THAT(demo::Certificate("demo.example").Pem(), testing::StartsWith("-----BEGIN CERTIFICATE-----"));
}

} // namespace
