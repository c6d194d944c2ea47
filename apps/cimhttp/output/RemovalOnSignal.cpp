#include "output/RemovalOnSignal.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstddef>

namespace cimhttp {

namespace {

constexpr std::array<int, 5> kSignals{SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU};

// What the signal handler reads.
int folder_of_file = -1;
std::array<char, NAME_MAX + 1> name_of_file{};
std::array<struct sigaction, kSignals.size()> handled_before{};

std::size_t IndexOf(int signal) {
    return static_cast<std::size_t>(std::find(kSignals.begin(), kSignals.end(), signal) - kSignals.begin());
}

/// A handler that was there before has its turn first. Handlers of this program wait for one signal only: the second
/// one ends it.
void OnSignal(int signal) {
    struct sigaction& before = handled_before[IndexOf(signal)];
    if (before.sa_handler != SIG_DFL) {
        const auto handler = before.sa_handler;
        before.sa_handler = SIG_DFL;
        handler(signal);
        return;
    }
    ::unlinkat(folder_of_file, name_of_file.data(), 0);
    ::signal(signal, SIG_DFL);
    ::raise(signal); // has its effect when the handler returns
}

} // namespace

RemovalOnSignal::RemovalOnSignal(int folder, const std::string& name) {
    folder_of_file = folder;
    name_of_file.fill('\0');
    name.copy(name_of_file.data(), name_of_file.size() - 1);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], nullptr, &handled_before[i]);
        if (handled_before[i].sa_handler != SIG_IGN) {
            struct sigaction action {};
            action.sa_handler = &OnSignal;
            ::sigaction(kSignals[i], &action, nullptr);
        }
    }
}

RemovalOnSignal::~RemovalOnSignal() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], &handled_before[i], nullptr);
    }
}

} // namespace cimhttp
