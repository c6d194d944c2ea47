#include "files/FileLock.h"

#include "Failure.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace cimhttp {

namespace {

using Clock = std::chrono::steady_clock;

constexpr mode_t kOnlyOwner = 0600;
constexpr std::chrono::milliseconds kTryInterval{20};

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
    throw Failure(Failure::kOther, path + " cannot be locked: " + reason);
}

std::string Reason(int error, const std::string& path) {
    return error == EWOULDBLOCK ? "another process holds the lock; 'fuser " + path + "' tells which"
                                : std::generic_category().message(error);
}

/// Tries until the lock is there or the time has passed, since a wait of the kernel's has no limit. Returns 0, or the
/// error of the last try.
int TryUntil(int descriptor, Clock::time_point end) {
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        const bool isTemporary = error == EWOULDBLOCK || error == EINTR;
        if (!isTemporary || Clock::now() >= end) {
            return error;
        }
        std::this_thread::sleep_for(kTryInterval);
    }
    return 0;
}

} // namespace

FileLock::FileLock(const std::string& path, std::chrono::milliseconds timeout)
    : descriptor_(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kOnlyOwner)) {
    if (descriptor_.Number() < 0) {
        Fail(path, std::generic_category().message(errno));
    }
    const int error = TryUntil(descriptor_.Number(), Clock::now() + timeout);
    if (error != 0) {
        Fail(path, Reason(error, path));
    }
}

} // namespace cimhttp
