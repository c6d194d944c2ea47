#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

/// A table of texts for a terminal: a heading, a rule, aligned columns. Control characters in a cell are shown as
/// blanks, so that a server's text cannot break the table or steer the terminal.
class TextTable {
  public:
    enum class Align { kLeft, kRight };

    /// All columns must have the same number of cells. Texts are UTF-8.
    void AddColumn(const std::string& heading, Align align, std::vector<std::string> cells);

    std::size_t RowCount() const { return columns_.empty() ? 0 : columns_.front().cells.size(); }

    /// The characters that a line of the table takes.
    std::size_t Width() const;

    void Write(std::ostream& output) const;

    /// Writes one row as lines of heading and text, without the empty texts.
    void WriteRowAsList(std::size_t row, std::ostream& output) const;

  private:
    struct Column {
        std::string heading;
        Align align;
        std::vector<std::string> cells;
        std::size_t width;
    };

    std::vector<Column> columns_;
};

} // namespace cimhttp
