// What is associated with an instance: `related` draws it as a tree, and writes it as JSON and for Graphviz.

#include "CimXml.h"
#include "LinkServer.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"
#include "survey/GraphWalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr unsigned kFailed = 1; // of CIM
constexpr unsigned kNotSupported = 7;

/// A graph in the language of Graphviz, read by its grammar as far as the program uses it. Throws std::runtime_error
/// for everything else.
class DotReader {
  public:
    struct Edge {
        std::string from;
        std::string to;
        std::string label;
    };

    explicit DotReader(std::string text) : text_(std::move(text)) {
        Expect("graph");
        Word();
        Expect("{");
        while (!Skip("}")) {
            Statement();
        }
        SkipBlanks();
        if (place_ != text_.size()) {
            Complain("something behind the graph");
        }
    }

    std::map<std::string, std::map<std::string, std::string>> nodes; ///< attributes by name
    std::vector<Edge> edges;

  private:
    void Statement() {
        const std::string id = Word();
        std::string other;
        if (Skip("--")) {
            other = Word();
        }
        const auto attributes = Attributes();
        Expect(";");
        if (!other.empty()) {
            edges.push_back({id, other, attributes.at("label")});
        } else if (id != "node") {
            nodes[id] = attributes;
        }
    }

    std::map<std::string, std::string> Attributes() {
        std::map<std::string, std::string> attributes;
        Expect("[");
        do {
            const std::string name = Word();
            Expect("=");
            SkipBlanks();
            attributes[name] = text_.at(place_) == '"' ? Quoted() : Word();
        } while (Skip(","));
        Expect("]");
        return attributes;
    }

    /// What Graphviz shows of a text in quotes.
    std::string Quoted() {
        std::string shown;
        for (++place_; text_.at(place_) != '"'; ++place_) {
            if (text_[place_] == '\\') {
                ++place_;
                if (text_.at(place_) != '"' && text_.at(place_) != '\\') {
                    Complain("an escape");
                }
            } else if (text_.compare(place_, 5, "&amp;") == 0) {
                place_ += 4;
                shown += '&';
                continue;
            } else if (text_[place_] == '&' || text_[place_] == '\n') {
                Complain("a character");
            }
            shown += text_[place_];
        }
        ++place_;
        return shown;
    }

    std::string Word() {
        SkipBlanks();
        const auto begin = place_;
        while (place_ < text_.size() && std::isalnum(static_cast<unsigned char>(text_[place_])) != 0) {
            ++place_;
        }
        if (place_ == begin) {
            Complain("no word");
        }
        return text_.substr(begin, place_ - begin);
    }

    void SkipBlanks() { place_ = std::min(text_.find_first_not_of(" \n", place_), text_.size()); }

    bool Skip(const std::string& mark) {
        SkipBlanks();
        const bool isThere = text_.compare(place_, mark.size(), mark) == 0;
        place_ += isThere ? mark.size() : 0;
        return isThere;
    }

    void Expect(const std::string& mark) {
        if (!Skip(mark)) {
            Complain("no " + mark);
        }
    }

    [[noreturn]] void Complain(const std::string& what) const {
        throw std::runtime_error("there is " + what + " at " + text_.substr(place_, 40));
    }

    std::string text_;
    std::size_t place_ = 0;
};

std::string Node(const std::string& name) { return "TEST_Node.Name=\"" + name + '"'; }

class RelatedTest : public testing::Test {
  protected:
    ProgramRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address(), "related"});
        return RunCimhttp(arguments);
    }

    std::string Output(const std::vector<std::string>& arguments) const {
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
        return run.output;
    }

    LinkServer server_;
};

} // namespace

TEST_F(RelatedTest, TheTreeHasEachObjectWithTheAssociationThatLeadsToIt) {
    server_.Link("TEST_Holds", "a", "b");
    server_.Link("TEST_Feeds", "c", "a");
    server_.Link("TEST_Holds", "b", "d");
    server_.Answer("ReferenceNames", "d", "");
    EXPECT_EQ(Output({Node("a")}), "TEST_Node.Name=\"a\"\n"
                                   "├── TEST_Node.Name=\"c\"  TEST_Feeds\n"
                                   "└── TEST_Node.Name=\"b\"  TEST_Holds\n"
                                   "    └── TEST_Node.Name=\"d\"  TEST_Holds\n");
}

