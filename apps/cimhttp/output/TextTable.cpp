#include "output/TextTable.h"

#include <algorithm>
#include <numeric>
#include <ostream>
#include <string_view>

#include "output/Listing.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kFoldedWidth = 24; // a column is folded to fewer columns than these only in distress
constexpr std::size_t kNarrowestWidth = 8;
constexpr const char* kNullText = "-";
constexpr const char* kBold = "\x1b[1m";
constexpr const char* kDim = "\x1b[2m";
constexpr const char* kPlain = "\x1b[0m";

std::string Blanks(std::size_t count) { return std::string(count, ' '); }

bool IsShownAsNull(const Cell& cell) { return cell.value.IsNull() && cell.text.empty(); }

std::string ShownText(const Cell& cell) { return IsShownAsNull(cell) ? kNullText : Printable(cell.text); }

/// Puts lines together piece by piece; blanks wait until something follows them.
class LineWriter {
  public:
    LineWriter(std::ostream& output, bool uses_color) : output_(output), uses_color_(uses_color) {}

    void Write(std::string_view text, const char* color) {
        const std::size_t end = text.find_last_not_of(' ') + 1;
        if (end == 0) {
            Skip(text.size());
            return;
        }
        const bool is_colored = uses_color_ && color != nullptr;
        line_.append(blanks_, ' ').append(is_colored ? color : "");
        line_.append(text, 0, end).append(is_colored ? kPlain : "");
        blanks_ = text.size() - end;
    }

    void Skip(std::size_t columns) { blanks_ += columns; }

    void End() {
        output_ << line_ << '\n';
        line_.clear();
        blanks_ = 0;
    }

  private:
    std::ostream& output_;
    bool uses_color_;
    std::string line_;
    std::size_t blanks_ = 0;
};

/// A listing as texts, with the columns of a terminal that they take.
class Table {
  public:
    explicit Table(const Listing& listing) : columns_(listing.Columns()), widths_(columns_.size()) {
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            widths_[i] = DisplayWidth(Printable(columns_[i].heading));
        }
        for (const auto& row : listing.Rows()) {
            std::vector<std::string> texts;
            texts.reserve(row.size());
            for (std::size_t i = 0; i < row.size(); ++i) {
                texts.push_back(ShownText(row[i]));
                widths_[i] = std::max(widths_[i], DisplayWidth(texts.back()));
            }
            rows_.push_back(std::move(texts));
        }
    }

    const std::vector<Listing::Column>& Columns() const { return columns_; }
    const std::vector<std::vector<std::string>>& Rows() const { return rows_; }
    std::size_t Width(std::size_t column) const { return widths_[column]; }

    /// The least width for a column whose texts may be folded to `folded`.
    std::size_t LeastWidth(std::size_t column, std::size_t folded) const {
        if (columns_[column].align == Listing::Align::kRight) {
            return widths_[column];
        }
        return std::min(widths_[column], std::max(folded, DisplayWidth(columns_[column].heading)));
    }

    /// The same text in every of several rows, or what a column before it says already.
    bool SaysNothing(std::size_t column) const {
        if (rows_.size() < 2) {
            return false;
        }
        if (AllRows([&](const auto& row) { return row[column] == rows_.front()[column]; })) {
            return true;
        }
        for (std::size_t before = 0; before < column; ++before) {
            if (AllRows([&](const auto& row) { return row[column] == row[before]; })) {
                return true;
            }
        }
        return false;
    }

  private:
    template <typename Predicate>
    bool AllRows(const Predicate& predicate) const {
        return std::all_of(rows_.begin(), rows_.end(), predicate);
    }

    const std::vector<Listing::Column>& columns_;
    std::vector<std::vector<std::string>> rows_;
    std::vector<std::size_t> widths_;
};

