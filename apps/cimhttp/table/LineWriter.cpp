#include "table/LineWriter.h"

#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

namespace {

constexpr const char* kBold = "\x1b[1m";
constexpr const char* kDim = "\x1b[2m";
constexpr const char* kPlain = "\x1b[0m";

} // namespace

void LineWriter::Write(std::string_view text, Emphasis emphasis) {
    const std::size_t end = text.find_last_not_of(' ') + 1;
    if (end == 0) {
        Skip(text.size());
        return;
    }
    line_.append(blanks_, ' ');
    if (usesColor_ && emphasis != Emphasis::kNone) {
        line_.append(emphasis == Emphasis::kStrong ? kBold : kDim).append(text, 0, end).append(kPlain);
    } else {
        line_.append(text, 0, end);
    }
    blanks_ = text.size() - end;
}

void LineWriter::WritePadded(std::string_view text, std::size_t width, Column::Align align, Emphasis emphasis) {
    const std::size_t used = DisplayWidth(text);
    const std::size_t padding = used < width ? width - used : 0;
    Skip(align == Column::Align::kRight ? padding : 0);
    Write(text, emphasis);
    Skip(align == Column::Align::kLeft ? padding : 0);
}

void LineWriter::End() {
    output_ << line_ << '\n';
    line_.clear();
    blanks_ = 0;
}

} // namespace cimhttp
