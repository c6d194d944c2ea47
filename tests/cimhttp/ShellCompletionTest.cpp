// The completion of cimhttp's command line for zsh and fish; HelpTest.cpp has that for bash.

#include "CimXml.h"
#include "ProgramRun.h"
#include "commands/Commands.h"
#include "support/CimServer.h"
#include "support/ShellOffers.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAreArray;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

/// The long options that a help describes.
std::set<std::string> OptionsOfHelp(const std::string& help) {
    std::set<std::string> options;
    const std::regex option("\n  (?:-., )?(--[a-z-]+)");
    for (std::sregex_iterator found(help.begin(), help.end(), option), end; found != end; ++found) {
        options.insert((*found)[1]);
    }
    return options;
}

class ShellCompletion : public testing::TestWithParam<const char*> {
  protected:
    ShellCompletion() {
        server_.Listen(kHttpPort);
        server_.Answer("EnumerateClassNames", "",
                       "<CLASSNAME NAME=\"TEST_Disk\"/><CLASSNAME NAME=\"TEST_Tape\"/>"
                       "<CLASSNAME NAME=\"CIM_System\"/>");
        server_.Answer("GetClass", "TEST_Disk",
                       "<CLASS NAME=\"TEST_Disk\"><PROPERTY NAME=\"Size\" TYPE=\"uint64\"/><PROPERTY NAME=\"Name\" "
                       "TYPE=\"string\"/><PROPERTY NAME=\"Number\" TYPE=\"string\"/></CLASS>");
    }

    /// What the shell offers after `line`, where `program` takes the place of cimhttp.
    std::vector<std::string> Offers(const std::string& line, const std::string& program = CIMHTTP_PROGRAM) const {
        return support::ShellOffers(GetParam(), std::string(CIMHTTP_COMPLETIONS) + "/cimhttp." + GetParam(),
                                    std::filesystem::path(program).parent_path().string(), line,
                                    {"CIMHTTP_COMPLETION_SECONDS=60", "XDG_CONFIG_HOME=" + folder_.Path().string()});
    }

    /// What the shell makes of offers in a command line. fish writes them with backslashes only when it inserts them.
    static std::vector<std::string> Read(std::vector<std::string> offers) {
        for (auto& offer : offers) {
            if (GetParam() != std::string("fish")) {
                const auto run = support::RunProgram(support::FindProgram(GetParam()), {"-c", "printf %s " + offer});
                EXPECT_EQ(run.errors, "");
                offer = run.output;
            }
        }
        return offers;
    }

    std::string Host() const { return "cimhttp --host " + server_.Address() + ' '; }

    support::CimServer server_;
    support::TemporaryDirectory folder_;
};

INSTANTIATE_TEST_SUITE_P(Shells, ShellCompletion, testing::Values("zsh", "fish"),
                         [](const auto& shell) { return std::string(shell.param); });

} // namespace

TEST_P(ShellCompletion, OffersTheCommandsAndTheirOptions) {
    std::vector<std::string> commands{"record", "help"};
    for (const auto& command : cimhttp::AllCommands()) {
        const auto description = command->Describe();
        commands.push_back(description.name);
        auto options = OptionsOfHelp(RunCimhttp({"--help"}).output);
        for (const auto& option : description.options) {
            options.insert(option.name);
        }
        EXPECT_THAT(Offers("cimhttp " + description.name + " --"), UnorderedElementsAreArray(options))
            << description.name;
    }
    EXPECT_THAT(Offers("cimhttp "), UnorderedElementsAreArray(commands));
    EXPECT_THAT(Offers("cimhttp help "), UnorderedElementsAreArray(commands));
    EXPECT_THAT(Offers("cimhttp --strict --port 5988 qual"), ElementsAre("qualifiers"));
}

