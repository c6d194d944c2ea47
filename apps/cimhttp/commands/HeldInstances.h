#pragma once

#include <algorithm>
#include <cstddef>

namespace cimhttp {

/// How many instances of a class are kept to put them into the order of their paths; a class of more comes in the order
/// of the server. Instances with many properties take more memory.
struct HeldInstances {
    std::size_t instances;
    std::size_t values; ///< of all their properties

    /// How many instances with so many properties that is.
    std::size_t Count(std::size_t properties) const {
        return std::clamp<std::size_t>(values / std::max<std::size_t>(1, properties), 1, instances);
    }
};

// Of several servers, many are read at once.
constexpr HeldInstances kHeldOfTheOnlyServer{10000, 50000};
constexpr HeldInstances kHeldOfEachServer{250, 10000};

} // namespace cimhttp