/// Which columns are shown, and how wide.
class Layout {
  public:
    Layout(const Table& table, std::size_t width) : table_(table), is_shown_(table.Columns().size(), true) {
        if (width == 0 || Sum(kUnlimited) <= width) {
            Take(kUnlimited);
            return;
        }
        const auto says_something = [&](std::size_t i) { return !table.SaysNothing(i); };
        LeaveOut(width, kFoldedWidth, [&](std::size_t i) { return !says_something(i); });
        LeaveOut(width, kFoldedWidth, [&](std::size_t i) { return !table.Columns()[i].is_key; });
        const std::size_t folded = Sum(kFoldedWidth) <= width ? kFoldedWidth : kNarrowestWidth;
        LeaveOut(width, folded, [](std::size_t) { return true; });
        TakeBack(width, folded, says_something);
        Take(folded);
        Spread(width);
    }

    const std::vector<std::size_t>& Shown() const { return shown_; }
    std::size_t Width(std::size_t column) const { return widths_[column]; }

    std::vector<std::string> LeftOut() const {
        std::vector<std::string> headings;
        for (std::size_t i = 0; i < is_shown_.size(); ++i) {
            if (!is_shown_[i]) {
                headings.push_back(table_.Columns()[i].heading);
            }
        }
        return headings;
    }

  private:
    static constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);

    std::size_t Sum(std::size_t folded) const {
        std::size_t sum = 0;
        for (std::size_t i = 0; i < is_shown_.size(); ++i) {
            if (is_shown_[i]) {
                sum += table_.LeastWidth(i, folded) + (sum == 0 ? 0 : kGap);
            }
        }
        return sum;
    }

    /// Leaves out columns that `may_go` allows, from the right, until the rest fits. One column always stays.
    template <typename Predicate>
    void LeaveOut(std::size_t width, std::size_t folded, const Predicate& may_go) {
        for (std::size_t i = is_shown_.size(); i-- > 0 && Sum(folded) > width;) {
            if (is_shown_[i] && may_go(i) && std::count(is_shown_.begin(), is_shown_.end(), true) > 1) {
                is_shown_[i] = false;
            }
        }
    }

    /// Shows again, from the left, what is narrow enough for the room that wider columns left.
    template <typename Predicate>
    void TakeBack(std::size_t width, std::size_t folded, const Predicate& is_wanted) {
        for (std::size_t i = 0; i < is_shown_.size(); ++i) {
            if (!is_shown_[i] && is_wanted(i)) {
                is_shown_[i] = true;
                is_shown_[i] = Sum(folded) <= width;
            }
        }
    }

    void Take(std::size_t folded) {
        widths_.assign(is_shown_.size(), 0);
        for (std::size_t i = 0; i < is_shown_.size(); ++i) {
            if (is_shown_[i]) {
                shown_.push_back(i);
                widths_[i] = table_.LeastWidth(i, folded);
            }
        }
    }

    /// Gives what is left of the width to the folded columns, evenly; and takes from a last column what is not there.
    void Spread(std::size_t width) {
        if (shown_.size() == 1) {
            widths_[shown_.front()] = std::min(table_.Width(shown_.front()), width);
            return;
        }
        std::size_t used = kGap * (shown_.size() - 1);
        for (const std::size_t i : shown_) {
            used += widths_[i];
        }
        for (bool is_growing = true; is_growing && used < width;) {
            is_growing = false;
            for (const std::size_t i : shown_) {
                if (used < width && widths_[i] < table_.Width(i)) {
                    ++widths_[i];
                    ++used;
                    is_growing = true;
                }
            }
        }
    }

    const Table& table_;
    std::vector<bool> is_shown_;
    std::vector<std::size_t> shown_;
    std::vector<std::size_t> widths_;
};

std::string Padded(const std::string& text, std::size_t width, Listing::Align align) {
    const std::size_t used = DisplayWidth(text);
    const std::string padding = Blanks(used < width ? width - used : 0);
    return align == Listing::Align::kLeft ? text + padding : padding + text;
}

