#pragma once

namespace cimhttp {

/// The lines of a tree that is drawn with text.
struct TreeLines {
    const char* branch;  ///< to what has another one below it
    const char* last;    ///< to the last one
    const char* passing; ///< past what hangs from another one, to one below that

    static constexpr const char* kNothing = "    "; ///< below the last one

    /// Those that the character set of a locale has.
    static const TreeLines& For(bool isUtf8) {
        static constexpr TreeLines kBoxDrawing{"├── ", "└── ", "│   "};
        static constexpr TreeLines kAscii{"|-- ", "`-- ", "|   "};
        return isUtf8 ? kBoxDrawing : kAscii;
    }
};

} // namespace cimhttp
