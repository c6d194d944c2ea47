#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

class Listing;

/// How texts may be laid out.
struct TextStyle {
    std::size_t width = 0; ///< the columns of a line; 0 for any number
    bool uses_color = false;
};

/// Writes a table: headings, a rule, aligned columns. Where it is too wide for the style, long texts go on over several
/// lines, and columns are left out: first those that say the same in every row or repeat another column, then the
/// others from the right, keys last. No line is wider than the style allows, and none ends with blanks. A value that is
/// null is a dash. A single row that would lose columns is written as a list instead. Returns the headings of the
/// columns that were left out.
std::vector<std::string> WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output);

/// Writes each row as lines of heading and text, with an empty line between two rows. Long texts go on below
/// themselves.
void WriteLists(const Listing& listing, const TextStyle& style, std::ostream& output);

} // namespace cimhttp
