#include "output/ListingText.h"

#include "output/Listing.h"
#include "output/ShortReferences.h"
#include "table/TextList.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace cimhttp {

namespace {

std::vector<TableCell> CellsOf(const std::vector<Cell>& row) {
    std::vector<TableCell> cells;
    cells.reserve(row.size());
    std::transform(row.begin(), row.end(), std::back_inserter(cells), [](const Cell& cell) {
        return TableCell{cell.text, cell.IsShownAsNull()};
    });
    return cells;
}

TableTexts TextsOf(const Listing& listing) {
    TableTexts texts(listing.Columns());
    for (const auto& row : listing.Rows()) {
        texts.AddRow(CellsOf(row));
    }
    return texts;
}

TableOmissions Write(const TextTable& table, const Listing& listing, const TextStyle& style, std::ostream& output) {
    if (table.IsWorseThanList()) {
        WriteLists(listing, style, output);
        return {};
    }
    table.Write(output);
    return table.Omissions();
}

} // namespace

ListingOmissions WriteTable(const Listing& listing, const TextStyle& style, std::ostream& output) {
    const TableTexts texts = TextsOf(listing);
    const TextTable table(texts, style);
    if (table.IsTight()) {
        if (const auto shorter = WithShortReferences(listing)) {
            const TableTexts shorterTexts = TextsOf(*shorter);
            return {Write(TextTable(shorterTexts, style), *shorter, style, output), true};
        }
    }
    return {Write(table, listing, style, output)};
}

/// A table that is worse than a list is a list.
struct GrowingTable::Parts {
    Parts(const Listing& first, const TextStyle& style, std::ostream& output)
        : columns(first.Columns()), texts(columns), table(WithRows(texts, first), style) {
        if (table.IsWorseThanList()) {
            list.emplace(columns, style, output);
        }
    }

    static const TableTexts& WithRows(TableTexts& texts, const Listing& listing) {
        for (const auto& row : listing.Rows()) {
            texts.AddRow(CellsOf(row));
        }
        return texts;
    }

    const std::vector<Column> columns;
    TableTexts texts;
    TextTable table;
    std::optional<TextList> list;
};

GrowingTable::GrowingTable(const Listing& first, const TextStyle& style, std::ostream& output)
    : output_(output), parts_(std::make_unique<Parts>(first, style, output)) {
    if (parts_->list) {
        Add(first);
    } else {
        parts_->table.Write(output_);
    }
}

GrowingTable::~GrowingTable() = default;

void GrowingTable::Add(const Listing& later) {
    for (const auto& row : later.Rows()) {
        if (parts_->list) {
            parts_->list->Write(CellsOf(row));
        } else {
            parts_->table.WriteLater(CellsOf(row), output_);
        }
    }
}

ListingOmissions GrowingTable::Omissions() const {
    return {parts_->list ? TableOmissions() : parts_->table.Omissions(), false};
}

void WriteLists(const Listing& listing, const TextStyle& style, std::ostream& output) {
    TextList list(listing.Columns(), style, output);
    for (const auto& row : listing.Rows()) {
        list.Write(CellsOf(row));
    }
}

} // namespace cimhttp
