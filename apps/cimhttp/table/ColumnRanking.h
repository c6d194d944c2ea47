#pragma once

#include <cstddef>
#include <vector>

namespace cimhttp {

class TableTexts;

/// How much the columns of a table are missed when there is no room for them.
class ColumnRanking {
  public:
    explicit ColumnRanking(const TableTexts& texts);

    /// The columns, those that are missed the least first: what tells nothing; what is important but the same in every
    /// row; what has the fewest different texts for its width; what is important; keys; what was asked for. Of equal
    /// ones the rightmost.
    const std::vector<std::size_t>& Columns() const { return columns_; }

    /// False for what is the same in every one of several rows, or repeats a column before it.
    bool IsTelling(std::size_t column) const { return isTelling_[column]; }

    /// True for a column of high importance that is the same in every row.
    bool IsImportantConstant(std::size_t column) const { return isConstant_[column]; }

  private:
    std::vector<bool> isTelling_;
    std::vector<bool> isConstant_;
    std::vector<std::size_t> columns_;
};

} // namespace cimhttp
