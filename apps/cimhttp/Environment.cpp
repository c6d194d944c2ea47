#include "Environment.h"

#include "Options.h"

#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace cimhttp {

namespace {

/// The value of a variable of the environment, empty when it is not set.
std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// The columns of a terminal; 0 for what is none or does not say.
std::size_t TerminalWidth(int descriptor) {
    winsize size{};
    return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

/// 0 where the output goes to no terminal and COLUMNS says nothing.
std::size_t OutputWidth() {
    const std::size_t width = TerminalWidth(STDOUT_FILENO);
    if (width > 0) {
        return width;
    }
    return std::strtoul(Variable("COLUMNS").c_str(), nullptr, 10);
}

/// Colours are for terminals that have them and users who did not say otherwise (no-color.org).
bool UsesColor() { return ::isatty(STDOUT_FILENO) == 1 && Variable("NO_COLOR").empty() && Variable("TERM") != "dumb"; }

/// What the locale of the environment says; the program itself stays in the locale "C".
bool IsUtf8() {
    const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr) {
        return false;
    }
    const bool isUtf8 = std::string(::nl_langinfo_l(CODESET, locale)) == "UTF-8";
    ::freelocale(locale);
    return isUtf8;
}

} // namespace

void ReadEnvironment(Options& options) {
    options.width = OutputWidth();
    options.usesColor = UsesColor();
    options.isUtf8 = IsUtf8();
    options.isInputTerminal = ::isatty(STDIN_FILENO) == 1;
    options.isOutputTerminal = ::isatty(STDOUT_FILENO) == 1;
    options.errorStreamWidth = TerminalWidth(STDERR_FILENO);
    options.isErrorStreamTerminal = ::isatty(STDERR_FILENO) == 1;
    if (const char* const password = std::getenv("CIMHTTP_PASSWORD")) {
        options.passwordVariable = password;
    }
}

} // namespace cimhttp
