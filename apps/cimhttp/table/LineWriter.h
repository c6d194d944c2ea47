#pragma once

#include "table/Column.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace cimhttp {

/// How texts may be laid out.
struct TextStyle {
    std::size_t width = 0; ///< the columns of a line; 0 for any number
    bool usesColor = false;
};

enum class Emphasis { kNone, kStrong, kFaint };

/// Puts lines together piece by piece; blanks wait until something follows them, so that no line ends with any.
class LineWriter {
  public:
    LineWriter(std::ostream& output, bool usesColor) : output_(output), usesColor_(usesColor) {}

    void Write(std::string_view text, Emphasis emphasis = Emphasis::kNone);

    /// Writes a text and blanks beside it, so that both take `width` columns.
    void WritePadded(std::string_view text, std::size_t width, Column::Align align, Emphasis emphasis);

    void Skip(std::size_t columns) { blanks_ += columns; }

    void End();

  private:
    std::ostream& output_;
    bool usesColor_;
    std::string line_;
    std::size_t blanks_ = 0;
};

} // namespace cimhttp
