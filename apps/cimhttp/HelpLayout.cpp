#include "HelpLayout.h"

#include "text/TerminalText.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace cimhttp {

namespace {

constexpr std::size_t kUsualWidth = 80;
constexpr std::size_t kGreatestWidth = 100;
constexpr std::size_t kLeastTextWidth = 30; // what is worth a column beside the names
constexpr std::size_t kNameIndent = 2;
constexpr std::size_t kTextColumn = 30;
constexpr std::size_t kIndent = 4; // of command lines, and of texts below their name

std::size_t Left(std::size_t width, std::size_t indent) { return width > indent ? width - indent : 1; }

/// The text as lines that all begin in the same column.
std::string Indented(const std::string& text, std::size_t indent, std::size_t width) {
    std::string lines;
    for (const std::string& line : Wrapped(text, Left(width, indent))) {
        lines += std::string(indent, ' ') + line + '\n';
    }
    return lines;
}

/// A command line, in several lines where it is longer than `width`.
std::string Continued(const std::string& command, std::size_t width) {
    if (DisplayWidth(command) <= width) {
        return command;
    }
    const std::string lineEnd = " \\\n" + std::string(2 * kIndent, ' ');
    std::string lines;
    for (const std::string& line : Wrapped(command, Left(width, kIndent + 2))) {
        lines += (lines.empty() ? "" : lineEnd) + line;
    }
    return lines;
}

} // namespace

HelpLayout::HelpLayout(std::size_t width) : width_(width == 0 ? kUsualWidth : std::min(width, kGreatestWidth)) {}

std::string HelpLayout::Entry(const std::string& name, const std::string& text) const {
    const std::string head = std::string(kNameIndent, ' ') + name;
    if (Left(width_, kTextColumn) < kLeastTextWidth) {
        return head + '\n' + Indented(text, kNameIndent + kIndent, width_);
    }
    const std::string lines = Indented(text, kTextColumn, width_);
    if (head.size() + 1 >= kTextColumn) {
        return head + '\n' + lines;
    }
    return head + lines.substr(head.size());
}

std::string HelpLayout::Prose(const std::string& text) const {
    std::string result;
    std::string paragraph;
    const auto endParagraph = [&] {
        result += paragraph.empty() ? "" : Indented(paragraph, 0, width_);
        paragraph.clear();
    };
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.front() != ' ') {
            paragraph += (paragraph.empty() ? "" : " ") + line;
            continue;
        }
        endParagraph();
        const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
        result += line.empty() ? "\n" : Indented(line.substr(indent), indent, width_);
    }
    endParagraph();
    return result;
}

std::string HelpLayout::CommandLines(const std::string& lines) const {
    std::string result;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        result += std::string(kIndent, ' ') + Continued(line, Left(width_, kIndent)) + '\n';
    }
    return result;
}

} // namespace cimhttp
