#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

/// A text of a server, made safe to show: one line of good UTF-8 that cannot steer a terminal. Line ends and tabs
/// become blanks, other control characters a picture of theirs (U+241B for ESC); the rest of what must not reach a
/// terminal (see IsControl) and bytes that are not UTF-8 become U+FFFD.
std::string Printable(std::string_view text);

/// Printable() for a text of several lines, which keeps its line ends.
std::string PrintableLines(std::string_view text);

/// The columns that a printable text takes on a terminal.
std::size_t DisplayWidth(std::string_view text);

/// Cuts a printable text into lines of at most `width` columns, from its front: at blanks where there are any, a word
/// that is too long after its commas and slashes, else at `.`, `=` or `_` and the like. A character that is wider than
/// `width` has a line of its own. The text must live as long. All lines together take time in proportion to the text.
class LineWrapper {
  public:
    LineWrapper(std::string_view text, std::size_t width) : text_(text), width_(width) {}

    /// The next line; there is one at least.
    std::string_view NextLine();

    bool IsAtEnd() const { return offset_ == text_.size(); }

  private:
    std::string_view text_;
    std::size_t width_;
    std::size_t offset_ = 0;
};

/// All lines of a LineWrapper.
std::vector<std::string> Wrapped(std::string_view text, std::size_t width);

/// As much of a printable text's front as `width` columns hold, but one character at least.
std::string Cut(std::string_view text, std::size_t width);

} // namespace cimhttp
