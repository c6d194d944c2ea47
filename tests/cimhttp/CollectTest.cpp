#include "CimXml.h"
#include "ProgramRun.h"
#include "output/Json.h"
#include "support/CimServer.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

using cimhttp::JsonText;
using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::uint16_t kHttpsPort = 5989;

std::string ScalarXml(const std::string& name, const std::string& type, const std::string& value) {
    return "<PROPERTY NAME=\"" + name + "\" TYPE=\"" + type + "\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

/// The JSON that a page has under a name.
json InPage(const std::string& page, const std::string& id) {
    const std::string begin = "<script type=\"application/json\" id=\"" + id + "\">";
    const auto from = page.find(begin) + begin.size();
    return json::parse(page.substr(from, page.find("</script>", from) - from));
}

/// `keys` are those of the path.
std::string InstanceWithKeysXml(const std::string& cls, const std::string& keys, const std::string& properties) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"" + cls + "\">" + keys +
           "</INSTANCENAME><INSTANCE CLASSNAME=\"" + cls + "\">" + properties + "</INSTANCE></VALUE.NAMEDINSTANCE>";
}

std::string KeyXml(const std::string& name, const std::string& type, const std::string& value) {
    return "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE VALUETYPE=\"" + type + "\">" + value +
           "</KEYVALUE></KEYBINDING>";
}

std::string TextsXml(const std::string& qualifier, const std::string& first, const std::string& second) {
    return "<QUALIFIER NAME=\"" + qualifier + "\" TYPE=\"string\"><VALUE.ARRAY><VALUE>" + first + "</VALUE><VALUE>" +
           second + "</VALUE></VALUE.ARRAY></QUALIFIER>";
}

/// A property of a top class that says nothing of its origin.
json PropertyJson(const std::string& name, const std::string& type, bool isArray, const json& qualifiers) {
    return {{"name", name}, {"type", type},       {"array", isArray},        {"default", nullptr},
            {"origin", ""}, {"inherited", false}, {"qualifiers", qualifiers}};
}

/// A server with the small class TEST_Fan, and a folder for documents and results.
class CollectTest : public testing::Test {
  protected:
    CollectTest() {
        server_.Listen(kHttpPort);
        Declare("Key", "boolean", false);
        Declare("Values", "string", true);
        Declare("ValueMap", "string", true);
        server_.Answer("GetClass", "TEST_Fan",
                       "<CLASS NAME=\"TEST_Fan\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
                       "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>"
                       "<PROPERTY.ARRAY NAME=\"States\" TYPE=\"uint16\">" +
                           TextsXml("ValueMap", "2", "3") + TextsXml("Values", "OK", "Degraded") +
                           "</PROPERTY.ARRAY><PROPERTY NAME=\"Speed\" TYPE=\"uint32\"/>"
                           "<METHOD NAME=\"SetSpeed\" TYPE=\"uint32\"><PARAMETER NAME=\"Speed\" TYPE=\"uint32\"/>"
                           "<PARAMETER.ARRAY NAME=\"Names\" TYPE=\"string\"/></METHOD></CLASS>");
        server_.Answer(
            "EnumerateInstances", "TEST_Fan",
            InstanceWithKeysXml("TEST_Fan", KeyXml("Name", "string", "f1"),
                                ScalarXml("Name", "string", "f1") +
                                    "<PROPERTY.ARRAY NAME=\"States\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>2</VALUE>"
                                    "<VALUE>3</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"));
    }

    void Declare(const std::string& qualifier, const std::string& type, bool isArray) {
        server_.Answer("GetQualifier", qualifier,
                       "<QUALIFIER.DECLARATION NAME=\"" + qualifier + "\" TYPE=\"" + type + "\"" +
                           (isArray ? " ISARRAY=\"true\"" : "") +
                           "><SCOPE PROPERTY=\"true\"/></QUALIFIER.DECLARATION>");
    }

