#include "Measurement.h"

#include <fstream>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <string>

namespace bench {

std::size_t PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string field; status >> field; status.ignore(std::numeric_limits<std::streamsize>::max(), '\n')) {
        std::size_t kibibytes = 0;
        if (field == "VmHWM:" && status >> kibibytes) {
            return kibibytes;
        }
    }
    throw std::runtime_error("/proc/self/status does not tell the peak memory");
}

void PrintInstances(std::size_t count, double seconds) {
    std::cout << "instances " << count << "\ninstances_per_second " << static_cast<double>(count) / seconds << '\n';
    PrintTime(seconds);
}

void PrintTime(double seconds) { std::cout << "milliseconds " << seconds * 1e3 << '\n'; }

void PrintCount(std::size_t count) { std::cout << "count " << count << '\n'; }

void PrintPeakMemory() { std::cout << "peak_memory_kib " << PeakMemory() << '\n'; }

} // namespace bench
