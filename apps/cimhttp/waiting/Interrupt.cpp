#include "waiting/Interrupt.h"

#include <cstdlib>

namespace cimhttp {

namespace {

constexpr int kEndedBySignal = 128; // what shells add to the signal's number

volatile std::sig_atomic_t caught_signal = 0; // what a signal handler may write

void Remember(int signal) { caught_signal = signal; }

} // namespace

InterruptScope::InterruptScope() {
    ::sigaction(SIGINT, nullptr, &on_interrupt_);
    is_outermost_ = on_interrupt_.sa_handler != &Remember && caught_signal == 0;
    if (is_outermost_) {
        struct sigaction action {};
        action.sa_handler = &Remember;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(SIGINT, &action, &on_interrupt_);
        ::sigaction(SIGTERM, &action, &on_terminate_);
    }
}

InterruptScope::~InterruptScope() {
    if (is_outermost_) {
        ::sigaction(SIGINT, &on_interrupt_, nullptr);
        ::sigaction(SIGTERM, &on_terminate_, nullptr);
        caught_signal = 0;
    }
}

bool Interrupted() { return caught_signal != 0; }

void EndByInterrupt() {
    const int signal = caught_signal;
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(kEndedBySignal + signal); // where the signal is blocked
}

} // namespace cimhttp
