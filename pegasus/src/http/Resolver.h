#pragma once

#include "http/Deadline.h"
#include "http/Endpoint.h"
#include "http/SocketAddress.h"

#include <vector>

namespace Pegasus::http {

/// The addresses of an endpoint, in the system's order of preference, at least one. Throws InvalidLocatorException when
/// there is none, ConnectionTimeoutException when the name service does not answer in time.
std::vector<SocketAddress> resolve(const Endpoint& endpoint, const Deadline& deadline);

} // namespace Pegasus::http
