// What the demo server says of itself: its help, its man page and the completions of its command line tell of the same
// options.

#include "support/ProgramRun.h"
#include "support/ShellOffers.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>

namespace {

using testing::ContainerEq;
using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

/// What the first group of an expression matches, wherever it does.
std::set<std::string> FoundIn(const std::string& text, const std::string& expression) {
    std::set<std::string> found;
    const std::regex regex(expression);
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
        found.insert((*match)[1]);
    }
    return found;
}

std::set<std::string> OptionsOfHelp() {
    return FoundIn(support::RunProgram(DEMO_SERVER_PROGRAM, {"--help"}).output, "\n  (?:-.,)?(--[a-z-]+)");
}

TEST(DemoServerHelp, TellsOfTheSameOptionsAsTheManPage) {
    const auto page =
        std::regex_replace(support::ReadFile(DEMO_SERVER_FOLDER "/demo-server.1"), std::regex(R"(\\-)"), "-");
    const std::string options =
        page.substr(page.find(".SH OPTIONS"), page.find(".SH EXIT STATUS") - page.find(".SH OPTIONS"));
    EXPECT_THAT(FoundIn(options, R"re(\n\.TP\n\.(?:B|BI|BR)[^\n]*?(--[a-z-]+))re"), ContainerEq(OptionsOfHelp()));
}

TEST(DemoServerHelp, TellsOfTheSameOptionsAsTheGuide) {
    auto options = OptionsOfHelp();
    for (const char* const ofEveryProgram : {"--help", "--version"}) {
        options.erase(ofEveryProgram);
    }
    std::set<std::string> found;
    for (const auto& cell : FoundIn(support::ReadFile(DEMO_SERVER_GUIDE), "\n\\| (`--[^|\n]*) \\|")) {
        found.merge(FoundIn(cell, "`(--[a-z-]+)"));
    }
    EXPECT_THAT(found, ContainerEq(options));
}

class DemoServerCompletion : public testing::TestWithParam<const char*> {
  protected:
    static std::vector<std::string> Offers(const std::string& line) {
        return support::ShellOffers(GetParam(), std::string(DEMO_SERVER_FOLDER "/completion/demo-server.") + GetParam(),
                                    std::filesystem::path(DEMO_SERVER_PROGRAM).parent_path().string(), line);
    }
};

TEST_P(DemoServerCompletion, OffersTheOptionsOfTheHelp) {
    EXPECT_THAT(Offers("demo-server --"), UnorderedElementsAreArray(OptionsOfHelp()));
    EXPECT_THAT(Offers("demo-server --volumes 3 --vers"), ElementsAre("--version"));
}

TEST_P(DemoServerCompletion, OffersFilesAndNames) {
    const support::TemporaryDirectory folder;
    const std::string file = folder.WriteFile("schema.xml", "");
    const std::string begin = file.substr(0, file.size() - 5);
    for (const char* const option : {"--schema ", "--users ", "--replay ", "--certificate-out "}) {
        EXPECT_THAT(Offers(std::string("demo-server ") + option + begin),
                    ElementsAre(testing::AnyOf(file, "schema.xml"))) // zsh keeps the folder apart
            << option;
    }
    EXPECT_THAT(Offers("demo-server --interop root/i"), ElementsAre("root/interop"));
}

INSTANTIATE_TEST_SUITE_P(Shells, DemoServerCompletion, testing::Values("bash", "zsh", "fish"),
                         [](const auto& shell) { return std::string(shell.param); });

} // namespace
