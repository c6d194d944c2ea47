#pragma once

#include <chrono>
#include <cstddef>

namespace demo {

/// The limits of the enumerations that clients pull.
struct EnumerationLimits {
    /// Enumerations that are open at the same time. With 0 the server has no pulled enumerations, like servers of an
    /// older standard.
    std::size_t open = 100;
    /// Objects of one portion, whatever the client asks for.
    std::size_t objects = 10'000;
    /// The text of the objects of one portion, which ends with the object that passes this.
    std::size_t bytes = std::size_t{2} << 20U;
    /// How long an enumeration stays open between two operations unless the client asks for another time, and the most
    /// that it can ask for.
    std::chrono::seconds timeout{60};
    std::chrono::seconds longestTimeout{600};
};

} // namespace demo
