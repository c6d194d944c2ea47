#include "table/ColumnRanking.h"

#include "table/TableTexts.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <string_view>

namespace cimhttp {

namespace {

constexpr std::size_t kNarrow = 16; // it does not matter how much narrower a column is

// Nothing here is looked up by a hash: whoever sends the texts could make them all collide.

std::size_t CountDifferent(const TableTexts& texts, std::size_t column) {
    std::vector<std::string_view> sorted;
    sorted.reserve(texts.Rows().size());
    for (const auto& row : texts.Rows()) {
        sorted.emplace_back(row[column].text);
    }
    std::sort(sorted.begin(), sorted.end());
    return static_cast<std::size_t>(std::unique(sorted.begin(), sorted.end()) - sorted.begin());
}

/// Columns in the order of their texts, of equal ones the first.
class DistinctColumns {
  public:
    explicit DistinctColumns(const TableTexts& texts) : known_(Before{texts}) {}

    /// Takes the next column. False when it repeats one before.
    bool Add(std::size_t column) { return known_.insert(column).second; }

  private:
    struct Before {
        const TableTexts& texts;

        bool operator()(std::size_t one, std::size_t other) const {
            const auto row = std::find_if(texts.Rows().begin(), texts.Rows().end(),
                                          [&](const auto& cells) { return cells[one].text != cells[other].text; });
            return row != texts.Rows().end() && (*row)[one].text < (*row)[other].text;
        }
    };

    std::set<std::size_t, Before> known_;
};

/// What keeps a column in a table, the more the longer.
enum class Merit { kNone, kConstant, kUsual, kHigh, kKey, kAsked };

Merit MeritOf(const TableTexts& texts, std::size_t column, std::size_t different, bool isRepetition) {
    const auto importance = texts.Columns()[column].importance;
    if (importance == Column::Importance::kAsked) {
        return Merit::kAsked;
    }
    const bool hasSeveralRows = texts.Rows().size() > 1;
    if (hasSeveralRows && different == 1) {
        return importance == Column::Importance::kHigh ? Merit::kConstant : Merit::kNone;
    }
    if (hasSeveralRows && isRepetition) {
        return Merit::kNone;
    }
    switch (importance) {
    case Column::Importance::kKey:
        return Merit::kKey;
    case Column::Importance::kHigh:
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

Worth WorthOf(const TableTexts& texts, std::size_t column, bool isRepetition) {
    const std::size_t different = CountDifferent(texts, column);
    return {MeritOf(texts, column, different, isRepetition), different, std::max(texts.TextWidth(column), kNarrow)};
}

} // namespace

ColumnRanking::ColumnRanking(const TableTexts& texts) : columns_(texts.Columns().size()) {
    std::vector<Worth> worths;
    DistinctColumns distinct(texts);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        worths.push_back(WorthOf(texts, i, !distinct.Add(i)));
        isTelling_.push_back(worths.back().merit >= Merit::kUsual);
        isConstant_.push_back(worths.back().merit == Merit::kConstant);
    }
    std::iota(columns_.rbegin(), columns_.rend(), std::size_t{0});
    std::stable_sort(columns_.begin(), columns_.end(),
                     [&](std::size_t one, std::size_t other) { return worths[one] < worths[other]; });
}

} // namespace cimhttp
