#include "connection/PasswordFile.h"

#include "files/InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>

namespace cimhttp {

namespace {

constexpr std::size_t kLongestPassword = 4096;
constexpr mode_t kOthersReadOrWrite = 066;
constexpr mode_t kPermissions = 07777;

std::string ModeText(mode_t mode) {
    std::array<char, sizeof "07777"> text{};
    std::snprintf(text.data(), text.size(), "%04o", static_cast<unsigned>(mode & kPermissions));
    return text.data();
}

/// A device is open to many, and keeps nothing.
bool IsOpenToOthers(mode_t mode) { return (S_ISREG(mode) || S_ISFIFO(mode)) && (mode & kOthersReadOrWrite) != 0; }

} // namespace

PasswordFile ReadPasswordFile(const std::string& path) {
    const bool isStandardInput = path == "-";
    const std::string name = isStandardInput ? "standard input" : "the password file " + path;
    const InputFile file = isStandardInput ? InputFile(Descriptor(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)), name)
                                           : InputFile(path, name);
    PasswordFile result{file.ReadLine(kLongestPassword), {}};
    if (!result.password.empty() && result.password.back() == '\r') {
        result.password.pop_back();
    }
    if (IsOpenToOthers(file.Mode())) {
        result.warning = name + " is open to others (mode " + ModeText(file.Mode()) +
                         "): chmod 600 it, and think of changing the password";
    }
    return result;
}

} // namespace cimhttp