TEST_F(RelatedTest, ACircleIsCutAndSaysSo) {
    server_.Link("TEST_Holds", "a", "b");
    server_.Link("TEST_Holds", "b", "c");
    server_.Link("TEST_Holds", "c", "a");
    server_.Link("TEST_Likes", "a", "a");
    EXPECT_EQ(Output({Node("a"), "--depth", "9"}), "TEST_Node.Name=\"a\"\n"
                                                   "├── TEST_Node.Name=\"b\"  TEST_Holds\n"
                                                   "│   └── TEST_Node.Name=\"c\"  TEST_Holds, shown elsewhere\n"
                                                   "├── TEST_Node.Name=\"c\"  TEST_Holds\n"
                                                   "└── TEST_Node.Name=\"a\"  TEST_Likes, shown elsewhere\n");
}

TEST_F(RelatedTest, TheDepthSaysHowFarToGoAndEachObjectIsAskedOnce) {
    for (const auto& [from, to] :
         std::vector<std::pair<std::string, std::string>>{{"a", "b"}, {"b", "c"}, {"c", "d"}, {"a", "x"}, {"x", "b"}}) {
        server_.Link("TEST_Holds", from, to);
    }
    EXPECT_THAT(Output({Node("a")}), AllOf(HasSubstr("\"c\""), Not(HasSubstr("\"d\""))));
    EXPECT_EQ(server_.CountOf("ReferenceNames"), 3U); // a, b and x
    EXPECT_EQ(server_.Calls().size(), 3U);
    EXPECT_THAT(Output({Node("a"), "--depth", "1"}), AllOf(HasSubstr("\"b\""), Not(HasSubstr("\"c\""))));
    EXPECT_THAT(Output({Node("a"), "--depth", "3"}), HasSubstr("\"d\""));
    EXPECT_EQ(server_.CountOf("ReferenceNames"), 3U + 1 + 4);
    EXPECT_EQ(Run({Node("a"), "--depth", "101"}).status, 2);
}

TEST_F(RelatedTest, ObjectsAreNamedByTheKeysThatTellThemApart) {
    const auto device = [](const std::string& cls, const std::string& id) {
        const auto key = [](const std::string& name, const std::string& value) {
            return "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE VALUETYPE=\"string\">" + value +
                   "</KEYVALUE></KEYBINDING>";
        };
        return "<INSTANCENAME CLASSNAME=\"" + cls + "\">" + key("DeviceID", id) + key("CreationClassName", cls) +
               key("SystemName", "a") + "</INSTANCENAME>";
    };
    std::string links;
    for (const auto& path : {device("TEST_Disk", "1"), device("TEST_Disk", "2"), device("TEST_Fan", "1")}) {
        links += "<OBJECTPATH>" + WholePathXml(LinkXml("TEST_Has", PathXml("TEST_Node", "a"), path)) + "</OBJECTPATH>";
    }
    server_.Answer("ReferenceNames", "a", links);
    EXPECT_EQ(Output({Node("a"), "--depth", "1"}), "TEST_Node.Name=\"a\"\n"
                                                   "├── TEST_Disk.…,DeviceID=\"1\"  TEST_Has\n"
                                                   "├── TEST_Disk.…,DeviceID=\"2\"  TEST_Has\n"
                                                   "└── TEST_Fan.…,DeviceID=\"1\",SystemName=\"a\"  TEST_Has\n");
}

TEST_F(RelatedTest, ObjectsInOtherNamespacesAreAskedThereAndThoseOfOtherServersAreNot) {
    const auto link = [](const std::string& to) {
        return "<OBJECTPATH>" + WholePathXml(LinkXml("TEST_Holds", WholePathXml(PathXml("TEST_Node", "a")), to)) +
               "</OBJECTPATH>";
    };
    server_.Answer("ReferenceNames", "a",
                   link(WholePathXml(PathXml("TEST_Node", "b"), "SERVER.example", "root/other")) +
                       link(WholePathXml(PathXml("TEST_Node", "c"), "elsewhere.example")) +
                       link("<LOCALINSTANCEPATH><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
                            "NAME=\"third\"/></LOCALNAMESPACEPATH>" +
                            PathXml("TEST_Node", "d") + "</LOCALINSTANCEPATH>"));
    server_.Answer("ReferenceNames", "b", "");
    server_.Answer("ReferenceNames", "d", "");
    EXPECT_EQ(Output({"root/cimv2:" + Node("a")}),
              "TEST_Node.Name=\"a\"\n"
              "├── //elsewhere.example/root/cimv2:TEST_Node.Name=\"c\"  TEST_Holds, on another server\n"
              "├── root/other:TEST_Node.Name=\"b\"  TEST_Holds\n"
              "└── root/third:TEST_Node.Name=\"d\"  TEST_Holds\n");
    for (const auto& call : server_.Calls()) {
        const std::string nameSpace = call.object == "a" ? "cimv2" : call.object == "b" ? "other" : "third";
        EXPECT_THAT(call.body, HasSubstr("<NAMESPACE NAME=\"" + nameSpace + "\"/></LOCALNAMESPACEPATH>"));
        EXPECT_NE(call.object, "c");
    }
}

