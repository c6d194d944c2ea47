// What cimhttp says of itself: its help, its man page and the completion of its command line tell of the same commands
// and options.

#include "CimXml.h"
#include "ProgramRun.h"
#include "commands/Commands.h"
#include "support/CimServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <sstream>

using testing::ContainerEq;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

/// The long options in a text.
std::set<std::string> OptionsIn(const std::string& text) {
    std::set<std::string> options;
    for (auto begin = text.find("--"); begin != std::string::npos; begin = text.find("--", begin)) {
        const auto end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", begin);
        options.insert(text.substr(begin, end - begin));
        begin = end;
    }
    return options;
}

std::string Replaced(std::string text, const std::string& part, const std::string& replacement) {
    for (auto found = text.find(part); found != std::string::npos; found = text.find(part, found)) {
        text.replace(found, part.size(), replacement);
    }
    return text;
}

/// The man page's text with its hyphens as they are shown.
std::string ManPage() { return Replaced(ReadFile(CIMHTTP_MAN_PAGE), "\\-", "-"); }

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

class CompletionTest : public testing::Test {
  protected:
    CompletionTest() {
        server_.Listen(kHttpPort);
        server_.Answer("EnumerateClassNames", "",
                       "<CLASSNAME NAME=\"TEST_Disk\"/><CLASSNAME NAME=\"TEST_Tape\"/>"
                       "<CLASSNAME NAME=\"CIM_System\"/>");
    }

    /// What bash offers when Tab is pressed behind `line`.
    std::vector<std::string> Offers(const std::string& line, const std::string& program = CIMHTTP_PROGRAM) const {
        const std::string script = std::string("source ") + CIMHTTP_COMPLETION + "; COMP_LINE='" + line +
                                   "' COMP_POINT=${#COMP_LINE} COMP_WORDS=(" + program +
                                   "); _cimhttp; [[ ${#COMPREPLY[@]} == 0 ]] || printf '%s\\n' \"${COMPREPLY[@]}\"";
        const auto run =
            support::RunProgram("/bin/bash", {"-c", script},
                                {"CIMHTTP_COMPLETION_SECONDS=60", "XDG_CONFIG_HOME=" + folder_.Path().string()});
        EXPECT_EQ(run.errors, "");
        return Lines(run.output);
    }

    /// What a shell makes of the line's end when one of the offers, which goes behind this, has been taken over.
    std::vector<std::string> WordsOf(const std::string& before, const std::string& offer) const {
        const std::string script = "cd " + folder_.Path().string() + "; printf '%s\\n' " + before + offer;
        const auto run = support::RunProgram("/bin/bash", {"-c", script});
        EXPECT_EQ(run.errors, "");
        return Lines(run.output);
    }

    std::string Host() const { return "cimhttp --host " + server_.Address() + ' '; }

    support::CimServer server_;
    support::TemporaryDirectory folder_;
};

} // namespace

TEST(Help, OfEachCommandHasAnExample) {
    for (const auto& command : cimhttp::AllCommands()) {
        const std::string name = command->Describe().name;
        const auto run = RunCimhttp({name, "--help"});
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.output, ContainsRegex("Example:\n    cimhttp .*" + name + " ?"));
    }
}

