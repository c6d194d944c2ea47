#include "output/TextTable.h"

#include <algorithm>

#include "output/CellText.h"
#include "output/LineWriter.h"
#include "output/Listing.h"
#include "output/ShortReferences.h"
#include "output/TableLayout.h"
#include "output/TableTexts.h"
#include "output/TextList.h"
#include "text/FoldedName.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

using Lines = std::vector<std::string>;

std::size_t Height(const std::vector<Lines>& columns) {
    std::size_t height = 0;
    for (const Lines& lines : columns) {
        height = std::max(height, lines.size());
    }
    return height;
}

/// A listing as a table for lines of one width.
class Table {
  public:
    Table(const Listing& listing, std::size_t width) : listing_(listing), texts_(listing), layout_(texts_, width) {}

    bool IsTight() const { return layout_.IsTight(); }

    void Write(LineWriter& line) const {
        WriteHead(line);
        for (std::size_t row = 0; row < texts_.Rows().size(); ++row) {
            WriteRow(row, line);
        }
    }

    /// The headings of the columns that are not shown.
    std::vector<std::string> LeftOut() const {
        std::vector<std::string> headings;
        for (const std::size_t i : layout_.LeftOut()) {
            headings.push_back(texts_.Headings()[i]);
        }
        return headings;
    }

  private:
    /// Writes the headings, the last lines of which stand side by side, and a rule.
    void WriteHead(LineWriter& line) const {
        std::vector<Lines> headings;
        std::vector<Lines> rules;
        for (const std::size_t i : shown_) {
            headings.push_back(FoldedName(texts_.Headings()[i], layout_.Width(i)));
            rules.push_back({std::string(layout_.Width(i), '-')});
        }
        const std::size_t height = Height(headings);
        for (Lines& heading : headings) {
            heading.insert(heading.begin(), height - heading.size(), "");
        }
        WriteLines(
            headings, [](std::size_t) { return Emphasis::kStrong; }, line);
        WriteLines(
            rules, [](std::size_t) { return Emphasis::kFaint; }, line);
    }

    /// Writes a row over as many lines as its longest text needs.
    void WriteRow(std::size_t row, LineWriter& line) const {
        std::vector<Lines> texts;
        for (const std::size_t i : shown_) {
            texts.push_back(Folded(texts_.Rows()[row][i], layout_.Width(i)));
        }
        const auto& cells = listing_.Rows()[row];
        WriteLines(
            texts, [&](std::size_t i) { return IsShownAsNull(cells[i]) ? Emphasis::kFaint : Emphasis::kNone; }, line);
    }

    /// Writes the lines of the columns shown side by side. `emphasis_of` gives a column's emphasis.
    template <typename EmphasisOf>
    void WriteLines(const std::vector<Lines>& columns, const EmphasisOf& emphasis_of, LineWriter& line) const {
        const std::size_t height = Height(columns);
        for (std::size_t row = 0; row < height; ++row) {
            for (std::size_t k = 0; k < columns.size(); ++k) {
                const std::size_t i = shown_[k];
                const std::string text = row < columns[k].size() ? columns[k][row] : "";
                line.WritePadded(text, layout_.Width(i), listing_.Columns()[i].align, emphasis_of(i));
                line.Skip(TableLayout::kGap);
            }
            line.End();
        }
    }

    const Listing& listing_;
    const TableTexts texts_;
    const TableLayout layout_;
    const std::vector<std::size_t> shown_ = layout_.Shown();
};

/// Writes a table, or a list where a single row would lose columns. Returns the headings of those left out.
std::vector<std::string> Write(const Table& table, const Listing& listing, const TextStyle& style,
                               std::ostream& output) {
    auto left_out = table.LeftOut();
    if (listing.Rows().size() == 1 && !left_out.empty()) {
        WriteLists(listing, style, output);
        return {};
    }
    LineWriter line(output, style.uses_color);
    table.Write(line);
    return left_out;
}

} // namespace

TableOmissions WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output) {
    const Table table(listing, style.width);
    if (table.IsTight()) {
        if (const auto shorter = WithShortReferences(listing)) {
            return {Write(Table(*shorter, style.width), *shorter, style, output), true};
        }
    }
    return {Write(table, listing, style, output), false};
}

} // namespace cimhttp
