#pragma once

#include "table/TextTable.h"

#include <iosfwd>
#include <memory>

namespace cimhttp {

class Listing;

/// What a listing that is too wide does not show as a table.
struct ListingOmissions : TableOmissions {
    bool keys = false; ///< keys of references that are the same in every row
};

/// Writes a listing as a TextTable. Where that is too wide, references lose the keys that are the same in every row. A
/// table that is worse than a list is written as one. A value that is null is an en dash.
ListingOmissions WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output);

/// A table of more rows than are to be in memory at once: the first ones say what it looks like, see
/// TextTable::WriteLater() about the others. References have all their keys.
class GrowingTable {
  public:
    /// Writes the first rows.
    GrowingTable(const Listing& first, const TextStyle& style, std::ostream& output);
    ~GrowingTable();
    GrowingTable(const GrowingTable&) = delete;
    GrowingTable& operator=(const GrowingTable&) = delete;

    /// Writes the rows of another listing with the same columns.
    void Add(const Listing& later);

    ListingOmissions Omissions() const;

  private:
    struct Parts;

    std::ostream& output_;
    std::unique_ptr<Parts> parts_;
};

/// Writes a listing as a TextList. A value that is null is an en dash.
void WriteLists(const Listing& listing, const TextStyle& style, std::ostream& output);

} // namespace cimhttp
