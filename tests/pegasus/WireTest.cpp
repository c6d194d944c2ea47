// The client against servers that answer oddly, wrongly, late or not at all.

#include "Texts.h"
#include "support/CimServer.h"
#include "support/CimXml.h"
#include "support/NameService.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Client/CIMClient.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace Pegasus;
using namespace std::chrono_literals;
using support::CimServer;
using support::Connection;
using support::HttpRequest;
using support::ScriptedServer;
using support::TestCertificate;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr Uint32 kShort = 100;   // milliseconds, for what must time out
constexpr Uint32 kAmple = 30000; // for what must succeed

const CIMNamespaceName kNamespace("root/cimv2");

constexpr char kNames[] = "<IRETURNVALUE><CLASSNAME NAME=\"A\"/><CLASSNAME NAME=\"B\"/></IRETURNVALUE>";

using support::xml::Message;

std::string IdOf(const HttpRequest& request) {
    constexpr char kBegin[] = "<MESSAGE ID=\"";
    const std::size_t begin = request.body.find(kBegin) + sizeof kBegin - 1;
    return request.body.substr(begin, request.body.find('"', begin) - begin);
}

/// What stands inside the MESSAGE of an answer.
std::string Response(const std::string& content, const std::string& method = "EnumerateClassNames") {
    return support::xml::Response(method, content);
}

constexpr char kHead[] = "HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\n";

std::string WithLength(const std::string& body) {
    return kHead + ("Content-Length: " + std::to_string(body.size())) + "\r\n\r\n" + body;
}

std::string Chunked(const std::string& body, const std::string& trailers) {
    std::ostringstream answer;
    answer << kHead << "Transfer-Encoding: chunked\r\n\r\n"
           << std::hex << body.size() << "\r\n"
           << body << "\r\n0\r\n"
           << trailers << "\r\n";
    return answer.str();
}

/// The good answer to a request.
std::string GoodAnswer(const HttpRequest& request) { return WithLength(Message(IdOf(request), Response(kNames))); }

/// Answers every further request well.
void ServeWell(Connection& peer) {
    while (const auto request = peer.ReadRequest()) {
        if (!peer.Write(GoodAnswer(*request))) {
            return;
        }
    }
}

/// A client of a scripted server.
class WireTest : public ::testing::Test {
  protected:
    /// Starts a server and connects to it.
    void serve(ScriptedServer::Script script) {
        client_.disconnect();
        client_.setTimeout(kAmple);
        server_ = std::make_unique<ScriptedServer>(std::move(script));
        const std::uint16_t port = server_->Listen(5988);
        endpoint_ = server_->Address() + (":" + std::to_string(port));
        client_.connect(String(server_->Address()), port, "", "");
    }

    /// Serves like serve(): this answer to the first request, and good ones to all others. Closes the connection after
    /// the first where told so.
    void serveFirst(std::function<std::string(const HttpRequest&)> answer, bool closes = false) {
        answered_ = std::make_shared<std::atomic<bool>>(false);
        serve([answer = std::move(answer), closes, answered = answered_](Connection& peer) {
            if (!answered->exchange(true)) {
                const auto request = peer.ReadRequest();
                if (!request || !peer.Write(answer(*request)) || closes) {
                    return;
                }
            }
            ServeWell(peer);
        });
    }

    Uint32 countNames() { return client_.enumerateClassNames(kNamespace).size(); }

    CIMClient client_;
    std::unique_ptr<ScriptedServer> server_;
    std::string endpoint_; ///< the server's address and port

  private:
    std::shared_ptr<std::atomic<bool>> answered_;
};

// ---- The server's error

struct ServerError {
    std::string content; ///< of IMETHODRESPONSE
    std::string trailers;
    CIMStatusCode code;
    const char* message;
};

