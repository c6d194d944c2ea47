#include "files/RemovalOnSignal.h"

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
int folderOfFile = -1;
std::array<char, NAME_MAX + 1> nameOfFile{};
std::array<struct sigaction, kSignals.size()> handledBefore{};

std::size_t IndexOf(int signal) {
    return static_cast<std::size_t>(std::find(kSignals.begin(), kSignals.end(), signal) - kSignals.begin());
}

/// A handler that was there before has its turn first. Handlers of this program wait for one signal only: the second
/// one ends it.
void OnSignal(int signal) {
    struct sigaction& before = handledBefore[IndexOf(signal)];
    if (before.sa_handler != SIG_DFL) {
        const auto handler = before.sa_handler;
        before.sa_handler = SIG_DFL;
        handler(signal);
        return;
    }
    ::unlinkat(folderOfFile, nameOfFile.data(), 0);
    ::signal(signal, SIG_DFL);
    ::raise(signal); // has its effect when the handler returns
}

} // namespace

RemovalOnSignal::RemovalOnSignal(int folder, const std::string& name) {
    folderOfFile = folder;
    nameOfFile.fill('\0');
    name.copy(nameOfFile.data(), nameOfFile.size() - 1);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], nullptr, &handledBefore[i]);
        if (handledBefore[i].sa_handler != SIG_IGN) {
            struct sigaction action {};
            action.sa_handler = &OnSignal;
            ::sigaction(kSignals[i], &action, nullptr);
        }
    }
}

RemovalOnSignal::~RemovalOnSignal() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], &handledBefore[i], nullptr);
    }
}

} // namespace cimhttp
