#pragma once

#include "live/History.h"
#include "live/LiveReading.h"
#include "live/Screen.h"
#include "text/Names.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// What the live view shows of the readings: which rows in which order, which columns, from where on. Knows nothing of
/// servers and terminals.
class LiveView {
  public:
    enum class Mode { kRows, kFilter, kColumns, kHelp };

    struct Settings {
        std::string title;                            ///< what is read, and where; safe to show
        std::chrono::steady_clock::duration interval; ///< between two readings
        std::vector<std::string> columns = {};        ///< that are shown at first; none for what a table would show
        std::string sortColumn = {};                  ///< empty: the first one
        bool isGreatestFirst = false;
        std::optional<std::size_t> limit = {}; ///< how many rows are shown at most
        bool isUtf8 = true;                    ///< whether the terminal has blocks for bars
    };

    explicit LiveView(Settings settings) : settings_(std::move(settings)), history_(settings_.interval) {}

    /// Shows a newer reading. The first one decides which columns are shown.
    void Take(std::shared_ptr<const LiveReading> reading);

    /// What is to be said of the reading: each a line, safe to show. None where all is well.
    void SetRemarks(std::vector<std::string> remarks) { remarks_ = std::move(remarks); }
    const std::vector<std::string>& Remarks() const { return remarks_; }

    /// How long an answer has been waited for; nothing where it has not taken long.
    void SetWait(std::optional<std::chrono::seconds> wait) { wait_ = wait; }
    std::optional<std::chrono::seconds> Wait() const { return wait_; }

    void SetSize(ScreenSize size) { size_ = size; }
    ScreenSize Size() const { return size_; }

    const Settings& Options() const { return settings_; }
    bool IsUtf8() const { return settings_.isUtf8; }

    /// Null until there is a reading.
    const LiveReading* Reading() const { return reading_.get(); }
    std::size_t Readings() const { return readings_; }

    /// The rows that are shown, as indices of the reading's, in their order.
    const std::vector<std::size_t>& Rows() const { return rows_; }

    /// How many there were without the limit.
    std::size_t RowsWithoutLimit() const { return found_; }

    /// The columns that are ticked, as indices of the reading's.
    std::vector<std::size_t> Columns() const;

    /// The least width at which a column shows all its texts, or as much as it ever does.
    std::size_t WidthOf(std::size_t column) const { return widths_[column]; }

    /// Whether any of the column's numbers has a bar.
    bool HasBars(std::size_t column) const { return hasBars_[column]; }

    /// The column that is sorted by; nothing without columns.
    std::optional<std::size_t> SortColumn() const;
    bool IsGreatestFirst() const { return settings_.isGreatestFirst; }

    /// The column of which the last minute is shown: the one sorted by where that has numbers, else the first that has.
    std::optional<std::size_t> HistoryColumn() const;
    History::Means HistoryOf(const LiveRow& row) const;

    /// Sorts by the ticked column that is so many places further; numbers with the greatest first.
    void MoveSort(int places);
    void Reverse();

    /// Rows stay that have this text, in any case, in a ticked column.
    void SetFilter(const std::string& text);
    const std::string& Filter() const { return filter_; }

    void TogglePause() { isPaused_ = !isPaused_; }
    bool IsPaused() const { return isPaused_; }

    Mode CurrentMode() const { return mode_; }
    void SetMode(Mode mode) { mode_ = mode; }

    /// The first row that is seen, and in the list of columns the one that a key ticks.
    std::size_t Top() const { return top_; }
    std::size_t Cursor() const { return cursor_; }

    /// Scrolls by so many rows; no further than that the last row is seen.
    void Scroll(std::ptrdiff_t rows);

    /// How many rows there is room for, below the lines of the head and above that of the keys.
    std::size_t RoomForRows() const;

    void MoveCursor(std::ptrdiff_t places);
    /// One column stays.
    void ToggleColumn();
    bool IsTicked(std::size_t column) const {
        return ticked_.empty() || ticked_.count(reading_->columns[column].name) > 0;
    }

  private:
    void ChooseColumns();
    void Measure();
    void Order();
    bool IsFound(const LiveRow& row, const std::vector<std::size_t>& columns) const;
    bool IsBefore(const LiveCell& one, const LiveCell& other) const;

    Settings settings_;
    ScreenSize size_;
    std::shared_ptr<const LiveReading> reading_;
    std::size_t readings_ = 0;
    History history_;
    NameSet ticked_;
    std::vector<std::size_t> widths_; // of each column of the reading
    std::vector<bool> hasBars_;
    std::vector<std::size_t> rows_;
    std::size_t found_ = 0;
    std::string filter_;
    std::vector<std::string> remarks_;
    std::optional<std::chrono::seconds> wait_;
    bool isPaused_ = false;
    Mode mode_ = Mode::kRows;
    std::size_t top_ = 0;
    std::size_t cursor_ = 0;
};

} // namespace cimhttp
