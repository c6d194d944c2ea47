#include "output/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "Failure.h"

namespace cimhttp {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissions = 07777;
constexpr mode_t kNewFile = 0666; // less what the process's mask takes away

[[noreturn]] void Fail(const std::string& path, int error) {
    throw Failure(Failure::kOther, path + " cannot be written: " + std::generic_category().message(error));
}

std::string Resolved(const std::string& path) {
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    return error ? path : target.string();
}

std::string FolderOf(const std::string& path) {
    const fs::path folder = fs::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

mode_t PermissionsFor(const std::string& target) {
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0) {
        return status.st_mode & kPermissions;
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return kNewFile & ~mask;
}

/// A new file beside another, which takes that one's place or goes.
class FileBeside {
  public:
    /// Check Descriptor() for -1; errno has the reason.
    explicit FileBeside(const std::string& target)
        : target_(target), path_(target + ".XXXXXX"), descriptor_(::mkostemp(path_.data(), O_CLOEXEC)) {}

    ~FileBeside() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
        if (descriptor_ >= 0 && !is_renamed_) {
            ::unlink(path_.c_str());
        }
    }

    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    int Descriptor() const { return descriptor_; }
    const std::string& Path() const { return path_; }

    bool TakePlace() {
        is_renamed_ = ::fchmod(descriptor_, PermissionsFor(target_)) == 0 && ::fsync(descriptor_) == 0 &&
                      ::rename(path_.c_str(), target_.c_str()) == 0;
        return is_renamed_;
    }

  private:
    std::string target_;
    std::string path_;
    int descriptor_;
    bool is_renamed_ = false;
};

/// Makes a rename in the folder survive a crash of the machine. Not every file system can; the file is whole anyway.
void SyncFolder(const std::string& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

/// Lets `write` fill the file. False, with errno, when that fails.
bool Fill(const std::string& path, const std::function<void(std::ostream&)>& write) {
    errno = 0;
    std::ofstream stream(path, std::ios::binary);
    if (stream) {
        write(stream);
        stream.close();
    }
    return stream.good();
}

} // namespace

OutputFile::OutputFile(const std::string& path) : path_(path), target_(Resolved(path)) {
    if (fs::is_directory(target_)) {
        Fail(path_, EISDIR);
    }
    if (fs::exists(target_) && ::access(target_.c_str(), W_OK) != 0) {
        Fail(path_, errno);
    }
    const bool is_replaced = !fs::exists(target_) || fs::is_regular_file(target_);
    if (is_replaced && ::access(FolderOf(target_).c_str(), W_OK | X_OK) != 0) {
        Fail(path_, errno);
    }
}

void OutputFile::Replace(const std::function<void(std::ostream&)>& write) const {
    if (fs::exists(target_) && !fs::is_regular_file(target_)) {
        WriteInPlace(write);
    } else {
        WriteBesideAndRename(write);
    }
}

void OutputFile::WriteInPlace(const std::function<void(std::ostream&)>& write) const {
    if (!Fill(target_, write)) {
        Fail(path_, errno);
    }
}

void OutputFile::WriteBesideAndRename(const std::function<void(std::ostream&)>& write) const {
    FileBeside file(target_);
    if (file.Descriptor() < 0 || !Fill(file.Path(), write) || !file.TakePlace()) {
        Fail(path_, errno);
    }
    SyncFolder(FolderOf(target_));
}

} // namespace cimhttp
