#include "live/LiveView.h"

#include "table/TableLayout.h"
#include "table/TableTexts.h"

#include <algorithm>

namespace cimhttp {

namespace {

constexpr std::size_t kWidestText = 40;
constexpr std::size_t kFixedLines = 4;   // two of the head, the headings, the keys
constexpr std::size_t kHistoryRoom = 14; // with the gap before it

std::string Lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    return text;
}

std::size_t Moved(std::size_t place, std::ptrdiff_t by, std::size_t end) {
    const auto moved = static_cast<std::ptrdiff_t>(place) + by;
    return static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(moved, 0, static_cast<std::ptrdiff_t>(end)));
}

} // namespace

void LiveView::Take(std::shared_ptr<const LiveReading> reading) {
    reading_ = std::move(reading);
    ++readings_;
    history_.Add(*reading_);
    if (ticked_.empty()) {
        ChooseColumns();
    }
    Measure();
    Order();
}

/// Those that were asked for, or that a table of this width shows.
void LiveView::ChooseColumns() {
    ticked_.insert(settings_.columns.begin(), settings_.columns.end());
    if (!ticked_.empty()) {
        return;
    }
    std::vector<Column> columns;
    for (const LiveColumn& column : reading_->columns) {
        columns.push_back(
            {column.name, column.isNumber ? Column::Align::kRight : Column::Align::kLeft, column.importance});
    }
    if (columns.empty() || reading_->rows.empty()) {
        return; // the next reading may know more
    }
    TableTexts texts(columns);
    std::vector<std::string> places; // stand for rates, which are not known yet and differ from row to row
    for (std::size_t i = 0; i < reading_->rows.size(); ++i) {
        places.push_back(std::to_string(i));
    }
    for (std::size_t i = 0; i < reading_->rows.size(); ++i) {
        std::vector<TableCell> cells;
        for (std::size_t column = 0; column < columns.size(); ++column) {
            const LiveCell& cell = reading_->rows[i].cells[column];
            const bool isRateToCome = cell.isNull && reading_->columns[column].isCounter;
            cells.push_back({isRateToCome ? places[i] : cell.text});
        }
        texts.AddRow(cells);
    }
    const std::size_t width = size_.columns > 2 * kHistoryRoom ? size_.columns - kHistoryRoom : size_.columns;
    for (const std::size_t column : TableLayout(texts, width).Shown()) {
        ticked_.insert(columns[column].heading);
    }
    if (!settings_.sortColumn.empty()) {
        ticked_.insert(settings_.sortColumn);
    }
}

void LiveView::Measure() {
    widths_.assign(reading_->columns.size(), 1);
    hasBars_.assign(reading_->columns.size(), false);
    for (const LiveRow& row : reading_->rows) {
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            widths_[i] = std::max(widths_[i], std::min(row.cells[i].width, kWidestText));
            hasBars_[i] = hasBars_[i] || row.cells[i].share;
        }
    }
}

std::vector<std::size_t> LiveView::Columns() const {
    std::vector<std::size_t> columns;
    for (std::size_t i = 0; reading_ && i < reading_->columns.size(); ++i) {
        if (IsTicked(i)) {
            columns.push_back(i);
        }
    }
    return columns;
}

std::optional<std::size_t> LiveView::SortColumn() const {
    const std::vector<std::size_t> columns = Columns();
    const auto found = std::find_if(columns.begin(), columns.end(), [&](std::size_t column) {
        return IsSameName(reading_->columns[column].name, settings_.sortColumn);
    });
    if (found != columns.end()) {
        return *found;
    }
    return columns.empty() ? std::nullopt : std::optional(columns.front());
}

std::optional<std::size_t> LiveView::HistoryColumn() const {
    const auto sorted = SortColumn();
    if (sorted && reading_->columns[*sorted].isNumber) {
        return sorted;
    }
    for (const std::size_t column : Columns()) {
        if (reading_->columns[column].isNumber) {
            return column;
        }
    }
    return std::nullopt;
}

History::Means LiveView::HistoryOf(const LiveRow& row) const {
    const auto column = HistoryColumn();
    return column ? history_.Of(row.path, reading_->columns[*column].name) : History::Means();
}

bool LiveView::IsFound(const LiveRow& row, const std::vector<std::size_t>& columns) const {
    return std::any_of(columns.begin(), columns.end(), [&](std::size_t column) {
        return Lowered(row.cells[column].text).find(filter_) != std::string::npos;
    });
}

/// Null comes last in either direction.
bool LiveView::IsBefore(const LiveCell& one, const LiveCell& other) const {
    if (one.isNull || other.isNull) {
        return !one.isNull && other.isNull;
    }
    return settings_.isGreatestFirst ? other.places < one.places : one.places < other.places;
}

void LiveView::Order() {
    const std::vector<std::size_t> columns = Columns();
    rows_.clear();
    for (std::size_t i = 0; i < reading_->rows.size(); ++i) {
        if (filter_.empty() || IsFound(reading_->rows[i], columns)) {
            rows_.push_back(i);
        }
    }
    if (const auto column = SortColumn()) {
        std::stable_sort(rows_.begin(), rows_.end(), [&](std::size_t one, std::size_t other) {
            return IsBefore(reading_->rows[one].cells[*column], reading_->rows[other].cells[*column]);
        });
    }
    found_ = rows_.size();
    rows_.resize(std::min(found_, settings_.limit.value_or(found_)));
    Scroll(0);
}

void LiveView::MoveSort(int places) {
    const auto sorted = SortColumn();
    if (!sorted) {
        return;
    }
    const std::vector<std::size_t> columns = Columns();
    const auto place = static_cast<std::size_t>(std::find(columns.begin(), columns.end(), *sorted) - columns.begin());
    const std::size_t moved = Moved(place, places, columns.size() - 1);
    if (moved != place) {
        const LiveColumn& column = reading_->columns[columns[moved]];
        settings_.sortColumn = column.name;
        settings_.isGreatestFirst = column.isNumber;
        Order();
    }
}

void LiveView::Reverse() {
    settings_.isGreatestFirst = !settings_.isGreatestFirst;
    if (reading_) {
        Order();
    }
}

void LiveView::SetFilter(const std::string& text) {
    filter_ = Lowered(text);
    top_ = 0;
    if (reading_) {
        Order();
    }
}

void LiveView::Scroll(std::ptrdiff_t rows) {
    const std::size_t room = RoomForRows();
    top_ = Moved(top_, rows, rows_.size() > room ? rows_.size() - room : 0);
}

std::size_t LiveView::RoomForRows() const {
    const std::size_t taken = kFixedLines + remarks_.size();
    return size_.lines > taken ? size_.lines - taken : 1;
}

void LiveView::MoveCursor(std::ptrdiff_t places) {
    if (reading_ && !reading_->columns.empty()) {
        cursor_ = Moved(cursor_, places, reading_->columns.size() - 1);
    }
}

void LiveView::ToggleColumn() {
    if (!reading_ || cursor_ >= reading_->columns.size()) {
        return;
    }
    if (ticked_.empty()) { // all of them, until there is an instance
        for (const LiveColumn& column : reading_->columns) {
            ticked_.insert(column.name);
        }
    }
    const std::string& name = reading_->columns[cursor_].name;
    if (!IsTicked(cursor_)) {
        ticked_.insert(name);
    } else if (Columns().size() > 1) {
        ticked_.erase(name);
    }
    Order();
}

} // namespace cimhttp
