#include "FewDescriptors.h"
#include "Texts.h"
#include "support/CimServer.h"
#include "support/CimXml.h"
#include "support/NameService.h"

#include <Pegasus/Client/CIMClient.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using namespace std::chrono_literals;
using support::CimServer;
using support::TestCertificate;
using ::testing::HasSubstr;
using Parameters = std::map<std::string, std::string>;

constexpr Uint32 kShort = 200;   // milliseconds, for what must time out
constexpr Uint32 kAmple = 30000; // for what must succeed

const CIMNamespaceName kNamespace("root/cimv2");

constexpr char kThing[] = "<CLASS NAME=\"CIM_Thing\"><PROPERTY NAME=\"Size\" TYPE=\"uint32\"></PROPERTY></CLASS>\n";

std::string QualifierDeclaration(const std::string& name) {
    return "<QUALIFIER.DECLARATION NAME=\"" + name +
           "\" TYPE=\"boolean\" OVERRIDABLE=\"false\"><SCOPE PROPERTY=\"true\"/><VALUE>FALSE</VALUE>"
           "</QUALIFIER.DECLARATION>\n";
}

std::string NamedInstance(const std::string& name) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"CIM_Thing\"><KEYBINDING NAME=\"Name\"><KEYVALUE "
           "VALUETYPE=\"string\">" +
           name +
           "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"CIM_Thing\"><PROPERTY NAME=\"Name\" "
           "TYPE=\"string\"><VALUE>" +
           name + "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>\n";
}

class ClientTest : public ::testing::Test {
  protected:
    void SetUp() override {
        port_ = server_.Listen(5988);
        server_.Answer("GetClass", "CIM_Thing", kThing);
    }

    void connect(const char* user = "", const char* password = "") {
        client_.connect(String(server_.Address()), port_, user, password);
    }

    CIMClass getThing() { return client_.getClass(kNamespace, CIMName("CIM_Thing")); }

    /// The error that an answer of these bytes ends in.
    template <typename E>
    std::string errorOf(const std::string& answer) {
        server_.AnswerNextWith(answer);
        return MessageOf<E>([&] { getThing(); });
    }

    CimServer::Call lastCall() const { return server_.Calls().back(); }

    CimServer server_;
    std::uint16_t port_ = 0;
    CIMClient client_;
};

// ---- The connection

TEST_F(ClientTest, HasATimeOutOf20SecondsUntilSet) {
    EXPECT_EQ(client_.getTimeout(), 20000U);
    client_.setTimeout(65'535'000);
    EXPECT_EQ(client_.getTimeout(), 65'535'000U);
    connect();
    EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
}

TEST_F(ClientTest, ConnectsOnce) {
    connect();
    EXPECT_THROW(connect(), AlreadyConnectedException);
    EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing")) << "the connection stays usable";
}

TEST_F(ClientTest, CanConnectAgainAfterAFailedConnect) {
    support::NameService names;
    names.Answer("no-such-host.invalid", {});
    EXPECT_THAT(MessageOf<InvalidLocatorException>([&] { client_.connect("no-such-host.invalid", 5988, "", ""); }),
                HasSubstr("no-such-host.invalid:5988"));
    EXPECT_THAT(MessageOf<CannotConnectException>([&] { client_.connect(String(server_.Address()), 5989, "", ""); }),
                HasSubstr(server_.Address() + ":5989"));
    connect();
    EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
}

TEST_F(ClientTest, CanDisconnectAtAnyTime) {
    client_.disconnect();
    connect();
    client_.disconnect();
    client_.disconnect();
    EXPECT_THROW(getThing(), NotConnectedException);
    connect();
    EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
}

TEST_F(ClientTest, IsIndependentOfOtherClients) {
    connect();
    CIMClient other;
    other.connect(String(server_.Address()), port_, "", "");
    EXPECT_EQ(getThing().getPropertyCount(), 1U);
    client_.disconnect();
    EXPECT_EQ(other.getClass(kNamespace, CIMName("CIM_Thing")).getPropertyCount(), 1U);
}

TEST_F(ClientTest, SpeaksTlsWithAnSslContext) {
    const TestCertificate certificate(TestCertificate::For(server_.Address()));
    const std::uint16_t port = server_.ListenTls(5989, certificate);
    client_.connect(String(server_.Address()), port, SSLContext(String(certificate.CaFile()), nullptr), "", "");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
    }
    EXPECT_EQ(server_.ConnectionCount(), 1U);
}

