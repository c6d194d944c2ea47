#pragma once

#include <string>

namespace cimhttp {

/// What a unit is made of: a base unit, and how many of these it is. Those that performance data knows are bytes (`B`),
/// seconds (`s`) and percent (`%`).
struct UnitScale {
    std::string base;      ///< its symbol; empty for a mere number
    long double times = 1; ///< whole
    long double per = 1;   ///< whole: quotients of whole numbers are as exact as a number that is written down

    long double InBase(long double number) const { return number * times / per; }

    /// Of a symbol as the program shows it, or as people write it: `GiB`, `kB`, `KB`, `ms`, `min`, `%`, `Gbit/s`. A
    /// symbol that is not known is a base unit.
    static UnitScale Of(const std::string& symbol);
};

} // namespace cimhttp
