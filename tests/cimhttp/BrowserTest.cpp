// What pages get from the program: who is let in, what is answered about servers, and what becomes of their failures.

#include "browse/Browser.h"

#include "CimXml.h"
#include "Fleet.h"
#include "ProgramRun.h"
#include "browse/BrowserGate.h"
#include "browse/OpenReadings.h"
#include "browse/PageFiles.h"
#include "connection/KnownServers.h"
#include "connection/Session.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"
#include "support/TestCertificate.h"
#include "web/WebServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <regex>
#include <set>
#include <thread>

using nlohmann::json;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr int kPort = 8989;

/// A text as a value in a query.
std::string Encoded(const std::string& text) { return httplib::detail::encode_query_param(text); }

std::string ContentOf(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

class BrowserTest : public testing::Test {
  protected:
    BrowserTest() {
        const std::string environment = fleet_.Environment();
        const std::size_t sign = environment.find('=');
        ::setenv(environment.substr(0, sign).c_str(), environment.substr(sign + 1).c_str(), 1);
        options_.plugin = CIMHTTP_PLUGIN;
    }

    /// Serves, and lets this test in.
    void Start() {
        plugin_.emplace(options_.plugin);
        browser_.emplace(*plugin_, options_, support::LoopbackAddress(), kPort);
        cimhttp::WebLimits limits;
        limits.bodyBytes = 1000;
        server_.emplace(
            cimhttp::WebPlace{support::LoopbackAddress(), kPort}, cimhttp::WebAccess(),
            [this](const cimhttp::WebRequest& request) { return browser_->Answer(request); }, limits);
        const auto entered = Get(browser_->Entrance());
        cookie_ = entered.get_header_value("Set-Cookie");
        cookie_ = cookie_.substr(0, cookie_.find(';'));
    }

    static std::string Here() { return support::LoopbackAddress() + ':' + std::to_string(kPort); }

    static httplib::Client Client() {
        httplib::Client client(support::LoopbackAddress(), kPort);
        client.set_url_encode(false);
        client.set_read_timeout(120);
        return client;
    }

    /// With the cookie, unless there are headers.
    httplib::Response Get(const std::string& path, httplib::Headers headers = {}) const {
        if (headers.empty() && !cookie_.empty()) {
            headers = {{"Cookie", cookie_}};
        }
        return Client().Get(path, headers).value();
    }

    httplib::Response Post(const std::string& path, const json& content, httplib::Headers headers = {}) const {
        if (headers.empty()) {
            headers = {{"Cookie", cookie_}, {"Origin", "http://" + Here()}};
        }
        return Client().Post(path, headers, content.dump(), "application/json").value();
    }

    json Ask(const std::string& path) const { return support::ParsedJson(Get("/api/servers" + path).body); }

    static std::vector<std::string> NamesIn(const json& list, const char* member = "name") {
        std::vector<std::string> names;
        for (const json& element : list) {
            names.push_back(element[member]);
        }
        return names;
    }

    Fleet fleet_;
    cimhttp::Options options_;
    std::optional<cimhttp::Plugin> plugin_;
    std::optional<cimhttp::Browser> browser_;
    std::optional<cimhttp::WebServer> server_;
    std::string cookie_;
};

// --- The gate --------------------------------------------------------------------------------------------------------

TEST_F(BrowserTest, TheAddressWithTheTokenLetsInOnce) {
    Start();
    EXPECT_EQ(Get("/").status, 200);
    const auto again = Get(browser_->Entrance());
    EXPECT_EQ(again.status, 403);
    EXPECT_EQ(again.get_header_value("Set-Cookie"), "");
    EXPECT_THAT(again.body, HasSubstr("once"));
}

TEST_F(BrowserTest, AWrongTokenLetsNobodyInAndUsesNothingUp) {
    Start();
    cimhttp::BrowserGate gate(support::LoopbackAddress(), kPort);
    const auto enter = [&](const std::string& token) {
        cimhttp::WebRequest request;
        request.path = "/enter";
        request.parameters = {{"token", token}};
        return gate.Enter(request, "/").status;
    };
    const std::string token = gate.Entrance().substr(gate.Entrance().find('=') + 1);
    EXPECT_EQ(token.size(), 32U);
    EXPECT_EQ(enter(""), 403U);
    EXPECT_EQ(enter(token.substr(1)), 403U);
    EXPECT_EQ(enter(token + '0'), 403U);
    EXPECT_EQ(enter(token), 200U);
    EXPECT_EQ(enter(token), 403U);
}

TEST_F(BrowserTest, TheCookieIsForThisServersOwnPagesAndNoScript) {
    plugin_.emplace(options_.plugin);
    cimhttp::BrowserGate gate("127.0.0.1", 1234);
    cimhttp::WebRequest request;
    request.parameters = {{"token", gate.Entrance().substr(gate.Entrance().find('=') + 1)}};
    const auto answer = gate.Enter(request, "/");
    ASSERT_EQ(answer.headers.size(), 1U);
    EXPECT_THAT(answer.headers.front().second,
                testing::MatchesRegex("cimhttp-1234=[0-9a-f]{32}; Path=/; HttpOnly; SameSite=Strict"));
}

TEST_F(BrowserTest, NothingIsServedWithoutTheCookie) {
    fleet_.Add("rack1", {"left"});
    Start();
    for (const std::string path : {"/", "/app.js", "/api/servers", "/api/servers/rack1/classes", "/nothing"}) {
        EXPECT_EQ(Get(path, {{"Accept", "*/*"}}).status, 403) << path;
        EXPECT_EQ(Get(path, {{"Cookie", cookie_.substr(0, cookie_.size() - 1)}}).status, 403) << path;
        EXPECT_EQ(Get(path, {{"Cookie", "cimhttp-1" + cookie_.substr(cookie_.find('='))}}).status, 403) << path;
    }
    EXPECT_EQ(Get("/", {{"Cookie", "other=1; " + cookie_ + "; more=2"}}).status, 200);
}

TEST_F(BrowserTest, AnotherNameForThisMachineIsRefused) {
    Start();
    for (const std::string host : {"attacker.example", "attacker.example:8989", "127.0.0.1:1", "localhost", ""}) {
        EXPECT_EQ(Get("/", {{"Cookie", cookie_}, {"Host", host}}).status, 403) << host;
        EXPECT_NE(Get(browser_->Entrance(), {{"Host", host}}).status, 200) << host;
    }
    EXPECT_EQ(Get("/", {{"Cookie", cookie_}, {"Host", "localhost:8989"}}).status, 200);
}

TEST_F(BrowserTest, PagesOfOtherSitesAreRefused) {
    Start();
    for (const std::string& origin : {std::string("http://attacker.example"), std::string("null"), "https://" + Here(),
                                      std::string("http://localhost:8989")}) {
        EXPECT_EQ(Get("/api/servers", {{"Cookie", cookie_}, {"Origin", origin}}).status, 403) << origin;
        EXPECT_EQ(Post("/api/servers", {{"name", "x"}}, {{"Cookie", cookie_}, {"Origin", origin}}).status, 403)
            << origin;
    }
    for (const std::string site : {"cross-site", "same-site"}) {
        EXPECT_EQ(Get("/api/servers", {{"Cookie", cookie_}, {"Sec-Fetch-Site", site}}).status, 403) << site;
    }
    EXPECT_EQ(Get("/api/servers", {{"Cookie", cookie_}, {"Sec-Fetch-Site", "same-origin"}}).status, 200);
    EXPECT_EQ(Get("/", {{"Cookie", cookie_}, {"Sec-Fetch-Site", "none"}}).status, 200);
}

TEST_F(BrowserTest, WhatIsSentMustSayThatAPageOfThisServerSendsIt) {
    Start();
    const json server{{"name", "new"}, {"host", "server.example"}};
    EXPECT_EQ(Post("/api/servers", server, {{"Cookie", cookie_}}).status, 403);
    EXPECT_THAT(Ask("")["servers"], IsEmpty());
    EXPECT_EQ(Post("/api/servers", server).status, 200);
    EXPECT_EQ(NamesIn(Ask("")["servers"]), std::vector<std::string>{"new"});
}

TEST_F(BrowserTest, EveryAnswerForbidsWhatIsNotOfThisServer) {
    Start();
    for (const std::string path : {"/", "/app.js", "/nothing", "/api/servers", "/api/nothing", "/enter"}) {
        const auto answer = Get(path);
        const std::string policy = answer.get_header_value("Content-Security-Policy");
        EXPECT_THAT(policy, HasSubstr("default-src 'none'")) << path;
        EXPECT_THAT(policy, HasSubstr("script-src 'self';")) << path;
        EXPECT_THAT(policy, HasSubstr("frame-ancestors 'none'")) << path;
        EXPECT_THAT(policy, Not(HasSubstr("unsafe"))) << path;
        EXPECT_EQ(answer.get_header_value("X-Content-Type-Options"), "nosniff") << path;
        EXPECT_EQ(answer.get_header_value("Cross-Origin-Resource-Policy"), "same-origin") << path;
        EXPECT_EQ(answer.get_header_value("Cache-Control"), "no-store") << path;
    }
}

TEST_F(BrowserTest, OtherMethodsAndLargeBodiesAreRefused) {
    Start();
    const httplib::Headers headers{{"Cookie", cookie_}, {"Origin", "http://" + Here()}};
    EXPECT_EQ(Client().Delete("/api/servers", headers)->status, 405);
    EXPECT_EQ(Client().Put("/api/servers", headers, "{}", "application/json")->status, 405);
    EXPECT_EQ(Client().Delete("/api/servers", headers)->get_header_value("Allow"), "GET, HEAD, POST");
    const auto large = Client().Post("/api/servers", headers, std::string(100000, ' '), "application/json");
    EXPECT_TRUE(!large || large->status == 400);
    EXPECT_EQ(Post("/api/servers", json::array()).status, 400);
}

// --- Pages -----------------------------------------------------------------------------------------------------------

TEST_F(BrowserTest, ThePagesArePartOfTheProgram) {
    Start();
    const std::string page = Get("/").body;
    EXPECT_EQ(page, Get("/index.html").body);
    const std::regex named("(?:src|href)=\"([^\"#]+)\"");
    std::size_t count = 0;
    for (std::sregex_iterator it(page.begin(), page.end(), named), end; it != end; ++it, ++count) {
        EXPECT_EQ(Get('/' + (*it)[1].str()).status, 200) << (*it)[1];
    }
    EXPECT_GE(count, 3U);
    EXPECT_EQ(Get("/app.js").get_header_value("Content-Type"), "text/javascript; charset=utf-8");
    EXPECT_EQ(Get("/style.css").get_header_value("Content-Type"), "text/css; charset=utf-8");
    EXPECT_THAT(Get("/dygraph.min.js").body, HasSubstr("Dygraph"));
    EXPECT_EQ(Get("/pages/app.js").status, 404);
    EXPECT_EQ(Get("/../app.js").status, 404);
}

TEST_F(BrowserTest, EveryModuleThatAModuleImportsIsThere) {
    const std::regex import("from \"\\./([^\"]+)\"");
    std::vector<std::string> toRead{"app.js"};
    for (std::size_t i = 0; i < toRead.size(); ++i) {
        const auto* const file = cimhttp::FindPageFile(toRead[i]);
        ASSERT_NE(file, nullptr) << toRead[i];
        const std::string content(file->content);
        for (std::sregex_iterator it(content.begin(), content.end(), import), end; it != end; ++it) {
            if (std::find(toRead.begin(), toRead.end(), (*it)[1].str()) == toRead.end()) {
                toRead.push_back((*it)[1].str());
            }
        }
    }
    EXPECT_GT(toRead.size(), 5U);
}

TEST_F(BrowserTest, TheEntranceLeadsToTheServerOfTheCommandLine) {
    options_.host = support::LoopbackAddress();
    plugin_.emplace(options_.plugin);
    cimhttp::Browser browser(*plugin_, options_, "127.0.0.1", 1);
    const std::string entrance = browser.Entrance();
    cimhttp::WebRequest request;
    request.path = "/enter";
    request.parameters = {{"token", entrance.substr(entrance.find('=') + 1)}};
    request.headers = {{"host", "127.0.0.1:1"}};
    EXPECT_THAT(browser.Answer(request).body, HasSubstr("url=/#/s/" + support::LoopbackAddress() + '"'));
}

// --- Servers ---------------------------------------------------------------------------------------------------------

TEST_F(BrowserTest, ListsTheServerOfTheCommandLineAndAllNamedConnections) {
    fleet_.AddConnection("rack2", 5988, R"(,"user":"reader","password":"secret")");
    fleet_.AddConnection("rack1", 5988);
    options_.host = "server.example";
    options_.user = "admin";
    options_.password = "hidden";
    Start();
    const auto answer = Get("/api/servers").body;
    const json servers = support::ParsedJson(answer)["servers"];
    EXPECT_THAT(NamesIn(servers), ElementsAre("server.example", "rack1", "rack2"));
    EXPECT_EQ(servers[0]["user"], "admin");
    EXPECT_EQ(servers[0]["hasPassword"], true);
    EXPECT_EQ(servers[1]["user"], nullptr);
    EXPECT_EQ(servers[1]["hasPassword"], false);
    EXPECT_EQ(servers[2]["hasPassword"], true);
    EXPECT_EQ(servers[2]["url"], "http://" + support::LoopbackAddress() + ":5988");
    EXPECT_THAT(answer, Not(HasSubstr("secret")));
    EXPECT_THAT(answer, Not(HasSubstr("hidden")));
}

TEST_F(BrowserTest, WhatTheCommandLineSaysOfItsServerIsSentToNoOther) {
    auto& server = fleet_.Add("rack1", {"left"});
    options_.host = "server.example";
    options_.user = "admin";
    options_.password = "hidden";
    Start();
    EXPECT_EQ(Ask("/rack1/state")["state"], "reached");
    ASSERT_THAT(server.Calls(), Not(IsEmpty()));
    for (const auto& call : server.Calls()) {
        EXPECT_FALSE(call.http.HasHeader("Authorization"));
    }
}

TEST_F(BrowserTest, TellsHowAServerIsReached) {
    fleet_.Add("rack1", {"left"});
    fleet_.AddDead("dead");
    Start();
    const json reached = Ask("/rack1/state");
    EXPECT_EQ(reached["state"], "reached");
    EXPECT_EQ(reached["classes"], 1);
    EXPECT_GT(reached["roundTripMs"], 0);
    EXPECT_EQ(reached["verified"], nullptr);
    const json dead = Ask("/dead/state");
    EXPECT_EQ(dead["state"], "failed");
    EXPECT_THAT(dead["reason"].get<std::string>(), HasSubstr("no connection"));
    EXPECT_EQ(Get("/api/servers/dead/classes").status, 502);
    EXPECT_EQ(Ask("/dead/classes")["kind"], "connection");
}

TEST_F(BrowserTest, AServerThatIsRestartedIsReachedAgainWithTheClassesThatItHasThen) {
    auto server = std::make_unique<support::CimServer>();
    AnswerWithFans(*server, {"left"});
    server->Answer("EnumerateClasses", "", ClassXml("TEST_Before", "", ""));
    const auto port = server->Listen(0);
    fleet_.AddConnection("rack1", port);
    Start();
    EXPECT_EQ(NamesIn(Ask("/rack1/classes")["classes"]), std::vector<std::string>{"TEST_Before"});
    server->Stop();
    EXPECT_EQ(Ask("/rack1/state")["state"], "failed");
    server = std::make_unique<support::CimServer>();
    AnswerWithFans(*server, {"left"});
    server->Answer("EnumerateClasses", "", ClassXml("TEST_After", "", ""));
    server->Listen(port);
    EXPECT_EQ(Ask("/rack1/state")["state"], "reached");
    EXPECT_EQ(NamesIn(Ask("/rack1/classes")["classes"]), std::vector<std::string>{"TEST_After"});
}

TEST_F(BrowserTest, ALoginThatFailsIsToldAndAPasswordCanBeGiven) {
    auto& server = fleet_.Add("rack1", {"left"});
    server.RequireUser("reader", "right");
    fleet_.RemoveConnection("rack1");
    const auto port = server.Listen(0);
    fleet_.AddConnection("rack1", port, R"(,"user":"reader")");
    Start();
    EXPECT_EQ(Ask("/rack1/state")["state"], "login");
    EXPECT_EQ(Post("/api/servers/rack1/password", {{"password", "wrong"}}).status, 200);
    EXPECT_EQ(Ask("/rack1/state")["state"], "login");
    EXPECT_EQ(Post("/api/servers/rack1/password", {{"password", "right"}}).status, 200);
    EXPECT_EQ(Ask("/rack1/state")["state"], "reached");
    const std::string kept = ContentOf(fleet_.Path("cimhttp/connections.json"));
    EXPECT_THAT(kept, Not(HasSubstr("right")));
}

TEST_F(BrowserTest, AServerThatIsAddedIsKeptWithoutItsPassword) {
    Start();
    const auto added = Post("/api/servers", {{"name", "lab"},
                                             {"host", "server.example:15989"},
                                             {"tls", true},
                                             {"user", "reader"},
                                             {"password", "secret"},
                                             {"namespace", "root/interop"}});
    EXPECT_EQ(added.status, 200) << added.body;
    const json server = Ask("")["servers"][0];
    EXPECT_EQ(server["url"], "https://server.example:15989");
    EXPECT_EQ(server["namespace"], "root/interop");
    EXPECT_EQ(server["hasPassword"], true);
    const std::string kept = ContentOf(fleet_.Path("cimhttp/connections.json"));
    EXPECT_THAT(kept, HasSubstr("15989"));
    EXPECT_THAT(kept, Not(HasSubstr("secret")));
}

TEST_F(BrowserTest, WhatIsNoServerIsNotAdded) {
    fleet_.AddConnection("rack1", 5988);
    Start();
    const auto error = [&](const json& server) {
        const auto answer = Post("/api/servers", server);
        EXPECT_EQ(answer.status, 400) << server;
        return support::ParsedJson(answer.body)["error"].get<std::string>();
    };
    EXPECT_THAT(error({{"name", "rack1"}, {"host", "server.example"}}), HasSubstr("already"));
    EXPECT_THAT(error({{"name", "a b"}, {"host", "server.example"}}), HasSubstr("no name"));
    EXPECT_THAT(error({{"name", ""}, {"host", "server.example"}}), HasSubstr("no name"));
    EXPECT_THAT(error({{"name", "x"}}), HasSubstr("host"));
    EXPECT_THAT(error({{"name", "x"}, {"host", "ftp://server.example"}}), HasSubstr("ftp"));
    EXPECT_THAT(NamesIn(Ask("")["servers"]), ElementsAre("rack1"));
}

class BrowserOfATlsServerTest : public BrowserTest {
  protected:
    BrowserOfATlsServerTest() {
        AnswerWithFans(tls_, {"left"});
        const auto port = tls_.ListenTls(0, certificate_);
        Start();
        Post("/api/servers",
             {{"name", "lab"}, {"host", support::LoopbackAddress() + ':' + std::to_string(port)}, {"tls", true}});
    }

    unsigned Trust(const std::string& fingerprint) const {
        return static_cast<unsigned>(Post("/api/servers/lab/trust", {{"fingerprint", fingerprint}}).status);
    }

    const support::TestCertificate certificate_{support::TestCertificate::For(support::LoopbackAddress())};
    support::CimServer tls_;
};

TEST_F(BrowserOfATlsServerTest, TheUserIsAskedBeforeAnythingIsSent) {
    const json state = Ask("/lab/state");
    EXPECT_EQ(state["state"], "trust");
    EXPECT_EQ(state["verified"], false);
    EXPECT_THAT(state["certificate"]["text"].get<std::string>(), HasSubstr("SHA-256"));
    EXPECT_EQ(Ask("/lab/classes")["kind"], "trust");
    EXPECT_EQ(Get("/api/servers/lab/instances?class=TEST_Fan").status, 409);
    EXPECT_THAT(tls_.Calls(), IsEmpty());
}

TEST_F(BrowserOfATlsServerTest, ItIsKnownFromThenOn) {
    const std::string fingerprint = Ask("/lab/state")["certificate"]["fingerprint"];
    EXPECT_EQ(Trust(fingerprint), 200U);
    const json state = Ask("/lab/state");
    EXPECT_EQ(state["state"], "reached");
    EXPECT_EQ(state["verified"], true);
    EXPECT_THAT(state["verifiedBy"].get<std::string>(), HasSubstr("known since"));
    EXPECT_EQ(Ask("/lab/instances?class=TEST_Fan")["rows"].size(), 1U);
    const auto known = cimhttp::KnownServers::OfUser()->Read();
    ASSERT_EQ(known.size(), 1U);
    EXPECT_EQ(known.begin()->second.fingerprint, fingerprint);
}

TEST_F(BrowserOfATlsServerTest, OnlyTheCertificateThatWasShownIsTrusted) {
    std::string other = Ask("/lab/state")["certificate"]["fingerprint"];
    other.front() = other.front() == '0' ? '1' : '0';
    EXPECT_EQ(Trust(other), 409U);
    EXPECT_EQ(Trust(""), 409U);
    EXPECT_EQ(Ask("/lab/state")["state"], "trust");
    EXPECT_THAT(cimhttp::KnownServers::OfUser()->Read(), IsEmpty());
    EXPECT_THAT(tls_.Calls(), IsEmpty());
}

// --- What servers have -----------------------------------------------------------------------------------------------

class BrowserOfTheDemoServerTest : public BrowserTest {
  protected:
    BrowserOfTheDemoServerTest() {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        options.volumes = 5000;
        demo_.emplace(options);
        fleet_.AddConnection("demo", 5988);
        Start();
    }

    std::string PathOfSystem() const { return Ask("/demo/instances?class=DEMO_OperatingSystem")["rows"][0]["path"]; }

    std::optional<demo::DemoServer> demo_;
};

TEST_F(BrowserOfTheDemoServerTest, ListsClassesWithSuperclassesAndWhatAssociationsReferTo) {
    const json classes = Ask("/demo/classes")["classes"];
    const auto find = [&](const std::string& name) {
        return *std::find_if(classes.begin(), classes.end(), [&](const json& cls) { return cls["name"] == name; });
    };
    EXPECT_EQ(find("DEMO_FileSystem")["superclass"], "CIM_FileSystem");
    EXPECT_EQ(find("DEMO_FileSystem").count("references"), 0U);
    EXPECT_THAT(NamesIn(find("CIM_Component")["references"], "role"), ElementsAre("GroupComponent", "PartComponent"));
    EXPECT_EQ(find("CIM_HostedFileSystem")["references"][1]["class"], "CIM_FileSystem");
}

TEST_F(BrowserOfTheDemoServerTest, CountsTheInstancesOfAClassAndOfEachBelow) {
    const json counts = Ask("/demo/counts?class=CIM_StorageExtent")["counts"];
    EXPECT_EQ(counts["DEMO_StorageVolume"], 5000);
    EXPECT_EQ(counts["CIM_StorageExtent"], 0);
    EXPECT_EQ(counts.count("DEMO_FileSystem"), 0U);
    EXPECT_EQ(Get("/api/servers/demo/counts?class=CIM_Nothing").status, 404);
}

TEST_F(BrowserOfTheDemoServerTest, ShowsAClassAndItsMof) {
    const json answer = Ask("/demo/class?name=DEMO_FileSystem");
    EXPECT_EQ(answer["class"]["superclass"], "CIM_FileSystem");
    EXPECT_THAT(NamesIn(answer["class"]["properties"]), Contains("AvailableSpace"));
    EXPECT_THAT(answer["mof"].get<std::string>(), HasSubstr("class DEMO_FileSystem : CIM_FileSystem"));
    EXPECT_EQ(Get("/api/servers/demo/class").status, 400);
    EXPECT_EQ(Ask("/demo/class?name=Nothing")["kind"], "notfound");
}

TEST_F(BrowserOfTheDemoServerTest, RowsHaveTextsAndExactValues) {
    const json answer =
        Ask("/demo/instances?class=DEMO_FileSystem&properties=Name,EnabledState,FileSystemSize,Description");
    EXPECT_EQ(answer["reading"], nullptr);
    EXPECT_THAT(NamesIn(answer["columns"]), ElementsAre("Name", "EnabledState", "FileSystemSize", "Description"));
    EXPECT_EQ(answer["columns"][2]["number"], true);
    EXPECT_EQ(answer["columns"][2]["unit"], "B");
    EXPECT_EQ(answer["columns"][1]["number"], false);
    ASSERT_THAT(answer["rows"], Not(IsEmpty()));
    const json row = answer["rows"][0];
    EXPECT_EQ(row["class"], "DEMO_FileSystem");
    EXPECT_THAT(row["path"].get<std::string>(), HasSubstr("DEMO_FileSystem."));
    EXPECT_EQ(row["cells"][1], json({"Enabled", "2"}));
    EXPECT_THAT(row["cells"][2][0].get<std::string>(), testing::ContainsRegex("[0-9.]+ .?i?B$"));
    EXPECT_THAT(row["cells"][2][1].get<std::string>(), testing::MatchesRegex("[0-9]+"));
}

TEST_F(BrowserOfTheDemoServerTest, NumbersOfManyDigitsKeepThem) {
    const json answer = Ask("/demo/instances?class=DEMO_AllTypes");
    EXPECT_THAT(answer["rows"][0]["cells"].dump() + answer["rows"][1]["cells"].dump(),
                HasSubstr("18446744073709551615"));
    const json instance = Ask("/demo/instance?path=" + Encoded(answer["rows"][0]["path"]));
    EXPECT_THAT(instance["properties"].dump(), HasSubstr("\"value\":\"18446744073709551615\""));
}

TEST_F(BrowserOfTheDemoServerTest, ManyInstancesComeInPartsAndEachOnce) {
    json part = Ask("/demo/instances?class=DEMO_StorageVolume&properties=DeviceID");
    ASSERT_TRUE(part["reading"].is_string());
    const std::string number = part["reading"];
    EXPECT_LT(part["rows"].size(), 5000U);
    std::set<std::string> paths;
    for (int i = 0; i < 100; ++i) {
        for (const auto& path : NamesIn(part["rows"], "path")) {
            EXPECT_TRUE(paths.insert(path).second);
        }
        if (part["reading"].is_null()) {
            break;
        }
        part = Ask("/demo/instances?reading=" + number);
        EXPECT_EQ(part.count("columns"), 0U);
    }
    EXPECT_EQ(paths.size(), 5000U);
    EXPECT_EQ(Ask("/demo/instances?reading=" + number)["kind"], "notfound");
}

TEST_F(BrowserOfTheDemoServerTest, AReadingCanBeEndedEarly) {
    const std::string number = Ask("/demo/instances?class=DEMO_StorageVolume&properties=DeviceID")["reading"];
    EXPECT_EQ(Post("/api/servers/demo/readings", {{"end", number}}).status, 200);
    EXPECT_EQ(Get("/api/servers/demo/instances?reading=" + number).status, 404);
    EXPECT_EQ(Post("/api/servers/demo/readings", {{"end", number}}).status, 200);
}

TEST_F(BrowserOfTheDemoServerTest, OfVeryManyReadingsTheOldestIsEnded) {
    std::vector<std::string> numbers;
    for (std::size_t i = 0; i <= cimhttp::OpenReadings::kMost; ++i) {
        numbers.push_back(Ask("/demo/instances?class=DEMO_StorageVolume&properties=DeviceID")["reading"]);
    }
    EXPECT_EQ(Get("/api/servers/demo/instances?reading=" + numbers.front()).status, 404);
    EXPECT_EQ(Get("/api/servers/demo/instances?reading=" + numbers.back()).status, 200);
}

TEST_F(BrowserOfTheDemoServerTest, ShowsAnInstanceAndWhatHangsTogetherWithIt) {
    const std::string path = PathOfSystem();
    const json instance = Ask("/demo/instance?path=" + Encoded(path));
    EXPECT_EQ(instance["class"], "DEMO_OperatingSystem");
    EXPECT_EQ(instance["properties"]["Name"]["value"], "Linux");
    const json graph = Ask("/demo/related?path=" + Encoded(path));
    EXPECT_THAT(graph["objects"][0]["label"].get<std::string>(), HasSubstr("DEMO_OperatingSystem"));
    EXPECT_EQ(graph["complete"], true);
    EXPECT_THAT(NamesIn(graph["associations"], "class"), Contains("DEMO_RunningOS"));
    EXPECT_EQ(Get("/api/servers/demo/related?path=nonsense").status, 400);
    const std::string absent = std::regex_replace(path, std::regex("Linux"), "Absent");
    EXPECT_EQ(Get("/api/servers/demo/instance?path=" + Encoded(absent)).status, 404);
    EXPECT_EQ(Get("/api/servers/demo/related?path=" + Encoded(absent)).status, 404);
}

TEST_F(BrowserOfTheDemoServerTest, ManyQuestionsAtOnceAreAllAnswered) {
    const std::vector<std::string> questions{"/demo/classes",
                                             "/demo/class?name=DEMO_FileSystem",
                                             "/demo/instances?class=DEMO_StorageVolume&properties=DeviceID",
                                             "/demo/counts?class=CIM_FileSystem",
                                             "/demo/state",
                                             "/demo/health",
                                             ""};
    std::vector<std::future<int>> answers;
    for (std::size_t i = 0; i < 4 * questions.size(); ++i) {
        const std::string path = "/api/servers" + questions[i % questions.size()];
        answers.push_back(std::async(std::launch::async, [this, path] { return Get(path).status; }));
    }
    for (auto& answer : answers) {
        EXPECT_EQ(answer.get(), 200);
    }
}

TEST_F(BrowserOfTheDemoServerTest, QuestionsThatThereAreNotAreSaidSo) {
    for (const std::string path :
         {"", "/", "/servers/demo", "/servers/demo/nothing", "/servers/demo/class/more", "/x"}) {
        EXPECT_EQ(Get("/api" + path).status, 404) << path;
    }
    EXPECT_EQ(Get("/api/servers/absent/state").status, 404);
    EXPECT_EQ(Post("/api/servers/demo/classes", json::object()).status, 404);
}

// --- What cannot be read ---------------------------------------------------------------------------------------------

TEST_F(BrowserTest, HealthNamesWhatIsNotWell) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas = {{"fans.xml", ContentOf(CIMHTTP_FANS)}};
    const demo::DemoServer server(options);
    fleet_.AddConnection("demo", 5988);
    Start();
    const json health = Ask("/demo/health");
    EXPECT_GT(health["elements"], health["telling"]);
    ASSERT_THAT(NamesIn(health["faults"]), testing::UnorderedElementsAre("Fan 2", "Fan 3"));
    for (const json& fault : health["faults"]) {
        EXPECT_EQ(fault["class"], "EXAMPLE_Fan");
        EXPECT_EQ(fault["state"], fault["name"] == "Fan 3" ? "critical" : "warning");
        EXPECT_THAT(fault["text"].get<std::string>(), HasSubstr("OperationalStatus is"));
        EXPECT_THAT(fault["path"].get<std::string>(), HasSubstr("EXAMPLE_Fan."));
    }
}

