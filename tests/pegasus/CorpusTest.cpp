// What servers in the field send, and what a client makes of it. The answers are in tests/corpus, a folder for each
// family of servers; README.md there says how a case is written.

#include "ObjectsAsJson.h"
#include "Texts.h"
#include "support/ParsedJson.h"
#include "support/ProgramRun.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Client/CIMClient.h>
#if __has_include(<Pegasus/Client/CIMEnumerationContext.h>)
#include <Pegasus/Client/CIMEnumerationContext.h>
#define CORPUS_HAS_PULLS
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using nlohmann::json;
using support::Connection;
using support::HttpRequest;

namespace fs = std::filesystem;

constexpr std::size_t kChunk = 100; // of bodies that are sent in chunks
constexpr char kUser[] = "reader";
constexpr char kPassword[] = "corpus";

struct Case {
    fs::path folder;
    json told;

    std::string name() const { return told.at("name"); }
    std::string family() const { return folder.filename(); }
};

void PrintTo(const Case& one, std::ostream* stream) { *stream << one.family() << '/' << one.name(); }

json readJson(const fs::path& file) { return support::ParsedJson(support::ReadFile(file.string())); }

std::vector<fs::path> familyFolders() {
    std::vector<fs::path> folders;
    for (const auto& entry : fs::directory_iterator(CIMHTTP_CORPUS)) {
        if (entry.is_directory()) {
            folders.push_back(entry.path());
        }
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const fs::path& folder : familyFolders()) {
        for (const json& one : readJson(folder / "cases.json")) {
            cases.push_back({folder, one});
        }
    }
    return cases;
}

/// The files with the answers of a case, in the order in which they are sent.
std::vector<std::string> answerFiles(const Case& one) {
    return one.told.value("answers", std::vector<std::string>{one.name() + ".http"});
}

// --- The server ------------------------------------------------------------------------------------------------------

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

/// The attribute of a request with which this text ends.
std::string attributeIn(const HttpRequest& request, const std::string& upToValue) {
    const std::size_t begin = request.body.find(upToValue) + upToValue.size();
    return request.body.substr(begin, request.body.find('"', begin) - begin);
}

std::string chunked(const std::string& body, const std::string& trailers) {
    std::ostringstream text;
    for (std::size_t at = 0; at < body.size(); at += kChunk) {
        const std::string chunk = body.substr(at, kChunk);
        text << std::hex << chunk.size() << "\r\n" << chunk << "\r\n";
    }
    text << "0\r\n" << trailers << "\r\n";
    return text.str();
}

bool hasField(const std::string& head, const std::string& name) { return head.find("\n" + name) != std::string::npos; }

/// The lines of a file as HTTP wants them.
std::string asLines(std::string text) {
    replaceAll(text, "\n", "\r\n");
    return text;
}

/// The bytes of an answer. A file has its head with plain ends of lines, @ID@ for the request's message ID, and
/// perhaps @METHOD@ for its operation.
std::string bytesOf(const Case& one, std::string file, const HttpRequest& request) {
    replaceAll(file, "@ID@", attributeIn(request, "<MESSAGE ID=\""));
    replaceAll(file, "@METHOD@", attributeIn(request, "<IMETHODCALL NAME=\""));
    const std::size_t end = file.find("\n\n");
    std::string head = file.substr(0, end + 1);
    const std::string body = file.substr(end + 2);
    if (hasField(head, "Transfer-Encoding: chunked")) {
        std::string trailers;
        for (const std::string& line : one.told.value("trailers", std::vector<std::string>())) {
            trailers += line + "\r\n";
        }
        return asLines(head) + "\r\n" + chunked(body, trailers);
    }
    if (!hasField(head, "Content-Length:") && !hasField(head, "Connection: close")) {
        head += "Content-Length: " + std::to_string(body.size()) + "\n";
    }
    return asLines(head) + "\r\n" + body;
}

/// Answers each request with the next file, and closes the connection after each where told so.
class CorpusServer {
  public:
    explicit CorpusServer(const Case& one) : case_(one) {
        for (const std::string& name : answerFiles(one)) {
            files_.push_back(support::ReadFile((one.folder / name).string()));
        }
    }

    std::uint16_t listen() { return server_.Listen(5988); }
    const std::string& address() const { return server_.Address(); }

  private:
    void serve(Connection& peer) {
        while (const auto request = peer.ReadRequest()) {
            const std::size_t next = next_++;
            if (next >= files_.size()) {
                return;
            }
            if (!peer.Write(bytesOf(case_, files_[next], *request)) ||
                files_[next].find("\nConnection: close\n") < files_[next].find("\n\n")) {
                return;
            }
        }
    }

    const Case& case_;
    std::vector<std::string> files_;
    std::atomic<std::size_t> next_{0};
    support::ScriptedServer server_{[this](Connection& peer) { serve(peer); }};
};

// --- The client ------------------------------------------------------------------------------------------------------

