#pragma once

#include "table/Column.h"
#include "table/TableCell.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// The texts of a table, safe to show, and the columns of a terminal that they take.
class TableTexts {
  public:
    struct Text {
        std::string text;
        bool isNull; ///< the text stands for null
    };

    /// A table without rows. The columns must live as long.
    explicit TableTexts(const std::vector<Column>& columns);

    /// `row` must have as many cells as there are columns.
    void AddRow(const std::vector<TableCell>& row);

    const std::vector<Column>& Columns() const { return columns_; }
    const std::vector<std::string>& Headings() const { return headings_; }
    const std::vector<std::vector<Text>>& Rows() const { return rows_; }

    std::size_t HeadingWidth(std::size_t column) const { return headingWidths_[column]; }

    /// The width of the widest text below the heading.
    std::size_t TextWidth(std::size_t column) const { return widths_[column]; }

    /// Whether a text is so long that only its front is here.
    bool HasCutTexts() const { return hasCutTexts_; }

  private:
    const std::vector<Column>& columns_;
    std::vector<std::string> headings_;
    std::vector<std::vector<Text>> rows_;
    std::vector<std::size_t> headingWidths_;
    std::vector<std::size_t> widths_;
    bool hasCutTexts_ = false;
};

} // namespace cimhttp