TEST_F(BrowserTest, WhatCannotBeTakenOverIsNamed) {
    auto& server = fleet_.Add("rack1", {});
    server.Answer("EnumerateInstances", "TEST_Fan",
                  InstanceXml("TEST_Fan", "left", PropertyXml("Speed", "uint32", "fast")) +
                      InstanceXml("TEST_Fan", "right", PropertyXml("Speed", "uint32", "3")));
    Start();
    const json answer = Ask("/rack1/instances?class=TEST_Fan");
    EXPECT_EQ(answer["rows"].size(), 2U);
    ASSERT_EQ(answer.count("losses"), 1U);
    EXPECT_THAT(answer["losses"][0].get<std::string>(), HasSubstr("Speed"));
    EXPECT_EQ(Ask("/rack1/classes").count("losses"), 0U);
}

std::string Fans(std::size_t begin, std::size_t end) {
    std::string fans;
    for (std::size_t i = begin; i < end; ++i) {
        fans += InstanceXml("TEST_Fan", "f" + std::to_string(i), PropertyXml("Speed", "uint32", "3"));
    }
    return fans;
}

TEST_F(BrowserTest, AFailureAfterSomeRowsIsToldAfterThem) {
    constexpr std::size_t kMany = 2500; // more than are held to bring them into order
    auto& server = fleet_.Add("rack1", {});
    server.AnswerPortion("OpenEnumerateInstances", "TEST_Fan", Fans(0, kMany), "next");
    server.Fail("PullInstancesWithPath", "next", 1, "enough");
    Start();
    json part = Ask("/rack1/instances?class=TEST_Fan");
    std::size_t rows = 0;
    for (int i = 0; i < 100 && part.count("rows") > 0; ++i) {
        rows += part["rows"].size();
        ASSERT_TRUE(part["reading"].is_string()) << "the failure must not pass for the end";
        part = Ask("/rack1/instances?reading=" + part["reading"].get<std::string>());
    }
    EXPECT_EQ(rows, kMany);
    EXPECT_EQ(part["kind"], "server");
    EXPECT_THAT(part["error"].get<std::string>(), HasSubstr("enough"));
}

