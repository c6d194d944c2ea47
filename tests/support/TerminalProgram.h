#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace support {

/// A program that runs on a terminal of its own, with the test at the keyboard. Whatever is waited for comes, or else
/// the program ends, or a generous limit passes; no test can hang.
class TerminalProgram {
  public:
    struct Terminal {
        unsigned short columns = 80;
        unsigned short lines = 24;
    };

    /// Starts a program, found by its path. All its standard streams are the terminal; `environment` has entries like
    /// "NAME=value"; the program sees them, PATH and TERM, nothing else. Without a terminal the test is skipped.
    TerminalProgram(const std::string& program, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment, Terminal terminal);
    TerminalProgram(const std::string& program, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment = {})
        : TerminalProgram(program, arguments, environment, Terminal()) {}
    /// Ends the program if it still runs.
    ~TerminalProgram();
    TerminalProgram(const TerminalProgram&) = delete;
    TerminalProgram& operator=(const TerminalProgram&) = delete;

    /// Waits until the screen has shown a text, after the first `seen` characters. False when the program ends, or the
    /// limit passes, without it.
    bool AwaitText(const std::string& text, std::size_t seen = 0);

    /// Waits until a condition holds for all that has been on the screen. False as in AwaitText().
    bool AwaitScreen(const std::function<bool(const std::string& screen)>& condition);

    /// Gives the terminal another size, of which the program gets a signal.
    void Resize(Terminal terminal);

    /// Sends the program a signal.
    void Signal(int signal) const;

    /// Presses keys; "\r" is Enter, "\x03" Ctrl-C, "\x04" the end of the input.
    void Type(const std::string& keys);

    /// Whether the terminal shows what is typed.
    bool Echoes() const;

    /// Waits for the end of the program and of what it writes. Returns the exit status, or minus the number of the
    /// signal that ended it.
    int Wait();

    /// All that has been on the screen so far, with its line ends "\r\n".
    const std::string& Screen() const { return screen_; }

  private:
    bool ReadMore();

    pid_t child_ = -1;
    int terminal_ = -1;
    bool hasEnded_ = false;
    std::string screen_;
};

} // namespace support
