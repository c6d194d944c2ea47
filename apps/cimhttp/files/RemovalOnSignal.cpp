#include "files/RemovalOnSignal.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <mutex>

namespace cimhttp {

namespace {

constexpr std::array<int, 5> kSignals{SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU};
constexpr int kNoFolder = -1;

/// A file to remove, if it has a folder. The name is there before the folder is.
struct File {
    std::atomic<int> folder{kNoFolder};
    std::array<char, NAME_MAX + 1> name{};
};

// What the signal handler reads. The first file installs it, the last one takes it away.
std::array<File, RemovalOnSignal::kMostFiles> files{};
std::array<struct sigaction, kSignals.size()> handledBefore{};

std::mutex changing; ///< held while a file comes or goes
std::size_t count = 0;

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
    for (const File& file : files) {
        const int folder = file.folder;
        if (folder != kNoFolder) {
            ::unlinkat(folder, file.name.data(), 0);
        }
    }
    ::signal(signal, SIG_DFL);
    ::raise(signal); // has its effect when the handler returns
}

void InstallHandler() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], nullptr, &handledBefore[i]);
        if (handledBefore[i].sa_handler != SIG_IGN) {
            struct sigaction action {};
            action.sa_handler = &OnSignal;
            ::sigaction(kSignals[i], &action, nullptr);
        }
    }
}

void RestoreHandlers() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        ::sigaction(kSignals[i], &handledBefore[i], nullptr);
    }
}

} // namespace

RemovalOnSignal::RemovalOnSignal(int folder, const std::string& name) {
    const std::lock_guard lock(changing);
    const auto free =
        std::find_if(files.begin(), files.end(), [](const File& file) { return file.folder == kNoFolder; });
    place_ = static_cast<std::size_t>(free - files.begin());
    if (place_ == files.size()) {
        return;
    }
    free->name.fill('\0');
    name.copy(free->name.data(), free->name.size() - 1);
    free->folder = folder;
    if (++count == 1) {
        InstallHandler();
    }
}

RemovalOnSignal::~RemovalOnSignal() {
    const std::lock_guard lock(changing);
    if (place_ == files.size()) {
        return;
    }
    if (--count == 0) {
        RestoreHandlers();
    }
    files[place_].folder = kNoFolder;
}

} // namespace cimhttp
