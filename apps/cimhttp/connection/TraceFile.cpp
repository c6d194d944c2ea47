#include "connection/TraceFile.h"

#include "Descriptor.h"
#include "Failure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace cimhttp {

namespace {

constexpr mode_t kForOwner = 0600;
constexpr mode_t kForOthers = 077;

[[noreturn]] void Fail(const std::string& path) {
    throw Failure(Failure::kUsage, path + " cannot be written: " + std::system_category().message(errno));
}

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
    throw Failure(Failure::kUsage, "nothing can be recorded in " + path + ": " + reason);
}

} // namespace

std::string StartTrace(const std::string& path) {
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, kForOwner));
    if (file.Number() < 0) {
        Fail(path);
    }
    struct stat status {};
    if (::fstat(file.Number(), &status) != 0) {
        Fail(path);
    }
    // Emptied when nobody else can read what comes: a file of somebody else stays as it is.
    if (S_ISREG(status.st_mode) && (::fchmod(file.Number(), kForOwner) != 0 || ::ftruncate(file.Number(), 0) != 0)) {
        Fail(path);
    }
    return std::filesystem::absolute(path).string();
}

void PrepareRecording(const std::string& path) {
    // Does not wait for the reader of a pipe, which is refused.
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, kForOwner));
    struct stat status {};
    if (file.Number() < 0 || ::fstat(file.Number(), &status) != 0) {
        Refuse(path, std::system_category().message(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        Refuse(path, "it is not a file");
    }
    if ((status.st_mode & kForOthers) != 0) {
        Refuse(path, "it is open to others; chmod 600 it, or name a new one");
    }
}

} // namespace cimhttp