TEST_F(BrowserTest, AReadingThatIsEndedEarlyIsClosedAtTheServer) {
    auto& server = fleet_.Add("rack1", {});
    server.AnswerPortion("OpenEnumerateInstances", "TEST_Fan", Fans(0, 2500), "next");
    server.Answer("CloseEnumeration", "next", "");
    Start();
    const std::string number = Ask("/rack1/instances?class=TEST_Fan")["reading"];
    Post("/api/servers/rack1/readings", {{"end", number}});
    std::vector<std::string> methods;
    for (const auto& call : server.Calls()) {
        methods.push_back(call.method);
    }
    EXPECT_THAT(methods, Contains("CloseEnumeration"));
}

TEST_F(BrowserTest, AnArrayStandsInOneCellAndAClassOfItsOwnAddsColumns) {
    auto& server = fleet_.Add("rack1", {});
    server.Answer("GetClass", "TEST_Special",
                  ClassXml("TEST_Special", "TEST_Fan",
                           DeclarationXml("Speed", "uint32") +
                               "<PROPERTY.ARRAY NAME=\"Names\" TYPE=\"string\"></PROPERTY.ARRAY>"));
    server.Answer("EnumerateInstances", "TEST_Fan",
                  InstanceXml("TEST_Fan", "a", "") +
                      InstanceXml("TEST_Special", "b",
                                  PropertyXml("Speed", "uint32", "3") +
                                      "<PROPERTY.ARRAY NAME=\"Names\" TYPE=\"string\"><VALUE.ARRAY><VALUE>x</VALUE>"
                                      "<VALUE>&lt;b&gt;</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"));
    Start();
    const json answer = Ask("/rack1/instances?class=TEST_Fan");
    const auto names = NamesIn(answer["columns"]);
    const auto place = [&](const std::string& name) {
        return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
    };
    ASSERT_THAT(names, Contains("Names"));
    const json& first = answer["rows"][0]["cells"];
    const json& second = answer["rows"][1]["cells"];
    EXPECT_EQ(first[place("Speed")], nullptr);
    EXPECT_TRUE(first.size() <= place("Names") || first[place("Names")] == 0);
    EXPECT_EQ(second[place("Names")], "x, <b>");
    EXPECT_EQ(answer["columns"][place("Names")]["array"], true);
}

