#pragma once

#include "selection/ValuePlace.h"
#include "table/Column.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// A property as a column of the live view.
struct LiveColumn {
    std::string name;
    Column::Importance importance = Column::Importance::kUsual;
    bool isNumber = false;  ///< its values are numbers that stand for themselves
    bool isCounter = false; ///< its cells are rates: how much more there is each second
};

/// What an instance has in a column.
struct LiveCell {
    std::string text;               ///< safe to show, and bounded
    std::size_t width = 0;          ///< the text's, in columns of a terminal
    bool isNull = false;            ///< comes last in every order
    std::vector<ValuePlace> places; ///< to sort by; none for null
    std::optional<double> number;   ///< in the base unit
    std::optional<double> share;    ///< from 0 to 1: how much it is of the greatest that it can be
};

struct LiveRow {
    std::string path; ///< tells the instance from others
    std::vector<LiveCell> cells;
};

/// The instances of a class at one time, as the live view needs them.
struct LiveReading {
    std::chrono::steady_clock::time_point time;
    std::string timeOfDay;
    std::vector<LiveColumn> columns;
    std::vector<LiveRow> rows; ///< each with a cell for each column
    std::size_t count = 0;     ///< how many instances there are with those that do not meet the conditions
    std::size_t restarts = 0;  ///< how often a counter was less than before, until now
};

} // namespace cimhttp