TEST_F(ClientTest, ReportsATlsPortThatItSpeaksPlainTo) {
    const TestCertificate certificate(TestCertificate::For(server_.Address()));
    client_.connect(String(server_.Address()), server_.ListenTls(5989, certificate), "", "");
    EXPECT_THAT(MessageOf<Exception>([&] { getThing(); }), HasSubstr("SSLContext"));
}

TEST_F(ClientTest, OpensTheConnectionAgainWhenTheServerHasClosedIt) {
    connect();
    getThing();
    server_.AnswerNextWith("");
    EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
    EXPECT_EQ(server_.ConnectionCount(), 2U);
}

TEST_F(ClientTest, StaysEncryptedWhenItOpensTheConnectionAgain) {
    const TestCertificate certificate(TestCertificate::For(server_.Address()));
    const std::uint16_t port = server_.ListenTls(5989, certificate);
    client_.connect(String(server_.Address()), port, SSLContext(String(certificate.CaFile()), nullptr), "", "");
    getThing();
    errorOf<CIMClientHTTPErrorException>("HTTP/1.1 500 No\r\n\r\n"); // and the server closes
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing")); // which a port for TLS says to nobody else
    }
    EXPECT_EQ(server_.ConnectionCount(), 2U);
}

TEST_F(ClientTest, ChecksTheServerAgainWhenItOpensTheConnectionAgain) {
    const auto options = TestCertificate::For(server_.Address());
    const TestCertificate certificate(options);
    const std::uint16_t port = server_.ListenTls(5989, certificate);
    client_.connect(String(server_.Address()), port, SSLContext(String(certificate.CaFile()), nullptr), "", "");
    getThing();
    server_.Stop();
    CimServer impostor;
    const TestCertificate another(options);
    impostor.ListenTls(5989, another);
    EXPECT_THROW(getThing(), SSLException);
    EXPECT_EQ(impostor.Calls().size(), 0U);
}

TEST_F(ClientTest, LimitsEachStepOfConnectingWhateverTheTimeOutOfTheOperation) {
    ClientLimits limits;
    EXPECT_EQ(client_.getLimits().connectMilliseconds, 10'000U);
    limits.connectMilliseconds = kShort;
    client_.setLimits(limits);
    EXPECT_EQ(client_.getLimits().connectMilliseconds, kShort);
    client_.setTimeout(65'535'000);
    support::NameService names;
    names.BeSilentAbout("silent.test");
    EXPECT_THAT(MessageOf<ConnectionTimeoutException>([&] { client_.connect("silent.test", 5988, "", ""); }),
                HasSubstr("within 200 ms, the limit of each step of connecting"));
}

TEST_F(ClientTest, LimitsTheNextOperationsToo) {
    connect();
    getThing();
    ClientLimits limits;
    limits.interimAnswers = 1;
    client_.setLimits(limits);
    constexpr char kInterim[] = "HTTP/1.1 100 Continue\r\n\r\n";
    EXPECT_THAT(errorOf<CIMClientMalformedHTTPException>(std::string(kInterim) + kInterim),
                HasSubstr("interim answer"));
}

TEST_F(ClientTest, WorksAgainWhenThereAreDescriptorsAgain) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizers need descriptors themselves, to look at objects";
#endif
    const TestCertificate certificate(TestCertificate::For(server_.Address()));
    const SSLContext tls(String(certificate.CaFile()), nullptr);
    const std::uint16_t tlsPort = server_.ListenTls(5989, certificate);
    const auto connectEither = [&](bool encrypted) {
        if (encrypted) {
            client_.connect(String(server_.Address()), tlsPort, tls, "", "");
        } else {
            client_.connect(String(server_.Address()), port_, "", "");
        }
    };
    {
        const http::FewDescriptors none(0); // not even to find a name
        EXPECT_THAT(MessageOf<CannotConnectException>([&] { client_.connect("a-name.invalid", port_, "", ""); }),
                    HasSubstr("Too many open files"));
    }
    for (const bool encrypted : {false, true}) {
        const std::size_t before = http::openDescriptors();
        {
            const http::FewDescriptors none(0);
            for (int i = 0; i < 3; ++i) {
                EXPECT_THAT(MessageOf<CannotConnectException>([&] { connectEither(encrypted); }),
                            HasSubstr("Too many open files"));
            }
        }
        EXPECT_EQ(http::openDescriptors(), before);
        connectEither(encrypted);
        EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
        server_.AnswerNextWith("HTTP/1.1 500 No\r\n\r\n");
        EXPECT_THROW(getThing(), CIMClientHTTPErrorException);
        {
            const http::FewDescriptors none(0);
            EXPECT_THAT(MessageOf<CannotConnectException>([&] { getThing(); }), HasSubstr("Too many open files"));
        }
        EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
        client_.disconnect();
    }
}

