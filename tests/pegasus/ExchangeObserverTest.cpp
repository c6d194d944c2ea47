#include "Texts.h"
#include "support/CimServer.h"
#include "support/CimXml.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/ExchangeObserver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using support::CimServer;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const CIMNamespaceName kNamespace("root/cimv2");
const CIMName kThing("CIM_Thing");

constexpr char kThingXml[] = "<CLASS NAME=\"CIM_Thing\"></CLASS>";

/// Keeps what it is told: a line for each call, and the bytes.
class Notes : public ExchangeObserver {
  public:
    std::vector<std::string> calls;
    std::string requestHeads;
    std::string requestBody; ///< of the last one
    std::string answerHeads;
    std::string answerBody; ///< of all of them
    std::string trailers;
    std::string failure; ///< the last one
    Time last;

    void onConnecting(const String& server, Boolean encrypted, Time time) override {
        note("connecting to " + std::string(server.view()) + (encrypted ? ", encrypted" : ""), time);
    }
    void onRequest(std::string_view head, std::string_view body, Time time) override {
        note("request", time);
        requestHeads += head;
        requestBody = body;
    }
    void onAnswerHead(std::string_view head, Time time) override {
        note("head", time);
        answerHeads += head;
    }
    void onAnswerBody(std::string_view part) override {
        if (calls.back() != "body") {
            calls.emplace_back("body");
        }
        answerBody += part;
    }
    void onAnswerEnd(std::string_view itsTrailers, Time time) override {
        note("end", time);
        trailers += itsTrailers;
    }
    void onFailure(const String& message, Time time) override {
        note("failure", time);
        failure = message.view();
    }

  private:
    void note(const std::string& call, Time time) {
        EXPECT_GE(time, last);
        last = time;
        calls.push_back(call);
    }
};

class ExchangeObserverTest : public ::testing::Test {
  protected:
    void SetUp() override {
        port_ = server_.Listen(5988);
        server_.Answer("GetClass", "CIM_Thing", kThingXml);
        client_.setExchangeObserver(notes_);
    }

    void connect(const char* user = "", const char* password = "") {
        client_.connect(String(server_.Address()), port_, user, password);
    }
    CIMClass getThing() { return client_.getClass(kNamespace, kThing); }
    std::string connecting() const { return "connecting to " + server_.Address() + ":5988"; }

    CimServer server_;
    std::uint16_t port_ = 0;
    const std::shared_ptr<Notes> notes_ = std::make_shared<Notes>();
    CIMClient client_;
};

TEST_F(ExchangeObserverTest, SeesAnOperationFromItsConnectionToTheEndOfTheAnswer) {
    connect();
    getThing();
    EXPECT_THAT(notes_->calls, ElementsAre(connecting(), "request", "head", "body", "end"));
    EXPECT_THAT(notes_->requestHeads, AllOf(StartsWith("POST /cimom HTTP/1.1\r\nHost: " + server_.Address()),
                                            HasSubstr("CIMMethod: GetClass\r\n"), EndsWith("\r\n\r\n")));
    EXPECT_EQ(notes_->requestBody, server_.Calls().back().http.body);
    EXPECT_THAT(notes_->answerHeads, AllOf(StartsWith("HTTP/1.1 200 "), EndsWith("\r\n\r\n")));
    EXPECT_THAT(notes_->answerBody, AllOf(StartsWith("<?xml"), HasSubstr(kThingXml)));
}

TEST_F(ExchangeObserverTest, SeesTheContentOfChunksWithoutTheirFramesAndTheTrailers) {
    server_.Fail("GetClass", "CIM_Thing", CIM_ERR_FAILED, "no", CimServer::ErrorPlace::kTrailers);
    connect();
    EXPECT_THROW(getThing(), CIMException);
    EXPECT_THAT(notes_->answerHeads, HasSubstr("chunked"));
    EXPECT_THAT(notes_->answerBody, AllOf(StartsWith("<?xml"), Not(HasSubstr("\r\n0\r\n"))));
    EXPECT_THAT(notes_->trailers, HasSubstr("CIMStatusCode: 1\r\n"));
    EXPECT_EQ(notes_->calls.back(), "end") << "an error that the server reports is a good answer";
}

TEST_F(ExchangeObserverTest, SeesNoCredentials) {
    server_.RequireUser("reader", "secret");
    connect("reader", "secret");
    getThing();
    EXPECT_THAT(notes_->calls.size(), 8U) << "connection, refused request, request";
    EXPECT_THAT(notes_->requestHeads, HasSubstr("Authorization: (left out)\r\n"));
    EXPECT_THAT(notes_->requestHeads, Not(HasSubstr("Basic")));
    EXPECT_THAT(server_.Calls().back().http.Header("Authorization"), HasSubstr("Basic"));
}