    /// Answers with a class T of one scalar property V, and one instance for each value; none for an empty text.
    void AnswerValues(const std::string& type, const std::vector<std::string>& values) {
        server_.Answer("GetClass", "T",
                       "<CLASS NAME=\"T\">" + ScalarXml("I", "uint8", "0") + "<PROPERTY NAME=\"V\" TYPE=\"" + type +
                           "\"/></CLASS>");
        std::string instances;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::string value = values[i].empty() ? "" : ScalarXml("V", type, values[i]);
            instances += InstanceWithKeysXml("T", KeyXml("I", "numeric", std::to_string(i)),
                                             ScalarXml("I", "uint8", std::to_string(i)) + value);
        }
        server_.Answer("EnumerateInstances", "T", instances);
    }

    std::string Path(const std::string& name) const { return (directory_.Path() / name).string(); }

    /// A document with settings like `address="10.0.0.1"`.
    std::string Document(const std::vector<std::string>& settings, const std::vector<std::string>& classes) const {
        std::string text = "<vyx version=\"1\">\n";
        for (const std::string& setting : settings) {
            text += "<network " + setting + "/>\n";
        }
        for (const std::string& name : classes) {
            text += "<class name=\"" + name + "\"/>\n";
        }
        return directory_.WriteFile("requested.xml", text + "</vyx>\n");
    }

    std::string Document(const std::vector<std::string>& classes) const { return Document({Address()}, classes); }

    std::string Address() const { return "address=\"" + server_.Address() + "\""; }

    static ProgramRun Collect(const std::string& document, std::vector<std::string> arguments = {},
                              const std::vector<std::string>& environment = {}) {
        arguments.insert(arguments.begin(), {"collect", document});
        return RunCimhttp(arguments, environment);
    }

    /// The properties V of all instances of T, member `value` or `text`.
    json CollectedValues(const char* member = "value") const {
        const auto run = Collect(Document({"T"}));
        EXPECT_EQ(run.status, 0) << run.errors;
        const json document = support::ParsedJson(run.output);
        json values = json::array();
        for (const json& instance : document.at("classes").at(0).at("instances")) {
            const json& properties = instance.at("properties");
            const auto place = properties.at("I").at("value").get<std::size_t>();
            values[place] = properties.at("V").at(member);
        }
        return values;
    }

    void ExpectUsageFailure(const ProgramRun& run, const std::string& part) const {
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("cimhttp: "));
        EXPECT_THAT(run.errors, HasSubstr(part));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_TRUE(server_.Calls().empty()) << "something was fetched";
    }

    void ExpectNothingLeftBeside(const std::vector<std::string>& names) const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(directory_.Path())) {
            found.push_back(entry.path().filename().string());
        }
        EXPECT_THAT(found, testing::UnorderedElementsAreArray(names));
    }

    support::CimServer server_;
    support::TemporaryDirectory directory_;
};

} // namespace

// --- The collected document --------------------------------------------------------------------------------------

TEST_F(CollectTest, WritesTheClassesWithTheirInstances) {
    const auto run = Collect(Document({"test_fan"}));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    const json no = json::object();
    const json expected = {
        {"server", "http://" + server_.Address()},
        {"complete", true},
        {"classes",
         {{{"name", "TEST_Fan"},
           {"superclass", nullptr},
           {"qualifiers", no},
           {"properties",
            {PropertyJson("Name", "string", false, {{"Key", true}}),
             PropertyJson("States", "uint16", true, {{"ValueMap", {"2", "3"}}, {"Values", {"OK", "Degraded"}}}),
             PropertyJson("Speed", "uint32", false, no)}},
           {"methods",
            {{{"name", "SetSpeed"},
              {"type", "uint32"},
              {"array", false},
              {"parameters",
               {{{"name", "Speed"}, {"type", "uint32"}, {"array", false}, {"direction", "in"}, {"qualifiers", no}},
                {{"name", "Names"}, {"type", "string"}, {"array", true}, {"direction", "in"}, {"qualifiers", no}}}},
              {"origin", ""},
              {"inherited", false},
              {"qualifiers", no}}}},
           {"instances",
            {{{"path", "TEST_Fan.Name=\"f1\""},
              {"class", "TEST_Fan"},
              {"properties",
               {{"Name", {{"type", "string"}, {"value", "f1"}, {"text", "f1"}}},
                {"Speed", {{"type", "uint32"}, {"value", nullptr}, {"text", ""}}},
                {"States", {{"type", "uint16"}, {"value", {2, 3}}, {"text", {"OK", "Degraded"}}}}}}}}}}}}};
    EXPECT_EQ(support::ParsedJson(run.output), expected);
}

