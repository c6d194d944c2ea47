#include "live/LivePicture.h"

#include "text/TerminalText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace cimhttp {

namespace {

using Style = Picture::Style;

constexpr std::size_t kGap = 2;
constexpr std::size_t kBarWidth = 8;
constexpr std::size_t kLeastWidth = 8; // of a column that is cut off at the screen's end
constexpr const char* kHistoryHeading = "last minute";
constexpr const char* kKeys = "q quit  \u2190\u2192 sort  r reverse  / filter  p pause  c columns  ? help";
constexpr const char* kAsciiKeys = "q quit  <> sort  r reverse  / filter  p pause  c columns  ? help";

constexpr std::array<const char*, 15> kHelp{"left, right     sort by the column before, or after; < and > do so, too",
                                            "r               turn the order round",
                                            "/               keep the rows that have a text: type it, then Enter",
                                            "Escape          all rows again",
                                            "p               pause, and go on",
                                            "c               choose columns",
                                            "up, down, page up, page down, home, end",
                                            "                move among the rows",
                                            "q, Ctrl-C       quit",
                                            "Ctrl-Z, Ctrl-L  stop; draw the screen anew",
                                            "",
                                            "A column with /s is a counter: how much more it has each second.",
                                            "A bar shows how much a number is of the greatest that it can be.",
                                            "The blocks show the last minute of the numbers that are sorted by.",
                                            "Any key goes back."};

/// As much of a text as fits, with a mark where it is cut off.
std::string Fitted(const std::string& text, std::size_t width) {
    if (DisplayWidth(text) <= width) {
        return text;
    }
    if (width <= 1) {
        return width == 0 ? std::string() : "…";
    }
    std::string cut = Cut(text, width - 1);
    return DisplayWidth(cut) < width ? cut + "…" : "…"; // a wide character may be wider than the place
}

/// A name of a server, which may be of any length.
std::string NameText(const std::string& name) {
    constexpr std::size_t kLongest = 200;
    return Printable(name.substr(0, kLongest));
}

std::string Seconds(std::chrono::steady_clock::duration time) {
    std::array<char, 32> text{};
    const int size = std::snprintf(text.data(), text.size(), "%g", std::chrono::duration<double>(time).count());
    return {text.data(), static_cast<std::size_t>(size)};
}

std::string Counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

class Painter {
  public:
    explicit Painter(const LiveView& view) : view_(view), size_(view.Size()) { PlaceColumns(); }

    Picture Paint() {
        PaintHead();
        switch (view_.CurrentMode()) {
        case LiveView::Mode::kHelp:
            for (const char* const line : kHelp) {
                AddLine(line);
            }
            break;
        case LiveView::Mode::kColumns:
            PaintColumnList();
            break;
        default:
            PaintTable();
        }
        picture_.lines.resize(size_.lines == 0 ? 0 : size_.lines - 1);
        PaintFoot();
        return std::move(picture_);
    }

  private:
    /// A column that is seen.
    struct Place {
        std::size_t column;
        std::size_t begin;
        std::size_t width;    // with the bar
        std::size_t barWidth; // 0 for none
    };

    std::string Heading(std::size_t column) const {
        const LiveColumn& read = view_.Reading()->columns[column];
        std::string heading = NameText(read.name) + (read.isCounter ? "/s" : "");
        if (view_.SortColumn() == column) {
            heading += view_.IsUtf8() ? (view_.IsGreatestFirst() ? "▼" : "▲") : (view_.IsGreatestFirst() ? "-" : "+");
        }
        return heading;
    }

    std::size_t FullWidth(std::size_t column) const {
        const std::size_t bar = view_.HasBars(column) ? kBarWidth + 1 : 0;
        const std::size_t heading = DisplayWidth(Heading(column)) + (view_.SortColumn() == column ? 0 : 1);
        return std::max(view_.WidthOf(column) + bar, heading); // with room for the mark of the order
    }

