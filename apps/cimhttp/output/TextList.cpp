#include "output/TextList.h"

#include "output/CellText.h"
#include "output/LineWriter.h"
#include "output/Listing.h"
#include "text/TerminalText.h"

#include <algorithm>
#include <string>
#include <vector>

namespace cimhttp {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowestRoom = 8;

/// Where the texts of a list begin, and how wide they may be.
struct ListShape {
    std::size_t indent;
    std::size_t room; ///< 0 for any width
    bool isStacked;   ///< each text below its heading
};

std::size_t WidestHeading(const Listing& listing) {
    std::size_t width = 0;
    for (const Listing::Column& column : listing.Columns()) {
        width = std::max(width, DisplayWidth(Printable(column.heading)));
    }
    return width;
}

ListShape ShapeOf(const Listing& listing, std::size_t width) {
    const std::size_t indent = WidestHeading(listing) + kGap;
    if (width == 0) {
        return {indent, 0, false};
    }
    if (width >= indent + kNarrowestRoom) {
        return {indent, width - indent, false};
    }
    return {kGap, std::max(width, kGap + 1) - kGap, true};
}

void WriteHeadingAlone(const std::string& heading, std::size_t width, LineWriter& line) {
    for (const std::string& part : Wrapped(heading, width)) {
        line.Write(part, Emphasis::kStrong);
        line.End();
    }
}

void WriteItem(std::string heading, const Cell& cell, const ListShape& shape, LineWriter& line) {
    if (shape.isStacked) {
        WriteHeadingAlone(heading, shape.indent + shape.room, line);
        heading.clear();
    }
    const std::string text = CellText(cell);
    LineWrapper lines(text, shape.room == 0 ? text.size() : shape.room); // no character takes more columns than bytes
    do {
        line.WritePadded(heading, shape.indent, Listing::Align::kLeft, Emphasis::kStrong);
        line.Write(lines.NextLine(), IsShownAsNull(cell) ? Emphasis::kFaint : Emphasis::kNone);
        line.End();
        heading.clear();
    } while (!lines.IsAtEnd());
}

} // namespace

void WriteLists(const Listing& listing, const TextStyle& style, std::ostream& output) {
    const ListShape shape = ShapeOf(listing, style.width);
    LineWriter line(output, style.usesColor);
    bool isFirst = true;
    for (const auto& row : listing.Rows()) {
        if (!isFirst) {
            line.End();
        }
        isFirst = false;
        for (std::size_t i = 0; i < row.size(); ++i) {
            WriteItem(Printable(listing.Columns()[i].heading), row[i], shape, line);
        }
    }
}

} // namespace cimhttp