TEST_F(WireTest, ReportsTheErrorInTheTrailersWhateverTheBodySays) {
    const std::string error = "<ERROR CODE=\"2\" DESCRIPTION=\"from the body\"/>";
    const std::string status = "CIMStatusCode: 6\r\n";
    const std::string described = status + "CIMStatusCodeDescription: ";
    const std::vector<ServerError> errors = {
        {"", status, CIM_ERR_NOT_FOUND, "CIM_ERR_NOT_FOUND: the server says no more than this"},
        {"", described + "no%20%C3%A4%2f%E2%82%AC\r\n", CIM_ERR_NOT_FOUND,
         "CIM_ERR_NOT_FOUND: no \xC3\xA4/\xE2\x82\xAC"},
        {"", described + "CIM_ERR_NOT_FOUND%3A%20A\r\n", CIM_ERR_NOT_FOUND, "CIM_ERR_NOT_FOUND: A"},
        {"", described + "100%, a+b %4 %zz\r\n", CIM_ERR_NOT_FOUND, "CIM_ERR_NOT_FOUND: 100%, a+b %4 %zz"},
        {"", "cimstatuscode:6\r\nCIMSTATUSCODEDESCRIPTION:\ta\r\n", CIM_ERR_NOT_FOUND, "CIM_ERR_NOT_FOUND: a"},
        {"", "X: y\r\nCIMStatusCodeDescription: a\r\nCIMStatusCode:  006 \r\n", CIM_ERR_NOT_FOUND,
         "CIM_ERR_NOT_FOUND: a"},
        {"", "CIMStatusCode: 28\r\n", CIM_ERR_SERVER_IS_SHUTTING_DOWN,
         "CIM_ERR_SERVER_IS_SHUTTING_DOWN: the server says no more than this"},
        {"", "CIMStatusCode: 29\r\nCIMStatusCodeDescription: new\r\n", CIM_ERR_FAILED,
         "CIM_ERR_FAILED: unknown status code 29: new"},
        {"<IRETURNVALUE/>", described + "a\r\n", CIM_ERR_NOT_FOUND, "CIM_ERR_NOT_FOUND: a"},
        {kNames, described + "a\r\n", CIM_ERR_NOT_FOUND, "CIM_ERR_NOT_FOUND: a"},
        {error, described + "a\r\n", CIM_ERR_NOT_FOUND, "CIM_ERR_NOT_FOUND: a"},
        {error, "", CIM_ERR_ACCESS_DENIED, "CIM_ERR_ACCESS_DENIED: from the body"},
        {error, "CIMStatusCode: 0\r\n", CIM_ERR_ACCESS_DENIED, "CIM_ERR_ACCESS_DENIED: from the body"},
        {kNames + error, "", CIM_ERR_ACCESS_DENIED, "CIM_ERR_ACCESS_DENIED: from the body"},
    };
    for (const ServerError& expected : errors) {
        SCOPED_TRACE(expected.content + expected.trailers);
        serveFirst([&](const HttpRequest& request) {
            return Chunked(Message(IdOf(request), Response(expected.content)), expected.trailers);
        });
        try {
            countNames();
            ADD_FAILURE() << "no exception";
        } catch (const CIMException& errorThrown) {
            EXPECT_EQ(errorThrown.getCode(), expected.code);
            EXPECT_EQ(Text(errorThrown.getMessage()), expected.message + (" (" + endpoint_ + ": EnumerateClassNames)"));
        }
        EXPECT_EQ(countNames(), 2U);
        EXPECT_EQ(server_->ConnectionCount(), 1U) << "such an error is a good answer";
    }
}

TEST_F(WireTest, ReportsTheErrorInTheTrailersOfABodyThatTheServerGaveUp) {
    serveFirst([](const HttpRequest& request) {
        const std::string body = Message(IdOf(request), Response(kNames));
        return Chunked(body.substr(0, body.find("B\"/>")), "CIMStatusCode: 1\r\nCIMStatusCodeDescription: oops\r\n");
    });
    EXPECT_EQ(MessageOf<CIMException>([&] { countNames(); }),
              "CIM_ERR_FAILED: oops (" + endpoint_ + ": EnumerateClassNames)");
    EXPECT_EQ(countNames(), 2U);
}

TEST_F(WireTest, RefusesAStatusInTheTrailersThatIsNone) {
    for (const char* status : {"", "six", "-6", "6 7", "0x6", "4294967296"}) {
        serveFirst([status](const HttpRequest& request) {
            return Chunked(Message(IdOf(request), Response("")), std::string("CIMStatusCode: ") + status + "\r\n");
        });
        EXPECT_THAT(MessageOf<CIMClientMalformedHTTPException>([&] { countNames(); }), HasSubstr("CIMStatusCode"))
            << status;
        EXPECT_EQ(countNames(), 2U);
    }
}

// ---- HTTP's errors

