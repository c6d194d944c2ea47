#include "files/OutputFile.h"

#include "Failure.h"
#include "files/RemovalOnSignal.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <ostream>
#include <streambuf>
#include <system_error>
#include <utility>

namespace cimhttp {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissions = 07777;
constexpr mode_t kOnlyOwner = 0600;
constexpr mode_t kNewFile = 0666;        // less what the process's mask takes away
constexpr std::size_t kMostOfName = 200; // of the 255 bytes that a name may have

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

/// What is written to a stream goes to a file descriptor, which stays the caller's.
class DescriptorBuffer : public std::streambuf {
  public:
    explicit DescriptorBuffer(int descriptor) : descriptor_(descriptor) {
        setp(block_.data(), block_.data() + block_.size());
    }

    /// Why the first writing that failed did, an errno; 0 while none has. Nothing is written after it.
    int Error() const { return error_; }

  private:
    int_type overflow(int_type character) override {
        if (sync() != 0) {
            return traits_type::eof();
        }
        return traits_type::eq_int_type(character, traits_type::eof()) ? traits_type::not_eof(character)
                                                                       : sputc(traits_type::to_char_type(character));
    }

    int sync() override {
        for (const char* begin = pbase(); begin != pptr() && error_ == 0;) {
            const ssize_t size = ::write(descriptor_, begin, static_cast<std::size_t>(pptr() - begin));
            if (size >= 0) {
                begin += size;
            } else if (errno != EINTR) {
                error_ = errno;
            }
        }
        setp(block_.data(), block_.data() + block_.size());
        return error_ == 0 ? 0 : -1;
    }

    int descriptor_;
    int error_ = 0;
    std::array<char, std::size_t{64} << 10U> block_{};
};

/// Lets `write` fill an open file. Returns 0, or an errno when that fails.
int Fill(int descriptor, const std::function<void(std::ostream&)>& write) {
    DescriptorBuffer buffer(descriptor);
    std::ostream stream(&buffer);
    write(stream);
    stream.flush();
    return buffer.Error();
}

/// A name that nobody can guess, and so nobody has taken.
std::string NameBeside(const std::string& name) {
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) < 0) {
        number = 0; // the name may be taken, which is an error then
    }
    std::array<char, 2 * sizeof number + 2> suffix{};
    std::snprintf(suffix.data(), suffix.size(), ".%016llx", static_cast<unsigned long long>(number));
    return name.substr(0, kMostOfName) + suffix.data();
}

/// Makes a rename in the folder survive a crash of the machine. Not every file system can; the file is whole anyway.
void SyncFolder(int folder) {
    const Descriptor readable(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (readable.Number() >= 0) {
        ::fsync(readable.Number());
    }
}

/// A new file beside another, which takes that one's place or goes, also when a signal ends the program.
class ReplacementFile {
  public:
    /// Beside the file with this name in an open folder, which must stay open. Nothing is followed or opened that is
    /// there already. Check Number() for -1; errno has the reason.
    ReplacementFile(int folder, std::string name)
        : folder_(folder),
          name_(std::move(name)),
          ownName_(NameBeside(name_)),
          removal_(folder_, ownName_),
          descriptor_(
              ::openat(folder_, ownName_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOnlyOwner)) {}
    ~ReplacementFile() {
        if (Number() >= 0 && !isRenamed_) {
            ::unlinkat(folder_, ownName_.c_str(), 0);
        }
    }
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    int Number() const { return descriptor_.Number(); }

    /// Puts the file, with these permissions, in the place of the other once it is on the disk. False, with errno, when
    /// that fails.
    bool TakePlace(mode_t permissions) {
        isRenamed_ = ::fchmod(Number(), permissions) == 0 && ::fsync(Number()) == 0 &&
                     ::renameat(folder_, ownName_.c_str(), folder_, name_.c_str()) == 0;
        if (isRenamed_) {
            SyncFolder(folder_);
        }
        return isRenamed_;
    }

  private:
    int folder_;
    std::string name_;
    std::string ownName_;
    RemovalOnSignal removal_;
    Descriptor descriptor_;
    bool isRenamed_ = false;
};

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
