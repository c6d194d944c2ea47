#pragma once

#include <cstddef>
#include <string>

namespace cimhttp {

/// Lays out help for a number of columns. Every part is lines with their ends.
class HelpLayout {
  public:
    /// `width` is that of the terminal, 0 where there is none. Lines are never longer than is comfortable to read.
    explicit HelpLayout(std::size_t width);

    /// A name and what it means, beside it; below it where there is no room.
    std::string Entry(const std::string& name, const std::string& text) const;

    /// Paragraphs. An empty line ends one; an indented line stays a line.
    std::string Prose(const std::string& text) const;

    /// Command lines, indented. One that is too long goes on in the next line in the way that shells know.
    std::string CommandLines(const std::string& lines) const;

  private:
    std::size_t width_;
};

} // namespace cimhttp
