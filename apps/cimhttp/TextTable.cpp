#include "TextTable.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

constexpr std::size_t kGap = 2;

/// Characters, not bytes.
std::size_t TextWidth(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

std::string WithoutControls(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f; },
        ' ');
    return text;
}

std::string Padded(const std::string& text, std::size_t width, TextTable::Align align) {
    const std::string padding(width - TextWidth(text), ' ');
    return align == TextTable::Align::kLeft ? text + padding : padding + text;
}

/// A line without blanks at its end.
void WriteLine(std::string line, std::ostream& output) {
    line.erase(line.find_last_not_of(' ') + 1);
    output << line << '\n';
}

} // namespace

void TextTable::AddColumn(const std::string& heading, Align align, std::vector<std::string> cells) {
    Column column{WithoutControls(heading), align, std::move(cells), 0};
    column.width = TextWidth(column.heading);
    for (std::string& cell : column.cells) {
        cell = WithoutControls(std::move(cell));
        column.width = std::max(column.width, TextWidth(cell));
    }
    columns_.push_back(std::move(column));
}

std::size_t TextTable::Width() const {
    std::size_t width = 0;
    for (const Column& column : columns_) {
        width += column.width + (width == 0 ? 0 : kGap);
    }
    return width;
}

void TextTable::Write(std::ostream& output) const {
    const std::string gap(kGap, ' ');
    std::string headings;
    std::string rule;
    for (const Column& column : columns_) {
        headings += Padded(column.heading, column.width, column.align) + gap;
        rule += std::string(column.width, '-') + gap;
    }
    WriteLine(headings, output);
    WriteLine(rule, output);
    for (std::size_t row = 0; row < RowCount(); ++row) {
        std::string line;
        for (const Column& column : columns_) {
            line += Padded(column.cells[row], column.width, column.align) + gap;
        }
        WriteLine(line, output);
    }
}

void TextTable::WriteRowAsList(std::size_t row, std::ostream& output) const {
    std::size_t width = 0;
    for (const Column& column : columns_) {
        width = std::max(width, TextWidth(column.heading));
    }
    for (const Column& column : columns_) {
        if (!column.cells[row].empty()) {
            WriteLine(Padded(column.heading, width + kGap, Align::kLeft) + column.cells[row], output);
        }
    }
}

} // namespace cimhttp
