#pragma once

#include "http/Deadline.h"
#include "http/Endpoint.h"

#include <string_view>

namespace Pegasus::http {

/// Throws the ConnectionTimeoutException of an operation whose deadline has passed; `what` says what did not happen.
[[noreturn]] void throwTimeOut(const Endpoint& endpoint, const Deadline& deadline, std::string_view what);

} // namespace Pegasus::http
