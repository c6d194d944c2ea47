#include "Interrupt.h"

namespace cimhttp {

namespace {

volatile std::sig_atomic_t is_interrupted = 0; // what a signal handler may write

void Remember(int /*signal*/) { is_interrupted = 1; }

} // namespace

InterruptScope::InterruptScope() {
    is_interrupted = 0;
    struct sigaction action {};
    action.sa_handler = &Remember;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigaction(SIGINT, &action, &on_interrupt_);
    ::sigaction(SIGTERM, &action, &on_terminate_);
}

InterruptScope::~InterruptScope() {
    ::sigaction(SIGINT, &on_interrupt_, nullptr);
    ::sigaction(SIGTERM, &on_terminate_, nullptr);
}

bool Interrupted() { return is_interrupted != 0; }

} // namespace cimhttp
