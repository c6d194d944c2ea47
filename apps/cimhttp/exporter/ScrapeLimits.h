#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace cimhttp {

/// What the scrape of one server may take, and what is kept of servers between scrapes.
struct ScrapeLimits {
    std::size_t series = 10000;
    std::uint64_t bytes = std::uint64_t{64} << 20U; ///< of CIM-XML from the server
    std::chrono::milliseconds time{30000};          ///< unless Prometheus has less
    std::size_t targets = 32;                       ///< servers that are read at once
    std::chrono::seconds definitionsLife{3600};     ///< how long definitions of classes are kept
    std::chrono::seconds idleLife{900};             ///< how long a connection is kept that nobody asks for
};

} // namespace cimhttp
