#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// What a whole screen shows. Texts are safe to show and do not go beyond the screen.
struct Picture {
    enum class Style { kPlain, kStrong, kFaint, kReverse, kAlarm };

    struct Span {
        std::size_t column; ///< where it begins
        std::string text;
        Style style = Style::kPlain;
    };

    using Line = std::vector<Span>;

    std::vector<Line> lines; ///< from the top
};

} // namespace cimhttp
