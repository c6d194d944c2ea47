#pragma once

#include "table/LineWriter.h"
#include "table/TableLayout.h"
#include "table/TableTexts.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

/// What a table that is too wide does not show.
struct TableOmissions {
    std::vector<std::string> columns; ///< headings, those that are missed the most first
    bool digits = false;              ///< the ends of numbers, in the place of which stands `…`
    bool texts = false;               ///< the ends of texts of more than 64 KiB, each with a mark that says how much
};

/// A table: headings, a rule, aligned columns. Where it is too wide for the style, headings and long texts go on over
/// several lines. Where that is not enough, columns are left out: all that are the same in every row or repeat another
/// column; then those with the fewest different texts for their width; important ones (names, states) after these; keys
/// last. In the end, important ones that are the same in every row are shown as far as there is room. Columns that were
/// asked for stay: they are folded, and their numbers cut off, as far as it takes.
///
/// The time that a table takes grows with its texts, and a little more than with the number of columns. No line is
/// wider than the style allows, and none ends with blanks.
class TextTable {
  public:
    /// The texts must live as long.
    TextTable(const TableTexts& texts, const TextStyle& style)
        : texts_(texts), style_(style), layout_(texts, style.width) {}

    /// True for a table that is too wide to be shown as it is.
    bool IsTight() const { return layout_.IsTight(); }

    /// True where a list shows more: a single row would lose columns or digits, or there is no room even for the
    /// columns that must stay.
    bool IsWorseThanList() const;

    TableOmissions Omissions() const;

    void Write(std::ostream& output) const;

    /// Writes a row that was not known when the table was laid out. What is wider there than its column goes on below
    /// itself, a number is cut off; where lines may be of any width, all stands as it is. Counts for Omissions().
    void WriteLater(const std::vector<TableCell>& row, std::ostream& output);

  private:
    using Lines = std::vector<std::string>;

    bool IsCut(const std::string& text, std::size_t column) const;
    bool CutsNumbers() const;
    std::size_t RoomLater(std::size_t column) const;
    Lines TextLines(const std::string& text, std::size_t column) const;
    Lines LaterLines(const std::string& text, std::size_t column);
    void WriteHead(LineWriter& line) const;
    void WriteRow(const std::vector<TableTexts::Text>& row, LineWriter& line) const;
    template <typename EmphasisOf>
    void WriteLines(const std::vector<Lines>& columns, const EmphasisOf& emphasisOf, LineWriter& line) const;

    const TableTexts& texts_;
    TextStyle style_;
    TableLayout layout_;
    std::vector<std::size_t> shown_ = layout_.Shown();
    bool hasCutLaterNumbers_ = false;
    bool hasCutLaterTexts_ = false;
};

} // namespace cimhttp
