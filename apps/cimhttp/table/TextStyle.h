#pragma once

#include <cstddef>

namespace cimhttp {

/// How texts may be laid out.
struct TextStyle {
    std::size_t width = 0; ///< the columns of a line; 0 for any number
    bool usesColor = false;
};

} // namespace cimhttp