TEST_F(WireTest, ReportsEveryHttpErrorAndGoesOnAfterIt) {
    const std::vector<std::pair<std::string, std::string>> bodies = {
        {"", ""}, // until the connection ends
        {"Content-Length: 0\r\n", ""},
        {"Content-Type: text/html\r\nContent-Length: 20\r\n", "<html><body/></html>"},
        {"Content-Length: 20\r\nConnection: close\r\n", "<html><body/></html>"},
        {"Transfer-Encoding: chunked\r\n", "5\r\nsorry\r\n0\r\nCIMStatusCode: 1\r\n\r\n"},
        {"Content-Length: 1000\r\n", "cut off"},
    };
    for (const unsigned status : {201U, 204U, 206U, 300U, 301U, 302U, 304U, 307U, 400U, 401U, 403U,
                                  404U, 405U, 407U, 408U, 413U, 500U, 501U, 502U, 503U, 599U, 999U}) {
        for (const auto& [fields, body] : bodies) {
            std::string answer = "HTTP/1.1 " + std::to_string(status);
            answer.append(" Reason\r\nLocation: http://192.0.2.1/\r\nCIMOperation: MethodResponse\r\n");
            answer.append(fields).append("\r\n").append(body);
            serveFirst([answer](const HttpRequest&) { return answer; }, true);
            try {
                countNames();
                ADD_FAILURE() << "no exception: " << answer;
            } catch (const CIMClientHTTPErrorException& error) {
                EXPECT_EQ(error.getCode(), status);
                EXPECT_EQ(Text(error.getMessage()), "HTTP error " + std::to_string(status) + " Reason from " +
                                                        endpoint_ +
                                                        (status == 401 ? ", which names no scheme of logging in" : ""));
            }
            EXPECT_EQ(countNames(), 2U) << answer;
        }
    }
}

TEST_F(WireTest, GivesTheDetailsOfAnHttpErrorInPlainText) {
    serveFirst([](const HttpRequest&) {
        return "HTTP/1.1 400 Bad Request\r\ncimerror: unsupported%2Doperation\r\n"
               "PGERRORDETAIL: No%20method%20%22%C3%A4%22%0Ahere\r\nContent-Length: 0\r\n\r\n";
    });
    try {
        countNames();
        FAIL() << "no exception";
    } catch (const CIMClientHTTPErrorException& error) {
        EXPECT_EQ(error.getCode(), 400U);
        EXPECT_EQ(Text(error.getCIMError()), "unsupported-operation");
        EXPECT_EQ(Text(error.getCIMErrorDetail()), "No method \"\xC3\xA4\"\nhere");
        EXPECT_EQ(Text(error.getMessage()), "HTTP error 400 Bad Request from " + endpoint_ +
                                                ", CIMError: unsupported-operation, No method \"\xC3\xA4\"\nhere");
    }
    EXPECT_EQ(countNames(), 2U);
}

// ---- Messages

TEST_F(WireTest, AnErrorInAnAnswerNamesServerAndOperation) {
    const auto answer = [](const std::string& response) {
        return [response](const HttpRequest& request) { return WithLength(Message(IdOf(request), response)); };
    };
    const std::string begin = "EnumerateClassNames: ";
    serveFirst(answer(Response("<IRETURNVALUE><CLASSNAME NAME=\"no name\"/></IRETURNVALUE>")));
    EXPECT_THAT(
        MessageOf<CIMClientXmlException>([&] { countNames(); }),
        StartsWith(endpoint_ + ": " + begin + "the server's answer is not good CIM-XML: not a name: \"no name\""));
    serveFirst(answer(Response("<IRETURNVALUE><CLASS NAME=\"A\"/></IRETURNVALUE>")));
    EXPECT_THAT(MessageOf<CIMClientResponseException>([&] { countNames(); }),
                StartsWith(endpoint_ + ": " + begin + "the server's answer holds a class"));
}

TEST_F(WireTest, TlsIsSuggestedOnlyWhereTheServerHasNeverAnswered) {
    const std::string hint = "a port for TLS needs an SSLContext";
    serve([](Connection& peer) { peer.ReadRequest(); });
    EXPECT_THAT(MessageOf<CannotConnectException>([&] { countNames(); }), HasSubstr(hint));
    const auto first = std::make_shared<std::atomic<bool>>(true);
    serve([first](Connection& peer) {
        const auto request = peer.ReadRequest();
        if (request && first->exchange(false)) {
            peer.Write(WithLength(Message(IdOf(*request), Response(kNames))));
        }
    });
    EXPECT_EQ(countNames(), 2U);
    EXPECT_THAT(MessageOf<CannotConnectException>([&] { countNames(); }),
                AllOf(HasSubstr(endpoint_), Not(HasSubstr(hint))));
}

