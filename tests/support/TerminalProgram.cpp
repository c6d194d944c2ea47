#include "support/TerminalProgram.h"

#include "support/ProgramStart.h"
#include "support/SkipTest.h"

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

namespace support {

namespace {

/// Far longer than anything here takes; only a broken program is ever waited for as long.
constexpr std::chrono::seconds kLimit{30};
constexpr std::chrono::milliseconds kPause{2};

/// Asks again and again until `condition` holds. False when the limit passes first.
template <typename Condition>
bool Await(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + kLimit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

} // namespace

TerminalProgram::TerminalProgram(const std::string& program, const std::vector<std::string>& arguments,
                                 const std::vector<std::string>& environment, Terminal terminal) {
    std::vector<std::string> variables = environment;
    variables.emplace_back("TERM=xterm");
    const ProgramStart start(program, arguments, std::move(variables));
    const winsize size{terminal.lines, terminal.columns, 0, 0};
    child_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
    if (child_ == 0) {
        start.Become();
    }
    if (child_ < 0) {
        SkipTest(std::string("there are no terminals here: ") + std::strerror(errno));
    }
}

TerminalProgram::~TerminalProgram() {
    if (!hasEnded_) {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }
    ::close(terminal_);
}

bool TerminalProgram::ReadMore() {
    pollfd awaited{terminal_, POLLIN, 0};
    if (::poll(&awaited, 1, static_cast<int>(std::chrono::milliseconds(kLimit).count())) <= 0) {
        return false;
    }
    std::array<char, 4096> block{};
    const ssize_t size = ::read(terminal_, block.data(), block.size()); // fails once nobody has the terminal open
    if (size <= 0) {
        return false;
    }
    screen_.append(block.data(), static_cast<std::size_t>(size));
    return true;
}

bool TerminalProgram::AwaitText(const std::string& text, std::size_t seen) {
    return AwaitScreen([&](const std::string& screen) { return screen.find(text, seen) != std::string::npos; });
}

bool TerminalProgram::AwaitScreen(const std::function<bool(const std::string& screen)>& condition) {
    const auto end = std::chrono::steady_clock::now() + kLimit; // for a program that goes on writing
    while (!condition(screen_)) {
        if (std::chrono::steady_clock::now() > end || !ReadMore()) {
            return false;
        }
    }
    return true;
}

void TerminalProgram::Resize(Terminal terminal) {
    const winsize size{terminal.lines, terminal.columns, 0, 0};
    if (::ioctl(terminal_, TIOCSWINSZ, &size) != 0) {
        throw std::system_error(errno, std::generic_category(), "the terminal keeps its size");
    }
}

void TerminalProgram::Signal(int signal) const { ::kill(child_, signal); }

void TerminalProgram::Type(const std::string& keys) {
    if (::write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        throw std::system_error(errno, std::generic_category(), "the keyboard is stuck");
    }
}

bool TerminalProgram::Echoes() const {
    termios settings{};
    ::tcgetattr(terminal_, &settings); // of the terminal, not of this end of it
    return (settings.c_lflag & ECHO) != 0;
}

int TerminalProgram::Wait() {
    while (ReadMore()) {
    }
    int status = 0;
    const bool isOver = Await([&] { return ::waitpid(child_, &status, WNOHANG) == child_; });
    if (!isOver) {
        throw std::runtime_error("the program does not end; its screen: " + screen_);
    }
    hasEnded_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace support
