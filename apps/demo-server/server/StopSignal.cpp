#include "server/StopSignal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace demo {

StopSignal::StopSignal() : handle_(::eventfd(0, EFD_CLOEXEC)) {
    if (handle_ < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
}

StopSignal::~StopSignal() { ::close(handle_); }

void StopSignal::Raise() {
    isRaised_ = true;
    ::eventfd_write(handle_, 1);
}

} // namespace demo
