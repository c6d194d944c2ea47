#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

/// A text of a server, made safe to show: one line of good UTF-8 that cannot steer a terminal. Line ends and tabs
/// become blanks, other control characters a picture of theirs (U+241B for ESC), further ones and bytes that are not
/// UTF-8 U+FFFD (see IsControl).
std::string Printable(std::string_view text);

/// The same for a text of several lines, which keeps its line ends.
std::string PrintableLines(std::string_view text);

/// The columns that a printable text takes on a terminal.
std::size_t DisplayWidth(std::string_view text);

/// A printable text as lines of at most `width` columns, broken at blanks where there are any, a word that is too long
/// behind its commas and slashes, else at `.`, `=` or `_` and the like. A character that is wider than `width` has a
/// line of its own. At least one line.
std::vector<std::string> Folded(std::string_view text, std::size_t width);

/// As much of a printable text's front as `width` columns hold, but one character at least.
std::string Cut(std::string_view text, std::size_t width);

} // namespace cimhttp
