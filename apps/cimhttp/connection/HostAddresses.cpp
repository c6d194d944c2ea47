#include "connection/HostAddresses.h"

#include <sys/socket.h>

namespace cimhttp {

HostAddresses::HostAddresses(const std::string& host, int port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    error_ = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error_ == 0) {
        list_.reset(found);
    }
}

} // namespace cimhttp