TEST_F(WireTest, LeniencyIsTheClientsChoiceAndItsFindingsAreTakenOnce) {
    const std::string bad = Response("<IRETURNVALUE><CLASSNAME NAME=\"A\"/></IRETURNVALUE><!-- \xE4 -->");
    const auto answer = [bad](const HttpRequest& request) { return WithLength(Message(IdOf(request), bad)); };
    serveFirst(answer);
    EXPECT_FALSE(client_.isLenient());
    EXPECT_THROW(countNames(), CIMClientXmlException);
    client_.setLenient(true);
    EXPECT_TRUE(client_.isLenient());
    serveFirst(answer);
    EXPECT_EQ(countNames(), 1U);
    EXPECT_EQ(client_.takeFindings().total, 1U);
    EXPECT_EQ(client_.takeFindings().total, 0U);
    client_.setLenient(false);
    serveFirst(answer);
    EXPECT_THROW(countNames(), CIMClientXmlException);
}

// ---- Credentials

TEST_F(WireTest, SendsCredentialsToNobodyWhoHasNotAsked) {
    CimServer asking;
    asking.Answer("EnumerateClassNames", "", "");
    asking.RequireUser("\xC3\xA4"
                       "da",
                       "p:\xE2\x82\xAC");
    const std::uint16_t askingPort = asking.Listen(5988);
    CimServer trusting;
    trusting.Answer("EnumerateClassNames", "", "");
    const std::uint16_t trustingPort = trusting.Listen(5989);

    client_.connect(String(asking.Address()), askingPort,
                    "\xC3\xA4"
                    "da",
                    "p:\xE2\x82\xAC");
    countNames();
    client_.disconnect();
    client_.connect(String(trusting.Address()), trustingPort,
                    "\xC3\xA4"
                    "da",
                    "p:\xE2\x82\xAC");
    countNames();
    countNames();
    EXPECT_EQ(asking.Calls().size(), 2U);
    EXPECT_TRUE(asking.Calls()[1].http.HasHeader("Authorization"));
    for (const CimServer::Call& call : trusting.Calls()) {
        EXPECT_FALSE(call.http.HasHeader("Authorization"));
    }
}

// ---- Answers to something else

TEST_F(WireTest, RefusesTheAnswerToAnotherRequest) {
    for (const std::string& responses : {Response(kNames, "EnumerateClasses"), Response(kNames, "enumerateclassnames"),
                                         std::string("<SIMPLERSP><METHODRESPONSE NAME=\"Start\"/></SIMPLERSP>")}) {
        serveFirst([&](const HttpRequest& request) { return WithLength(Message(IdOf(request), responses)); });
        EXPECT_THROW(countNames(), CIMClientResponseException) << responses;
        EXPECT_EQ(countNames(), 2U) << "over a new connection";
        EXPECT_EQ(server_->ConnectionCount(), 2U);
    }
    for (const char* id : {"", "0", "4711", " 1", "1 ", "01"}) {
        serveFirst([&](const HttpRequest&) { return WithLength(Message(id, Response(kNames))); });
        EXPECT_THROW(countNames(), CIMClientResponseException) << id;
        EXPECT_EQ(countNames(), 2U);
    }
}

TEST_F(WireTest, RefusesAMessageWithoutOneSimpleResponse) {
    const std::string response = Response(kNames);
    const std::string two = response + response;
    for (const std::string& responses :
         {std::string(), two, "<MULTIRSP>" + two + "</MULTIRSP>", std::string("<SIMPLERSP/>"),
          std::string("<SIMPLEREQ/>"), std::string("<SIMPLEEXPRSP/>"), "<SIMPLERSP>" + response + "</SIMPLERSP>"}) {
        serveFirst([&](const HttpRequest& request) { return WithLength(Message(IdOf(request), responses)); });
        EXPECT_THROW(countNames(), CIMClientXmlException) << responses;
        EXPECT_EQ(countNames(), 2U);
    }
}

TEST_F(WireTest, ClosesTheConnectionAtOnceAfterAnAnswerThatIsNoGood) {
    const std::vector<std::string> answers = {
        "HTTP/1.1 500 Internal Server Error\r\nContent-Length: 1000\r\n\r\n", // its body never comes
        "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n",
        WithLength("<CIM/>"),
        WithLength("<CIM>"),
        WithLength("<bad"),
    };
    for (const std::string& answer : answers) {
        std::promise<void> closed;
        serve([&](Connection& peer) {
            peer.ReadRequest();
            peer.Write(answer);
            peer.WaitForPeerClose();
            closed.set_value();
        });
        EXPECT_THROW(countNames(), Exception);
        EXPECT_EQ(closed.get_future().wait_for(30s), std::future_status::ready) << answer;
    }
}