TEST_P(ShellCompletion, OffersAnotherCommandAfterRecordAndItsFile) {
    std::vector<std::string> commands;
    for (const auto& command : cimhttp::AllCommands()) {
        commands.push_back(command->Describe().name);
    }
    EXPECT_THAT(Offers("cimhttp record server.rec "), UnorderedElementsAreArray(commands));
    EXPECT_THAT(Offers("cimhttp record server.rec instances --sor"), ElementsAre("--sort"));
    EXPECT_THAT(Offers(Host() + "record server.rec class TEST_"), ElementsAre("TEST_Disk", "TEST_Tape"));
}

TEST_P(ShellCompletion, DoesNotAskSeveralServers) {
    const std::string connection = "{\"host\":\"" + server_.Address() + "\",\"tls\":false}";
    std::filesystem::create_directory(folder_.Path() / "cimhttp");
    std::filesystem::permissions(
        folder_.WriteFile("cimhttp/connections.json", "{\"rack1\":" + connection + ",\"rack2\":" + connection + '}'),
        std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_THAT(Offers("cimhttp -c rack1 class TEST_"), ElementsAre("TEST_Disk", "TEST_Tape"));
    for (const std::string several : {"-c 'rack*'", "-c rack1,rack2", "--connection=rack\\?"}) {
        EXPECT_THAT(Offers("cimhttp " + several + " class TEST_"), IsEmpty()) << several;
    }
}

TEST_P(ShellCompletion, OffersTheServersClassesAndTheirProperties) {
    EXPECT_THAT(Offers(Host() + "class test_"), ElementsAre("TEST_Disk", "TEST_Tape"));
    EXPECT_THAT(Offers("cimhttp --host=" + server_.Address() + ":5988 --tls=false qualifiers --class TEST_T"),
                ElementsAre("TEST_Tape"));
    EXPECT_THAT(Offers(Host() + "class TEST_Disk "), Not(Contains("TEST_Tape")));
    EXPECT_THAT(Offers(Host() + "instances TEST_Disk --property N"), ElementsAre("Name", "Number"));
    EXPECT_THAT(Offers(Host() + "instances TEST_Nobody --property N"), IsEmpty());
    server_.Stop();
    EXPECT_THAT(Offers(Host() + "class TEST_"), IsEmpty());
}

TEST_P(ShellCompletion, OffersWhatAServerSaysAsItIsAndNeverRunsIt) {
    const std::string nasty = "$(touch x)`touch y`;touch z&\"'\\ $HOME|~*";
    folder_.WriteFile("lines", "Name,Type\n" + nasty + "\n");
    const std::string program = folder_.WriteFile("cimhttp", "#!/bin/sh\ncat " + (folder_.Path() / "lines").string());
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    for (const char* line : {"cimhttp class ", "cimhttp instances A --property ", "cimhttp -c ", "cimhttp count ",
                             "cimhttp qualifiers --class "}) {
        EXPECT_THAT(Read(Offers(line, program)), Contains(nasty)) << line;
    }
    for (const char* file : {"x", "y", "z"}) {
        EXPECT_FALSE(std::filesystem::exists(file));
    }
}

TEST_P(ShellCompletion, OffersNamedConnectionsAndValues) {
    for (const char* name : {"lab", "office"}) {
        RunCimhttp({"connection", "add", name, "--host", server_.Address()},
                   {"XDG_CONFIG_HOME=" + folder_.Path().string()});
    }
    EXPECT_THAT(Offers("cimhttp -c "), ElementsAre("lab", "office"));
    EXPECT_THAT(Offers("cimhttp connection remove o"), ElementsAre("office"));
    EXPECT_THAT(Offers("cimhttp -c lab class TEST_D"), ElementsAre("TEST_Disk"));
    EXPECT_THAT(Offers("cimhttp connection "),
                UnorderedElementsAreArray({"add", "list", "remove", "test", "known", "forget"}));
    EXPECT_THAT(Offers("cimhttp --output c"), ElementsAre("csv"));
    EXPECT_THAT(Offers("cimhttp --log de"), ElementsAre("debug"));
}
