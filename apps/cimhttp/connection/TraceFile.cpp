#include "connection/TraceOutput.h"

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

constexpr mode_t kForOwner = S_IRUSR | S_IWUSR;

[[noreturn]] void Fail(const std::string& path) {
    throw Failure(Failure::kUsage, path + " cannot be written: " + std::system_category().message(errno));
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

} // namespace cimhttp