TEST_F(ClientTest, SendsCredentialsWhenAsked) {
    server_.RequireUser("ada", "secret");
    connect("ada", "secret");
    EXPECT_EQ(getThing().getClassName(), CIMName("CIM_Thing"));
    getThing();
    const std::vector<CimServer::Call> calls = server_.Calls();
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_FALSE(calls[0].http.HasHeader("Authorization"));
    EXPECT_EQ(calls[1].http.Header("Authorization"), calls[2].http.Header("Authorization"));
}

TEST_F(ClientTest, ReportsRefusedCredentials) {
    server_.RequireUser("ada", "secret");
    connect("ada", "wrong");
    try {
        getThing();
        FAIL() << "no exception";
    } catch (const CIMClientHTTPErrorException& error) {
        EXPECT_EQ(error.getCode(), 401U);
    }
    EXPECT_EQ(server_.Calls().size(), 2U);
}

// ---- The operations and their requests

TEST_F(ClientTest, AsksForAClass) {
    connect();
    const CIMClass thing = client_.getClass(kNamespace, CIMName("CIM_Thing"), false, true, true);
    EXPECT_EQ(thing.getPropertyCount(), 1U);

    const CimServer::Call call = lastCall();
    EXPECT_EQ(call.method, "GetClass");
    EXPECT_EQ(call.nameSpace, "root/cimv2");
    EXPECT_EQ(call.parameters, (Parameters{{"ClassName", "CIM_Thing"},
                                           {"LocalOnly", "FALSE"},
                                           {"IncludeQualifiers", "TRUE"},
                                           {"IncludeClassOrigin", "TRUE"}}));
    EXPECT_EQ(call.http.method, "POST");
    EXPECT_EQ(call.http.target, "/cimom");
    EXPECT_EQ(call.http.version, "HTTP/1.1");
    EXPECT_EQ(call.http.Header("Host"), server_.Address() + ":5988");
    EXPECT_EQ(call.http.Header("Content-Type"), "application/xml; charset=utf-8");
    EXPECT_EQ(call.http.Header("CIMOperation"), "MethodCall");
    EXPECT_EQ(call.http.Header("CIMMethod"), "GetClass");
    EXPECT_EQ(call.http.Header("CIMObject"), "root%2Fcimv2");
    EXPECT_EQ(call.http.Header("TE"), "chunked, trailers");
}

TEST_F(ClientTest, AsksForAClassWithItsDefaultsAndAPropertyList) {
    connect();
    Array<CIMName> names;
    names.append(CIMName("Size"));
    names.append(CIMName("Name"));
    client_.getClass(kNamespace, CIMName("CIM_Thing"), true, true, false, CIMPropertyList(names));
    EXPECT_EQ(lastCall().parameters, (Parameters{{"ClassName", "CIM_Thing"},
                                                 {"LocalOnly", "TRUE"},
                                                 {"IncludeQualifiers", "TRUE"},
                                                 {"IncludeClassOrigin", "FALSE"},
                                                 {"PropertyList", "Size,Name"}}));
}

TEST_F(ClientTest, AsksForAQualifierDeclaration) {
    server_.Answer("GetQualifier", "Key", QualifierDeclaration("Key"));
    connect();
    EXPECT_EQ(client_.getQualifier(kNamespace, CIMName("Key")).getName(), CIMName("Key"));
    EXPECT_EQ(lastCall().parameters, (Parameters{{"QualifierName", "Key"}}));
}

TEST_F(ClientTest, AsksForTheNamesOfTheTopClasses) {
    server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"A\"/>\n<CLASSNAME NAME=\"B\"/>\n");
    connect();
    const Array<CIMName> names = client_.enumerateClassNames(kNamespace);
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names[1], CIMName("B"));
    EXPECT_EQ(lastCall().parameters, (Parameters{{"DeepInheritance", "FALSE"}}));
}

