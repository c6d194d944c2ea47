#include "support/CimServer.h"
#include "support/ScriptedServer.h"
#include "support/SkipTest.h"
#include "support/TestCertificate.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace {

using namespace support;

/// A plain client of the simplest kind.
class Client {
  public:
    Client(const std::string& address, std::uint16_t port) : descriptor_(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in peer{};
        peer.sin_family = AF_INET;
        peer.sin_port = htons(port);
        ::inet_pton(AF_INET, address.c_str(), &peer.sin_addr);
        connected_ = ::connect(descriptor_, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == 0;
    }
    ~Client() { ::close(descriptor_); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    int Descriptor() const { return descriptor_; }
    bool Connected() const { return connected_; }

    bool Send(const std::string& bytes) const {
        return ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
    }

    /// Everything up to the end of the stream, and in errno how it ended.
    std::string ReadAll() const {
        std::string all;
        std::array<char, 4096> buffer{};
        ssize_t received = 0;
        errno = 0;
        while ((received = ::recv(descriptor_, buffer.data(), buffer.size(), 0)) > 0) {
            all.append(buffer.data(), static_cast<std::size_t>(received));
        }
        return all;
    }

  private:
    int descriptor_;
    bool connected_ = false;
};

std::string Post(const std::string& body, const std::string& headers = "") {
    return "POST /cimom HTTP/1.1\r\n" + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string GetClass(const std::string& name) {
    return "<CIM><MESSAGE ID='7'><SIMPLEREQ><IMETHODCALL NAME='GetClass'><LOCALNAMESPACEPATH><NAMESPACE NAME='root'/>"
           "<NAMESPACE NAME='cimv2'/></LOCALNAMESPACEPATH><IPARAMVALUE NAME='ClassName'><CLASSNAME NAME='" +
           name +
           "'/></IPARAMVALUE><IPARAMVALUE NAME='PropertyList'><VALUE.ARRAY><VALUE>A</VALUE><VALUE>B</VALUE>"
           "</VALUE.ARRAY></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
}

TEST(ScriptedServer, GivesTheScriptEachRequestWithHeadersAndBody) {
    ScriptedServer server([](Connection& connection) {
        while (const auto request = connection.ReadRequest()) {
            connection.Write(request->method + ' ' + request->target + ' ' + request->Header("x-NAME") + ' ' +
                             request->body + '\n');
            if (request->HasHeader("Last")) {
                return;
            }
        }
    });
    const Client client(server.Address(), server.Listen(5988));
    ASSERT_TRUE(client.Send(Post("one", "X-Name: a\r\n") + Post("two", "X-Name:b\r\nLast:\r\n")));
    EXPECT_EQ(client.ReadAll(), "POST /cimom a one\nPOST /cimom b two\n");
    EXPECT_EQ(server.ConnectionCount(), 1U);
}

TEST(ScriptedServer, ResetsAConnectionSoThatThePeerReadsAnError) {
    ScriptedServer server([](Connection& connection) {
        connection.ReadSome();
        connection.Reset();
    });
    const Client client(server.Address(), server.Listen(5988));
    client.Send("x");
    EXPECT_EQ(client.ReadAll(), "");
    EXPECT_EQ(errno, ECONNRESET);
}

TEST(ScriptedServer, StopsWithSilentConnectionsOpen) {
    ScriptedServer server([](Connection& connection) { connection.WaitForPeerClose(); });
    const std::uint16_t port = server.Listen(5988);
    const Client first(server.Address(), port);
    const Client second(server.Address(), port);
    server.Stop();
    EXPECT_EQ(first.ReadAll(), "");
    EXPECT_FALSE(Client(server.Address(), port).Connected());
}

TEST(ScriptedServer, SpeaksTlsOnOnePortAndPlainOnAnother) {
    ScriptedServer server([](Connection& connection) { connection.Write("hello"); });
    const TestCertificate certificate(TestCertificate::For(server.Address()));
    const Client plain(server.Address(), server.Listen(5988));
    EXPECT_EQ(plain.ReadAll(), "hello");

    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_client_method()), &SSL_CTX_free);
    SSL_CTX_load_verify_file(context.get(), certificate.CaFile().c_str());
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
    const std::unique_ptr<SSL, decltype(&SSL_free)> ssl(SSL_new(context.get()), &SSL_free);
    X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(ssl.get()), server.Address().c_str());
    const Client secure(server.Address(), server.ListenTls(5989, certificate));
    SSL_set_fd(ssl.get(), secure.Descriptor());
    ASSERT_EQ(SSL_connect(ssl.get()), 1);
    std::array<char, 16> buffer{};
    EXPECT_EQ(SSL_read(ssl.get(), buffer.data(), static_cast<int>(buffer.size())), 5);
    EXPECT_STREQ(buffer.data(), "hello");
}

TEST(SkipTest, EndsTheTestAsSkippedAndSaysWhy) {
    testing::TestPartResultArray results;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        EXPECT_THROW(SkipTest("there is no moon"), testing::AssertionException);
    }
    ASSERT_EQ(results.size(), 1);
    EXPECT_TRUE(results.GetTestPartResult(0).skipped());
    EXPECT_STREQ(results.GetTestPartResult(0).message(), "there is no moon");
}

TEST(TestCertificate, RemovesItsFilesAtTheEnd) {
    std::string file;
    {
        const TestCertificate certificate(TestCertificate::For("localhost"));
        file = certificate.KeyFile();
        EXPECT_TRUE(std::filesystem::exists(file));
    }
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(CimServer, AnswersFromItsTableAndRecordsTheCall) {
    CimServer server;
    server.Answer("GetClass", "CIM_Thing", "<CLASS NAME=\"CIM_Thing\"/>\n");
    const std::uint16_t port = server.Listen(5988);
    const Client client(server.Address(), port);
    client.Send(Post(GetClass("cim_thing")));
    ::shutdown(client.Descriptor(), SHUT_WR);
    const std::string answer = client.ReadAll();
    EXPECT_NE(answer.find("CIMOperation: MethodResponse\r\n"), std::string::npos);
    EXPECT_NE(answer.find("<MESSAGE ID=\"7\""), std::string::npos);
    EXPECT_NE(answer.find("<IRETURNVALUE>\n<CLASS NAME=\"CIM_Thing\"/>\n</IRETURNVALUE>"), std::string::npos);

    ASSERT_EQ(server.Calls().size(), 1U);
    const CimServer::Call call = server.Calls().front();
    EXPECT_EQ(call.method, "GetClass");
    EXPECT_EQ(call.nameSpace, "root/cimv2");
    EXPECT_EQ(call.parameters,
              (std::map<std::string, std::string>{{"ClassName", "cim_thing"}, {"PropertyList", "A,B"}}));
    EXPECT_EQ(call.http.target, "/cimom");
}

TEST(CimServer, PutsAnErrorInTheTrailersWhereToldSo) {
    CimServer server;
    server.Fail("GetClass", "None", 6, "CIM_ERR_NOT_FOUND: None", CimServer::ErrorPlace::kTrailers);
    const Client client(server.Address(), server.Listen(5988));
    client.Send(Post(GetClass("None")));
    ::shutdown(client.Descriptor(), SHUT_WR);
    const std::string answer = client.ReadAll();
    EXPECT_NE(answer.find("\r\n0\r\nCIMStatusCode: 6\r\nCIMStatusCodeDescription: CIM_ERR_NOT_FOUND%3A%20None\r\n\r\n"),
              std::string::npos)
        << answer;
}

} // namespace
