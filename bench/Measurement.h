#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace bench {

/// Measures the time since it was made.
class Stopwatch {
  public:
    double Seconds() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }

  private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point start_ = Clock::now();
};

/// The most memory that this process has had in use at any time, in KiB. Throws std::runtime_error when the system does
/// not say.
std::size_t PeakMemory();

/// What a process has in use now.
struct Usage {
    std::size_t memory = 0; ///< resident, in KiB
    std::size_t descriptors = 0;
    std::size_t threads = 0;
};

/// The usage of a process, by its number or "self". Throws std::exception when the system does not say.
Usage UsageOf(const std::string& process);

/// Prints one figure per line, its name before it, for scripts to read.
void PrintInstances(std::size_t count, double seconds);
void PrintTime(double seconds);
void PrintCount(std::size_t count);
void PrintPeakMemory();

} // namespace bench