TEST_F(ClientTest, AsksForTheNamesOfAllDescendants) {
    server_.Answer("EnumerateClassNames", "A", "");
    connect();
    EXPECT_EQ(client_.enumerateClassNames(kNamespace, CIMName("A"), true).size(), 0U);
    EXPECT_EQ(lastCall().parameters, (Parameters{{"ClassName", "A"}, {"DeepInheritance", "TRUE"}}));
}

TEST_F(ClientTest, AsksForInstancesWithTheirPaths) {
    server_.Answer("EnumerateInstances", "CIM_Thing", NamedInstance("a") + NamedInstance("b"));
    connect();
    const Array<CIMInstance> instances = client_.enumerateInstances(kNamespace, CIMName("CIM_Thing"));
    ASSERT_EQ(instances.size(), 2U);
    EXPECT_THAT(Text(instances[1].getPath().toString()), HasSubstr("CIM_Thing.Name=\"b\""));
    EXPECT_EQ(lastCall().parameters, (Parameters{{"ClassName", "CIM_Thing"},
                                                 {"LocalOnly", "TRUE"},
                                                 {"DeepInheritance", "TRUE"},
                                                 {"IncludeQualifiers", "FALSE"},
                                                 {"IncludeClassOrigin", "FALSE"}}));
}

TEST_F(ClientTest, GivesEachMessageAnIdOfItsOwn) {
    connect();
    getThing();
    getThing();
    const std::vector<CimServer::Call> calls = server_.Calls();
    EXPECT_NE(calls[0].messageId, "");
    EXPECT_NE(calls[0].messageId, calls[1].messageId);
}

TEST_F(ClientTest, ReadsChunkedAnswersOfAnySize) {
    std::string instances;
    for (int i = 0; i < 2000; ++i) {
        instances += NamedInstance("instance " + std::to_string(i));
    }
    server_.SetFraming(CimServer::Framing::kChunked);
    server_.Answer("EnumerateInstances", "CIM_Thing", instances);
    connect();
    EXPECT_EQ(client_.enumerateInstances(kNamespace, CIMName("CIM_Thing")).size(), 2000U);
}

TEST_F(ClientTest, ReadsAPropertyThatComesTwiceOnlyIfThatIsAskedFor) {
    const std::string property = "<PROPERTY NAME=\"P\" TYPE=\"uint8\"/>";
    server_.Answer("GetClass", "CIM_Thing", "<CLASS NAME=\"CIM_Thing\">" + property + property + "</CLASS>");
    connect();
    EXPECT_THAT(MessageOf<CIMClientXmlException>([&] { getThing(); }), HasSubstr(":5988: GetClass: "));
    client_.setDoubledProperties(true);
    EXPECT_EQ(client_.getClass(kNamespace, CIMName("CIM_Thing")).getPropertyCount(), 2U);
}

// ---- Errors of the server

TEST_F(ClientTest, ReportsAnErrorWhereverItStands) {
    connect();
    for (const auto place : {CimServer::ErrorPlace::kBody, CimServer::ErrorPlace::kTrailers}) {
        server_.Fail("GetClass", "CIM_Thing", 6, "CIM_ERR_NOT_FOUND: CIM_Thing", place);
        try {
            getThing();
            FAIL() << "no exception";
        } catch (const CIMException& error) {
            EXPECT_EQ(error.getCode(), CIM_ERR_NOT_FOUND);
            EXPECT_EQ(Text(error.getMessage()),
                      "CIM_ERR_NOT_FOUND: CIM_Thing (" + server_.Address() + ":5988: GetClass)");
        }
    }
    server_.Answer("GetClass", "CIM_Thing", kThing);
    getThing();
    EXPECT_EQ(server_.ConnectionCount(), 1U) << "such an error is a good answer";
}

TEST_F(ClientTest, ReportsAnErrorThatComesAfterPartOfTheObjects) {
    connect();
    const std::string body = support::xml::Message(
        "1", support::xml::Response("EnumerateInstances", support::xml::ReturnValue(NamedInstance("a"))));
    std::ostringstream answer;
    answer << "HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nTransfer-Encoding: chunked\r\n\r\n"
           << std::hex << body.size() << "\r\n"
           << body << "\r\n0\r\nCIMStatusCode: 1\r\nCIMStatusCodeDescription: out%20of%20memory\r\n\r\n";
    server_.AnswerNextWith(answer.str());
    EXPECT_EQ(MessageOf<CIMException>([&] { client_.enumerateInstances(kNamespace, CIMName("CIM_Thing")); }),
              "CIM_ERR_FAILED: out of memory (" + server_.Address() + ":5988: EnumerateInstances)");
}

