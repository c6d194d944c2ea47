#pragma once

#include <sys/socket.h>

#include <string>

namespace Pegasus::http {

/// An address with its port, as the system takes it.
struct SocketAddress {
    sockaddr_storage bytes;
    socklen_t size;
};

/// An address without its port, as a literal.
std::string literalOf(const SocketAddress& address);

} // namespace Pegasus::http
