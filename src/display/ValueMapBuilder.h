#pragma once

#include "display/ValueMapTable.h"

#include <string>
#include <string_view>
#include <vector>

namespace NQORVYX20 {

/// Turns the entries of the qualifier ValueMap, in their order, into the rows of a value-map table. An entry is a
/// number `N`, a range `..M` from 0, a range `N..` up to the next number, or `..` for everything that no row covers.
class ValueMapBuilder {
  public:
    /// Adds to both, which live longer than the builder.
    ValueMapBuilder(std::vector<ValueMapRow>& table, std::string& defaultText);

    /// Adds one entry and its display text. False for a `..` after a range that is still open, which makes the whole
    /// value map unusable.
    ///
    /// Numbers are unsigned decimals. Blanks and a plus before them are skipped; what follows them is ignored, also M
    /// in `N..M`: such a range is open. An entry whose number cannot be read (no digits, a minus, more than 64 bits)
    /// stands for no value that a property could have, and gives no row.
    bool Add(std::string_view entry, const std::string& text);

  private:
    bool IsLastRowOpen() const;
    void AddRangeFromZero(std::string_view end, const std::string& text);
    void AddNumber(std::string_view entry, const std::string& text);

    std::vector<ValueMapRow>& table_;
    std::string& defaultText_;
};

} // namespace NQORVYX20