// ---- Connections that end

TEST_F(WireTest, GoesOnAfterAnAnswerThatBreaksOffAtAnyByte) {
    // The first request is numbered 1; a client of its own for each keeps it so.
    for (const std::string& answer : {WithLength(Message("1", Response(kNames))),
                                      Chunked(Message("1", Response(kNames)), "CIMStatusCode: 1\r\n")}) {
        for (std::size_t size = 1; size < answer.size(); size += size < 150 || size + 40 > answer.size() ? 1 : 7) {
            CIMClient client;
            ScriptedServer server([begin = answer.substr(0, size)](Connection& peer) {
                if (peer.Index() > 0) {
                    ServeWell(peer);
                } else if (peer.ReadRequest()) {
                    peer.Write(begin);
                }
            });
            client.connect(String(server.Address()), server.Listen(5988), "", "");
            EXPECT_THROW(client.enumerateClassNames(kNamespace), CIMClientMalformedHTTPException) << size;
            EXPECT_EQ(client.enumerateClassNames(kNamespace).size(), 2U) << size;
        }
    }
}

// ---- Time

using Misbehaviour = std::function<void(Connection&, const HttpRequest&)>;

Misbehaviour Stops(std::function<std::string(const std::string& answer)> part) {
    return [part = std::move(part)](Connection& peer, const HttpRequest& request) {
        peer.Write(part(GoodAnswer(request)));
        peer.WaitForPeerClose();
    };
}

Misbehaviour Drips(const std::string& begin, const std::string& drop) {
    return [begin, drop](Connection& peer, const HttpRequest&) {
        for (bool goesOn = peer.Write(begin); goesOn; goesOn = peer.Write(drop)) {
            std::this_thread::sleep_for(5ms);
        }
    };
}

TEST_F(WireTest, GivesUpAtTheTimeOutAndThenStartsAnew) {
    const std::vector<std::pair<const char*, Misbehaviour>> misbehaviours = {
        {"silent", Stops([](const std::string&) { return ""; })},
        {"stops in the head", Stops([](const std::string& answer) { return answer.substr(0, 30); })},
        {"stops in the body", Stops([](const std::string& answer) { return answer.substr(0, answer.size() - 30); })},
        {"stops before the last byte",
         Stops([](const std::string& answer) { return answer.substr(0, answer.size() - 1); })},
        {"drips white space", Drips(std::string(kHead) + "\r\n", " ")},
        {"drips a comment", Drips(std::string(kHead) + "\r\n<!--", "x")},
        {"drips interim answers", Drips("", "HTTP/1.1 102 Processing\r\n\r\n")},
        {"challenges, then is silent", Stops([](const std::string&) {
             return "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\n\r\n";
         })},
        {"challenges, and never ends it", Stops([](const std::string&) {
             return "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 9\r\n\r\n";
         })},
    };
    for (const auto& [name, misbehave] : misbehaviours) {
        SCOPED_TRACE(name);
        ScriptedServer server([misbehave = misbehave](Connection& peer) {
            if (peer.Index() > 0) {
                ServeWell(peer);
            } else if (const auto request = peer.ReadRequest()) {
                misbehave(peer, *request);
            }
        });
        CIMClient client;
        client.connect(String(server.Address()), server.Listen(5988), "ada", "secret");
        client.setTimeout(kShort);
        EXPECT_THAT(MessageOf<ConnectionTimeoutException>([&] { client.enumerateClassNames(kNamespace); }),
                    StartsWith(server.Address() + ":5988: "));
        client.setTimeout(kAmple);
        EXPECT_EQ(client.enumerateClassNames(kNamespace).size(), 2U);
        EXPECT_EQ(server.ConnectionCount(), 2U);
    }
}

TEST_F(WireTest, CountsTheTimeOfAWholeOperationOnce) {
    // Each of the two parts comes in time, both together do not.
    serve([](Connection& peer) {
        if (const auto request = peer.ReadRequest()) {
            const std::string answer = GoodAnswer(*request);
            const std::size_t body = answer.find("<CIM");
            for (const std::string& part : {answer.substr(0, body), answer.substr(body)}) {
                std::this_thread::sleep_for(std::chrono::milliseconds(kShort * 3 / 4));
                peer.Write(part);
            }
        }
        peer.WaitForPeerClose();
    });
    client_.setTimeout(kShort);
    EXPECT_THROW(countNames(), ConnectionTimeoutException);
}