TEST_F(ClientTest, ReportsAnHttpErrorWithItsDetails) {
    connect();
    server_.AnswerNextWith("HTTP/1.1 400 Bad Request\r\nCIMError: header-mismatch\r\nPGErrorDetail: a%20b\r\n\r\n");
    try {
        getThing();
        FAIL() << "no exception";
    } catch (const CIMClientHTTPErrorException& error) {
        EXPECT_EQ(error.getCode(), 400U);
        EXPECT_EQ(Text(error.getCIMError()), "header-mismatch");
        EXPECT_EQ(Text(error.getCIMErrorDetail()), "a b");
    }
}

// ---- Answers that are none

TEST_F(ClientTest, ReportsAnAnswerWithoutTheObject) {
    server_.Answer("GetClass", "CIM_Thing", "");
    server_.Answer("GetQualifier", "Key", "");
    connect();
    EXPECT_THROW(getThing(), CIMClientResponseException);
    EXPECT_THROW(client_.getQualifier(kNamespace, CIMName("Key")), CIMClientResponseException);
}

TEST_F(ClientTest, ReportsAnAnswerWithMoreOrOtherObjects) {
    connect();
    server_.Answer("GetClass", "CIM_Thing", std::string(kThing) + kThing);
    EXPECT_THROW(getThing(), CIMClientResponseException);
    server_.Answer("GetClass", "CIM_Thing", QualifierDeclaration("Key"));
    EXPECT_THROW(getThing(), CIMClientResponseException);
}

TEST_F(ClientTest, StartsAnewAfterAnyBrokenAnswer) {
    constexpr char kHead[] = "HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\n";
    const auto answer = [&](const std::string& body) {
        return kHead + ("Content-Length: " + std::to_string(body.size())) + "\r\n\r\n" + body;
    };
    connect();
    errorOf<CIMClientXmlException>(answer("<CIM><bad"));
    EXPECT_EQ(getThing().getPropertyCount(), 1U);
    errorOf<CIMClientXmlException>(answer(""));
    EXPECT_EQ(getThing().getPropertyCount(), 1U);
    errorOf<CIMClientMalformedHTTPException>("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(getThing().getPropertyCount(), 1U);
    errorOf<CIMClientMalformedHTTPException>(std::string(kHead) + "Content-Length: 10\r\n\r\n<CIM>");
    EXPECT_EQ(getThing().getPropertyCount(), 1U);
    errorOf<CIMClientMalformedHTTPException>("garbage\r\n\r\n");
    EXPECT_EQ(getThing().getPropertyCount(), 1U);
    EXPECT_EQ(server_.ConnectionCount(), 6U);
}

// ---- With a server that only the test's script drives

TEST(ClientConnection, OpensBeforeTheFirstOperation) {
    std::promise<void> accepted;
    support::ScriptedServer server([&](support::Connection& peer) {
        accepted.set_value();
        peer.WaitForPeerClose();
    });
    CIMClient client;
    client.connect(String(server.Address()), server.Listen(5988), "", "");
    EXPECT_EQ(accepted.get_future().wait_for(30s), std::future_status::ready);
}

TEST(ClientTimeOut, ResetsTheConnectionSoThatTheNextOperationStartsAnew) {
    support::ScriptedServer server([](support::Connection& peer) {
        peer.ReadRequest();
        if (peer.Index() > 0) {
            peer.Write("HTTP/1.1 500 Awake\r\n\r\n");
        }
        peer.WaitForPeerClose();
    });
    CIMClient client;
    client.connect(String(server.Address()), server.Listen(5988), "", "");
    client.setTimeout(kShort);
    EXPECT_THROW(client.getClass(kNamespace, CIMName("A")), ConnectionTimeoutException);
    client.setTimeout(kAmple);
    EXPECT_THROW(client.getClass(kNamespace, CIMName("A")), CIMClientHTTPErrorException);
    EXPECT_EQ(server.ConnectionCount(), 2U);
}

} // namespace