TEST_F(ExchangeObserverTest, SeesNoCookies) {
    server_.AnswerNextWith(
        "HTTP/1.1 500 No\r\nset-cookie: a=\r\n secret\r\nX-Other: shown\r\nContent-Length: 0\r\n\r\n");
    connect();
    EXPECT_THROW(getThing(), CIMClientHTTPErrorException);
    EXPECT_THAT(notes_->answerHeads, Not(HasSubstr("secret")));
    EXPECT_THAT(notes_->answerHeads, HasSubstr("X-Other: shown\r\n"));
}

TEST_F(ExchangeObserverTest, SeesWhyThereIsNoConnection) {
    EXPECT_THROW(client_.connect(String(server_.Address()), 5989, "", ""), CannotConnectException);
    EXPECT_THAT(notes_->calls, ElementsAre("connecting to " + server_.Address() + ":5989", "failure"));
    EXPECT_THAT(notes_->failure, HasSubstr(":5989"));
}

TEST_F(ExchangeObserverTest, SeesWhatIsNoHttp) {
    server_.AnswerNextWith("220 mail.example ready\r\n");
    connect();
    EXPECT_THROW(getThing(), CIMClientMalformedHTTPException);
    EXPECT_EQ(notes_->answerHeads, "220 mail.example ready\r\n");
    EXPECT_EQ(notes_->calls.back(), "failure");
}

TEST_F(ExchangeObserverTest, SeesAllOfAnAnswerThatCannotBeRead) {
    const std::string body = "<nonsense>" + std::string(600000, ' ') + "the end</nonsense>";
    server_.AnswerNextWith("HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nContent-Length: " +
                           std::to_string(body.size()) + "\r\n\r\n" + body);
    connect();
    const std::string error = MessageOf<CIMClientXmlException>([&] { getThing(); });
    EXPECT_EQ(notes_->answerBody.size(), body.size());
    EXPECT_THAT(notes_->answerBody, EndsWith("the end</nonsense>"));
    EXPECT_THAT(notes_->calls, ElementsAre(connecting(), "request", "head", "body", "failure"));
    EXPECT_THAT(error, EndsWith(notes_->failure)); // server and operation stand before it
}

TEST_F(ExchangeObserverTest, SeesTheBodyOfAnAnswerThatIsRefusedForItsHead) {
    server_.AnswerNextWith("HTTP/1.1 500 No\r\nContent-Length: 6\r\n\r\n<html>");
    connect();
    const std::string error = MessageOf<CIMClientHTTPErrorException>([&] { getThing(); });
    EXPECT_THAT(notes_->calls, ElementsAre(connecting(), "request", "head", "body", "failure"));
    EXPECT_EQ(notes_->answerBody, "<html>");
    EXPECT_EQ(notes_->failure, error);
}

TEST_F(ExchangeObserverTest, IsAskedNoLongerWhenAnotherTakesItsPlace) {
    connect();
    client_.setExchangeObserver(nullptr);
    getThing();
    EXPECT_THAT(notes_->calls, ElementsAre(connecting()));
    client_.setExchangeObserver(notes_);
    getThing();
    EXPECT_THAT(notes_->calls, ElementsAre(connecting(), "request", "head", "body", "end"));
    EXPECT_THAT(notes_->answerHeads, StartsWith("HTTP/1.1 200 ")) << "also over a connection that stood before";
}

// --- What operations take

class Figures : public ClientOpPerformanceDataHandler {
  public:
    std::vector<ClientOpPerformanceData> all;
    void handleClientOpPerformanceData(const ClientOpPerformanceData& data) override { all.push_back(data); }
};

