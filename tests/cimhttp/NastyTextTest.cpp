// A server's text in every form of the output: nothing of it steers a terminal or passes for another text.

#include "CimXml.h"
#include "ProgramRun.h"
#include "support/CimServer.h"
#include "support/ParsedJson.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"
#include "text/Utf8.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using nlohmann::json;
using support::TerminalProgram;
using testing::HasSubstr;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr unsigned kFailed = 1; // CIM_ERR_FAILED

/// What XML can carry of it: the first and last C1 control, marks of direction, what has no width, fillers, tags.
const std::vector<char32_t> kNasty{0x80,   0x9B,   0x9F,    0xAD,   0x34F,   0x61C,   0x115F,  0x1160,  0x17B4,
                                   0x180E, 0x200B, 0x200C,  0x200D, 0x200E,  0x200F,  0x2028,  0x2029,  0x202A,
                                   0x202E, 0x2060, 0x2064,  0x2066, 0x2069,  0x206F,  0x3164,  0xFEFF,  0xFFA0,
                                   0xFFF9, 0xFFFB, 0x1D173, 0x7F,   0xE0001, 0xE0020, 0xE007F, 0xE0100, 0xE01EF};

/// `<00000b>` and such, so that no two stand beside each other.
std::string NastyText() {
    std::string text = "begin";
    for (const char32_t character : kNasty) {
        text += '<';
        cimhttp::AppendUtf8(character, text);
        text += '>';
    }
    return text + "end";
}

std::string Escaped(const std::string& text) {
    std::string xml;
    for (const char letter : text) {
        xml += letter == '<' ? "&lt;" : letter == '>' ? "&gt;" : std::string(1, letter);
    }
    return xml;
}

/// What stands before the first place of a text that must not reach a terminal, and the place; empty where all is well.
/// `allowed`: control characters of the program's own.
std::string Fault(const std::string& text, const std::string& allowed) {
    for (std::size_t i = 0; i < text.size();) {
        const cimhttp::Utf8Character character = cimhttp::CharacterAt(text, i);
        const bool isNasty = std::find(kNasty.begin(), kNasty.end(), character.value) != kNasty.end();
        const bool isControl = character.value < 0x20 && allowed.find(text[i]) == std::string::npos;
        if (character.IsBad() || isNasty || isControl) {
            return "'" + text.substr(i < 20 ? 0 : i - 20, 20) + "' and then " + std::to_string(character.value);
        }
        i += character.size;
    }
    return {};
}

/// A server all of whose texts are nasty, as far as they are no names.
class NastyTextTest : public testing::Test {
  protected:
    NastyTextTest() {
        server_.Listen(kHttpPort);
        const std::string nasty = Escaped(NastyText());
        const std::string description = QualifierXml("Description", "string", nasty);
        const std::string mapped = QualifierXml("ValueMap", std::vector<std::string>{"1"}) +
                                   QualifierXml("Values", std::vector<std::string>{nasty});
        const std::string declarations = DeclarationXml("Text", "string", description) +
                                         DeclarationXml("State", "uint16", mapped) +
                                         ArrayDeclarationXml("List", "string");
        const std::string method = "<METHOD NAME=\"Stop\" TYPE=\"uint32\">" + description + "</METHOD>";
        std::string cls = ClassXml("TEST_Disk", "", declarations);
        cls.insert(cls.rfind("</CLASS>"), method);
        const std::string values = PropertyXml("Text", "string", nasty) + PropertyXml("State", "uint16", "1") +
                                   ArrayXml("List", "string", {nasty, "b"});
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
        server_.Answer("EnumerateClasses", "", cls);
        server_.Answer("EnumerateQualifiers", "",
                       "<QUALIFIER.DECLARATION NAME=\"Description\" TYPE=\"string\"><SCOPE CLASS=\"true\"/><VALUE>" +
                           nasty + "</VALUE></QUALIFIER.DECLARATION>");
        server_.Answer("GetClass", "TEST_Disk", cls);
        server_.Answer("EnumerateInstances", "TEST_Disk",
                       InstanceXml("TEST_Disk", nasty, values) + InstanceXml("TEST_Disk", "other", values));
        server_.Answer("EnumerateInstanceNames", "TEST_Disk", PathXml("TEST_Disk", nasty));
        server_.Answer("GetInstance", "TEST_Disk", BareInstanceXml("TEST_Disk", nasty, values));
        server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", nasty, values));
        AnswerAboutAssociations(nasty, values);
        server_.Fail("GetClass", "TEST_Bad", kFailed, NastyText());
        server_.Fail("EnumerateInstances", "TEST_Bad", kFailed, NastyText());
    }

