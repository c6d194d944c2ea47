#include "table/TextTable.h"

#include "text/TerminalText.h"
#include "text/WrappedName.h"

#include <algorithm>
#include <string_view>

namespace cimhttp {

namespace {

template <typename Lines>
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

} // namespace

bool TextTable::IsWorseThanList() const {
    return layout_.IsHopeless() || (texts_.Rows().size() == 1 && (!layout_.LeftOut().empty() || CutsNumbers()));
}

TableOmissions TextTable::Omissions() const {
    TableOmissions omissions{{}, CutsNumbers() || hasCutLaterNumbers_, texts_.HasCutTexts() || hasCutLaterTexts_};
    for (const std::size_t i : layout_.LeftOut()) {
        omissions.columns.push_back(texts_.Headings()[i]);
    }
    return omissions;
}

bool TextTable::CutsNumbers() const {
    return IsTight() && std::any_of(shown_.begin(), shown_.end(), [&](std::size_t i) {
               return std::any_of(texts_.Rows().begin(), texts_.Rows().end(),
                                  [&](const auto& row) { return IsCut(row[i].text, i); });
           });
}

bool TextTable::IsCut(const std::string& text, std::size_t column) const {
    const std::size_t width = layout_.Width(column);
    return texts_.Columns()[column].align == Column::Align::kRight && width < texts_.TextWidth(column) &&
           HasWordWiderThan(width, text);
}

void TextTable::Write(std::ostream& output) const {
    LineWriter line(output, style_.usesColor);
    WriteHead(line);
    for (const auto& row : texts_.Rows()) {
        WriteRow(row, line);
    }
}

void TextTable::WriteLater(const std::vector<TableCell>& row, std::ostream& output) {
    std::vector<Lines> texts;
    for (const std::size_t i : shown_) {
        texts.push_back(LaterLines(row[i].Front(), i));
        hasCutLaterTexts_ = hasCutLaterTexts_ || row[i].IsTooLong();
    }
    LineWriter line(output, style_.usesColor);
    WriteLines(
        texts, [&](std::size_t i) { return row[i].isNull ? Emphasis::kFaint : Emphasis::kNone; }, line);
}

/// Writes the headings, the last lines of which stand side by side, and a rule.
void TextTable::WriteHead(LineWriter& line) const {
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

/// Writes a row over as many lines as its longest text needs.
void TextTable::WriteRow(const std::vector<TableTexts::Text>& row, LineWriter& line) const {
    std::vector<Lines> texts;
    for (const std::size_t i : shown_) {
        texts.push_back(TextLines(row[i].text, i));
    }
    WriteLines(
        texts, [&](std::size_t i) { return row[i].isNull ? Emphasis::kFaint : Emphasis::kNone; }, line);
}

TextTable::Lines TextTable::TextLines(const std::string& text, std::size_t column) const {
    const std::size_t width = layout_.Width(column);
    return IsCut(text, column) ? Lines{CutNumber(text, width)} : Wrapped(text, width);
}

/// The last column may go on to the end of the line.
std::size_t TextTable::RoomLater(std::size_t column) const {
    if (column != shown_.back()) {
        return layout_.Width(column);
    }
    std::size_t used = 0;
    std::for_each(shown_.begin(), shown_.end() - 1,
                  [&](std::size_t i) { used += layout_.Width(i) + TableLayout::kGap; });
    return std::max(layout_.Width(column), style_.width - std::min(used, style_.width));
}

TextTable::Lines TextTable::LaterLines(const std::string& text, std::size_t column) {
    if (style_.width == 0) {
        return {text};
    }
    const std::size_t room = RoomLater(column);
    const bool isNumber = texts_.Columns()[column].align == Column::Align::kRight;
    if (!isNumber || !HasWordWiderThan(room, text)) {
        return Wrapped(text, room);
    }
    hasCutLaterNumbers_ = true;
    return {CutNumber(text, room)};
}

/// Writes the lines of the columns shown side by side. `emphasisOf` gives a column's emphasis.
template <typename EmphasisOf>
void TextTable::WriteLines(const std::vector<Lines>& columns, const EmphasisOf& emphasisOf, LineWriter& line) const {
    const std::size_t height = Height(columns);
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t k = 0; k < columns.size(); ++k) {
            const std::size_t i = shown_[k];
            const std::string text = row < columns[k].size() ? columns[k][row] : "";
            line.WritePadded(text, layout_.Width(i), texts_.Columns()[i].align, emphasisOf(i));
            line.Skip(TableLayout::kGap);
        }
        line.End();
    }
}

} // namespace cimhttp
