#include "table/TextList.h"

#include "text/TerminalText.h"

#include <algorithm>

namespace cimhttp {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowestRoom = 8;

} // namespace

TextList::TextList(const std::vector<Column>& columns, const TextStyle& style, std::ostream& output)
    : line_(output, style.usesColor) {
    for (const Column& column : columns) {
        headings_.push_back(Printable(column.heading));
    }
    SetShape(style.width);
}

void TextList::SetShape(std::size_t width) {
    for (const std::string& heading : headings_) {
        indent_ = std::max(indent_, DisplayWidth(heading));
    }
    indent_ += kGap;
    if (width == 0) {
        return;
    }
    isStacked_ = width < indent_ + kNarrowestRoom;
    if (isStacked_) {
        indent_ = kGap;
        width = std::max(width, kGap + 1);
    }
    room_ = width - indent_;
}

void TextList::Write(const std::vector<TableCell>& row) {
    if (!isFirst_) {
        line_.End();
    }
    isFirst_ = false;
    for (std::size_t i = 0; i < row.size(); ++i) {
        WriteItem(headings_[i], row[i]);
    }
}

void TextList::WriteItem(std::string heading, const TableCell& cell) {
    if (isStacked_) {
        for (const std::string& part : Wrapped(heading, indent_ + room_)) {
            line_.Write(part, Emphasis::kStrong);
            line_.End();
        }
        heading.clear();
    }
    const std::string text = cell.Whole();
    LineWrapper wrapper(text, room_ == 0 ? text.size() : room_); // no character takes more columns than bytes
    do {
        line_.WritePadded(heading, indent_, Column::Align::kLeft, Emphasis::kStrong);
        line_.Write(wrapper.NextLine(), cell.isNull ? Emphasis::kFaint : Emphasis::kNone);
        line_.End();
        heading.clear();
    } while (!wrapper.IsAtEnd());
}

} // namespace cimhttp