TEST_F(RelatedTest, AssociationsWithoutReferencesAmongTheirKeysAreReadThemselves) {
    const std::string path = WholePathXml(PathXml("TEST_Odd", "7"));
    const auto reference = [](const std::string& role, const std::string& name) {
        return "<PROPERTY.REFERENCE NAME=\"" + role + "\"><VALUE.REFERENCE>" + PathXml("TEST_Node", name) +
               "</VALUE.REFERENCE></PROPERTY.REFERENCE>";
    };
    server_.Answer("ReferenceNames", "a", "<OBJECTPATH>" + path + "</OBJECTPATH>");
    server_.Answer("References", "a",
                   "<VALUE.OBJECTWITHPATH>" + path + "<INSTANCE CLASSNAME=\"TEST_Odd\">" +
                       PropertyXml("Name", "string", "7") + reference("One", "a") + reference("Other", "b") +
                       "</INSTANCE></VALUE.OBJECTWITHPATH>");
    EXPECT_EQ(Output({Node("a"), "--depth", "1"}), "TEST_Node.Name=\"a\"\n└── TEST_Node.Name=\"b\"  TEST_Odd\n");
    EXPECT_EQ(server_.Calls().size(), 2U);
}

TEST_F(RelatedTest, AnObjectWhoseAssociationsCannotBeReadIsMarkedAndMakesTheResultIncomplete) {
    server_.Link("TEST_Holds", "a", "b");
    server_.Link("TEST_Holds", "a", "c");
    server_.Fail("ReferenceNames", "b", kFailed);
    const auto run = Run({Node("a")});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.output, AllOf(HasSubstr("\"b\"  TEST_Holds, not read\n"), EndsWith("\"c\"  TEST_Holds\n")));
    EXPECT_THAT(run.errors, AllOf(StartsWith("cimhttp: the associations of 1 object could not be read; the first: "),
                                  HasSubstr("root/cimv2:" + Node("b"))));
    const json graph = support::ParsedJson(Run({Node("a"), "-o", "json"}).output);
    EXPECT_EQ(graph.at("complete"), false);
    EXPECT_EQ(graph.at("objects").at(1).at("state"), "failed");
}

TEST_F(RelatedTest, AServerWithoutAssociationsIsAFailure) {
    server_.Fail("ReferenceNames", "a", kNotSupported);
    const auto run = Run({Node("a")});
    EXPECT_EQ(run.status, 6);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, HasSubstr("the associations of root/cimv2:" + Node("a") + " cannot be read"));
}

TEST_F(RelatedTest, AnObjectWithoutAssociationsMustExist) {
    server_.Answer("ReferenceNames", "a", "");
    EXPECT_EQ(Run({Node("a")}).status, 5);
    server_.Answer("GetInstance", "a", BareInstanceXml("TEST_Node", "a"));
    EXPECT_EQ(Output({Node("a")}), "TEST_Node.Name=\"a\"\n");
    EXPECT_EQ(Run({"TEST_Node"}).status, 2);
    EXPECT_EQ(Run({"TEST_Node.Name="}).status, 2);
}

TEST_F(RelatedTest, TooManyAssociationsAreCutOffAndThatIsSaid) {
    std::string links;
    for (std::size_t i = 0; i <= cimhttp::GraphWalk::kMostEdges; ++i) {
        links += "<OBJECTPATH>" +
                 WholePathXml(
                     LinkXml("TEST_Holds", PathXml("TEST_Node", "a"), PathXml("TEST_Node", "n" + std::to_string(i)))) +
                 "</OBJECTPATH>";
    }
    server_.Answer("ReferenceNames", "a", links);
    const auto run = Run({Node("a")});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.errors, "cimhttp: there are more than 10000 associations; the others are left out\n");
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 10001);
    EXPECT_EQ(server_.Calls().size(), 1U);
}