TEST_F(WireTest, GivesUpWhenTheServerClosesAndThenAcceptsInSilence) {
    serve([](Connection& peer) {
        const auto request = peer.ReadRequest();
        if (peer.Index() > 0) {
            peer.WaitForPeerClose();
        } else if (request) {
            peer.Write(GoodAnswer(*request));
        }
    });
    EXPECT_EQ(countNames(), 2U);
    client_.setTimeout(kShort);
    EXPECT_THROW(countNames(), ConnectionTimeoutException);
}

TEST_F(WireTest, HasNoTimeAtAllWithATimeOutOfZero) {
    serve(&ServeWell);
    client_.setTimeout(0);
    EXPECT_THROW(countNames(), ConnectionTimeoutException);
    client_.setTimeout(kAmple);
    EXPECT_EQ(countNames(), 2U);

    CIMClient other;
    other.setTimeout(0);
    EXPECT_THROW(other.connect(String(server_->Address()), 5988, "", ""), ConnectionTimeoutException);
    EXPECT_THROW(other.enumerateClassNames(kNamespace), NotConnectedException);
}

TEST_F(WireTest, WaitsAsLongAsItIsTold) {
    serve(&ServeWell);
    for (const Uint32 milliseconds : {Uint32{65'535'000}, Uint32{2'147'483'648}, ~Uint32{0}}) {
        client_.setTimeout(milliseconds);
        EXPECT_EQ(countNames(), 2U);
        CIMClient other;
        other.setTimeout(milliseconds);
        other.connect(String(server_->Address()), 5988, "", "");
    }
}

// ---- Where the server is

TEST_F(WireTest, FindsTheServerByNameAndByAddress) {
    for (const auto& [address, host, hostField] :
         {std::tuple("127.0.0.1", "localhost", "localhost"), std::tuple("127.0.0.1", "", "localhost"),
          std::tuple("127.0.0.1", "127.0.0.1", "127.0.0.1"), std::tuple("::1", "::1", "[::1]"),
          std::tuple("::1", "[::1]", "[::1]")}) {
        CimServer server{address};
        server.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"A\"/>");
        std::uint16_t port = 0;
        try {
            port = server.Listen(0);
        } catch (const std::system_error& error) {
            GTEST_SKIP() << "no IPv6 here: " << error.what();
        }
        CIMClient client;
        client.connect(host, port, "", "");
        EXPECT_EQ(client.enumerateClassNames(kNamespace).size(), 1U);
        EXPECT_EQ(server.Calls().front().http.Header("Host"), hostField + (":" + std::to_string(port)));
    }
}

TEST_F(WireTest, ReportsANameThatCannotBeResolved) {
    support::NameService names;
    for (const char* host : {"no-such-host.invalid", "not a name", "256.0.0.1.", "[", "a..b", "::g"}) {
        names.Answer(host, {});
        EXPECT_THAT(MessageOf<InvalidLocatorException>([&] { client_.connect(host, 5988, "", ""); }),
                    StartsWith("cannot resolve " + std::string(host) + ":5988: "));
    }
    EXPECT_THROW(countNames(), NotConnectedException);
}

// ---- TLS

TEST_F(WireTest, CanConnectAgainAfterARefusedCertificate) {
    auto options = TestCertificate::For(support::LoopbackAddress());
    options.expired = true;
    const TestCertificate certificate(options);
    ScriptedServer server(&ServeWell);
    const String address(server.Address());
    const std::uint16_t port = server.ListenTls(5989, certificate);
    EXPECT_THAT(MessageOf<SSLException>(
                    [&] { client_.connect(address, port, SSLContext(String(certificate.CaFile()), nullptr), "", ""); }),
                HasSubstr("certificate has expired"));
    EXPECT_THROW(countNames(), NotConnectedException);
    client_.connect(address, port, SSLContext(String(), nullptr), "", "");
    EXPECT_EQ(countNames(), 2U);
}

TEST_F(WireTest, GivesUpASilentTlsServerAtTheTimeOut) {
    ScriptedServer server([](Connection& peer) { peer.WaitForPeerClose(); });
    client_.setTimeout(kShort);
    EXPECT_THAT(MessageOf<ConnectionTimeoutException>([&] {
                    client_.connect(String(server.Address()), server.Listen(5989), SSLContext(String(), nullptr), "",
                                    "");
                }),
                HasSubstr("the TLS handshake was not complete within 100 ms"));
}

} // namespace
