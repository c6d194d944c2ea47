#include "connection/HostAddresses.h"

#include <sys/socket.h>

#include <cerrno>
#include <system_error>

namespace cimhttp {

HostAddresses::HostAddresses(const std::string& host, int port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    error_ = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error_ == 0) {
        list_.reset(found);
    } else {
        errorText_ = error_ == EAI_SYSTEM ? std::generic_category().message(errno) : ::gai_strerror(error_);
    }
}

} // namespace cimhttp
