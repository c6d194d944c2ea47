#pragma once

#include "table/Column.h"
#include "table/LineWriter.h"
#include "table/TableCell.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

/// Writes rows as lists: each as lines of heading and text, with an empty line between two rows. Long texts go on below
/// themselves.
class TextList {
  public:
    TextList(const std::vector<Column>& columns, const TextStyle& style, std::ostream& output);

    /// `row` must have as many cells as there are columns.
    void Write(const std::vector<TableCell>& row);

  private:
    void SetShape(std::size_t width);
    void WriteItem(std::string heading, const TableCell& cell);

    std::vector<std::string> headings_; // safe to show
    std::size_t indent_ = 0;            // where the texts begin
    std::size_t room_ = 0;              // for them; 0 for any width
    bool isStacked_ = false;            // each text stands below its heading
    LineWriter line_;
    bool isFirst_ = true;
};

} // namespace cimhttp
