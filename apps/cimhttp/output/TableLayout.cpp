#include "output/TableLayout.h"

#include <algorithm>

#include "output/ColumnRanking.h"
#include "output/TableTexts.h"
#include "text/FoldedName.h"

namespace cimhttp {

namespace {

constexpr std::size_t kFoldedWidth = 24; // texts are folded to less only where there is no room for the keys
constexpr std::size_t kNarrowestWidth = 8;
constexpr std::size_t kSqueezedWidth = 4; // of columns that must stay whatever the room
constexpr std::size_t kMostLines = 3;     // over which texts of usual importance are folded, or few more

bool IsKey(const TableTexts& texts, std::size_t column) {
    return texts.Columns()[column].importance == Listing::Importance::kKey;
}

bool IsAsked(const TableTexts& texts, std::size_t column) {
    return texts.Columns()[column].importance == Listing::Importance::kAsked;
}

std::size_t LeastHeadingWidth(const TableTexts& texts, std::size_t column) {
    const std::size_t width = texts.HeadingWidth(column);
    return std::min(width, std::max(kNarrowestWidth, WidthOfTwoLines(texts.Headings()[column])));
}

/// Numbers are not folded.
std::size_t LeastTextWidth(const TableTexts& texts, std::size_t column, std::size_t folded) {
    const std::size_t width = texts.TextWidth(column);
    const bool is_number = texts.Columns()[column].align == Listing::Align::kRight;
    return is_number ? width : std::min(width, folded);
}

std::size_t TightWidth(const TableTexts& texts, std::size_t column) {
    return std::max(LeastHeadingWidth(texts, column), LeastTextWidth(texts, column, kNarrowestWidth));
}

std::size_t ReadableWidth(const TableTexts& texts, std::size_t column) {
    const std::size_t for_lines = (texts.TextWidth(column) + kMostLines - 1) / kMostLines;
    const bool is_usual = texts.Columns()[column].importance == Listing::Importance::kUsual;
    const std::size_t folded = is_usual ? std::max(kFoldedWidth, for_lines) : kFoldedWidth;
    return std::max(LeastHeadingWidth(texts, column), LeastTextWidth(texts, column, folded));
}

std::size_t NaturalWidth(const TableTexts& texts, std::size_t column) {
    return std::max(texts.HeadingWidth(column), texts.TextWidth(column));
}

template <typename WidthOf>
std::vector<std::size_t> Widths(const TableTexts& texts, const WidthOf& width_of) {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < texts.Columns().size(); ++i) {
        widths.push_back(width_of(texts, i));
    }
    return widths;
}

} // namespace

TableLayout::TableLayout(const TableTexts& texts, std::size_t width)
    : texts_(texts),
      width_(width),
      is_shown_(texts.Columns().size(), true),
      widths_(Widths(texts, NaturalWidth)),
      is_tight_(width > 0 && !Fits()) {
    if (is_tight_) {
        const ColumnRanking ranking(texts);
        Choose(ranking);
        Squeeze();
        WidenTexts();
        TakeBack(ranking, [&](std::size_t i) { return ranking.IsImportantConstant(i); });
        WidenHeadings();
        std::copy_if(ranking.Columns().rbegin(), ranking.Columns().rend(), std::back_inserter(left_out_),
                     [&](std::size_t i) { return !is_shown_[i]; });
    }
}

std::vector<std::size_t> TableLayout::Shown() const {
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < is_shown_.size(); ++i) {
        if (is_shown_[i]) {
            shown.push_back(i);
        }
    }
    return shown;
}

std::size_t TableLayout::UsedWidth() const {
    std::size_t used = 0;
    for (const std::size_t i : Shown()) {
        used += widths_[i] + (used == 0 ? 0 : kGap);
    }
    return used;
}

void TableLayout::Choose(const ColumnRanking& ranking) {
    widths_ = Widths(texts_, ReadableWidth);
    if (!Fits()) {
        for (const std::size_t i : ranking.Columns()) {
            is_shown_[i] = ranking.IsTelling(i) || i == ranking.Columns().back();
        }
    }
    LeaveOut(ranking, [&](std::size_t i) { return !IsKey(texts_, i); });
    if (Fits()) {
        TakeBack(ranking, [&](std::size_t i) { return ranking.IsTelling(i); });
    } else {
        widths_ = Widths(texts_, TightWidth);
        LeaveOut(ranking, [](std::size_t) { return true; });
    }
}

template <typename Predicate>
void TableLayout::LeaveOut(const ColumnRanking& ranking, const Predicate& may_go) {
    for (auto i = ranking.Columns().begin(); i != ranking.Columns().end() && !Fits(); ++i) {
        if (Shown().size() > 1 && may_go(*i) && !IsAsked(texts_, *i)) {
            is_shown_[*i] = false;
        }
    }
}

template <typename Predicate>
void TableLayout::TakeBack(const ColumnRanking& ranking, const Predicate& is_wanted) {
    for (auto i = ranking.Columns().rbegin(); i != ranking.Columns().rend(); ++i) {
        if (!is_shown_[*i] && is_wanted(*i)) {
            is_shown_[*i] = true;
            is_shown_[*i] = Fits();
        }
    }
}

void TableLayout::Squeeze() {
    const std::vector<std::size_t> shown = Shown();
    const std::size_t least = shown.size() == 1 ? 1 : kSqueezedWidth;
    while (!Fits()) {
        const std::size_t widest =
            *std::max_element(shown.begin(), shown.end(),
                              [&](std::size_t one, std::size_t other) { return widths_[one] < widths_[other]; });
        if (widths_[widest] <= least) {
            return;
        }
        --widths_[widest];
    }
}

void TableLayout::WidenTexts() {
    const std::vector<std::size_t> shown = Shown();
    std::size_t used = UsedWidth();
    for (bool is_growing = true; is_growing && used < width_;) {
        is_growing = false;
        for (const std::size_t i : shown) {
            if (used < width_ && widths_[i] < texts_.TextWidth(i)) {
                ++widths_[i];
                ++used;
                is_growing = true;
            }
        }
    }
}

void TableLayout::WidenHeadings() {
    for (const std::size_t i : Shown()) {
        const std::size_t width = widths_[i];
        widths_[i] = std::max(width, texts_.HeadingWidth(i));
        if (!Fits()) {
            widths_[i] = width;
        }
    }
}

} // namespace cimhttp