TEST_F(CollectTest, AClassIsWrittenAsTheCommandClassWritesIt) {
    json collected = support::ParsedJson(Collect(Document({"TEST_Fan"})).output).at("classes").at(0);
    EXPECT_EQ(collected.erase("instances"), 1U);
    const auto shown = RunCimhttp({"--host", server_.Address(), "class", "TEST_Fan", "-o", "json"});
    EXPECT_EQ(collected, support::ParsedJson(shown.output));
}

TEST_F(CollectTest, AClassOfAServerWithoutClassesIsWrittenAsItsInstancesShowIt) {
    server_.Fail("GetClass", "TEST_Fan", 7, "no classes here");
    const auto run = Collect(Document({"TEST_Fan"}));
    EXPECT_EQ(run.status, 0) << run.errors;
    const json cls = support::ParsedJson(run.output).at("classes").at(0);
    EXPECT_EQ(cls.at("name"), "TEST_Fan");
    EXPECT_EQ(cls.at("properties"), json({PropertyJson("Name", "string", false, {{"Key", true}}),
                                          PropertyJson("States", "uint16", true, json::object())}));
    EXPECT_EQ(cls.at("methods"), json::array());
    EXPECT_EQ(cls.at("instances").size(), 1U);
}

TEST_F(CollectTest, NothingIsAskedOfAClassAfterItsInstancesAreThere) {
    ASSERT_EQ(Collect(Document({"TEST_Fan"})).status, 0);
    EXPECT_EQ(server_.Calls().back().method, "EnumerateInstances"); // whose answer no failure can take back
}

TEST_F(CollectTest, WhatCannotBeReadOfAClassIsCountedOnce) {
    AnswerValues("uint8", {"1"});
    server_.Answer("GetClass", "T",
                   "<CLASS NAME=\"T\">" + ScalarXml("I", "uint8", "0") + ScalarXml("V", "uint8", "300") + "</CLASS>");
    const auto run = Collect(Document({"T"}));
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.errors, StartsWith("cimhttp: 1 value could not be taken over (1 that cannot be read)"));
    EXPECT_EQ(support::ParsedJson(run.output).at("complete"), false);
}

TEST_F(CollectTest, AClassThatIsRequestedTwiceIsReadAndWrittenOnce) {
    const auto run = Collect(Document({"TEST_Fan", "test_FAN"}));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(support::ParsedJson(run.output).at("classes").size(), 1U);
    const auto calls = server_.Calls();
    EXPECT_EQ(
        std::count_if(calls.begin(), calls.end(), [](const auto& call) { return call.method == "EnumerateInstances"; }),
        1);
}

TEST_F(CollectTest, SixtyFourBitIntegersKeepAllTheirDigits) {
    AnswerValues("uint64", {"18446744073709551615", "0"});
    EXPECT_EQ(CollectedValues(), json({18446744073709551615U, 0}));
    AnswerValues("sint64", {"-9223372036854775808", "9223372036854775807"});
    EXPECT_EQ(CollectedValues(), json({INT64_MIN, INT64_MAX}));
}

TEST_F(CollectTest, RealsReadBackTheSame) {
    AnswerValues("real64", {"0.1", "1.7976931348623157e308", "4.9406564584124654e-324", "-0.5"});
    EXPECT_EQ(CollectedValues(), json({0.1, 1.7976931348623157e308, 4.9406564584124654e-324, -0.5}));
    AnswerValues("real32", {"0.1", "3.4028235e38"});
    EXPECT_EQ(CollectedValues(), json({0.1, 3.4028235e38}));
}

TEST_F(CollectTest, TextsStandForNumbersThatJsonDoesNotHave) {
    AnswerValues("real64", {"NaN", "INF", "-INF"});
    EXPECT_EQ(CollectedValues(), json({"nan", "inf", "-inf"}));
}

TEST_F(CollectTest, AValueThatIsMissingIsNull) {
    AnswerValues("string", {"", "x"});
    EXPECT_EQ(CollectedValues(), json({nullptr, "x"}));
    EXPECT_EQ(CollectedValues("text"), json({"", "x"}));
}

TEST_F(CollectTest, BooleansAreBooleansAndOtherTypesTexts) {
    AnswerValues("boolean", {"TRUE", "FALSE"});
    EXPECT_EQ(CollectedValues(), json({true, false}));
    AnswerValues("char16", {"\xc3\xa4"});
    EXPECT_EQ(CollectedValues(), json({"\xc3\xa4"}));
    AnswerValues("datetime", {"00000001020304.000000:000"});
    EXPECT_EQ(CollectedValues(), json({"00000001020304.000000:000"}));
}

