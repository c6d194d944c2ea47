#include "output/TableTexts.h"

#include "output/CellText.h"
#include "text/TerminalText.h"

#include <algorithm>

namespace cimhttp {

TableTexts::TableTexts(const Listing& listing) : columns_(listing.Columns()), widths_(columns_.size()) {
    headings_.reserve(columns_.size());
    for (const Listing::Column& column : columns_) {
        headings_.push_back(TableHeading(column.heading));
        headingWidths_.push_back(DisplayWidth(headings_.back()));
    }
    rows_.reserve(listing.Rows().size());
    for (const auto& row : listing.Rows()) {
        std::vector<std::string> texts;
        texts.reserve(row.size());
        for (std::size_t i = 0; i < row.size(); ++i) {
            texts.push_back(TableCellText(row[i]));
            hasCutTexts_ = hasCutTexts_ || IsCutInTable(row[i]);
            widths_[i] = std::max(widths_[i], DisplayWidth(texts.back()));
        }
        rows_.push_back(std::move(texts));
    }
}

} // namespace cimhttp
