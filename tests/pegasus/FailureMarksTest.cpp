// What failures mean beyond their type: the marks that they bear, seen by a program that is linked to the library.

#include "support/CimXml.h"
#include "support/LoopbackAddress.h"
#include "support/NameService.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/FailureMarks.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

namespace {

using namespace Pegasus;
using support::Connection;
using support::ScriptedServer;

constexpr const char* kHead = "HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\n";

/// The name of an exception's documented type and of each of its marks.
std::string meaningOf(const Exception& error) {
    std::string meaning = "other";
    if (dynamic_cast<const CIMClientXmlException*>(&error) != nullptr) {
        meaning = "xml";
    }
    if (dynamic_cast<const CIMClientMalformedHTTPException*>(&error) != nullptr) {
        meaning = "http";
    }
    if (dynamic_cast<const CannotConnectException*>(&error) != nullptr) {
        meaning = "connect";
    }
    meaning += dynamic_cast<const ExceedsLimit*>(&error) != nullptr ? " ExceedsLimit" : "";
    meaning += dynamic_cast<const PeerSpeaksTls*>(&error) != nullptr ? " PeerSpeaksTls" : "";
    meaning += dynamic_cast<const ClosedWithoutAnswer*>(&error) != nullptr ? " ClosedWithoutAnswer" : "";
    return meaning;
}

/// What an operation ends in whose server is at a port of this process's address.
std::string meaningAt(std::uint16_t port) {
    try {
        CIMClient client;
        client.setTimeout(120000);
        client.connect(String(support::LoopbackAddress()), port, "", "");
        client.enumerateInstances(CIMNamespaceName("root/cimv2"), CIMName("A"));
        return "";
    } catch (const Exception& error) {
        return meaningOf(error);
    }
}

/// What an enumeration means whose server answers with these bytes and closes the connection.
std::string meaningOfAnswer(const std::string& bytes) {
    ScriptedServer server([&](Connection& peer) {
        if (peer.ReadRequest()) {
            peer.Write(bytes);
        }
    });
    return meaningAt(server.Listen(0));
}

/// What an enumeration means whose answer has this instead of an instance. (The first request of a client has the
/// ID 1.)
std::string meaningOfObject(const std::string& object) {
    const std::string body =
        support::xml::BareMessage("1", support::xml::Response("EnumerateInstances", support::xml::ReturnValue(object)));
    return meaningOfAnswer(kHead + ("Content-Length: " + std::to_string(body.size())) + "\r\n\r\n" + body);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

std::string instanceWith(const std::string& content) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"A\"/><INSTANCE CLASSNAME=\"A\">" + content +
           "</INSTANCE></VALUE.NAMEDINSTANCE>";
}

std::string nestedReferences(std::size_t count) {
    const std::string begin = "<INSTANCENAME CLASSNAME=\"A\"><VALUE.REFERENCE>";
    const std::string end = "</VALUE.REFERENCE></INSTANCENAME>";
    return "<PROPERTY.REFERENCE NAME=\"R\"><VALUE.REFERENCE>" + repeated(begin, count) +
           "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE>\"</KEYVALUE></KEYBINDING></INSTANCENAME>" +
           repeated(end, count) + "</VALUE.REFERENCE></PROPERTY.REFERENCE>";
}

/// An instance within an instance, within an instance.
std::string nestedInstances(std::size_t count) {
    std::string object = "<INSTANCE CLASSNAME='A'/>";
    for (std::size_t i = 0; i < count; ++i) {
        std::string escaped;
        for (const char c : object) {
            escaped += c == '<' ? "&lt;" : c == '&' ? "&amp;" : std::string(1, c);
        }
        object = "<INSTANCE CLASSNAME='A'><PROPERTY NAME='P' TYPE='string' EmbeddedObject='instance'><VALUE>" +
                 escaped + "</VALUE></PROPERTY></INSTANCE>";
    }
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"A\"/>" + object + "</VALUE.NAMEDINSTANCE>";
}

TEST(FailureMarksTest, AnObjectThatIsTooLargeExceedsALimit) {
    EXPECT_EQ(meaningOfObject("<!--" + std::string(std::size_t{64} << 20U, 'x') + "-->"), "xml ExceedsLimit");
}

TEST(FailureMarksTest, AnObjectOfTooManyElementsExceedsALimit) {
    EXPECT_EQ(meaningOfObject(instanceWith(repeated("<!---->", std::size_t{2} << 20U))), "xml ExceedsLimit");
}

TEST(FailureMarksTest, ElementsThatAreNestedTooDeepExceedALimit) {
    EXPECT_EQ(meaningOfObject(instanceWith(nestedReferences(200))), "xml ExceedsLimit");
}

TEST(FailureMarksTest, ReferencesThatAreNestedTooDeepExceedALimit) {
    EXPECT_EQ(meaningOfObject(instanceWith(nestedReferences(40))), "xml ExceedsLimit");
}

TEST(FailureMarksTest, TooManyAttributesExceedALimit) {
    std::string attributes;
    for (int i = 0; i < 33; ++i) {
        attributes += " X" + std::to_string(i) + "=\"\"";
    }
    EXPECT_EQ(meaningOfObject("<VALUE.NAMEDINSTANCE" + attributes + "/>"), "xml ExceedsLimit");
}

TEST(FailureMarksTest, ObjectsThatAreEmbeddedTooDeepExceedALimit) {
    EXPECT_EQ(meaningOfObject(nestedInstances(8)), "");
    EXPECT_EQ(meaningOfObject(nestedInstances(9)), "xml ExceedsLimit");
}

TEST(FailureMarksTest, HeadersThatAreTooLongExceedALimit) {
    const std::string chunked = std::string(kHead) + "Transfer-Encoding: chunked\r\n\r\n";
    EXPECT_EQ(meaningOfAnswer(kHead + ("A: " + std::string(70000, 'x')) + "\r\n\r\n"), "http ExceedsLimit");
    EXPECT_EQ(meaningOfAnswer(kHead + repeated("A: b\r\n", 20000) + "\r\n"), "http ExceedsLimit");
    EXPECT_EQ(meaningOfAnswer(chunked + "5;" + std::string(200000, 'x')), "http ExceedsLimit");
}

TEST(FailureMarksTest, AnErrorWithinTheLimitsIsNotMarkedAsExceedingThem) {
    EXPECT_EQ(meaningOfObject(instanceWith("<PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE>256</VALUE></PROPERTY>")),
              "xml");
    EXPECT_EQ(meaningOfAnswer("HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n"), "http");
}

TEST(FailureMarksTest, AServerThatAnswersWithATlsAlertSpeaksTls) {
    EXPECT_EQ(meaningOfAnswer(std::string("\x15\x03\x01\x00\x02\x02\x46", 7)), "http PeerSpeaksTls");
}

TEST(FailureMarksTest, AServerThatClosesAfterTheRequestHasGivenNoAnswer) {
    ScriptedServer closing([](Connection& peer) { peer.ReadRequest(); });
    EXPECT_EQ(meaningAt(closing.Listen(0)), "connect ClosedWithoutAnswer");
    ScriptedServer resetting([](Connection& peer) {
        peer.ReadRequest();
        peer.Reset();
    });
    EXPECT_EQ(meaningAt(resetting.Listen(0)), "connect ClosedWithoutAnswer");
}

TEST(FailureMarksTest, AClosedPortAndAnUnknownHostAreMarked) {
    support::NameService names;
    names.Answer("no-such-host.invalid", {});
    CIMClient client;
    EXPECT_THROW(
        try { client.connect("no-such-host.invalid", 5988, "", ""); } catch (const InvalidLocatorException& error) {
            EXPECT_NE(dynamic_cast<const UnknownHost*>(&error), nullptr);
            throw;
        },
        InvalidLocatorException);
    EXPECT_THROW(
        try {
            client.connect(String(support::LoopbackAddress()), 1, "", "");
        } catch (const CannotConnectException& error) {
            EXPECT_NE(dynamic_cast<const PortClosed*>(&error), nullptr);
            throw;
        },
        CannotConnectException);
}

TEST(FailureMarksTest, ARefusedConnectionIsNotMarked) {
    ScriptedServer server([](Connection&) {});
    const std::uint16_t port = server.Listen(0);
    server.Stop();
    EXPECT_EQ(meaningAt(port), "connect");
}

/// The server's error is that of an answer to the first request of a client.
std::string errorAnswer() {
    const std::string body = support::xml::BareMessage(
        "1",
        support::xml::Response("EnumerateInstances",
                               "<ERROR CODE=\"6\" DESCRIPTION=\"no A\"><INSTANCE CLASSNAME=\"CIM_Error\"/></ERROR>"));
    return kHead + ("Content-Language: de\r\nContent-Length: " + std::to_string(body.size())) + "\r\n\r\n" + body;
}

TEST(FailureMarksTest, AServersErrorNamesTheServerAndTheOperationAndSaysWhatTheServerSaid) {
    ScriptedServer server([](Connection& peer) {
        peer.ReadRequest();
        peer.Write(errorAnswer());
    });
    const std::uint16_t port = server.Listen(0);
    const std::string endpoint = std::string(support::LoopbackAddress()) + ":" + std::to_string(port);
    CIMClient client;
    client.setTimeout(120000);
    client.connect(String(support::LoopbackAddress()), port, "", "");
    try {
        client.enumerateInstances(CIMNamespaceName("root/cimv2"), CIMName("A"));
        FAIL() << "no exception";
    } catch (const CIMException& error) {
        EXPECT_EQ(error.getMessage(), String("CIM_ERR_NOT_FOUND: no A (" + endpoint + ": EnumerateInstances)"));
        EXPECT_EQ(error.getCode(), CIM_ERR_NOT_FOUND);
        EXPECT_EQ(error.getErrorCount(), 1U);
        EXPECT_EQ(error.getContentLanguages().size(), 1U);
        const auto* const refused = dynamic_cast<const RefusedByServer*>(&error);
        ASSERT_NE(refused, nullptr);
        EXPECT_EQ(refused->getServer(), String(endpoint));
        EXPECT_EQ(refused->getStatement(), String("CIM_ERR_NOT_FOUND: no A"));
    }
}

} // namespace
