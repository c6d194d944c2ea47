#pragma once

#include <string>

namespace cimhttp {

/// A column of a table.
struct Column {
    enum class Align { kLeft, kRight };

    /// The more important a column, the later it is left out where there is no room for all; one that was asked for by
    /// name, never.
    enum class Importance { kUsual, kHigh, kKey, kAsked };

    std::string heading;
    Align align = Align::kLeft;
    Importance importance = Importance::kUsual;
};

} // namespace cimhttp
