#include "output/TextTable.h"

#include "output/CellText.h"
#include "output/LineWriter.h"
#include "output/Listing.h"
#include "output/ShortReferences.h"
#include "output/TableLayout.h"
#include "output/TableTexts.h"
#include "output/TextList.h"
#include "text/TerminalText.h"
#include "text/WrappedName.h"

#include <algorithm>
#include <string_view>

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

bool HasWordWiderThan(std::size_t width, std::string_view text) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(' ', begin), text.size());
        if (DisplayWidth(text.substr(begin, end - begin)) > width) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

/// The front of a number that is too wide. Its digits do not go on below, where they would look like another number.
std::string CutNumber(std::string_view text, std::size_t width) {
    return (width > 1 ? Cut(text, width - 1) : std::string()) + "…";
}

/// A listing as a table for lines of one width.
class Table {
  public:
    Table(const Listing& listing, std::size_t width) : listing_(listing), texts_(listing), layout_(texts_, width) {}

    bool IsTight() const { return layout_.IsTight(); }
    bool IsHopeless() const { return layout_.IsHopeless(); }
    bool HasCutTexts() const { return texts_.HasCutTexts(); }

    bool CutsNumbers() const {
        return IsTight() && std::any_of(shown_.begin(), shown_.end(), [&](std::size_t i) {
                   return std::any_of(texts_.Rows().begin(), texts_.Rows().end(),
                                      [&](const auto& row) { return IsCut(row[i], i); });
               });
    }

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
            headings.push_back(WrappedName(texts_.Headings()[i], layout_.Width(i)));
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

    bool IsCut(const std::string& text, std::size_t column) const {
        const std::size_t width = layout_.Width(column);
        return listing_.Columns()[column].align == Listing::Align::kRight && width < texts_.TextWidth(column) &&
               HasWordWiderThan(width, text);
    }

    Lines TextLines(const std::string& text, std::size_t column) const {
        const std::size_t width = layout_.Width(column);
        return IsCut(text, column) ? Lines{CutNumber(text, width)} : Wrapped(text, width);
    }

    /// Writes a row over as many lines as its longest text needs.
    void WriteRow(std::size_t row, LineWriter& line) const {
        std::vector<Lines> texts;
        for (const std::size_t i : shown_) {
            texts.push_back(TextLines(texts_.Rows()[row][i], i));
        }
        const auto& cells = listing_.Rows()[row];
        WriteLines(
            texts, [&](std::size_t i) { return IsShownAsNull(cells[i]) ? Emphasis::kFaint : Emphasis::kNone; }, line);
    }

    /// Writes the lines of the columns shown side by side. `emphasisOf` gives a column's emphasis.
    template <typename EmphasisOf>
    void WriteLines(const std::vector<Lines>& columns, const EmphasisOf& emphasisOf, LineWriter& line) const {
        const std::size_t height = Height(columns);
        for (std::size_t row = 0; row < height; ++row) {
            for (std::size_t k = 0; k < columns.size(); ++k) {
                const std::size_t i = shown_[k];
                const std::string text = row < columns[k].size() ? columns[k][row] : "";
                line.WritePadded(text, layout_.Width(i), listing_.Columns()[i].align, emphasisOf(i));
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

/// Writes a table, or lists where a single row would lose something or nothing else fits.
TableOmissions Write(const Table& table, const Listing& listing, const TextStyle& style, std::ostream& output) {
    TableOmissions omissions{table.LeftOut(), false, table.CutsNumbers(), table.HasCutTexts()};
    const bool losesSome = !omissions.columns.empty() || omissions.digits;
    if (table.IsHopeless() || (listing.Rows().size() == 1 && losesSome)) {
        WriteLists(listing, style, output);
        return {};
    }
    LineWriter line(output, style.usesColor);
    table.Write(line);
    return omissions;
}

} // namespace

TableOmissions WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output) {
    const Table table(listing, style.width);
    if (table.IsTight()) {
        if (const auto shorter = WithShortReferences(listing)) {
            TableOmissions omissions = Write(Table(*shorter, style.width), *shorter, style, output);
            omissions.keys = true;
            return omissions;
        }
    }
    return Write(table, listing, style, output);
}

} // namespace cimhttp
