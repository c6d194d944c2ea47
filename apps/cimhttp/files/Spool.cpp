#include "files/Spool.h"

#include "Failure.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <ostream>
#include <string>
#include <system_error>

namespace cimhttp {

namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10U;

[[noreturn]] void Fail(const std::string& what) {
    throw Failure(Failure::kOther, what + ": " + std::generic_category().message(errno));
}

std::string TemporaryFolder() {
    const char* const folder = std::getenv("TMPDIR");
    return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

/// Not every file system has files without names: there it loses its name at once.
Descriptor NamelessFile(const std::string& folder) {
    Descriptor file(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (file.Number() >= 0) {
        return file;
    }
    std::string name = folder + "/cimhttp.XXXXXX";
    Descriptor named(::mkostemp(name.data(), O_CLOEXEC));
    if (named.Number() < 0) {
        Fail("no temporary file can be made in " + folder);
    }
    ::unlink(name.c_str());
    return named;
}

} // namespace

Spool::Place Spool::Append(std::string_view text) {
    off_t begin = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!file_) {
            file_.emplace(NamelessFile(TemporaryFolder()));
        }
        begin = end_;
        end_ += static_cast<off_t>(text.size());
    }
    const Place place{begin, text.size()};
    while (!text.empty()) {
        const ssize_t size = ::pwrite(file_->Number(), text.data(), text.size(), begin);
        if (size < 0 && errno != EINTR) {
            Fail("a temporary file cannot be written");
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        begin += std::max<ssize_t>(size, 0);
    }
    return place;
}

void Spool::CopyTo(std::ostream& output, Place place) const {
    std::array<char, kBlockSize> block{};
    while (place.size > 0) {
        const ssize_t size = ::pread(file_->Number(), block.data(), std::min(block.size(), place.size), place.begin);
        if (size == 0 || (size < 0 && errno != EINTR)) {
            Fail("a temporary file cannot be read");
        }
        output.write(block.data(), std::max<ssize_t>(size, 0));
        place.begin += std::max<ssize_t>(size, 0);
        place.size -= static_cast<std::size_t>(std::max<ssize_t>(size, 0));
    }
}

void Spool::CopyTo(std::ostream& output) const {
    off_t end = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        end = end_;
    }
    CopyTo(output, {0, static_cast<std::size_t>(end)});
}

} // namespace cimhttp