TEST_F(CollectTest, TextsMayHoldAnyCharacter) {
    const std::string text = "K\xc3\xb6ln \xe2\x82\xac \xf0\x9f\x8c\x80 \"quoted\" \\ \t";
    AnswerValues("string", {text});
    EXPECT_EQ(CollectedValues(), json({text}));
}

TEST_F(CollectTest, BytesThatAreNotUtf8DoNotBreakTheDocument) {
    AnswerValues("string", {"a\xff\xc3z"});
    const auto run = Collect(Document({"T"}));
    EXPECT_TRUE(json::accept(run.output)) << run.output;
    EXPECT_THAT(run.errors, Not(HasSubstr("json")));
}

TEST(Json, EscapesWhatNeedsItAndCopiesTheRest) {
    EXPECT_EQ(JsonText(""), R"("")");
    EXPECT_EQ(JsonText("\"a\\\\b\n\x1b"), R"("\"a\\\\b\n\u001b")");
    EXPECT_EQ(JsonText("K\xc3\xb6ln\x7f\xe2\x80\xae!"), "\"K\xc3\xb6ln\\u007f\\u202e!\"");
    EXPECT_EQ(JsonText("\xff|\xef\xbf\xbd|\xe2\x82"), "\"\xef\xbf\xbd|\xef\xbf\xbd|\xef\xbf\xbd\xef\xbf\xbd\"");
}

TEST_F(CollectTest, NoInstancesAreAnEmptyList) {
    server_.Answer("EnumerateInstances", "TEST_Fan", "");
    const auto run = Collect(Document({"TEST_Fan"}));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(support::ParsedJson(run.output).at("classes").at(0).at("instances"), json::array());
}

// --- The connection ----------------------------------------------------------------------------------------------

TEST_F(CollectTest, TheDocumentNamesTheUser) {
    server_.RequireUser("reader", "s3cret");
    EXPECT_EQ(Collect(Document({Address(), "user=\"reader\"", "pass=\"s3cret\""}, {"TEST_Fan"})).status, 0);
}

TEST_F(CollectTest, AWrongPasswordIsOneFailureAndLeavesTheOldFileWhole) {
    server_.RequireUser("reader", "s3cret");
    const std::string file = directory_.WriteFile("result.json", "old");
    const auto run =
        Collect(Document({Address(), "user=\"reader\"", "pass=\"guess\""}, {"TEST_Fan", "TEST_Shy"}), {"--out", file});
    EXPECT_EQ(run.status, 4);
    EXPECT_EQ(run.errors, "cimhttp: the class TEST_Fan cannot be read from http://" + server_.Address() +
                              ": the server does not accept the user reader with this password\n");
    EXPECT_EQ(ReadFile(file), "old");
}

TEST_F(CollectTest, APasswordThatTheDocumentLeavesOutComesFromElsewhere) {
    server_.RequireUser("reader", "s3cret");
    const std::string file = directory_.WriteFile("password", "s3cret\n");
    const std::string document = Document({Address(), "user=\"reader\""}, {"TEST_Fan"});
    EXPECT_EQ(Collect(document, {"--password-file", file}).status, 0);
    EXPECT_EQ(Collect(document, {}, {"CIMHTTP_PASSWORD=s3cret"}).status, 0);
    server_.ForgetCalls();
    ExpectUsageFailure(Collect(document), "the user reader needs a password");
}

TEST_F(CollectTest, TheCommandLineCountsMoreThanTheDocument) {
    server_.RequireUser("reader", "s3cret");
    const std::string file = directory_.WriteFile("password", "s3cret\n");
    const std::string document = Document(
        {"address=\"no-such-host.invalid\"", "user=\"somebody\"", "pass=\"guess\"", "ssl=\"true\""}, {"TEST_Fan"});
    const auto run =
        Collect(document, {"--host", server_.Address(), "--tls=false", "--user", "reader", "--password-file", file});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(support::ParsedJson(run.output).at("server"), "http://" + server_.Address());
}

TEST_F(CollectTest, AUserOfTheCommandLineGetsNoPasswordFromTheDocument) {
    const std::string document = Document({Address(), "user=\"somebody\"", "pass=\"s3cret\""}, {"TEST_Fan"});
    ExpectUsageFailure(Collect(document, {"--user", "reader"}), "the user reader needs a password");
}

