#pragma once

#include "host/TCIMReference.h"
#include "host/TCIMValue.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// Objects and what is known of the associations between them.
struct ObjectGraph {
    enum class State {
        kAsked,    ///< all its associations are here
        kNotAsked, ///< it is where the reading ended
        kFailed,   ///< the server did not tell its associations
        kElsewhere ///< another server has it, which is not asked
    };

    struct Object {
        NQORVYX20::TCIMReference path; ///< with the namespace
        std::size_t depth;             ///< how many associations lead to it
        State state;
    };

    struct Edge {
        std::size_t from; ///< the number of the object that was asked
        std::size_t to;
        bool isFirst; ///< this edge is the one over which `to` was found
        NQORVYX20::TCIMReference association;
        std::string fromRole; ///< the property that refers to `from`
        std::string toRole;
    };

    std::vector<Object> objects; ///< in the order in which they were found, the one in question first
    std::vector<Edge> edges;     ///< each association once, or more often where it refers to more than two objects
    bool isComplete = true;      ///< no state is kFailed, and nothing was left out for its number
};

} // namespace cimhttp
