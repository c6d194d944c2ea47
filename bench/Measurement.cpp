#include "Measurement.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>

namespace bench {

namespace {

/// A number that the system tells of a process.
std::size_t StatusOf(const std::string& process, const std::string& name) {
    const std::string file = "/proc/" + process + "/status";
    std::ifstream status(file);
    for (std::string field; status >> field; status.ignore(std::numeric_limits<std::streamsize>::max(), '\n')) {
        std::size_t number = 0;
        if (field == name && status >> number) {
            return number;
        }
    }
    throw std::runtime_error(file + " does not tell " + name);
}

std::size_t CountFiles(const std::string& folder) {
    const std::filesystem::directory_iterator files(folder);
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

} // namespace

std::size_t PeakMemory() { return StatusOf("self", "VmHWM:"); }

Usage UsageOf(const std::string& process) {
    return {StatusOf(process, "VmRSS:"), CountFiles("/proc/" + process + "/fd"), StatusOf(process, "Threads:")};
}

void PrintInstances(std::size_t count, double seconds) {
    std::cout << "instances " << count << "\ninstances_per_second " << static_cast<double>(count) / seconds << '\n';
    PrintTime(seconds);
}

void PrintTime(double seconds) { std::cout << "milliseconds " << seconds * 1e3 << '\n'; }

void PrintCount(std::size_t count) { std::cout << "count " << count << '\n'; }

void PrintPeakMemory() { std::cout << "peak_memory_kib " << PeakMemory() << '\n'; }

} // namespace bench
