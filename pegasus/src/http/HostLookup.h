#pragma once

#include "http/Deadline.h"
#include "http/Endpoint.h"

#include <sys/socket.h>

#include <string>
#include <vector>

namespace Pegasus::http {

struct SocketAddress {
    sockaddr_storage bytes;
    socklen_t size;
};

/// An address without its port, as a literal.
std::string text(const SocketAddress& address);

/// The addresses of an endpoint, the system's favourite first, at least one. Throws InvalidLocatorException when there
/// is none, ConnectionTimeoutException when the name service does not answer in time.
std::vector<SocketAddress> lookUp(const Endpoint& endpoint, const Deadline& deadline);

} // namespace Pegasus::http
