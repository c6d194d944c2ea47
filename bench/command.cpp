// command RUNS PROGRAM ARGUMENT... [-- PROGRAM ARGUMENT...]...: runs a program so often and prints what one run takes:
// the median of its processor time and of its duration, and the most memory that it had. Its output goes nowhere.
// Several programs take turns, so that what else the machine does slows down all of them alike; what is printed of them
// comes in their order.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

struct Run {
    double processorMs;
    double durationMs;
    long peakMemoryKib;
};

double Milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// Ends this program when the other one cannot be started or fails.
Run RunOnce(char** command) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
        ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
    }
    const auto begin = std::chrono::steady_clock::now();
    pid_t child = -1;
    if (::posix_spawnp(&child, command[0], &actions, nullptr, command, environ) != 0) {
        std::perror(command[0]);
        std::exit(1);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    const std::chrono::duration<double, std::milli> duration = std::chrono::steady_clock::now() - begin;
    ::posix_spawn_file_actions_destroy(&actions);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "%s failed\n", command[0]);
        std::exit(1);
    }
    return {Milliseconds(usage.ru_utime) + Milliseconds(usage.ru_stime), duration.count(), usage.ru_maxrss};
}

double Median(const std::vector<Run>& runs, double Run::*figure) {
    std::vector<double> values;
    values.reserve(runs.size());
    for (const Run& run : runs) {
        values.push_back(run.*figure);
    }
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

long Peak(const std::vector<Run>& runs) {
    return std::max_element(runs.begin(), runs.end(),
                            [](const Run& one, const Run& other) { return one.peakMemoryKib < other.peakMemoryKib; })
        ->peakMemoryKib;
}

/// A command, whose words end with a null pointer, and its runs.
struct Measured {
    std::vector<char*> words;
    std::vector<Run> runs;
};

/// Empty where a command has no word.
std::vector<Measured> CommandsIn(char** begin, char** end) {
    std::vector<Measured> commands;
    while (begin != end) {
        char** const next = std::find_if(begin, end, [](const char* word) { return std::string_view(word) == "--"; });
        if (next == begin) {
            return {};
        }
        commands.push_back({{begin, next}, {}});
        commands.back().words.push_back(nullptr);
        begin = next == end ? end : next + 1;
    }
    return commands;
}

} // namespace

int main(int argc, char** argv) {
    const int count = argc > 2 ? std::atoi(argv[1]) : 0;
    auto commands = count < 1 ? std::vector<Measured>() : CommandsIn(argv + 2, argv + argc);
    if (commands.empty()) {
        std::fprintf(stderr, "usage: %s RUNS PROGRAM ARGUMENT... [-- PROGRAM ARGUMENT...]...\n", argv[0]);
        return 2;
    }
    for (int i = 0; i < count; ++i) {
        for (Measured& command : commands) {
            command.runs.push_back(RunOnce(command.words.data()));
        }
    }
    for (const Measured& command : commands) {
        std::printf("processor_milliseconds %.2f\n", Median(command.runs, &Run::processorMs));
        std::printf("milliseconds %.2f\n", Median(command.runs, &Run::durationMs));
        std::printf("peak_memory_kib %ld\n", Peak(command.runs));
    }
}