    void AnswerAboutAssociations(const std::string& nasty, const std::string& values) {
        const auto wholePath = [](const std::string& path) {
            return "<INSTANCEPATH><NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
                   "<NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH></NAMESPACEPATH>" +
                   path + "</INSTANCEPATH>";
        };
        const auto key = [](const std::string& role, const std::string& name) {
            return "<KEYBINDING NAME=\"" + role + "\"><VALUE.REFERENCE>" + PathXml("TEST_Disk", name) +
                   "</VALUE.REFERENCE></KEYBINDING>";
        };
        const std::string link =
            "<INSTANCENAME CLASSNAME=\"TEST_Link\">" + key("From", "a") + key("To", nasty) + "</INSTANCENAME>";
        server_.Answer("AssociatorNames", "",
                       "<OBJECTPATH>" + wholePath(PathXml("TEST_Disk", nasty)) + "</OBJECTPATH>");
        server_.Answer("ReferenceNames", "", "<OBJECTPATH>" + wholePath(link) + "</OBJECTPATH>");
        server_.Answer("Associators", "",
                       "<VALUE.OBJECTWITHPATH>" + wholePath(PathXml("TEST_Disk", nasty)) +
                           BareInstanceXml("TEST_Disk", nasty, values) + "</VALUE.OBJECTWITHPATH>");
        server_.Answer("EnumerateInstanceNames", "CIM_Namespace", PathXml("CIM_Namespace", nasty));
        for (const std::string cls : {"CIM_RegisteredProfile", "CIM_ObjectManager"}) {
            const std::string property = cls == "CIM_ObjectManager" ? "Version" : "RegisteredName";
            server_.Answer("GetClass", cls, ClassXml(cls, "", DeclarationXml(property, "string")));
            server_.Answer("EnumerateInstances", cls, InstanceXml(cls, nasty, PropertyXml(property, "string", nasty)));
        }
    }

    std::vector<std::string> Arguments(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return arguments;
    }

    /// A document for `collect`.
    std::string Document() const {
        return folder_.WriteFile("requested.xml", "<vyx version=\"1\"><network address=\"" + server_.Address() +
                                                      "\"/><class name=\"TEST_Disk\"/></vyx>");
    }

    support::CimServer server_;
    support::TemporaryDirectory folder_;
};

struct Form {
    std::vector<std::string> arguments;
    std::vector<std::string> forms;
};

