#include "browse/DesktopOpener.h"

#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <cstdlib>
#include <string_view>

extern char** environ; // NOLINT(readability-redundant-declaration): not every libc declares it

namespace cimhttp {

namespace {

bool IsSet(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr && !std::string_view(value).empty();
}

} // namespace

bool OpenOnDesktop(const std::string& url) {
    if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY")) {
        return false;
    }
    std::string shell = "sh";
    std::string option = "-c";
    std::string script =
        "command -v xdg-open >/dev/null || exit 1; xdg-open \"$0\" >/dev/null 2>&1 </dev/null &"; // the shell ends at
                                                                                                  // once
    std::string argument = url;
    const std::array<char*, 5> arguments{shell.data(), option.data(), script.data(), argument.data(), nullptr};
    pid_t process = 0;
    if (::posix_spawnp(&process, shell.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
        return false;
    }
    int status = 0;
    return ::waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace cimhttp
