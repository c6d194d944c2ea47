#include "TerminalScreen.h"

#include "text/CharacterWidth.h"
#include "text/Utf8.h"

#include <algorithm>
#include <sstream>

namespace {

/// The numbers of a sequence's parameters, 0 for one that is left out.
std::vector<std::size_t> NumbersIn(const std::string& parameters) {
    std::vector<std::size_t> numbers;
    std::istringstream stream(parameters);
    for (std::string number; std::getline(stream, number, ';');) {
        numbers.push_back(std::strtoul(number.c_str(), nullptr, 10));
    }
    return numbers;
}

std::size_t NumberAt(const std::vector<std::size_t>& numbers, std::size_t place, std::size_t otherwise) {
    return place < numbers.size() && numbers[place] > 0 ? numbers[place] : otherwise;
}

} // namespace

TerminalScreen::TerminalScreen(std::size_t columns, std::size_t lines)
    : columns_(columns), cells_(lines, Cells(columns, " ")), bottom_(lines - 1) {}

std::vector<std::string> TerminalScreen::Lines() const {
    std::vector<std::string> lines;
    for (const Cells& cells : cells_) {
        std::string line;
        for (const std::string& cell : cells) {
            line += cell;
        }
        lines.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
    }
    return lines;
}

std::string TerminalScreen::Text() const {
    std::string text;
    for (const std::string& line : Lines()) {
        text += line + '\n';
    }
    return text;
}

void TerminalScreen::Feed(const std::string& bytes) {
    pending_ += bytes;
    while (!pending_.empty()) {
        const char first = pending_.front();
        if (first == '\x1b') {
            if (!TakeSequence()) {
                return;
            }
            continue;
        }
        const auto lead = static_cast<unsigned char>(first);
        const std::size_t size = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if (pending_.size() < size) {
            return;
        }
        const auto character = cimhttp::CharacterAt(pending_, 0);
        const std::string text = pending_.substr(0, character.size);
        pending_.erase(0, character.size);
        if (first == '\r') {
            column_ = 0;
        } else if (first == '\n') {
            LineFeed();
        } else if (first == '\b') {
            column_ -= column_ > 0 ? 1 : 0;
        } else if (first == '\t') {
            column_ = std::min(columns_ - 1, (column_ / 8 + 1) * 8);
        } else if (first == '\x0f') {
            // the usual characters
        } else if (cimhttp::IsControl(character.value) || character.IsBad()) {
            unknown_.push_back(text);
        } else {
            Put(text, cimhttp::CharacterWidth(character.value));
        }
    }
}

/// False where there is not all of it yet.
bool TerminalScreen::TakeSequence() {
    if (pending_.size() < 2) {
        return false;
    }
    const char kind = pending_[1];
    if (kind == '[') {
        const std::size_t end = pending_.find_first_not_of("0123456789;?<>=", 2);
        if (end == std::string::npos) {
            return false;
        }
        const std::string parameters = pending_.substr(2, end - 2);
        const char final = pending_[end];
        pending_.erase(0, end + 1);
        Control(final, parameters);
        return true;
    }
    const std::size_t size = kind == '(' || kind == ')' ? 3 : 2;
    if (pending_.size() < size) {
        return false;
    }
    if (kind == 'M') {
        line_ == top_ ? ScrollDown(top_) : void(line_ -= line_ > 0 ? 1 : 0);
    } else if (std::string("()=>78").find(kind) == std::string::npos) {
        unknown_.push_back(pending_.substr(0, size));
    }
    pending_.erase(0, size);
    return true;
}