TEST(Help, OfRecordTellsOfItsFileAndOfTheOtherCommands) {
    const auto run = RunCimhttp({"record", "--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, ContainsRegex("Example:\n    cimhttp .*record server.rec info"));
    for (const auto& command : cimhttp::AllCommands()) {
        EXPECT_THAT(run.output, HasSubstr("\n  " + command->Describe().name + ' '));
    }
    EXPECT_THAT(ManPage(), HasSubstr("\n.BI \"record \" \"file command\""));
}

TEST(Help, FitsTheTerminalAndEndsWithTheExample) {
    std::vector<std::vector<std::string>> all{{"--help"}, {"record", "--help"}};
    for (const auto& command : cimhttp::AllCommands()) {
        all.push_back({command->Describe().name, "--help"});
    }
    for (const std::uint16_t columns : std::array<std::uint16_t, 3>{60, 80, 120}) {
        for (const auto& arguments : all) {
            support::TerminalProgram program(CIMHTTP_PROGRAM, arguments, {}, {columns, 24});
            EXPECT_EQ(program.Wait(), 0);
            for (const std::string& line : Lines(Replaced(program.Screen(), "\r\n", "\n"))) {
                EXPECT_LE(line.size(), columns) << line;
            }
            EXPECT_THAT(program.Screen(), ContainsRegex("\r\nExample:\r\n(    [^\r]*\r\n)+$"));
        }
    }
}

TEST(Help, OfAWideTerminalHasNoLongLines) {
    for (const auto& line : Lines(RunCimhttp({"--help"}, {"COLUMNS=500"}).output)) {
        EXPECT_LE(line.size(), 100U);
    }
}

TEST(Help, NamesTheVersionTheCommitTheCompilerAndTheClientLibrary) {
    EXPECT_THAT(RunCimhttp({"--version"}).output,
                ContainsRegex("^cimhttp [0-9.]+\ncommit: [^\n]+\ncompiler: [A-Za-z]+ [0-9.]+\n"
                              "client library: (bundled|system)\n$"));
}

TEST(Help, TellsOfTheSameCommandsAndOptionsAsTheManPage) {
    const std::string page = ManPage();
    const auto optionsOfPage = OptionsIn(page);
    std::set<std::string> known = OptionsIn(RunCimhttp({"--help"}).output);
    for (const auto& command : cimhttp::AllCommands()) {
        const auto description = command->Describe();
        EXPECT_THAT(page, ContainsRegex("\n[.](B|BI|BR) \"?" + description.name + "[ \n]"));
        for (const auto& option : description.options) {
            known.insert(option.name);
        }
    }
    EXPECT_THAT(optionsOfPage, ContainerEq(known));
}

TEST(Help, OfTheManPageNamesEachExitStatus) {
    const std::string page = ManPage();
    const std::string statuses = page.substr(page.find(".SH EXIT STATUS"));
    for (const char* status : {"0", "1", "2", "3", "4", "5", "6", "7", "8"}) {
        EXPECT_THAT(statuses, HasSubstr(std::string("\n.TP\n") + status + "\n"));
    }
}

TEST_F(CompletionTest, OffersTheCommandsAndTheirOptions) {
    const auto commands = Offers("cimhttp ");
    std::vector<std::string> names{"record", "help"};
    for (const auto& command : cimhttp::AllCommands()) {
        const auto description = command->Describe();
        names.push_back(description.name);
        auto options = OptionsIn(RunCimhttp({"--help"}).output);
        for (const auto& option : description.options) {
            options.insert(option.name);
        }
        EXPECT_THAT(Offers("cimhttp " + description.name + " --"), UnorderedElementsAreArray(options))
            << description.name;
    }
    EXPECT_THAT(commands, UnorderedElementsAreArray(names));
    EXPECT_THAT(Offers("cimhttp inst"), ElementsAre("instances", "instance"));
}

TEST_F(CompletionTest, OffersAnotherCommandAfterRecordAndItsFile) {
    auto commands = Offers("cimhttp ");
    EXPECT_THAT(Offers("cimhttp help "), UnorderedElementsAreArray(commands));
    for (const char* const outer : {"record", "help"}) {
        commands.erase(std::remove(commands.begin(), commands.end(), outer), commands.end());
    }
    EXPECT_THAT(Offers("cimhttp record server.rec "), UnorderedElementsAreArray(commands));
    EXPECT_THAT(Offers(Host() + "record server.rec class test_"), ElementsAre("TEST_Disk", "TEST_Tape"));
    EXPECT_THAT(
        Offers("cimhttp record " + folder_.WriteFile("server.rec", "").substr(0, folder_.Path().string().size() + 4)),
        ElementsAre((folder_.Path() / "server.rec").string()));
}

TEST_F(CompletionTest, OffersTheServersClasses) {
    EXPECT_THAT(Offers(Host() + "class test_"), ElementsAre("TEST_Disk", "TEST_Tape"));
    EXPECT_THAT(Offers(Host() + "instances --deep CIM"), ElementsAre("CIM_System"));
    EXPECT_THAT(Offers(Host() + "check test_"), ElementsAre("TEST_Disk", "TEST_Tape"));
    EXPECT_THAT(Offers(Host() + "check he"), ElementsAre("health"));
    EXPECT_THAT(Offers("cimhttp --host " + server_.Address() + ":5988 --tls=false qualifiers --class TEST_T"),
                ElementsAre("TEST_Tape"));
    EXPECT_THAT(Offers(Host() + "class TEST_Disk "), IsEmpty());
}

TEST_F(CompletionTest, OffersThePropertiesOfTheClassThatTheLineNames) {
    server_.Answer("GetClass", "TEST_Disk",
                   "<CLASS NAME=\"TEST_Disk\"><PROPERTY NAME=\"Size\" TYPE=\"uint64\"/><PROPERTY NAME=\"Name\" "
                   "TYPE=\"string\"/><PROPERTY NAME=\"Number\" TYPE=\"string\"/></CLASS>");
    EXPECT_THAT(Offers(Host() + "instances TEST_Disk --property n"), ElementsAre("Name", "Number"));
    EXPECT_THAT(Offers(Host() + "instances TEST_Disk --property Size,n"), ElementsAre("Size,Name", "Size,Number"));
    EXPECT_THAT(Offers(Host() + "watch TEST_Disk --property Size --where S"), ElementsAre("Size="));
    EXPECT_THAT(Offers(Host() + "check TEST_Disk --critical S"), ElementsAre("Size="));
    EXPECT_THAT(Offers(Host() + "instances --property N"), IsEmpty());
    EXPECT_THAT(Offers(Host() + "instances TEST_Nobody --property N"), IsEmpty());
}

TEST_F(CompletionTest, OffersTheKeysOfTheClassThatTheLineNamesAndTheirValues) {
    const auto path = [](const std::string& name, const std::string& number) {
        std::string xml = PathXml("TEST_Disk", name);
        return xml.insert(xml.rfind("</INSTANCENAME>"), "<KEYBINDING NAME=\"Number\"><KEYVALUE VALUETYPE=\"numeric\">" +
                                                            number + "</KEYVALUE></KEYBINDING>");
    };
    server_.Answer("EnumerateInstanceNames", "TEST_Disk",
                   path("sda", "1") + path("sdb", "1") + path("Two blanks", "12") + path("00:1b:2a", "3"));
    const std::string line = Host() + "instance TEST_Disk --key ";
    EXPECT_THAT(Offers(line), ElementsAre("Name=", "Number="));
    EXPECT_THAT(Offers(line + "na"), ElementsAre("Name="));
    EXPECT_THAT(Offers(line + "Name=s"), ElementsAre("sda", "sdb")) << "readline keeps what stands before the sign";
    EXPECT_THAT(Offers(line + "number="), ElementsAre("1", "12", "3"));
    EXPECT_THAT(Offers(line + "Name=sda --key Number=1"), ElementsAre("1", "12"));
    EXPECT_THAT(Offers(line + "Name=Tw"), ElementsAre("Two\\ blanks"));
    EXPECT_THAT(Offers(line + "Name=Two\\ bl"), ElementsAre("Two\\ blanks"));
    EXPECT_THAT(Offers(line + "Name=Two\\ blanks --key Nu"), ElementsAre("Number="));
    EXPECT_THAT(Offers(line + "Name=00:1"), ElementsAre("1b:2a"));
    EXPECT_THAT(Offers(Host() + "instance --key "), IsEmpty());
    for (const auto& call : server_.Calls()) {
        EXPECT_EQ(call.method, "EnumerateInstanceNames");
    }
}

TEST_F(CompletionTest, WhatAServerSaysIsAWordAndNeverRun) {
    const std::string nasty = "$(touch x)`touch y`;touch z&\"'\\ $HOME|~*";
    server_.Answer("EnumerateInstanceNames", "TEST_Disk",
                   PathXml("TEST_Disk", "$(touch x)`touch y`;touch z&amp;\"'\\ $HOME|~*"));
    const auto values = Offers(Host() + "instance TEST_Disk --key Name=");
    ASSERT_EQ(values.size(), 1U);
    EXPECT_THAT(WordsOf("Name=", values.front()), ElementsAre("Name=" + nasty));
    // A program that passes on names as such a server may have them.
    folder_.WriteFile("lines", "Name,Type\n" + nasty + "\n");
    folder_.WriteFile("nasty", "cat " + (folder_.Path() / "lines").string() + "\n");
    const std::string program = (folder_.Path() / "nasty").string();
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    for (const char* line : {"cimhttp class $", "cimhttp instances A --property $", "cimhttp instances A --sort $",
                             "cimhttp -c $", "cimhttp qualifiers --class $"}) {
        const auto offers = Offers(line, program);
        ASSERT_EQ(offers.size(), 0U) << "as it is typed, a dollar begins something else";
    }
    for (const char* line :
         {"cimhttp class ", "cimhttp instances A --property ", "cimhttp watch A --where ",
          "cimhttp instances A --sort ", "cimhttp -c ", "cimhttp count ", "cimhttp qualifiers --class "}) {
        const auto offers = Offers(line, program);
        ASSERT_FALSE(offers.empty()) << line;
        const std::string end = std::string(line).find("--where") != std::string::npos ? "=" : "";
        EXPECT_THAT(WordsOf("", offers.back()), ElementsAre(nasty + end)) << line;
    }
    for (const char* file : {"x", "y", "z"}) {
        EXPECT_FALSE(std::filesystem::exists(folder_.Path() / file));
        EXPECT_FALSE(std::filesystem::exists(file));
    }
}

TEST_F(CompletionTest, OffersNothingWhereTheServerDoesNotHelp) {
    server_.RequireUser("reader", "s3cret");
    EXPECT_THAT(Offers(Host() + "class TEST_"), IsEmpty());
    EXPECT_THAT(Offers(Host() + "--user reader class TEST_"), IsEmpty());
    server_.Stop();
    EXPECT_THAT(Offers(Host() + "class TEST_"), IsEmpty());
}

TEST_F(CompletionTest, OffersNamedConnectionsAndValues) {
    for (const char* name : {"lab", "office"}) {
        RunCimhttp({"connection", "add", name, "--host", server_.Address()},
                   {"XDG_CONFIG_HOME=" + folder_.Path().string()});
    }
    EXPECT_THAT(Offers("cimhttp -c "), ElementsAre("lab", "office"));
    EXPECT_THAT(Offers("cimhttp connection remove o"), ElementsAre("office"));
    EXPECT_THAT(Offers("cimhttp -c lab class TEST_D"), ElementsAre("TEST_Disk"));
    EXPECT_THAT(Offers("cimhttp connection "), ElementsAre("add", "list", "remove", "test", "known", "forget"));
    EXPECT_THAT(Offers("cimhttp --output c"), ElementsAre("csv"));
    EXPECT_THAT(Offers("cimhttp --log de"), ElementsAre("debug"));
}