struct Asked {
    CIMNamespaceName nameSpace;
    std::string object;

    CIMName name() const { return object.empty() ? CIMName() : CIMName(object.c_str()); }
    CIMObjectPath path() const { return CIMObjectPath(object.c_str()); }
};

using Operation = std::function<json(CIMClient&, const Asked&)>;

/// One object as a list.
template <class T>
json only(const T& object) {
    return json::array({asJson(object)});
}

#ifdef CORPUS_HAS_PULLS
/// The first objects of an enumeration, and whether these were all.
json openEnumeration(CIMClient& client, const Asked& asked) {
    CIMEnumerationContext context;
    Boolean isAll = false;
    json objects = asJson(client.openEnumerateInstances(context, isAll, asked.nameSpace, asked.name()));
    objects.push_back({{"endOfSequence", isAll}});
    return objects;
}
#endif

const std::map<std::string, Operation>& operations() {
    static const std::map<std::string, Operation> all = {
        {"GetClass", [](CIMClient& c, const Asked& a) { return only(c.getClass(a.nameSpace, a.name(), false)); }},
        {"EnumerateClasses",
         [](CIMClient& c, const Asked& a) { return asJson(c.enumerateClasses(a.nameSpace, a.name())); }},
        {"EnumerateClassNames",
         [](CIMClient& c, const Asked& a) { return asJson(c.enumerateClassNames(a.nameSpace, a.name())); }},
        {"GetInstance", [](CIMClient& c, const Asked& a) { return only(c.getInstance(a.nameSpace, a.path(), false)); }},
        {"EnumerateInstances",
         [](CIMClient& c, const Asked& a) { return asJson(c.enumerateInstances(a.nameSpace, a.name(), true, false)); }},
        {"EnumerateInstanceNames",
         [](CIMClient& c, const Asked& a) { return asJson(c.enumerateInstanceNames(a.nameSpace, a.name())); }},
        {"Associators", [](CIMClient& c, const Asked& a) { return asJson(c.associators(a.nameSpace, a.path())); }},
        {"AssociatorNames",
         [](CIMClient& c, const Asked& a) { return asJson(c.associatorNames(a.nameSpace, a.path())); }},
        {"References", [](CIMClient& c, const Asked& a) { return asJson(c.references(a.nameSpace, a.path())); }},
        {"ReferenceNames",
         [](CIMClient& c, const Asked& a) { return asJson(c.referenceNames(a.nameSpace, a.path())); }},
        {"GetQualifier", [](CIMClient& c, const Asked& a) { return only(c.getQualifier(a.nameSpace, a.name())); }},
#ifdef CORPUS_HAS_PULLS
        {"OpenEnumerateInstances", openEnumeration},
#endif
        {"HasPulledEnumerations",
         [](CIMClient& c, const Asked& a) { return json::array({c.hasPulledEnumerations(a.nameSpace)}); }},
        {"EnumerateQualifiers",
         [](CIMClient& c, const Asked& a) { return asJson(c.enumerateQualifiers(a.nameSpace)); }},
    };
    return all;
}

template <class Failure>
bool is(const Exception& error) {
    return dynamic_cast<const Failure*>(&error) != nullptr;
}

std::string typeOf(const Exception& error) {
    return is<CIMException>(error)                      ? "CIMException"
           : is<CIMClientHTTPErrorException>(error)     ? "CIMClientHTTPErrorException"
           : is<CIMClientMalformedHTTPException>(error) ? "CIMClientMalformedHTTPException"
           : is<CIMClientXmlException>(error)           ? "CIMClientXmlException"
           : is<CIMClientResponseException>(error)      ? "CIMClientResponseException"
           : is<CannotConnectException>(error)          ? "CannotConnectException"
                                                        : "another";
}

/// The number that an error of a server has.
json codeOf(const Exception& error) {
    if (const auto* const cim = dynamic_cast<const CIMException*>(&error)) {
        return static_cast<int>(cim->getCode());
    }
    const auto* const http = dynamic_cast<const CIMClientHTTPErrorException*>(&error);
    return http != nullptr ? json(http->getCode()) : json();
}

const char* textOf(LenientFinding::Kind kind) {
    switch (kind) {
    case LenientFinding::UNREADABLE_VALUE:
        return "UNREADABLE_VALUE";
    case LenientFinding::FOREIGN_BYTES:
        return "FOREIGN_BYTES";
    case LenientFinding::DOUBLED_PROPERTY:
        return "DOUBLED_PROPERTY";
    }
    return "";
}

json asJson(const LenientFindings& findings) {
    json all = json::array();
    for (const LenientFinding& finding : findings.first) {
        all.push_back({{"kind", textOf(finding.kind)},
                       {"class", ::asJson(finding.className)},
                       {"path", ::asJson(finding.path)},
                       {"element", ::asJson(finding.element)},
                       {"text", ::asJson(finding.text)}});
    }
    return all;
}