TEST_F(CollectTest, SslChoosesTheSecurePort) {
    const support::TestCertificate certificate(support::TestCertificate::For(server_.Address()));
    server_.ListenTls(kHttpsPort, certificate);
    for (const std::string yes : {"true", "1", "yes", "ON"}) {
        const auto run = Collect(Document({Address(), "ssl=\"" + yes + "\""}, {"TEST_Fan"}));
        EXPECT_EQ(run.status, 0) << yes << run.errors;
        EXPECT_EQ(support::ParsedJson(run.output).at("server"), "https://" + server_.Address());
    }
    EXPECT_EQ(Collect(Document({"TEST_Fan"}), {"--tls"}).status, 0);
}

TEST_F(CollectTest, SslCanSayNo) {
    for (const std::string no : {"false", "0", "No", "off", ""}) {
        EXPECT_EQ(Collect(Document({Address(), "ssl=\"" + no + "\""}, {"TEST_Fan"})).status, 0) << no;
    }
}

TEST_F(CollectTest, WhereNothingListensThereIsNoConnectionAndNoFile) {
    server_.Stop();
    const auto run = Collect(Document({"TEST_Fan"}), {"--out", Path("result.json")});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.errors, HasSubstr("no connection to http://" + server_.Address()));
    ExpectNothingLeftBeside({"requested.xml"});
}

// --- Documents that are not valid --------------------------------------------------------------------------------

TEST_F(CollectTest, SslWithAnotherValueIsRefused) {
    const std::string document = Document({Address(), "ssl=\"maybe\""}, {"TEST_Fan"});
    ExpectUsageFailure(Collect(document), document + ": ssl is 'maybe'");
}

TEST_F(CollectTest, AMissingDocumentIsNamed) {
    ExpectUsageFailure(Collect(Path("none.xml")), Path("none.xml") + " cannot be read: No such file");
}

TEST_F(CollectTest, ADocumentThatIsNotXmlIsRefusedWithItsLine) {
    const std::string document = directory_.WriteFile("requested.xml", "<vyx version=\"1\">\n<class");
    ExpectUsageFailure(Collect(document), document + ", line 2: ");
}

TEST_F(CollectTest, TheFirstErrorInTheStructureIsShown) {
    const std::string document = directory_.WriteFile("requested.xml", "<vyx version=\"1\">\n<network " + Address() +
                                                                           "/>\n<klass name=\"TEST_Fan\"/>\n"
                                                                           "<class title=\"TEST_Fan\"/></vyx>");
    ExpectUsageFailure(Collect(document), document + ", line 3: Unrecognized identifier");
}

TEST_F(CollectTest, ADocumentWithoutAServerNeedsAHost) {
    ExpectUsageFailure(Collect(Document({}, {"TEST_Fan"})), "names no server");
    EXPECT_EQ(Collect(Document({}, {"TEST_Fan"}), {"--host", server_.Address()}).status, 0);
}

TEST_F(CollectTest, ADocumentWithoutClassesIsRefused) { ExpectUsageFailure(Collect(Document({})), "names no class"); }

TEST_F(CollectTest, TheDocumentNamesPortAndNamespace) {
    support::CimServer server(server_.Address());
    const std::string port = std::to_string(server.Listen(0));
    server.Answer("GetClass", "TEST_Fan", "<CLASS NAME=\"TEST_Fan\"/>");
    server.Answer("EnumerateInstances", "TEST_Fan", "");
    const std::string document =
        Document({Address(), "port=\"" + port + "\"", "namespace=\"root/interop\""}, {"TEST_Fan"});
    const auto run = Collect(document);
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(support::ParsedJson(run.output).at("server"),
              "http://" + server_.Address() + ':' + port + "/root/interop");
    ASSERT_THAT(server.Calls(), Not(testing::IsEmpty()));
    EXPECT_EQ(server.Calls().back().nameSpace, "root/interop");
    EXPECT_THAT(server_.Calls(), testing::IsEmpty());
    EXPECT_EQ(Collect(document, {"-n", "root/cimv2"}).status, 0);
    EXPECT_EQ(server.Calls().back().nameSpace, "root/cimv2") << "the command line counts more";
    EXPECT_EQ(Collect(document, {"--host", server_.Address()}).status, 0);
    EXPECT_THAT(server_.Calls(), Not(testing::IsEmpty())) << "the port is that of the document's own server";
}

