#include "support/ProgramRun.h"

#include "support/ProgramStart.h"
#include "support/SkipTest.h"
#include "support/TemporaryDirectory.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace support {

namespace {

int StatusOf(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// What is written to a terminal until nobody has it open any more.
std::string ReadTerminal(int terminal) {
    std::string text;
    std::array<char, 4096> block{};
    for (ssize_t size = 0; (size = ::read(terminal, block.data(), block.size())) > 0;) {
        text.append(block.data(), static_cast<std::size_t>(size));
    }
    return text;
}

} // namespace

ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& environment) {
    const support::TemporaryDirectory directory;
    const std::string output = (directory.Path() / "output").string();
    const std::string errors = (directory.Path() / "errors").string();
    const ProgramStart start(program, arguments, environment);
    const pid_t child = ::fork();
    if (child == 0) {
        ::setsid(); // no terminal, where the tests themselves have one
        ProgramStart::Redirect(STDOUT_FILENO, output);
        ProgramStart::Redirect(STDERR_FILENO, errors);
        start.Become();
    }
    const int status = StatusOf(child);
    return {status, ReadFile(output), ReadFile(errors)};
}

ProgramRun RunProgramOnTerminal(const std::string& program, const std::vector<std::string>& arguments) {
    const support::TemporaryDirectory directory;
    const std::string output = (directory.Path() / "output").string();
    const ProgramStart start(program, arguments, {});
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        ProgramStart::Redirect(STDOUT_FILENO, output);
        start.Become();
    }
    if (child < 0) {
        SkipTest(std::string("there are no terminals here: ") + std::strerror(errno));
    }
    std::string errors = ReadTerminal(terminal);
    ::close(terminal);
    const int status = StatusOf(child);
    return {status, ReadFile(output), std::move(errors)};
}

std::string FindProgram(const std::string& name) {
    const char* const searchPath = std::getenv("PATH");
    std::istringstream directories(searchPath == nullptr ? "" : searchPath);
    for (std::string directory; std::getline(directories, directory, ':');) {
        std::string path = directory;
        path.append(1, '/').append(name);
        if (::access(path.c_str(), X_OK) == 0) {
            return path;
        }
    }
    return {};
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace support
