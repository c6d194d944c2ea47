#include "support/ShellOffers.h"

#include "support/ProgramRun.h"
#include "support/SkipTest.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <sstream>

namespace support {

std::vector<std::string> ShellOffers(const std::string& shell, const std::string& completion,
                                     const std::string& programs, const std::string& line,
                                     std::vector<std::string> environment) {
    const std::string program = FindProgram(shell);
    if (program.empty()) {
        SkipTest(shell + " is not installed");
    }
    const TemporaryDirectory home;
    environment.push_back("HOME=" + home.Path().string());
    environment.push_back("PATH=" + programs + ":/usr/bin:/bin");
    const std::vector<std::string> quiet = shell == "zsh"    ? std::vector<std::string>{"-f"}
                                           : shell == "fish" ? std::vector<std::string>{"--no-config"}
                                                             : std::vector<std::string>{"--norc"};
    std::vector<std::string> arguments = quiet;
    arguments.insert(arguments.end(), {std::string(SHELL_OFFERS) + "/" + shell + "-offers", completion, line});
    const auto run = RunProgram(program, arguments, environment);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    std::vector<std::string> offers;
    std::istringstream stream(run.output);
    for (std::string offer; std::getline(stream, offer);) {
        offers.push_back(offer);
    }
    return offers;
}

} // namespace support
