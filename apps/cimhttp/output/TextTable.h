#pragma once

#include "output/TextStyle.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

class Listing;

/// What a table that is too wide does not show.
struct TableOmissions {
    std::vector<std::string> columns; ///< headings, those that are missed the most first
    bool keys = false;                ///< keys of references that are the same in every row
    bool digits = false;              ///< the ends of numbers, in the place of which stands `…`
    bool texts = false;               ///< the ends of texts of more than 64 KiB, each with a mark that says how much
};

/// Writes a table: headings, a rule, aligned columns. Where it is too wide for the style, headings and long texts go on
/// over several lines, and references lose the keys that are the same in every row. Where that is not enough, columns
/// are left out: all that are the same in every row or repeat another column; then those with the fewest different
/// texts for their width; important ones (names, states) after these; keys last. In the end, important ones that are
/// the same in every row are shown as far as there is room. Columns that were asked for stay: they are folded, and
/// their numbers cut off, as far as it takes.
///
/// A text of more than 64 KiB is cut off with a mark that says how much is missing. The time that a table takes grows
/// with the texts that are left, and a little more than with the number of columns.
///
/// No line is wider than the style allows, and none ends with blanks. A value that is null is an en dash. A single row
/// that would lose columns or digits is written as a list instead; so are rows for which there is not even then room.
TableOmissions WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output);

} // namespace cimhttp