TEST_F(CollectTest, APortThatIsNoneIsRefused) {
    ExpectUsageFailure(Collect(Document({"address=\"localhost:0\""}, {"TEST_Fan"})), "localhost:0");
    ExpectUsageFailure(Collect(Document({Address(), "port=\"http\""}, {"TEST_Fan"})), "port is 'http'");
    ExpectUsageFailure(Collect(Document({Address(), "port=\"\""}, {"TEST_Fan"})), "port is ''");
}

TEST_F(CollectTest, SeveralSettingsInOneElementAreRefusedWithTheLine) {
    const std::vector<std::string> elements{Address() + " user=\"reader\"", "ssl=\"true\" ca=\"file\"",
                                            Address() + " colour=\"red\"", "port=\"1\" namespace=\"a\""};
    for (const std::string& element : elements) {
        const std::string document = Document({Address(), element}, {"TEST_Fan"});
        ExpectUsageFailure(Collect(document), document + ", line 3: Only one setting in each network element");
    }
}

// --- Classes that cannot be read ---------------------------------------------------------------------------------

TEST_F(CollectTest, AClassThatCannotBeReadIsNamedAndTheOthersAreWritten) {
    server_.Answer("GetClass", "TEST_Shy", "<CLASS NAME=\"TEST_Shy\"/>");
    server_.Fail("EnumerateInstances", "TEST_Shy", 2, "not for you");
    const auto run = Collect(Document({"TEST_None", "TEST_Fan", "2abc", "", "TEST_Shy"}));
    EXPECT_EQ(run.status, 7);
    const json document = support::ParsedJson(run.output);
    EXPECT_EQ(document.at("complete"), false);
    ASSERT_EQ(document.at("classes").size(), 1U);
    EXPECT_EQ(document.at("classes").at(0).at("name"), "TEST_Fan");
    const std::string server = "http://" + server_.Address();
    EXPECT_THAT(run.errors, StartsWith("cimhttp: there is no class TEST_None on " + server + ";"));
    EXPECT_THAT(run.errors, HasSubstr("\ncimhttp: '2abc' is not a class name\ncimhttp: '' is not a class name\n"
                                      "cimhttp: the instances of TEST_Shy cannot be read from " +
                                      server + ": CIM_ERR_ACCESS_DENIED: not for you\n"));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 4) << run.errors;
}

// --- The file that is written ------------------------------------------------------------------------------------

TEST_F(CollectTest, OutWritesTheFileInsteadOfTheOutput) {
    const auto run = Collect(Document({"TEST_Fan"}), {"--out", Path("result.json")});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(ReadFile(Path("result.json")), Collect(Document({"TEST_Fan"})).output);
    ExpectNothingLeftBeside({"requested.xml", "result.json"});
}

TEST_F(CollectTest, HtmlWritesAPageThatHasTheDocumentInsteadOfTheOutput) {
    const auto run = Collect(Document({"TEST_Fan"}), {"--html", Path("result.html")});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "");
    ExpectNothingLeftBeside({"requested.xml", "result.html"});
    const std::string page = ReadFile(Path("result.html"));
    EXPECT_THAT(page, StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(page, EndsWith("</html>\n"));
    EXPECT_EQ(InPage(page, "document"), json::parse(Collect(Document({"TEST_Fan"})).output));
    const json facts = InPage(page, "about");
    EXPECT_THAT(facts.at("program").get<std::string>(), StartsWith("cimhttp "));
    EXPECT_EQ(facts.at("losses"), json::array());
}

TEST_F(CollectTest, HtmlAndOutWriteBothFiles) {
    const auto run = Collect(Document({"TEST_Fan"}), {"--html", Path("result.html"), "--out", Path("result.json")});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(InPage(ReadFile(Path("result.html")), "document"), json::parse(ReadFile(Path("result.json"))));
}

TEST_F(CollectTest, APageNamesWhatCouldNotBeRead) {
    const auto run = Collect(Document({"TEST_Fan", "TEST_Absent"}), {"--html", Path("result.html")});
    EXPECT_EQ(run.status, 7);
    const std::string page = ReadFile(Path("result.html"));
    EXPECT_EQ(InPage(page, "document").at("complete"), false);
    const json losses = InPage(page, "about").at("losses");
    ASSERT_EQ(losses.size(), 1U);
    EXPECT_EQ(run.errors, "cimhttp: " + losses[0].get<std::string>() + "\n");
    EXPECT_THAT(run.errors, HasSubstr("TEST_Absent"));
}

