#include "table/TableTexts.h"

#include "text/TerminalText.h"

#include <algorithm>

namespace cimhttp {

TableTexts::TableTexts(const std::vector<Column>& columns) : columns_(columns), widths_(columns.size()) {
    headings_.reserve(columns_.size());
    for (const Column& column : columns_) {
        headings_.push_back(TableCell{column.heading}.Front());
        headingWidths_.push_back(DisplayWidth(headings_.back()));
    }
}

void TableTexts::AddRow(const std::vector<TableCell>& row) {
    std::vector<Text>& texts = rows_.emplace_back();
    texts.reserve(row.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        texts.push_back({row[i].Front(), row[i].isNull});
        hasCutTexts_ = hasCutTexts_ || row[i].IsTooLong();
        widths_[i] = std::max(widths_[i], DisplayWidth(texts.back().text));
    }
}

} // namespace cimhttp