// --- The program -----------------------------------------------------------------------------------------------------

TEST(BrowseProgramTest, ListensForThisMachineOnly) {
    for (const std::string place : {"0.0.0.0:8989", ":8989", "[::]:8989", "192.0.2.1:8989"}) {
        const auto run = RunCimhttp({"browse", "--no-open", "--listen", place});
        EXPECT_EQ(run.status, 2) << place;
        EXPECT_THAT(run.errors, HasSubstr("for the user of this machine")) << place;
    }
}

TEST(BrowseProgramTest, KeepsNoTraceAndShowsNoSetOfServers) {
    EXPECT_EQ(RunCimhttp({"--trace", "/dev/null", "browse", "--no-open"}).status, 2);
    EXPECT_EQ(RunCimhttp({"-c", "rack*", "browse", "--no-open"}).status, 2);
}

TEST(BrowseProgramTest, WritesItsAddressAndEndsAtAnInterrupt) {
    const std::string place = support::LoopbackAddress() + ":8990";
    support::TerminalProgram program(CIMHTTP_PROGRAM, {"browse", "--no-open", "--listen", place}, {}, {200, 24});
    ASSERT_TRUE(program.AwaitText("http://" + place + "/enter?token=")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), -SIGINT);
}

TEST(BrowseProgramTest, AsksTheDesktopToOpenTheAddress) {
    const support::TemporaryDirectory folder;
    const std::string opened = (folder.Path() / "opened").string();
    const std::string opener = folder.WriteFile("xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" >" + opened + ".new && mv " +
                                                                opened + ".new " + opened + "\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    const std::string path = "PATH=" + folder.Path().string() + ":/usr/bin:/bin";
    support::TerminalProgram program("/usr/bin/env", {path, "DISPLAY=:99", CIMHTTP_PROGRAM, "browse"}, {}, {200, 24});
    ASSERT_TRUE(program.AwaitText("the desktop was asked to open it")) << program.Screen();
    for (int i = 0; i < 3000 && !std::filesystem::exists(opened); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const std::string url = ContentOf(opened);
    EXPECT_THAT(url, testing::MatchesRegex("http://127\\.0\\.0\\.1:[0-9]+/enter\\?token=[0-9a-f]{32}"));
    EXPECT_THAT(program.Screen(), HasSubstr(url));
}

TEST(BrowseProgramTest, WithoutADesktopNothingIsOpened) {
    support::TerminalProgram program(CIMHTTP_PROGRAM, {"browse"}, {}, {200, 24});
    ASSERT_TRUE(program.AwaitText("/enter?token="));
    program.Type("\x03");
    program.Wait();
    EXPECT_THAT(program.Screen(), Not(HasSubstr("desktop")));
}

} // namespace
