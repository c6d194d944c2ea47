#include "server/StopSignal.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace demo {

StopSignal::StopSignal() : handle_(::eventfd(0, EFD_CLOEXEC)) {
    if (handle_ < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

StopSignal::~StopSignal() { ::close(handle_); }

void StopSignal::Raise() {
    isRaised_ = true;
    ::eventfd_write(handle_, 1);
}

bool StopSignal::WaitUntil(std::chrono::steady_clock::time_point time) const {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now()).count();
        if (isRaised_ || left <= 0) {
            return isRaised_;
        }
        pollfd handle{handle_, POLLIN, 0};
        ::poll(&handle, 1, static_cast<int>(left));
    }
}

} // namespace demo
