#include "waiting/Interrupt.h"

#include <atomic>
#include <cstdlib>

namespace cimhttp {

namespace {

constexpr int kEndedBySignal = 128; // what shells add to the signal's number

std::atomic<int> caughtSignal{0}; // read by any thread
static_assert(std::atomic<int>::is_always_lock_free, "what a signal handler may write");

void Remember(int signal) { caughtSignal = signal; }

} // namespace

InterruptScope::InterruptScope() {
    ::sigaction(SIGINT, nullptr, &onInterrupt_);
    isOutermost_ = onInterrupt_.sa_handler != &Remember && caughtSignal == 0;
    if (isOutermost_) {
        struct sigaction action {};
        action.sa_handler = &Remember;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(SIGINT, &action, &onInterrupt_);
        ::sigaction(SIGTERM, &action, &onTerminate_);
    }
}

InterruptScope::~InterruptScope() {
    if (isOutermost_) {
        ::sigaction(SIGINT, &onInterrupt_, nullptr);
        ::sigaction(SIGTERM, &onTerminate_, nullptr);
        caughtSignal = 0;
    }
}

bool Interrupted() { return caughtSignal != 0; }

void EndByInterrupt() {
    const int signal = caughtSignal;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(kEndedBySignal + signal); // where the signal is blocked
}

} // namespace cimhttp