    /// The columns from the first one on, or from a later one where the one sorted by would not be seen otherwise.
    void PlaceColumns() {
        columns_ = view_.Columns();
        hasHistory_ = view_.HistoryColumn() && size_.columns >= 3 * History::kSpans;
        room_ = hasHistory_ ? size_.columns - History::kSpans - kGap : size_.columns;
        const auto sorted = view_.SortColumn();
        for (first_ = 0; first_ < columns_.size(); ++first_) {
            places_.clear();
            std::size_t begin = 0;
            bool isSortSeen = false;
            for (std::size_t i = first_; i < columns_.size(); ++i) {
                const std::size_t column = columns_[i];
                const std::size_t full = FullWidth(column);
                const std::size_t left = room_ > begin ? room_ - begin : 0;
                if (full > left && (left < kLeastWidth || (sorted == column && i > first_))) {
                    break;
                }
                const std::size_t width = std::min(full, left);
                const bool hasBar = view_.HasBars(column) && width == full;
                places_.push_back({column, begin, width, hasBar ? kBarWidth : 0});
                isSortSeen = isSortSeen || sorted == column;
                begin += width + kGap;
            }
            if (isSortSeen || columns_[first_] == sorted) {
                break;
            }
        }
    }

    void AddLine(const std::string& text, Style style = Style::kPlain) {
        picture_.lines.push_back({{0, Fitted(text, size_.columns), style}});
    }

    void PaintHead() {
        const LiveReading* const reading = view_.Reading();
        std::string right = "every " + Seconds(view_.Options().interval) + " s";
        if (reading != nullptr) {
            right = Counted(view_.Readings(), "reading", "readings") + ", " + right + "  " + reading->timeOfDay;
        }
        const std::size_t begin = size_.columns > right.size() + 1 ? size_.columns - right.size() : 0;
        Picture::Line line{{0, Fitted(view_.Options().title, begin == 0 ? size_.columns : begin - 1), Style::kStrong}};
        if (begin > 0) {
            line.push_back({begin, right});
        }
        picture_.lines.push_back(std::move(line));
        AddLine(StateText());
        for (const std::string& remark : view_.Remarks()) {
            AddLine("! " + remark, Style::kAlarm);
        }
    }

    std::string StateText() const {
        const LiveReading* const reading = view_.Reading();
        std::string text = view_.IsPaused() ? "PAUSED  " : "";
        if (view_.Wait()) {
            text += "waiting for " + std::to_string(view_.Wait()->count()) + " s  ";
        }
        if (reading == nullptr) {
            return text + "reading";
        }
        text += Counted(reading->rows.size(), "instance", "instances");
        if (reading->count != reading->rows.size()) {
            text += " of " + std::to_string(reading->count);
        }
        if (!view_.Filter().empty()) {
            text += ", " + std::to_string(view_.RowsWithoutLimit()) + " with '" + Printable(view_.Filter()) + "'";
        }
        if (view_.Rows().size() < view_.RowsWithoutLimit()) {
            text += ", the first " + std::to_string(view_.Rows().size());
        }
        if (view_.Top() > 0) {
            text += ", from the " + std::to_string(view_.Top() + 1) + ". on";
        }
        if (places_.size() < columns_.size()) {
            text += ", columns " + std::to_string(first_ + 1) + " to " + std::to_string(first_ + places_.size()) +
                    " of " + std::to_string(columns_.size());
        }
        if (reading->restarts > 0) {
            text += ", " + Counted(reading->restarts, "time", "times") + " a counter was less than before";
        }
        return text;
    }

    void PaintTable() {
        if (view_.Reading() == nullptr) {
            return;
        }
        Picture::Line headings{{0, std::string(size_.columns, ' '), Style::kReverse}};
        for (const Place& place : places_) {
            AddCell(headings, place, Heading(place.column), Style::kReverse);
        }
        if (hasHistory_) {
            headings.push_back({size_.columns - History::kSpans, kHistoryHeading, Style::kReverse});
        }
        picture_.lines.push_back(std::move(headings));
        const std::size_t end = std::min(view_.Rows().size(), view_.Top() + view_.RoomForRows());
        for (std::size_t i = view_.Top(); i < end; ++i) {
            PaintRow(view_.Reading()->rows[view_.Rows()[i]]);
        }
        if (view_.Rows().empty()) {
            AddLine(view_.Reading()->rows.empty() ? "no instances" : "no row has this text", Style::kFaint);
        }
    }

    void AddCell(Picture::Line& line, const Place& place, const std::string& text, Style style) const {
        const std::string fitted = Fitted(text, place.width);
        const bool isRight = view_.Reading()->columns[place.column].isNumber;
        line.push_back({place.begin + (isRight ? place.width - DisplayWidth(fitted) : 0), fitted, style});
    }