/// Writes one row, over as many lines as its longest text needs. `color_of` gives the colour of a column's text.
template <typename ColorOf>
void WriteRow(const Table& table, const Layout& layout, const std::vector<std::string>& texts, const ColorOf& color_of,
              LineWriter& line) {
    std::vector<std::vector<std::string>> folded;
    folded.reserve(layout.Shown().size());
    std::size_t height = 1;
    for (const std::size_t i : layout.Shown()) {
        folded.push_back(Folded(texts[i], layout.Width(i)));
        height = std::max(height, folded.back().size());
    }
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t k = 0; k < folded.size(); ++k) {
            const std::size_t i = layout.Shown()[k];
            const std::string text = row < folded[k].size() ? folded[k][row] : "";
            line.Write(Padded(text, layout.Width(i), table.Columns()[i].align), color_of(i));
            line.Skip(kGap);
        }
        line.End();
    }
}

void WriteHead(const Table& table, const Layout& layout, LineWriter& line) {
    std::vector<std::string> headings;
    std::vector<std::string> rules;
    for (std::size_t i = 0; i < table.Columns().size(); ++i) {
        headings.push_back(Printable(table.Columns()[i].heading));
        rules.emplace_back(layout.Width(i), '-');
    }
    WriteRow(
        table, layout, headings, [](std::size_t) { return kBold; }, line);
    WriteRow(
        table, layout, rules, [](std::size_t) { return kDim; }, line);
}

std::size_t WidestHeading(const Listing& listing) {
    return std::accumulate(listing.Columns().begin(), listing.Columns().end(), std::size_t{0},
                           [](std::size_t width, const Listing::Column& column) {
                               return std::max(width, DisplayWidth(Printable(column.heading)));
                           });
}

/// Where the texts of a list begin, and how wide they may be.
struct ListShape {
    std::size_t indent;
    std::size_t room; ///< 0 for any width
    bool is_stacked;  ///< each text below its heading
};

ListShape ShapeOf(const Listing& listing, std::size_t width) {
    const std::size_t indent = WidestHeading(listing) + kGap;
    if (width == 0) {
        return {indent, 0, false};
    }
    if (width >= indent + kNarrowestWidth) {
        return {indent, width - indent, false};
    }
    return {kGap, std::max(width, kGap + 1) - kGap, true};
}

void WriteList(const Listing& listing, const std::vector<Cell>& row, const ListShape& shape, LineWriter& line) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        std::string head = Printable(listing.Columns()[i].heading);
        if (shape.is_stacked) {
            for (const std::string& part : Folded(head, shape.indent + shape.room)) {
                line.Write(part, kBold);
                line.End();
            }
            head.clear();
        }
        const std::string text = ShownText(row[i]);
        for (const std::string& part : shape.room == 0 ? std::vector<std::string>{text} : Folded(text, shape.room)) {
            line.Write(Padded(head, shape.indent, Listing::Align::kLeft), kBold);
            line.Write(part, IsShownAsNull(row[i]) ? kDim : nullptr);
            line.End();
            head.clear();
        }
    }
}

} // namespace

std::vector<std::string> WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output) {
    const Table table(listing);
    const Layout layout(table, style.width);
    if (table.Rows().size() == 1 && !layout.LeftOut().empty()) {
        WriteLists(listing, style, output);
        return {};
    }
    LineWriter line(output, style.uses_color);
    WriteHead(table, layout, line);
    for (std::size_t row = 0; row < table.Rows().size(); ++row) {
        const auto color_of = [&](std::size_t i) { return IsShownAsNull(listing.Rows()[row][i]) ? kDim : nullptr; };
        WriteRow(table, layout, table.Rows()[row], color_of, line);
    }
    return layout.LeftOut();
}

void WriteLists(const Listing& listing, const TextStyle& style, std::ostream& output) {
    const ListShape shape = ShapeOf(listing, style.width);
    LineWriter line(output, style.uses_color);
    bool is_first = true;
    for (const auto& row : listing.Rows()) {
        if (!is_first) {
            line.End();
        }
        is_first = false;
        WriteList(listing, row, shape, line);
    }
}

} // namespace cimhttp
