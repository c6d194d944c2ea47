#pragma once

#include "table/TextTable.h"

#include <iosfwd>

namespace cimhttp {

class Listing;

/// What a listing that is too wide does not show as a table.
struct ListingOmissions : TableOmissions {
    bool keys = false; ///< keys of references that are the same in every row
};

/// Writes a listing as a TextTable. Where that is too wide, references lose the keys that are the same in every row. A
/// table that is worse than a list is written as one. A value that is null is an en dash.
ListingOmissions WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output);

/// Writes a listing as a TextList. A value that is null is an en dash.
void WriteLists(const Listing& listing, const TextStyle& style, std::ostream& output);

} // namespace cimhttp