TEST_F(RelatedTest, JsonHasTheObjectsAndTheAssociationsBetweenThem) {
    server_.Link("TEST_Holds", "a", "b");
    server_.Link("TEST_Holds", "c", "a");
    const json graph = support::ParsedJson(Output({Node("a"), "--depth", "1", "-o", "json"}));
    EXPECT_EQ(graph.at("complete"), true);
    EXPECT_EQ(graph.at("objects"), support::ParsedJson(R"([
        {"path": "root/cimv2:TEST_Node.Name=\"a\"", "class": "TEST_Node", "label": "TEST_Node.Name=\"a\"",
         "depth": 0, "state": "asked"},
        {"path": "root/cimv2:TEST_Node.Name=\"b\"", "class": "TEST_Node", "label": "TEST_Node.Name=\"b\"",
         "depth": 1, "state": "not asked"},
        {"path": "root/cimv2:TEST_Node.Name=\"c\"", "class": "TEST_Node", "label": "TEST_Node.Name=\"c\"",
         "depth": 1, "state": "not asked"}])"));
    ASSERT_EQ(graph.at("associations").size(), 2U);
    json first = graph.at("associations").at(0);
    EXPECT_THAT(first.at("path").get<std::string>(), StartsWith("root/cimv2:TEST_Holds.From=\"TEST_Node.Name="));
    first.erase("path");
    EXPECT_EQ(first, support::ParsedJson(
                         R"({"class": "TEST_Holds", "from": 0, "from_role": "From", "to": 1, "to_role": "To"})"));
    EXPECT_EQ(graph.at("associations").at(1).at("from_role"), "To");
}

TEST_F(RelatedTest, DotIsAGraphWhateverTheTextsAre) {
    const std::string nasty = "x\"]; } evil -- [\\N &lt;b&gt; &amp;quot;\nline";
    server_.Link("TEST_Holds", "a", "x&quot;]; } evil -- [\\N &amp;lt;b&amp;gt; &amp;amp;quot;&#10;line");
    const std::string dot = Output({Node("a"), "--depth", "1", "-o", "dot"});
    const DotReader graph(dot);
    ASSERT_EQ(graph.nodes.size(), 2U);
    ASSERT_EQ(graph.edges.size(), 1U);
    EXPECT_EQ(graph.edges[0].label, "TEST_Holds");
    EXPECT_EQ(graph.nodes.at("o0").at("label"), Node("a"));
    EXPECT_EQ(graph.nodes.at("o1").at("label"), R"(TEST_Node.Name="x\"]; } evil -- [\\N &lt;b&gt; &amp;quot; line")");
    EXPECT_EQ(graph.nodes.at("o1").at("tooltip"), "root/cimv2:" + graph.nodes.at("o1").at("label"));
    if (const std::string program = support::FindProgram("dot"); !program.empty()) {
        const support::TemporaryDirectory folder;
        const auto run = support::RunProgram(program, {"-Tcanon", folder.WriteFile("graph.dot", dot)});
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
    }
}

// --- Against a whole server --------------------------------------------------------------------------------------

TEST(RelatedToTheDemoSystem, AreItsDevicesAndTheProcessesOfItsOperatingSystem) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.volumes = 2;
    const demo::DemoServer server(options);
    const std::vector<std::string> host{"--host", support::LoopbackAddress()};
    const auto run = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), host.begin(), host.end());
        const auto result = RunCimhttp(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.output;
    };
    const json systems = support::ParsedJson(run({"instances", "DEMO_ComputerSystem", "--paths", "-o", "json"}));
    const json graph = support::ParsedJson(run({"related", systems.at(0), "-o", "json"}));
    std::set<std::string> found;
    for (const json& object : graph.at("objects")) {
        found.insert(object.at("path"));
    }
    EXPECT_EQ(found.size(), graph.at("objects").size());
    for (const char* name : {"DEMO_StorageVolume", "DEMO_NetworkPort", "DEMO_OperatingSystem", "DEMO_FileSystem"}) {
        for (const std::string path : support::ParsedJson(run({"instances", name, "--paths", "-o", "json"}))) {
            EXPECT_EQ(found.count("root/cimv2:" + path), 1U) << path;
        }
    }
    EXPECT_THAT(run({"related", systems.at(0), "--depth", "1"}),
                AllOf(HasSubstr("── DEMO_StorageVolume.…,DeviceID=\"volume-0000001\"  DEMO_SystemDevice\n"),
                      HasSubstr("── DEMO_OperatingSystem.…,Name=\"Linux\"  DEMO_RunningOS\n")));
}
