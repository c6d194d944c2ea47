#include "files/InputFile.h"

#include "Failure.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kBlockSize = std::size_t{64} << 10U;

std::string SizeText(std::size_t bytes) {
    constexpr unsigned kMegabyteBits = 20;
    const std::size_t megabytes = bytes >> kMegabyteBits;
    return megabytes > 0 ? std::to_string(megabytes) + " MiB" : std::to_string(bytes) + " bytes";
}

} // namespace

// Opening a pipe would wait for its writer otherwise, and a terminal could become that of the program.
InputFile::InputFile(const std::string& path, const std::string& name)
    : InputFile(Descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)),
                name.empty() ? path : name) {}

InputFile::InputFile(Descriptor descriptor, std::string name)
    : name_(std::move(name)), descriptor_(std::move(descriptor)) {
    struct stat status {};
    if (descriptor_.Number() < 0 || ::fstat(descriptor_.Number(), &status) != 0) {
        Fail(std::generic_category().message(errno));
    }
    if (S_ISDIR(status.st_mode)) {
        Fail(std::generic_category().message(EISDIR));
    }
    mode_ = status.st_mode;
}

void InputFile::NeedRegular() const {
    if (!S_ISREG(mode_)) {
        Fail("it is no ordinary file");
    }
}

std::string InputFile::ReadAll(std::size_t limit) const {
    std::string content = Read(limit, false);
    if (content.size() > limit) {
        Fail("it is larger than " + SizeText(limit));
    }
    return content;
}

std::string InputFile::ReadLine(std::size_t limit) const {
    const std::string content = Read(limit + 1, true); // with the line end
    if (content.empty()) {
        throw Failure(Failure::kUsage, name_ + " is empty");
    }
    const std::size_t size = std::min(content.find('\n'), content.size());
    if (size > limit) {
        Fail("its first line is longer than " + SizeText(limit));
    }
    return content.substr(0, size);
}

std::string InputFile::Read(std::size_t limit, bool isLine) const {
    const auto end = Clock::now() + timeout_;
    std::vector<char> block(std::min(limit + 1, kBlockSize));
    std::string content;
    while (content.size() <= limit && !(isLine && content.find('\n') != std::string::npos)) {
        AwaitMore(end);
        const ssize_t size = ::read(descriptor_.Number(), block.data(), block.size());
        if (size == 0) {
            break;
        }
        if (size < 0 && errno != EAGAIN && errno != EINTR) {
            Fail(std::generic_category().message(errno));
        }
        content.append(block.data(), size < 0 ? 0 : static_cast<std::size_t>(size));
    }
    return content;
}

/// Returns at once for ordinary files.
void InputFile::AwaitMore(Clock::time_point end) const {
    pollfd awaited{descriptor_.Number(), POLLIN, 0};
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    const int count = ::poll(&awaited, 1, static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0)));
    if (count == 0) {
        Fail("nothing more comes from it");
    }
}

void InputFile::Fail(const std::string& reason) const {
    throw Failure(Failure::kUsage, name_ + " cannot be read: " + reason);
}

} // namespace cimhttp
