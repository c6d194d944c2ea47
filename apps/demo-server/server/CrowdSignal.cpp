#include "server/CrowdSignal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace demo {

CrowdSignal::CrowdSignal() : handle_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (handle_ < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

CrowdSignal::~CrowdSignal() { ::close(handle_); }

void CrowdSignal::Set(bool isRaised) {
    if (isRaised == isRaised_) {
        return;
    }
    isRaised_ = isRaised;
    eventfd_t count = 0;
    isRaised ? ::eventfd_write(handle_, 1) : ::eventfd_read(handle_, &count);
}

} // namespace demo
