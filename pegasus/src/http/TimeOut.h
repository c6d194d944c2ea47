#pragma once

#include "http/Deadline.h"
#include "http/Endpoint.h"

#include <string>
#include <string_view>

namespace Pegasus::http {

/// Says that `what` did not happen before a deadline, and which limit that was.
std::string timeOutText(std::string_view what, const Deadline& deadline);

/// Throws the ConnectionTimeoutException of an operation whose deadline has passed; `what` says what did not happen.
[[noreturn]] void throwTimeOut(const Endpoint& endpoint, const Deadline& deadline, std::string_view what);

} // namespace Pegasus::http
