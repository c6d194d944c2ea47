#include "connection/RecordingFile.h"

#include "Descriptor.h"
#include "Failure.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

namespace cimhttp {

namespace {

constexpr mode_t kOwnerOnly = 0600;
constexpr mode_t kOthers = 077;

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
    throw Failure(Failure::kUsage, "nothing can be recorded in " + path + ": " + reason);
}

} // namespace

void PrepareRecording(const std::string& path) {
    // Does not wait for the reader of a pipe, which is refused.
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, kOwnerOnly));
    struct stat status {};
    if (file.Number() < 0 || ::fstat(file.Number(), &status) != 0) {
        Refuse(path, std::system_category().message(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        Refuse(path, "it is not a file");
    }
    if ((status.st_mode & kOthers) != 0) {
        Refuse(path, "it is open to others; chmod 600 it, or name a new one");
    }
}

} // namespace cimhttp