const std::vector<Form> kForms{
    {{"classes"}, {"plain", "json", "csv"}},
    {{"tree"}, {"plain", "json", "csv"}},
    {{"qualifiers"}, {"table", "plain", "json", "csv", "mof"}},
    {{"qualifiers", "--class", "TEST_Disk"}, {"table", "plain", "json", "csv"}},
    {{"class", "TEST_Disk"}, {"mof", "table", "plain", "json", "csv"}},
    {{"class", "TEST_Disk", "--all"}, {"mof"}},
    {{"methods", "TEST_Disk"}, {"table", "plain", "json", "csv", "mof"}},
    {{"instances", "TEST_Disk"}, {"table", "plain", "json", "csv", "mof"}},
    {{"instances", "TEST_Disk", "--raw"}, {"table", "plain", "json", "csv", "mof"}},
    {{"instances", "TEST_Disk", "--deep"}, {"table", "plain", "json", "csv", "mof"}},
    {{"instances", "TEST_Disk", "--paths"}, {"table", "plain", "json", "csv"}},
    {{"instances", "TEST_Disk", "--keys"}, {"table", "plain", "json", "csv"}},
    {{"instances", "TEST_Disk", "--wide"}, {"csv"}},
    {{"instance", "TEST_Disk", "--key", "Name=none"}, {"plain"}},
    {{"count"}, {"table", "plain", "json", "csv"}},
    {{"instance", "TEST_Disk.Name=\"a\""}, {"table", "plain", "json", "csv", "mof"}},
    {{"watch", "TEST_Disk", "--count", "0"}, {"plain", "json"}},
    {{"info"}, {"plain", "json"}},
    {{"namespaces"}, {"plain", "json", "csv"}},
    {{"profiles"}, {"table", "plain", "json", "csv"}},
    {{"associators", "TEST_Disk.Name=\"a\""}, {"table", "plain", "json", "csv", "mof"}},
    {{"associators", "TEST_Disk.Name=\"a\"", "--names"}, {"table", "plain", "json", "csv"}},
    {{"references", "TEST_Disk.Name=\"a\"", "--names"}, {"table", "plain", "json", "csv"}},
    {{"related", "TEST_Disk.Name=\"a\"", "--depth", "1"}, {"plain", "json", "dot"}},
    {{"class", "TEST_Bad"}, {"mof", "json"}},
    {{"instances", "TEST_Bad"}, {"table", "json"}},
};

} // namespace

TEST_F(NastyTextTest, NoFormOfTheOutputLetsItReachATerminal) {
    for (const Form& form : kForms) {
        for (const std::string& name : form.forms) {
            SCOPED_TRACE(form.arguments.front() + " -o " + name);
            auto arguments = Arguments(form.arguments);
            arguments.insert(arguments.end(), {"-o", name});
            TerminalProgram program(CIMHTTP_PROGRAM, arguments, {"NO_COLOR=1"});
            program.Wait();
            EXPECT_EQ(Fault(program.Screen(), "\r\n"), "") << program.Screen();
        }
    }
}

TEST_F(NastyTextTest, ItDoesNotReachATerminalThroughAPipeEither) {
    for (const Form& form : kForms) {
        for (const std::string& name : form.forms) {
            SCOPED_TRACE(form.arguments.front() + " -o " + name);
            auto arguments = Arguments(form.arguments);
            arguments.insert(arguments.end(), {"-o", name});
            const auto run = RunCimhttp(arguments);
            EXPECT_EQ(name == "csv" ? "" : Fault(run.output, "\n"), "") << run.output;
            EXPECT_EQ(Fault(run.errors, "\n"), "") << run.errors;
        }
    }
}

TEST_F(NastyTextTest, CsvForAProgramKeepsItAsItIs) {
    EXPECT_THAT(RunCimhttp(Arguments({"instances", "TEST_Disk", "-o", "csv"})).output, HasSubstr(NastyText()));
}

TEST_F(NastyTextTest, JsonKeepsItInEscapes) {
    const auto instances = support::ParsedJson(RunCimhttp(Arguments({"instances", "TEST_Disk", "-o", "json"})).output);
    EXPECT_EQ(instances.at(0).at("properties").at("Text").at("value"), NastyText());
    EXPECT_EQ(instances.at(0).at("properties").at("State").at("text"), NastyText());
}

TEST_F(NastyTextTest, MofKeepsItInEscapes) {
    const std::string mof = RunCimhttp(Arguments({"instances", "TEST_Disk", "-o", "mof"})).output;
    for (const char* escape : {"\\x0080>", "\\x009B>", "\\x200B>", "\\xFEFF>", "\\xDB40\\xDC01>"}) {
        EXPECT_THAT(mof, HasSubstr(escape));
    }
}