std::string AnswerTo(const std::string& header, const std::string& method, const std::string& content) {
    const std::string body = support::xml::Message("1", support::xml::Response(method, content));
    return "HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\n" + header +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

TEST_F(ExchangeObserverTest, TheHandlerIsToldWhatAnOperationTook) {
    Figures figures;
    client_.registerClientOpPerformanceDataHandler(figures);
    connect();
    getThing();
    ASSERT_EQ(figures.all.size(), 1U);
    const ClientOpPerformanceData& data = figures.all.front();
    EXPECT_STREQ(cimOperationTypeToString(data.operationType), "GetClass");
    EXPECT_EQ(data.requestSize, notes_->requestBody.size());
    EXPECT_EQ(data.responseSize, notes_->answerBody.size());
    EXPECT_GT(data.roundTripTime, 0U);
    EXPECT_FALSE(data.serverTimeKnown);
    client_.deregisterClientOpPerformanceDataHandler();
    getThing();
    EXPECT_EQ(figures.all.size(), 1U);
}

TEST_F(ExchangeObserverTest, TheHandlerIsToldTheServersTimeAlsoOfAnErrorThatItReports) {
    Figures figures;
    client_.registerClientOpPerformanceDataHandler(figures);
    server_.AnswerNextWith(
        AnswerTo("WBEMServerResponseTime: 1234\r\n", "GetClass", "<ERROR CODE=\"6\" DESCRIPTION=\"no\"/>"));
    connect();
    EXPECT_THROW(getThing(), CIMException);
    ASSERT_EQ(figures.all.size(), 1U);
    EXPECT_TRUE(figures.all.front().serverTimeKnown);
    EXPECT_EQ(figures.all.front().serverTime, 1234U);
}

/// Disconnects the client after an operation.
class Quitter : public ClientOpPerformanceDataHandler {
  public:
    explicit Quitter(CIMClient& client) : client_(client) {}
    void handleClientOpPerformanceData(const ClientOpPerformanceData& /*data*/) override { client_.disconnect(); }

  private:
    CIMClient& client_;
};

TEST_F(ExchangeObserverTest, TheHandlerMayDisconnectAndTheErrorStillNamesTheServer) {
    Quitter quitter(client_);
    client_.registerClientOpPerformanceDataHandler(quitter);
    server_.AnswerNextWith(AnswerTo("", "GetClass", "<ERROR CODE=\"1\" DESCRIPTION=\": gone\"/>"));
    connect();
    EXPECT_EQ(MessageOf<CIMException>([&] { getThing(); }),
              "CIM_ERR_FAILED: : gone (" + server_.Address() + ":5988: GetClass)");
    connect();
    server_.AnswerNextWith(AnswerTo("", "GetClass", ""));
    EXPECT_THAT(MessageOf<CIMClientResponseException>([&] { getThing(); }), HasSubstr(":5988: GetClass: "));
}

TEST_F(ExchangeObserverTest, TheHandlerIsToldOfNoOperationWithoutAWholeAnswer) {
    Figures figures;
    client_.registerClientOpPerformanceDataHandler(figures);
    server_.AnswerNextWith("HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n");
    connect();
    EXPECT_THROW(getThing(), CIMClientHTTPErrorException);
    EXPECT_TRUE(figures.all.empty());
}

// --- Languages

TEST_F(ExchangeObserverTest, LanguagesAreAskedForTheBestFirst) {
    AcceptLanguageList languages;
    languages.insert(LanguageTag("en"), 0.5F);
    languages.insert(LanguageTag("de-AT"), 1.0F);
    client_.setRequestAcceptLanguages(languages);
    connect();
    getThing();
    EXPECT_EQ(server_.Calls().back().http.Header("Accept-Language"), "de-AT, en;q=0.500");
    EXPECT_EQ(client_.getRequestAcceptLanguages().size(), 2U);
}

TEST_F(ExchangeObserverTest, AnErrorKnowsItsLanguages) {
    server_.AnswerNextWith(AnswerTo("Content-Language: de, x y\r\n", "GetClass", "<ERROR CODE=\"6\"/>"));
    connect();
    try {
        getThing();
        FAIL() << "there is no class";
    } catch (const CIMException& error) {
        ASSERT_EQ(error.getContentLanguages().size(), 1U);
        EXPECT_EQ(error.getContentLanguages().getLanguageTag(0), LanguageTag("DE"));
    }
}

TEST_F(ExchangeObserverTest, AnErrorHasTheInstancesThatTheServerSendsWithIt) {
    server_.AnswerNextWith(AnswerTo("", "GetClass",
                                    "<ERROR CODE=\"1\" DESCRIPTION=\"x\"><INSTANCE CLASSNAME=\"CIM_Error\">"
                                    "</INSTANCE></ERROR>"));
    connect();
    try {
        getThing();
        FAIL() << "the server refused";
    } catch (const CIMException& error) {
        ASSERT_EQ(error.getErrorCount(), 1U);
        EXPECT_EQ(error.getError(0).getClassName(), CIMName("CIM_Error"));
        EXPECT_THROW(error.getError(1), IndexOutOfBoundsException);
    }
}

} // namespace
