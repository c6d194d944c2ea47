#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

/// Ends the program when a property does not hold, so that the input that shows it is kept.
inline void Require(bool holds, std::string_view property) {
    if (holds) {
        return;
    }
    std::fprintf(stderr, "does not hold: %.*s\n", static_cast<int>(property.size()), property.data());
    std::abort();
}
