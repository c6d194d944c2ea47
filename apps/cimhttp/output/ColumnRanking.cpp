#include "output/ColumnRanking.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <unordered_set>

#include "output/TableTexts.h"

namespace cimhttp {

namespace {

constexpr std::size_t kNarrow = 16; // it does not matter how much narrower a column is

std::size_t CountDifferent(const TableTexts& texts, std::size_t column) {
    std::unordered_set<std::string_view> different;
    for (const auto& row : texts.Rows()) {
        different.insert(row[column]);
    }
    return different.size();
}

bool RepeatsAnother(const TableTexts& texts, std::size_t column) {
    for (std::size_t before = 0; before < column; ++before) {
        if (std::all_of(texts.Rows().begin(), texts.Rows().end(),
                        [&](const auto& row) { return row[column] == row[before]; })) {
            return true;
        }
    }
    return false;
}

/// What keeps a column in a table, the more the longer.
enum class Merit { kNone, kConstant, kUsual, kHigh, kKey, kAsked };

Merit MeritOf(const TableTexts& texts, std::size_t column, std::size_t different) {
    const auto importance = texts.Columns()[column].importance;
    if (importance == Listing::Importance::kAsked) {
        return Merit::kAsked;
    }
    const bool has_several_rows = texts.Rows().size() > 1;
    if (has_several_rows && different == 1) {
        return importance == Listing::Importance::kHigh ? Merit::kConstant : Merit::kNone;
    }
    if (has_several_rows && RepeatsAnother(texts, column)) {
        return Merit::kNone;
    }
    switch (importance) {
    case Listing::Importance::kKey:
        return Merit::kKey;
    case Listing::Importance::kHigh:
        return Merit::kHigh;
    default:
        return Merit::kUsual;
    }
}

struct Worth {
    Merit merit;
    std::size_t different; ///< texts
    std::size_t width;

    bool operator<(const Worth& other) const {
        if (merit != other.merit) {
            return merit < other.merit;
        }
        return different * other.width < other.different * width; // different / width, exactly
    }
};

Worth WorthOf(const TableTexts& texts, std::size_t column) {
    const std::size_t different = CountDifferent(texts, column);
    return {MeritOf(texts, column, different), different, std::max(texts.TextWidth(column), kNarrow)};
}

} // namespace

ColumnRanking::ColumnRanking(const TableTexts& texts) : columns_(texts.Columns().size()) {
    std::vector<Worth> worths;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        worths.push_back(WorthOf(texts, i));
        is_telling_.push_back(worths.back().merit >= Merit::kUsual);
        is_constant_.push_back(worths.back().merit == Merit::kConstant);
    }
    std::iota(columns_.rbegin(), columns_.rend(), std::size_t{0});
    std::stable_sort(columns_.begin(), columns_.end(),
                     [&](std::size_t one, std::size_t other) { return worths[one] < worths[other]; });
}

} // namespace cimhttp