void TerminalScreen::Control(char final, const std::string& parameters) {
    const std::vector<std::size_t> numbers = NumbersIn(parameters);
    const std::size_t count = NumberAt(numbers, 0, 1);
    const std::size_t last = cells_.size() - 1;
    Cells& line = cells_[line_];
    const auto here = static_cast<std::ptrdiff_t>(std::min(column_, columns_));
    switch (final) {
    case 'H':
        line_ = std::min(last, NumberAt(numbers, 0, 1) - 1);
        column_ = std::min(columns_ - 1, NumberAt(numbers, 1, 1) - 1);
        break;
    case 'd':
        line_ = std::min(last, count - 1);
        break;
    case 'G':
        column_ = std::min(columns_ - 1, count - 1);
        break;
    case 'A':
        line_ -= std::min(line_, count);
        break;
    case 'B':
        line_ = std::min(last, line_ + count);
        break;
    case 'C':
        column_ = std::min(columns_ - 1, column_ + count);
        break;
    case 'D':
        column_ -= std::min(column_, count);
        break;
    case 'J': {
        const std::size_t what = NumberAt(numbers, 0, 0);
        Erase(line_, what == 0 ? column_ : 0, what == 1 ? column_ + 1 : columns_);
        for (std::size_t other = 0; other <= last; ++other) {
            if (what == 2 || (what == 0 && other > line_) || (what == 1 && other < line_)) {
                Erase(other, 0, columns_);
            }
        }
        break;
    }
    case 'K': {
        const std::size_t what = NumberAt(numbers, 0, 0);
        Erase(line_, what == 0 ? column_ : 0, what == 1 ? column_ + 1 : columns_);
        break;
    }
    case 'X':
        Erase(line_, column_, column_ + count);
        break;
    case 'P':
        line.erase(line.begin() + here, line.begin() + std::min(here + static_cast<std::ptrdiff_t>(count),
                                                                static_cast<std::ptrdiff_t>(columns_)));
        line.resize(columns_, " ");
        break;
    case '@':
        line.insert(line.begin() + here, count, " ");
        line.resize(columns_);
        break;
    case 'b':
        for (std::size_t i = 0; i < count; ++i) {
            Put(last_, 1);
        }
        break;
    case 'L':
    case 'T':
        for (std::size_t i = 0; i < count; ++i) {
            ScrollDown(final == 'T' ? top_ : line_);
        }
        break;
    case 'M':
    case 'S':
        for (std::size_t i = 0; i < count; ++i) {
            ScrollUp(final == 'S' ? top_ : line_);
        }
        break;
    case 'r':
        top_ = NumberAt(numbers, 0, 1) - 1;
        bottom_ = std::min(last, NumberAt(numbers, 1, last + 1) - 1);
        line_ = 0;
        column_ = 0;
        break;
    case 'h':
    case 'l':
        SetModes(parameters, final == 'h');
        break;
    case 'm':
    case 't':
        break;
    default:
        unknown_.push_back("ESC[" + parameters + final);
    }
}

void TerminalScreen::SetModes(const std::string& parameters, bool isOn) {
    if (parameters.empty() || parameters.front() != '?') {
        return;
    }
    for (const std::size_t mode : NumbersIn(parameters.substr(1))) {
        if (mode == 1049) {
            isAlternate_ = isOn;
        } else if (mode == 25) {
            isCursorVisible_ = isOn;
        }
    }
}

void TerminalScreen::Put(const std::string& character, std::size_t width) {
    if (width == 0) {
        if (column_ > 0) {
            cells_[line_][column_ - 1] += character;
        }
        return;
    }
    if (column_ + width > columns_) {
        column_ = 0;
        LineFeed();
    }
    cells_[line_][column_] = character;
    if (width == 2) {
        cells_[line_][column_ + 1].clear();
    }
    column_ += width;
    last_ = character;
}

void TerminalScreen::LineFeed() {
    if (line_ == bottom_) {
        ScrollUp(top_);
    } else if (line_ + 1 < cells_.size()) {
        ++line_;
    }
}

void TerminalScreen::ScrollUp(std::size_t from) {
    if (from > bottom_) {
        return;
    }
    cells_.erase(cells_.begin() + static_cast<std::ptrdiff_t>(from));
    cells_.insert(cells_.begin() + static_cast<std::ptrdiff_t>(bottom_), Cells(columns_, " "));
}

void TerminalScreen::ScrollDown(std::size_t from) {
    if (from > bottom_) {
        return;
    }
    cells_.erase(cells_.begin() + static_cast<std::ptrdiff_t>(bottom_));
    cells_.insert(cells_.begin() + static_cast<std::ptrdiff_t>(from), Cells(columns_, " "));
}

void TerminalScreen::Erase(std::size_t line, std::size_t begin, std::size_t end) {
    for (std::size_t column = begin; column < std::min(end, columns_); ++column) {
        cells_[line][column] = " ";
    }
}
