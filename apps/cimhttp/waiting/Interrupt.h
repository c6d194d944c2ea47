#pragma once

#include <csignal>

namespace cimhttp {

/// While one lives, the first SIGINT or SIGTERM does not end the program but is remembered, so that the work at hand
/// can end in good order. A second one ends the program as ever. One may live within another, and changes nothing then.
/// For the main thread.
class InterruptScope {
  public:
    InterruptScope();
    ~InterruptScope();
    InterruptScope(const InterruptScope&) = delete;
    InterruptScope& operator=(const InterruptScope&) = delete;

  private:
    bool isOutermost_ = false;
    struct sigaction onInterrupt_ {};
    struct sigaction onTerminate_ {};
};

/// Whether a signal has come in the InterruptScope that lives.
bool Interrupted();

/// Ends the program as the signal that has come would have ended it: shells say 130 of SIGINT, and end their loops.
[[noreturn]] void EndByInterrupt();

} // namespace cimhttp
