#include "http/SocketPoll.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>

namespace Pegasus::http {

namespace {

using Clock = Deadline::Clock;

/// Rounded up, so that the time has come when the wait is over; the caller goes on waiting where it is cut short.
int millisecondsUntil(Clock::time_point end) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

} // namespace

int pollUntil(pollfd* descriptors, std::size_t count, Clock::time_point end) {
    return ::poll(descriptors, count, millisecondsUntil(end)) < 0 && errno != EINTR ? errno : 0;
}

} // namespace Pegasus::http
