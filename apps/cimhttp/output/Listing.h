#pragma once

#include "host/TCIMValue.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// What a table shows at one place: a text for people, and the value behind it.
struct Cell {
    /*implicit*/ Cell(const std::string& shown) : value(shown), text(shown) {}
    /*implicit*/ Cell(const char* shown) : value(shown), text(shown) {}
    Cell(NQORVYX20::TCIMValue held, std::string shown) : value(std::move(held)), text(std::move(shown)) {}

    /// A cell without a value.
    static Cell Null() { return {NQORVYX20::TCIMValue(), {}}; }

    NQORVYX20::TCIMValue value;
    std::string text;
};

/// Rows and columns, to be written in one of several forms. The texts are as the server gave them; what writes them
/// makes them safe to show.
class Listing {
  public:
    enum class Align { kLeft, kRight };

    /// The more important a column, the later it is left out where there is no room for all; one that was asked for by
    /// name, never.
    enum class Importance { kUsual, kHigh, kKey, kAsked };

    struct Column {
        std::string heading;
        Align align = Align::kLeft;
        Importance importance = Importance::kUsual;
    };

    static Column Key(const char* heading) { return {heading, Align::kLeft, Importance::kKey}; }

    explicit Listing(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// `row` must have as many cells as there are columns.
    void AddRow(std::vector<Cell> row) { rows_.push_back(std::move(row)); }

    const std::vector<Column>& Columns() const { return columns_; }
    const std::vector<std::vector<Cell>>& Rows() const { return rows_; }

  private:
    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
};

} // namespace cimhttp
