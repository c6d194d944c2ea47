#pragma once

#include "host/TCIMValue.h"
#include "table/Column.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// What a listing has at one place: a value, and the text that people read for it.
struct Cell {
    /*implicit*/ Cell(const std::string& shown) : value(shown), text(shown) {}
    /*implicit*/ Cell(const char* shown) : value(shown), text(shown) {}
    /*implicit*/ Cell(const std::optional<std::string>& shown) : Cell(shown ? Cell(*shown) : Null()) {}
    Cell(NQORVYX20::TCIMValue held, std::string shown) : value(std::move(held)), text(std::move(shown)) {}

    /// A cell without a value.
    static Cell Null() { return {NQORVYX20::TCIMValue(), {}}; }

    /// True for a null without a text of its own.
    bool IsShownAsNull() const { return value.IsNull() && text.empty(); }

    NQORVYX20::TCIMValue value;
    std::string text;
};

/// Rows and columns, to be written in one of several forms. The texts are as the server gave them; what writes them
/// makes them safe to show.
class Listing {
  public:
    using Column = cimhttp::Column;
    using Align = Column::Align;
    using Importance = Column::Importance;

    static Column Key(const char* heading) { return {heading, Align::kLeft, Importance::kKey}; }

    explicit Listing(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// `row` must have as many cells as there are columns.
    void AddRow(std::vector<Cell> row) { rows_.push_back(std::move(row)); }

    /// Says that the columns depend on what is listed: those of another server may be others.
    void SetVaryingColumns() { hasVaryingColumns_ = true; }
    bool HasVaryingColumns() const { return hasVaryingColumns_; }

    const std::vector<Column>& Columns() const { return columns_; }
    const std::vector<std::vector<Cell>>& Rows() const { return rows_; }

  private:
    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
    bool hasVaryingColumns_ = false;
};

} // namespace cimhttp
