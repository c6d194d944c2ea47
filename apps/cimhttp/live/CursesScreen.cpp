#include "live/CursesScreen.h"

#include "text/CharacterWidth.h"
#include "text/Utf8.h"

#include <fcntl.h>
#include <locale.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cwchar>
#include <string_view>
#include <utility>

// Its macros would take names such as `erase` from everything below.
#define NCURSES_NOMACROS
#include <curses.h>

namespace cimhttp {

namespace {

constexpr int kEscapeWait = 50;       // milliseconds after which Escape is the key and not the begin of another
constexpr std::size_t kMostMarks = 4; // combining marks of one character, which ncurses bounds
constexpr wint_t kCtrlC = 3;
constexpr wint_t kCtrlD = 4;
constexpr wint_t kBackspace = 8;
constexpr wint_t kCtrlL = 12;
constexpr wint_t kCtrlU = 21;
constexpr wint_t kCtrlZ = 26;
constexpr wint_t kEscape = 27;
constexpr wint_t kDelete = 127;

std::atomic<bool> isToEnd{false};
std::atomic<bool> isToStop{false};
std::atomic<bool> isToDrawAnew{false};
static_assert(std::atomic<bool>::is_always_lock_free, "what a signal handler may write");

void AskToEnd(int /*signal*/) { isToEnd = true; }
void AskToStop(int /*signal*/) { isToStop = true; }
void AskToDrawAnew(int /*signal*/) { isToDrawAnew = true; }

Key KeyOf(wint_t code) {
    static constexpr std::array<std::pair<int, Key::Kind>, 12> kKeys{{{KEY_UP, Key::Kind::kUp},
                                                                      {KEY_DOWN, Key::Kind::kDown},
                                                                      {KEY_LEFT, Key::Kind::kLeft},
                                                                      {KEY_RIGHT, Key::Kind::kRight},
                                                                      {KEY_PPAGE, Key::Kind::kPageUp},
                                                                      {KEY_NPAGE, Key::Kind::kPageDown},
                                                                      {KEY_HOME, Key::Kind::kHome},
                                                                      {KEY_END, Key::Kind::kEnd},
                                                                      {KEY_ENTER, Key::Kind::kEnter},
                                                                      {KEY_BACKSPACE, Key::Kind::kBackspace},
                                                                      {KEY_DC, Key::Kind::kBackspace},
                                                                      {KEY_RESIZE, Key::Kind::kResize}}};
    for (const auto& [known, kind] : kKeys) {
        if (static_cast<wint_t>(known) == code) {
            return {kind};
        }
    }
    return {};
}

Key KeyOfCharacter(wint_t code) {
    switch (code) {
    case kCtrlC:
        return {Key::Kind::kInterrupt};
    case '\r':
    case '\n':
        return {Key::Kind::kEnter};
    case kBackspace:
    case kDelete:
        return {Key::Kind::kBackspace};
    case kEscape:
        return {Key::Kind::kEscape};
    case kCtrlU:
        return {Key::Kind::kEraseLine};
    default:
        break;
    }
    Key key{Key::Kind::kCharacter};
    AppendUtf8(static_cast<char32_t>(code), key.character);
    return code < ' ' ? Key{} : key;
}

attr_t AttributesOf(Picture::Style style) {
    switch (style) {
    case Picture::Style::kStrong:
        return A_BOLD;
    case Picture::Style::kFaint:
        return A_DIM;
    case Picture::Style::kReverse:
        return A_REVERSE;
    case Picture::Style::kAlarm:
        return A_BOLD | A_STANDOUT;
    default:
        return A_NORMAL;
    }
}

/// Writes one character with its marks where ncurses takes it to be as wide as the picture does, else a stand-in.
void Put(int line, std::size_t column, std::wstring character, std::size_t width, attr_t attributes) {
    if (static_cast<int>(width) != ::wcwidth(character.front())) {
        character.assign(1, static_cast<wchar_t>(kReplacementCharacter));
    }
    cchar_t cell{};
    ::setcchar(&cell, character.c_str(), attributes, 0, nullptr);
    ::mvadd_wch(line, static_cast<int>(column), &cell); // fails at the last place of the screen, where it has written
}

void Write(int line, const Picture::Span& span, std::size_t columns) {
    const attr_t attributes = AttributesOf(span.style);
    std::size_t column = span.column;
    std::string_view text = span.text;
    std::wstring pending;
    std::size_t pendingWidth = 0;
    const auto put = [&] {
        if (!pending.empty() && column + pendingWidth <= columns) {
            Put(line, column, pending, pendingWidth, attributes);
        }
        column += pendingWidth;
    };
    while (!text.empty()) {
        const Utf8Character next = CharacterAt(text, 0);
        text.remove_prefix(next.size);
        const bool isSafe = !next.IsBad() && !IsControl(next.value); // all are: this is the last place to see to it
        const char32_t value = isSafe ? next.value : kReplacementCharacter;
        const std::size_t width = CharacterWidth(value);
        if (width == 0) {
            if (!pending.empty() && pending.size() <= kMostMarks) {
                pending += static_cast<wchar_t>(value);
            }
            continue;
        }
        put();
        pending.assign(1, static_cast<wchar_t>(value));
        pendingWidth = width;
    }
    put();
}

} // namespace

/// The locale in which ncurses writes UTF-8, which the rest of the program does anyway. For this thread only.
class CursesScreen::Locale {
  public:
    Locale() : locale_(::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
        if (locale_ != nullptr) {
            before_ = ::uselocale(locale_);
        }
    }
    ~Locale() {
        if (locale_ != nullptr) {
            ::uselocale(before_);
            ::freelocale(locale_);
        }
    }
    Locale(const Locale&) = delete;
    Locale& operator=(const Locale&) = delete;

