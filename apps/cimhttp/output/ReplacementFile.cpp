#include "output/ReplacementFile.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace cimhttp {

namespace {

constexpr std::size_t kMostOfName = 200; // of the 255 bytes that a name may have
constexpr mode_t kOnlyOwner = 0600;

/// A name that nobody can guess, and so nobody has taken.
std::string NameBeside(const std::string& name) {
    std::uint64_t number = 0;
    static_cast<void>(::getrandom(&number, sizeof number, 0)); // without, the name may be taken: that is an error then
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

} // namespace

ReplacementFile::ReplacementFile(int folder, std::string name)
    : folder_(folder),
      name_(std::move(name)),
      ownName_(NameBeside(name_)),
      removal_(folder_, ownName_),
      descriptor_(
          ::openat(folder_, ownName_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOnlyOwner)) {}

ReplacementFile::~ReplacementFile() {
    if (Number() >= 0 && !isRenamed_) {
        ::unlinkat(folder_, ownName_.c_str(), 0);
    }
}

bool ReplacementFile::TakePlace(mode_t permissions) {
    isRenamed_ = ::fchmod(Number(), permissions) == 0 && ::fsync(Number()) == 0 &&
                 ::renameat(folder_, ownName_.c_str(), folder_, name_.c_str()) == 0;
    if (isRenamed_) {
        SyncFolder(folder_);
    }
    return isRenamed_;
}

} // namespace cimhttp