TEST_F(CollectTest, AFailureLeavesTheOldPageWhole) {
    const std::string file = directory_.WriteFile("result.html", "old");
    server_.Stop();
    EXPECT_EQ(Collect(Document({"TEST_Fan"}), {"--html", file}).status, 3);
    EXPECT_EQ(ReadFile(file), "old");
    ExpectNothingLeftBeside({"requested.xml", "result.html"});
}

TEST_F(CollectTest, AFileThatIsReplacedKeepsItsPermissions) {
    const std::string file = directory_.WriteFile("result.json", "old");
    ::chmod(file.c_str(), 0640);
    EXPECT_EQ(Collect(Document({"TEST_Fan"}), {"--out", file}).status, 0);
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_TRUE(json::accept(ReadFile(file)));
}

TEST_F(CollectTest, ANewFileGetsThePermissionsOfTheMask) {
    const mode_t mask = ::umask(027);
    EXPECT_EQ(Collect(Document({"TEST_Fan"}), {"--out", Path("result.json")}).status, 0);
    ::umask(mask);
    struct stat status {};
    ASSERT_EQ(::stat(Path("result.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(CollectTest, ASymbolicLinkStaysOne) {
    directory_.WriteFile("real.json", "old");
    std::filesystem::create_symlink("real.json", Path("link.json"));
    EXPECT_EQ(Collect(Document({"TEST_Fan"}), {"--out", Path("link.json")}).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(Path("link.json")));
    EXPECT_TRUE(json::accept(ReadFile(Path("real.json"))));
}

TEST_F(CollectTest, AFailureLeavesTheOldFileWhole) {
    const std::string file = directory_.WriteFile("result.json", "old");
    server_.Stop();
    EXPECT_EQ(Collect(Document({"TEST_Fan"}), {"--out", file}).status, 3);
    EXPECT_EQ(ReadFile(file), "old");
}

TEST_F(CollectTest, ADiskThatFillsUpLeavesTheOldFileWhole) {
    const std::string file = directory_.WriteFile("result.json", "old");
    const std::string command = "trap '' XFSZ; ulimit -f 0; " CIMHTTP_PROGRAM " collect " + Document({"TEST_Fan"}) +
                                " --out " + file + " 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
    EXPECT_EQ(ReadFile(file), "old");
    ExpectNothingLeftBeside({"requested.xml", "result.json"});
}

TEST_F(CollectTest, AFileThatCannotBeWrittenIsKnownBeforeAnythingIsRead) {
    for (const std::string& file : {Path("no-folder/result.json"), directory_.Path().string()}) {
        const auto run = Collect(Document({"TEST_Fan"}), {"--out", file});
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.errors, StartsWith("cimhttp: " + file + " cannot be written: "));
    }
    EXPECT_TRUE(server_.Calls().empty());
}

TEST_F(CollectTest, ADeviceIsWrittenToAndNotReplaced) {
    const auto run = Collect(Document({"TEST_Fan"}), {"--out", "/dev/full"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "cimhttp: /dev/full cannot be written: No space left on device\n");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(CollectTest, AStandardOutputOnAFullDiskIsAFailure) {
    const std::string command = CIMHTTP_PROGRAM " collect " + Document({"TEST_Fan"}) + " >/dev/full 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
}

// --- Interrupts --------------------------------------------------------------------------------------------------

namespace {

/// Serves the class A, with one instance, and Heavy, whose instances do not come. Falls silent when asked for another.
void ServeFewClasses(support::Connection& connection) {
    for (auto request = connection.ReadRequest(); request; request = connection.ReadRequest()) {
        const std::string method = MethodIn(request->body);
        const std::string name = ClassIn(request->body);
        const bool asksForInstances = method == "EnumerateInstances";
        if (name != "A" && (name != "Heavy" || asksForInstances)) {
            connection.WaitForPeerClose();
            return;
        }
        std::string result = asksForInstances ? InstanceWithKeysXml(name, "", "") : "";
        if (method == "GetClass") {
            result.append("<CLASS NAME=\"").append(name).append("\"/>");
        }
        connection.Write(HttpAnswer(request->body, result));
    }
}

} // namespace

TEST_F(CollectTest, AnInterruptWritesWhatIsThereAndMarksItIncomplete) {
    server_.Stop();
    support::ScriptedServer server(ServeFewClasses);
    server.Listen(kHttpPort);
    support::TerminalProgram program(CIMHTTP_PROGRAM,
                                     {"collect", Document({"A", "B", "C"}), "--out", Path("result.json")});
    ASSERT_TRUE(program.AwaitText("1 of 3 classes")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), 7);
    EXPECT_THAT(program.Screen(), HasSubstr("cimhttp: interrupted; "));
    const json document = support::ParsedJson(ReadFile(Path("result.json")));
    EXPECT_EQ(document.at("complete"), false);
    ASSERT_EQ(document.at("classes").size(), 1U);
    EXPECT_EQ(document.at("classes").at(0).at("name"), "A");
}

// --- Servers that stop answering ---------------------------------------------------------------------------------

TEST_F(CollectTest, AServerThatStopsAnsweringIsAskedNothingMore) {
    server_.Stop();
    support::ScriptedServer server(ServeFewClasses);
    server.Listen(kHttpPort);
    const auto run = Collect(Document({"A", "B", "C"}), {"--timeout", "1", "--out", Path("result.json")});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.errors, StartsWith("cimhttp: the class B cannot be read from http://" + server.Address() + ": "));
    EXPECT_THAT(run.errors, EndsWith("\ncimhttp: the classes after it are not asked for\n"));
    EXPECT_THAT(run.errors, Not(HasSubstr("class C")));
    const json document = support::ParsedJson(ReadFile(Path("result.json")));
    EXPECT_EQ(document.at("complete"), false);
    EXPECT_EQ(document.at("classes").size(), 1U);
}

TEST_F(CollectTest, AServerThatNeverAnswersLeavesTheOldFileWhole) {
    server_.Stop();
    support::ScriptedServer server(ServeFewClasses);
    server.Listen(kHttpPort);
    const std::string file = directory_.WriteFile("result.json", "old");
    const auto run = Collect(Document({"B", "C"}), {"--timeout", "1", "--out", file});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.errors, EndsWith("; --timeout SECONDS waits longer\n"));
    EXPECT_EQ(ReadFile(file), "old");
}

TEST_F(CollectTest, AClassWhoseInstancesTakeTooLongDoesNotKeepTheOthersFromBeingRead) {
    server_.Stop();
    support::ScriptedServer server(ServeFewClasses);
    server.Listen(kHttpPort);
    const auto run = Collect(Document({"Heavy", "A"}), {"--timeout", "1"});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.errors, HasSubstr("the instances of Heavy cannot be read"));
    EXPECT_EQ(support::ParsedJson(run.output).at("classes").at(0).at("name"), "A");
}