    bool IsThere() const { return locale_ != nullptr; }

  private:
    locale_t locale_;
    locale_t before_ = nullptr;
};

/// Signals are remembered, however often they come, and looked at where the terminal can be restored.
class CursesScreen::Signals {
  public:
    Signals() {
        isToEnd = false;
        isToStop = false;
        isToDrawAnew = false;
        for (std::size_t i = 0; i < kHandled.size(); ++i) {
            Handle(kHandled[i].first, kHandled[i].second, &before_[i]);
        }
    }
    ~Signals() {
        for (std::size_t i = 0; i < kHandled.size(); ++i) {
            ::sigaction(kHandled[i].first, &before_[i], nullptr);
        }
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    /// Stops the program, with what belongs to it, until it is continued.
    static void Stop() {
        struct sigaction usual {};
        usual.sa_handler = SIG_DFL;
        struct sigaction own {};
        ::sigaction(SIGTSTP, &usual, &own);
        ::kill(0, SIGTSTP);
        ::sigaction(SIGTSTP, &own, nullptr);
    }

  private:
    static void Handle(int signal, void (*handler)(int), struct sigaction* before) {
        struct sigaction action {};
        action.sa_handler = handler;
        ::sigaction(signal, &action, before);
    }

    static constexpr std::array<std::pair<int, void (*)(int)>, 7> kHandled{{{SIGINT, &AskToEnd},
                                                                            {SIGTERM, &AskToEnd},
                                                                            {SIGHUP, &AskToEnd},
                                                                            {SIGQUIT, &AskToEnd},
                                                                            {SIGTSTP, &AskToStop},
                                                                            {SIGCONT, &AskToDrawAnew},
                                                                            {SIGWINCH, &AskToDrawAnew}}};
    std::array<struct sigaction, kHandled.size()> before_{};
};

std::unique_ptr<Screen> CursesScreen::Open() {
    auto locale = std::make_unique<Locale>();
    if (!locale->IsThere()) {
        return nullptr;
    }
    auto signals = std::make_unique<Signals>(); // before ncurses, which takes those that nobody handles
    SCREEN* const terminal = ::newterm(nullptr, stdout, stdin);
    return terminal == nullptr
               ? nullptr
               : std::unique_ptr<Screen>(new CursesScreen(std::move(locale), std::move(signals), terminal));
}

CursesScreen::CursesScreen(std::unique_ptr<Locale> locale, std::unique_ptr<Signals> signals, void* terminal)
    : locale_(std::move(locale)), signals_(std::move(signals)), terminal_(terminal) {
    ::set_escdelay(kEscapeWait);
    ::raw(); // Ctrl-C and Ctrl-Z are keys, so that nothing ends or stops while something is drawn
    ::noecho();
    ::nonl();
    ::keypad(stdscr, true);
    ::curs_set(0);
}

CursesScreen::~CursesScreen() {
    ::endwin();
    ::delscreen(static_cast<SCREEN*>(terminal_));
}

ScreenSize CursesScreen::Size() const {
    return {static_cast<std::size_t>(getmaxx(stdscr)), static_cast<std::size_t>(getmaxy(stdscr))};
}

void CursesScreen::Show(const Picture& picture) {
    ::werase(stdscr);
    const ScreenSize size = Size();
    for (std::size_t line = 0; line < picture.lines.size() && line < size.lines; ++line) {
        for (const Picture::Span& span : picture.lines[line]) {
            Write(static_cast<int>(line), span, size.columns);
        }
    }
    ::wrefresh(stdscr);
}

Key CursesScreen::NextKey(std::chrono::milliseconds time) {
    pollfd keyboard{STDIN_FILENO, POLLIN, 0};
    ::wtimeout(stdscr, 0);
    wint_t code = 0;
    int kind = isToEnd || isToStop || isToDrawAnew ? ERR : ::wget_wch(stdscr, &code);
    if (kind == ERR && !isToEnd && !isToStop && !isToDrawAnew) {
        if (::poll(&keyboard, 1, static_cast<int>(time.count())) > 0) {
            if ((keyboard.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
                return {Key::Kind::kEndInput};
            }
            kind = ::wget_wch(stdscr, &code);
        }
    }
    if (isToEnd) {
        return {Key::Kind::kInterrupt};
    }
    if (isToStop.exchange(false) || (kind == OK && code == kCtrlZ)) {
        ::endwin();
        Signals::Stop();
        isToDrawAnew = true;
    }
    if (isToDrawAnew.exchange(false) || (kind == OK && code == kCtrlL)) {
        winsize size{};
        if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 && size.ws_col > 0) {
            ::resizeterm(size.ws_row, size.ws_col);
        }
        ::reset_prog_mode();
        ::clearok(curscr, true);
        return {Key::Kind::kResize};
    }
    if (kind == OK && code == kCtrlD) {
        return {Key::Kind::kEndInput};
    }
    return kind == KEY_CODE_YES ? KeyOf(code) : kind == OK ? KeyOfCharacter(code) : Key{};
}

} // namespace cimhttp
