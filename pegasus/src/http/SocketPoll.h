#pragma once

#include "http/Deadline.h"

#include <poll.h>

#include <cstddef>

namespace Pegasus::http {

/// Calls poll() for some descriptors, which waits until one of them is ready or a moment has come; the caller looks
/// which of the two it was. A signal may end the wait earlier. Returns 0, or the error number of poll().
int pollUntil(pollfd* descriptors, std::size_t count, Deadline::Clock::time_point end);

} // namespace Pegasus::http