// --- Progress ----------------------------------------------------------------------------------------------------

TEST_F(CollectTest, ATerminalShowsTheProgress) {
    server_.Stop();
    support::ScriptedServer server(ServeFewClasses);
    server.Listen(kHttpPort);
    support::TerminalProgram program(CIMHTTP_PROGRAM, {"collect", Document({"A", "B"}), "--out", Path("result.json")});
    EXPECT_TRUE(program.AwaitText("[........................] 0 of 2 classes, 0 instances, 0:00")) << program.Screen();
    EXPECT_TRUE(program.AwaitText("[############............] 1 of 2 classes, 1 instances, 0:0")) << program.Screen();
}

TEST_F(CollectTest, TheProgressIsTakenAwayBeforeAnythingElseIsSaid) {
    const auto run = RunCimhttpOnTerminal({"collect", Document({"TEST_Fan", "TEST_None"})});
    EXPECT_EQ(run.status, 7);
    EXPECT_TRUE(json::accept(run.output));
    EXPECT_THAT(run.errors, HasSubstr("0 of 2 classes"));
    EXPECT_THAT(run.errors, HasSubstr("\r\x1b[Kcimhttp: there is no class TEST_None"));
    EXPECT_THAT(run.errors.substr(run.errors.rfind("\r\x1b[K")), Not(HasSubstr("of 2 classes"))) << "it stays";
}

TEST_F(CollectTest, ALogOnTheTerminalTakesTheProgressAway) {
    const auto run = RunCimhttpOnTerminal({"--log", "error", "collect", Document({"TEST_Fan"})});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, Not(HasSubstr("instances")));
}
