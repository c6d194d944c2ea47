#include "connection/TerminalPrompt.h"

#include "Descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

namespace cimhttp {

namespace {

constexpr const char* kControllingTerminal = "/dev/tty";

/// The terminal takes lines of this length (N_TTY_BUF_SIZE of the kernel).
constexpr std::size_t kLongestLine = 4096;

/// Keeps the signals that would end or stop the program waiting, so that the terminal can be put right first.
class HeldSignals {
  public:
    HeldSignals() : arrivals_(Hold(held_, previous_)) {}
    ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    /// Readable when a signal has come.
    int Descriptor() const { return arrivals_.Number(); }

    /// Lets the signal that has come do what it does. Returns after one that does not end the program.
    void Deliver() {
        signalfd_siginfo arrival{};
        if (::read(arrivals_.Number(), &arrival, sizeof arrival) == sizeof arrival) {
            ::raise(static_cast<int>(arrival.ssi_signo));        // waits, like the others,
            ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); // until here
            ::pthread_sigmask(SIG_BLOCK, &held_, nullptr);
        }
    }

  private:
    static int Hold(sigset_t& held, sigset_t& previous) {
        ::sigemptyset(&held);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP}) {
            ::sigaddset(&held, signal);
        }
        ::pthread_sigmask(SIG_BLOCK, &held, &previous);
        return ::signalfd(-1, &held, SFD_CLOEXEC);
    }

    sigset_t held_{};
    sigset_t previous_{};
    cimhttp::Descriptor arrivals_;
};

/// A terminal that does not show what is typed, but for the end of the line.
class WithoutEcho {
  public:
    explicit WithoutEcho(int terminal) : terminal_(terminal), isChanged_(::tcgetattr(terminal, &previous_) == 0) {
        if (isChanged_) {
            termios silent = previous_;
            silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            silent.c_lflag |= ECHONL | ICANON | ISIG;
            ::tcsetattr(terminal_, TCSAFLUSH, &silent);
        }
    }
    ~WithoutEcho() {
        if (isChanged_) {
            ::tcsetattr(terminal_, TCSADRAIN, &previous_);
        }
    }
    WithoutEcho(const WithoutEcho&) = delete;
    WithoutEcho& operator=(const WithoutEcho&) = delete;

  private:
    int terminal_;
    termios previous_{};
    bool isChanged_;
};

void Write(int terminal, std::string_view text) {
    while (!text.empty()) {
        const ssize_t size = ::write(terminal, text.data(), text.size());
        if (size < 0 && errno != EINTR) {
            return;
        }
        text.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
}

enum class Event { kLine, kSignal };

Event Await(int terminal, const HeldSignals& signals) {
    std::array<pollfd, 2> awaited{{{terminal, POLLIN, 0}, {signals.Descriptor(), POLLIN, 0}}};
    while (::poll(awaited.data(), awaited.size(), -1) < 0 && errno == EINTR) {
    }
    return (awaited[1].revents & POLLIN) != 0 ? Event::kSignal : Event::kLine;
}

/// The terminal gives a line as a whole, or its end.
std::optional<std::string> ReadLine(int terminal) {
    std::string line(kLongestLine, '\0');
    const ssize_t size = ::read(terminal, line.data(), line.size());
    if (size <= 0) {
        return std::nullopt;
    }
    line.resize(static_cast<std::size_t>(size));
    return line.substr(0, line.find_first_of("\r\n"));
}

std::optional<std::string> Ask(const std::string& question, bool isSecret) {
    const Descriptor terminal(::open(kControllingTerminal, O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (terminal.Number() < 0) {
        return std::nullopt;
    }
    ::tcflush(terminal.Number(), TCIFLUSH);
    HeldSignals signals;
    for (;;) {
        {
            std::optional<WithoutEcho> silent;
            if (isSecret) {
                silent.emplace(terminal.Number());
            }
            Write(terminal.Number(), question);
            if (Await(terminal.Number(), signals) == Event::kLine) {
                return ReadLine(terminal.Number());
            }
        }
        Write(terminal.Number(), "\n");
        signals.Deliver();
    }
}

} // namespace

std::optional<std::string> AskForPassword(const std::string& question) { return Ask(question, true); }

std::optional<std::string> AskForAnswer(const std::string& question) { return Ask(question, false); }

} // namespace cimhttp