/// What a client says of an answer: its objects, or an error; and, where it is lenient, what it found.
struct Outcome {
    json objects;
    std::string error;
    json code;
    std::string message;
    json findings;
    std::string server;
};

Outcome read(const Case& one, bool lenient) {
    CorpusServer server(one);
    CIMClient client;
    client.setTimeout(30000);
    client.setLenient(lenient);
    client.connect(String(server.address()), server.listen(), kUser, kPassword);
    const Asked asked{CIMNamespaceName(one.told.value("namespace", "root/cimv2").c_str()),
                      one.told.value("object", "")};
    Outcome outcome;
    outcome.server = server.address();
    try {
        outcome.objects = operations().at(one.told.at("operation"))(client, asked);
    } catch (const Exception& error) {
        outcome.error = typeOf(error);
        outcome.code = codeOf(error);
        outcome.message = Text(error.getMessage());
    }
    outcome.findings = asJson(client.takeFindings());
    return outcome;
}

// --- The verdict -----------------------------------------------------------------------------------------------------

/// A finding need not be written out: what the verdict says of it counts.
void expectFindings(const json& expected, const json& found) {
    ASSERT_EQ(found.size(), expected.size()) << found.dump(2);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        for (const auto& [member, value] : expected[i].items()) {
            EXPECT_EQ(found[i].at(member), value) << member << " of finding " << i;
        }
    }
}

void expectVerdict(const json& verdict, const Outcome& outcome) {
    if (verdict.contains("objects")) {
        ASSERT_EQ(outcome.error, "") << outcome.message;
        EXPECT_EQ(outcome.objects, verdict.at("objects")) << "it is " << outcome.objects.dump(2);
    } else {
        ASSERT_EQ(outcome.error, verdict.at("error")) << outcome.message << outcome.objects.dump(2);
        EXPECT_EQ(outcome.code, verdict.value("code", json()));
        for (const std::string part : verdict.at("says")) {
            EXPECT_THAT(outcome.message, ::testing::HasSubstr(part));
        }
        // What a server says of itself is left as it is; all else names the server.
        if (outcome.error != "CIMException") {
            EXPECT_THAT(outcome.message, ::testing::HasSubstr(outcome.server));
        }
    }
    expectFindings(verdict.value("findings", json::array()), outcome.findings);
}

/// Where nothing is said of the lenient client, both read alike.
const json& lenientVerdict(const Case& one) {
    return one.told.contains("lenient") ? one.told["lenient"] : one.told["strict"];
}

class CorpusTest : public ::testing::TestWithParam<Case> {
  protected:
    void SetUp() override {
        const std::string operation = GetParam().told.at("operation");
        if (operation == "OpenEnumerateInstances" && operations().count(operation) == 0) {
            GTEST_SKIP() << "the client library has no pulled enumerations";
        }
    }
};

std::string caseName(const ::testing::TestParamInfo<Case>& info) {
    std::string name = info.param.family() + '_' + info.param.name();
    name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == '-'; }), name.end());
    return name;
}

} // namespace

TEST_P(CorpusTest, Strict) { expectVerdict(GetParam().told.at("strict"), read(GetParam(), false)); }

TEST_P(CorpusTest, Lenient) { expectVerdict(lenientVerdict(GetParam()), read(GetParam(), true)); }

INSTANTIATE_TEST_SUITE_P(Servers, CorpusTest, ::testing::ValuesIn(allCases()), caseName);

namespace {

std::set<std::string> answersOfCases(const fs::path& folder) {
    std::set<std::string> used;
    for (const Case& one : allCases()) {
        if (one.folder == folder) {
            for (const std::string& file : answerFiles(one)) {
                used.insert(file);
            }
        }
    }
    return used;
}

} // namespace

TEST(Corpus, HasACaseForEveryAnswerAndSaysWhereItsQuirkIsKnownFrom) {
    for (const fs::path& folder : familyFolders()) {
        const auto used = answersOfCases(folder);
        for (const auto& entry : fs::directory_iterator(folder)) {
            const std::string file = entry.path().filename();
            EXPECT_TRUE(file == "cases.json" || used.count(file) != 0) << entry.path();
        }
    }
    for (const Case& one : allCases()) {
        EXPECT_NE(one.told.value("quirk", ""), "") << one.name();
        EXPECT_NE(one.told.value("seen", ""), "") << one.name();
    }
}

TEST(Corpus, HasManyCasesOfEveryFamily) {
    EXPECT_GE(allCases().size(), 60U);
    EXPECT_GE(familyFolders().size(), 11U);
}

TEST(Corpus, LenientClientsReadWhatStrictOnesDoWithoutAFinding) {
    for (const Case& one : allCases()) {
        if (one.told["strict"].contains("objects") && one.told.contains("lenient")) {
            EXPECT_TRUE(one.told["lenient"].at("findings").empty()) << one.name() << ": both read it alike";
        }
    }
}
