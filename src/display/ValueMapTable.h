#pragma once

#include "display/ValueMapIndex.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace NQORVYX20 {

class DisplayQualifiers;

/// A row of a value map: the text of the values from `low` to `high`, both included. A row that is open at its end has
/// all bits of `high` set.
struct ValueMapRow {
    std::uint64_t low;
    std::uint64_t high;
    std::string text;
};

/// A value map: the rows in the order of the qualifier ValueMap, and the text for all other values, empty for none.
class ValueMapTable {
  public:
    ValueMapTable(std::vector<ValueMapRow> rows, std::string defaultText);

    const std::vector<ValueMapRow>& Rows() const { return rows_; }
    const std::string& DefaultText() const { return defaultText_; }

    /// The text of the first row that covers the number; null when none does.
    const std::string* Find(std::uint64_t number) const;

  private:
    std::vector<ValueMapRow> rows_;
    std::string defaultText_;
    ValueMapIndex index_;
};

/// The value map that the qualifiers Values and ValueMap make. Entries without a text of their own get an empty one. An
/// empty pointer when there is no value map, or a contradictory one.
boost::shared_ptr<const ValueMapTable> MakeValueMapTable(const DisplayQualifiers& qualifiers);

} // namespace NQORVYX20
