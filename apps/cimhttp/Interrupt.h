#pragma once

#include <csignal>

namespace cimhttp {

/// While one lives, the first SIGINT or SIGTERM does not end the program but is remembered, so that the work at hand
/// can end in good order. A second one ends the program as ever. At most one lives at a time.
class InterruptScope {
  public:
    InterruptScope();
    ~InterruptScope();
    InterruptScope(const InterruptScope&) = delete;
    InterruptScope& operator=(const InterruptScope&) = delete;

  private:
    struct sigaction on_interrupt_ {};
    struct sigaction on_terminate_ {};
};

/// Whether a signal has come in the youngest InterruptScope.
bool Interrupted();

} // namespace cimhttp
