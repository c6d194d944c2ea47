#pragma once

#include "http/Deadline.h"

#include <poll.h>

#include <cstddef>

namespace Pegasus::http {

/// Waits until one of the descriptors is ready for what it is wanted for, or the time has come; it is for the caller to
/// look which. A signal may end the wait earlier. Returns 0, or an error number when the system refuses to wait.
int waitFor(pollfd* descriptors, std::size_t count, Deadline::Clock::time_point end);

} // namespace Pegasus::http