    void PaintRow(const LiveRow& row) {
        Picture::Line line;
        for (const Place& place : places_) {
            const LiveCell& cell = row.cells[place.column];
            const Style style = cell.isNull ? Style::kFaint : Style::kPlain;
            if (place.barWidth == 0) {
                AddCell(line, place, cell.text, style);
                continue;
            }
            const std::size_t textWidth = place.width - place.barWidth - 1;
            AddCell(line, {place.column, place.begin, textWidth, 0}, cell.text, style);
            if (cell.share) {
                line.push_back({place.begin + textWidth + 1, BarText(*cell.share, place.barWidth, view_.IsUtf8())});
            }
        }
        if (hasHistory_) {
            line.push_back({size_.columns - History::kSpans, HistoryText(row)});
        }
        picture_.lines.push_back(std::move(line));
    }

    /// From 0, or less where there is less, to the greatest that the number can be, or has been.
    std::string HistoryText(const LiveRow& row) const {
        const History::Means means = view_.HistoryOf(row);
        double least = 0;
        double greatest = 0;
        for (const auto& mean : means) {
            least = std::min(least, mean.value_or(0));
            greatest = std::max(greatest, mean.value_or(0));
        }
        const LiveCell& cell = row.cells[*view_.HistoryColumn()];
        if (cell.share && cell.number && *cell.share > 0) {
            greatest = std::max(greatest, *cell.number / *cell.share);
        }
        return BlocksText(means, least, greatest, view_.IsUtf8());
    }

    void PaintColumnList() {
        AddLine("Columns: space ticks one, Enter goes back", Style::kStrong);
        if (view_.Reading() == nullptr) {
            return;
        }
        const std::size_t room = view_.RoomForRows();
        const std::size_t begin = view_.Cursor() >= room ? view_.Cursor() - room + 1 : 0;
        const std::size_t end = std::min(view_.Reading()->columns.size(), begin + room);
        for (std::size_t i = begin; i < end; ++i) {
            AddLine(std::string(view_.IsTicked(i) ? "[x] " : "[ ] ") + NameText(view_.Reading()->columns[i].name),
                    i == view_.Cursor() ? Style::kReverse : Style::kPlain);
        }
    }

    void PaintFoot() {
        if (view_.CurrentMode() == LiveView::Mode::kFilter) {
            AddLine("filter: " + Printable(view_.Filter()) + "_   Enter keeps it, Escape shows all rows",
                    Style::kStrong);
        } else {
            AddLine(view_.IsUtf8() ? kKeys : kAsciiKeys, Style::kFaint);
        }
    }

    const LiveView& view_;
    ScreenSize size_;
    Picture picture_;
    std::vector<std::size_t> columns_; // that are ticked
    std::vector<Place> places_;
    std::size_t first_ = 0; // which of the columns is the first one that is seen
    std::size_t room_ = 0;
    bool hasHistory_ = false;
};

} // namespace

Picture PictureOf(const LiveView& view) { return Painter(view).Paint(); }

std::string BarText(double share, std::size_t width, bool isUtf8) {
    constexpr std::size_t kEighths = 8;
    constexpr char32_t kFull = 0x2588; // those that follow have an eighth less each
    const std::size_t parts = isUtf8 ? kEighths : 1;
    auto eighths =
        static_cast<std::size_t>(std::lround(std::clamp(share, 0.0, 1.0) * static_cast<double>(width * parts)));
    std::string bar;
    for (; eighths >= parts; eighths -= parts) {
        isUtf8 ? AppendUtf8(kFull, bar) : bar.push_back('#');
    }
    if (eighths > 0) {
        AppendUtf8(kFull + static_cast<char32_t>(kEighths - eighths), bar);
    }
    return bar;
}

std::string BlocksText(const History::Means& means, double least, double greatest, bool isUtf8) {
    constexpr double kSteps = 7;
    constexpr char32_t kLowest = 0x2581;
    constexpr std::array<char, 8> kAscii{'_', '.', ':', '-', '=', '+', '*', '#'};
    std::string blocks;
    for (const auto& mean : means) {
        if (!mean) {
            blocks += ' ';
            continue;
        }
        const double share = greatest > least ? std::clamp((*mean - least) / (greatest - least), 0.0, 1.0) : 0;
        const auto step = static_cast<std::size_t>(std::lround(share * kSteps));
        isUtf8 ? AppendUtf8(kLowest + static_cast<char32_t>(step), blocks) : blocks.push_back(kAscii[step]);
    }
    return blocks;
}

} // namespace cimhttp
