#include "output/OutputFile.h"

#include "Failure.h"
#include "output/DescriptorBuffer.h"
#include "output/ReplacementFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <ostream>
#include <system_error>

namespace cimhttp {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissions = 07777;
constexpr mode_t kNewFile = 0666; // less what the process's mask takes away

[[noreturn]] void Fail(const std::string& path, int error) {
    throw Failure(Failure::kOther, path + " cannot be written: " + std::generic_category().message(error));
}

fs::path Resolved(const std::string& path) {
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    return error ? fs::path(path) : target;
}

std::string FolderOf(const std::string& path) {
    const fs::path folder = Resolved(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

/// Lets `write` fill an open file. Returns 0, or an errno when that fails.
int Fill(int descriptor, const std::function<void(std::ostream&)>& write) {
    DescriptorBuffer buffer(descriptor);
    std::ostream stream(&buffer);
    write(stream);
    stream.flush();
    return buffer.Error();
}

} // namespace

OutputFile::OutputFile(const std::string& path, std::optional<mode_t> permissions)
    : path_(path),
      folder_(FolderOf(path)),
      name_(Resolved(path).filename().string()),
      openFolder_(::open(folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
      permissions_(permissions) {
    if (openFolder_.Number() < 0) {
        Fail(path_, errno);
    }
    struct stat status {};
    const bool exists = ::fstatat(openFolder_.Number(), name_.c_str(), &status, 0) == 0;
    if (name_.empty() || (exists && S_ISDIR(status.st_mode))) {
        Fail(path_, EISDIR);
    }
    if (!exists && errno != ENOENT) {
        Fail(path_, errno);
    }
    isReplaced_ = !exists || S_ISREG(status.st_mode);
    if ((exists && ::faccessat(openFolder_.Number(), name_.c_str(), W_OK, 0) != 0) ||
        (isReplaced_ && ::access(folder_.c_str(), W_OK | X_OK) != 0)) {
        Fail(path_, errno);
    }
}

void OutputFile::Replace(const std::function<void(std::ostream&)>& write) const {
    if (isReplaced_) {
        WriteBesideAndRename(write);
    } else {
        WriteInPlace(write);
    }
}

void OutputFile::WriteInPlace(const std::function<void(std::ostream&)>& write) const {
    const Descriptor file(::openat(openFolder_.Number(), name_.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    const int error = file.Number() < 0 ? errno : Fill(file.Number(), write);
    if (error != 0) {
        Fail(path_, error);
    }
}

void OutputFile::WriteBesideAndRename(const std::function<void(std::ostream&)>& write) const {
    ReplacementFile file(openFolder_.Number(), name_);
    const int error = file.Number() < 0 ? errno : Fill(file.Number(), write);
    if (error != 0) {
        Fail(path_, error);
    }
    if (!file.TakePlace(Permissions())) {
        Fail(path_, errno);
    }
}

mode_t OutputFile::Permissions() const {
    struct stat status {};
    if (permissions_) {
        return *permissions_;
    }
    if (::fstatat(openFolder_.Number(), name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode)) {
        return status.st_mode & kPermissions;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return kNewFile & ~mask;
}

} // namespace cimhttp
