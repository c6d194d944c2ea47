#include "provider/PolicyFile.h"

#include "provider/PolicyFault.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace NQORVYX20 {

namespace {

[[noreturn]] void FailWith(int error) {
    throw PolicyFault("cannot be read: " + std::generic_category().message(error));
}

/// A file that is open for reading as long as it lives.
class OpenFile {
  public:
    /// Does not wait for the other end of a pipe.
    explicit OpenFile(const std::string& path)
        : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)) {
        if (descriptor_ < 0) {
            FailWith(errno);
        }
    }
    ~OpenFile() { ::close(descriptor_); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    struct stat Status() const {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) {
            FailWith(errno);
        }
        return status;
    }

    /// The first `most` bytes, or all where there are fewer.
    std::string Content(std::size_t most) const {
        std::string content(most, '\0');
        std::size_t size = 0;
        ssize_t count = 1;
        while (size < most && count != 0) {
            count = ::read(descriptor_, &content[size], most - size);
            if (count < 0 && errno != EINTR) {
                FailWith(errno);
            }
            size += count < 0 ? 0 : static_cast<std::size_t>(count);
        }
        content.resize(size);
        return content;
    }

  private:
    int descriptor_;
};

void Check(const struct stat& status) {
    if (!S_ISREG(status.st_mode)) {
        throw PolicyFault("is not a regular file");
    }
    if ((status.st_mode & S_IWOTH) != 0) {
        throw PolicyFault("can be written by everybody");
    }
    if (static_cast<std::uint64_t>(status.st_size) > PolicyFile::kMaxBytes) {
        throw PolicyFault("has more than " + std::to_string(PolicyFile::kMaxBytes) + " bytes");
    }
}

} // namespace

PolicyFile PolicyFile::OfMachine() {
    const char* const named = ::secure_getenv(kVariable);
    const bool isNamed = named != nullptr && *named != '\0';
    return {isNamed ? named : kUsualPath, !isNamed};
}

bool PolicyFile::IsMissing() const {
    struct stat status {};
    return ::lstat(path_.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR); // a link may lead nowhere
}

std::optional<std::string> PolicyFile::Read() const {
    if (path_.front() != '/') {
        throw PolicyFault("is not an absolute path");
    }
    if (mayBeMissing_ && IsMissing()) {
        return std::nullopt;
    }
    const OpenFile file(path_);
    const struct stat status = file.Status();
    Check(status);
    return file.Content(static_cast<std::size_t>(status.st_size));
}

} // namespace NQORVYX20