TEST_F(NastyTextTest, CollectKeepsItInEscapes) {
    const std::string file = (folder_.Path() / "collected.json").string();
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"collect", Document()}, {"collect", Document(), "--out", file}}) {
        const auto run = RunCimhttp(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        const std::string collected = run.output + ReadFile(file);
        EXPECT_EQ(Fault(collected, "\n"), "");
        EXPECT_EQ(support::ParsedJson(collected)["classes"][0]["instances"][0]["properties"]["Text"]["value"],
                  NastyText());
    }
}

TEST_F(NastyTextTest, TheLogEscapesIt) {
    for (const char* cls : {"TEST_Disk", "TEST_Bad"}) {
        const auto run = RunCimhttp(Arguments({"--log", "debug", "instances", cls}));
        EXPECT_EQ(Fault(run.errors, "\n"), "") << run.errors;
    }
    EXPECT_THAT(RunCimhttp(Arguments({"--log", "debug", "instances", "TEST_Bad"})).errors,
                HasSubstr("begin<\\xc2\\x80><\\xc2\\x9b>"));
}

TEST_F(NastyTextTest, AChangeOfItIsShownSafely) {
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"watch", "TEST_Disk", "--interval", "0.01"}), {"NO_COLOR=1"});
    ASSERT_TRUE(program.AwaitText("2 instances")) << program.Screen();
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", Escaped(NastyText()), PropertyXml("Text", "string", "new")));
    ASSERT_TRUE(program.AwaitText("→ new")) << program.Screen();
    server_.Fail("EnumerateInstances", "TEST_Disk", kFailed, NastyText());
    ASSERT_TRUE(program.AwaitText(" ! ")) << program.Screen();
    program.Type("\x03");
    program.Wait();
    std::string screen = program.Screen();
    for (const std::string erasure = "\r\x1b[K"; screen.find(erasure) != std::string::npos;) {
        screen.erase(screen.find(erasure), erasure.size());
    }
    EXPECT_EQ(Fault(screen, "\r\n"), "") << screen;
}

TEST_F(NastyTextTest, ThePromptForAPasswordShowsItSafely) {
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"--user", NastyText(), "classes"}));
    ASSERT_TRUE(program.AwaitText("end on http")) << program.Screen();
    EXPECT_EQ(Fault(program.Screen(), "\r\n"), "") << program.Screen();
}

TEST_F(NastyTextTest, WhatThereIsToChooseFromIsShownSafely) {
    server_.Answer("EnumerateInstanceNames", "TEST_Disk",
                   PathXml("TEST_Disk", Escaped(NastyText())) + PathXml("TEST_Disk", "other"));
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"instance", "TEST_Disk"}), {"NO_COLOR=1"});
    ASSERT_TRUE(program.AwaitText("Which one (1-2, or nothing)? ")) << program.Screen();
    program.Type("\r");
    program.Wait();
    std::string screen = program.Screen();
    for (const std::string erasure = "\r\x1b[K"; screen.find(erasure) != std::string::npos;) {
        screen.erase(screen.find(erasure), erasure.size());
    }
    EXPECT_EQ(Fault(screen, "\r\n"), "") << screen;
    EXPECT_EQ(Fault(RunCimhttp(Arguments({"instance", "TEST_Disk"})).errors, "\n"), "");
}

TEST(NastyText, TheLineThatSaysWhatIsReadShowsItSafely) {
    support::ScriptedServer server([](auto& connection) { connection.WaitForPeerClose(); });
    server.Listen(kHttpPort);
    const std::string path = "TEST_Disk.Name=\"" + NastyText() + '"';
    TerminalProgram program(CIMHTTP_PROGRAM, {"--host", server.Address(), "instance", path}, {}, {400, 24});
    ASSERT_TRUE(program.AwaitText("end\", 0:0")) << program.Screen();
    EXPECT_EQ(Fault(program.Screen(), "\r\n\x1b"), "") << program.Screen();
}

TEST(NastyText, BytesThatAreNoCharactersReachNoTerminal) {
    const auto run = RunCimhttp({"--host", "no\x9bhost", "--timeout", "1", "classes"});
    EXPECT_NE(run.status, 0);
    EXPECT_EQ(Fault(run.errors, "\n"), "") << run.errors;
}
