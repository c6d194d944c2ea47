#include "table/TableLayout.h"

#include "table/ColumnRanking.h"
#include "table/TableTexts.h"
#include "text/WrappedName.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace cimhttp {

namespace {

constexpr std::size_t kFoldedWidth = 24; // texts are folded to less only where there is no room for the keys
constexpr std::size_t kNarrowestWidth = 8;
constexpr std::size_t kSqueezedWidth = 4; // of columns that must stay whatever the room
constexpr std::size_t kMostLines = 3;     // over which texts of usual importance are folded, or few more

bool IsKey(const TableTexts& texts, std::size_t column) {
    return texts.Columns()[column].importance == Column::Importance::kKey;
}

bool IsAsked(const TableTexts& texts, std::size_t column) {
    return texts.Columns()[column].importance == Column::Importance::kAsked;
}

std::size_t LeastHeadingWidth(const TableTexts& texts, std::size_t column) {
    const std::size_t width = texts.HeadingWidth(column);
    return std::min(width, std::max(kNarrowestWidth, WidthOfTwoLines(texts.Headings()[column])));
}

/// Numbers are not folded.
std::size_t LeastTextWidth(const TableTexts& texts, std::size_t column, std::size_t folded) {
    const std::size_t width = texts.TextWidth(column);
    const bool isNumber = texts.Columns()[column].align == Column::Align::kRight;
    return isNumber ? width : std::min(width, folded);
}

std::size_t TightWidth(const TableTexts& texts, std::size_t column) {
    return std::max(LeastHeadingWidth(texts, column), LeastTextWidth(texts, column, kNarrowestWidth));
}

std::size_t ReadableWidth(const TableTexts& texts, std::size_t column) {
    const std::size_t forLines = (texts.TextWidth(column) + kMostLines - 1) / kMostLines;
    const bool isUsual = texts.Columns()[column].importance == Column::Importance::kUsual;
    const std::size_t folded = isUsual ? std::max(kFoldedWidth, forLines) : kFoldedWidth;
    return std::max(LeastHeadingWidth(texts, column), LeastTextWidth(texts, column, folded));
}

std::size_t NaturalWidth(const TableTexts& texts, std::size_t column) {
    return std::max(texts.HeadingWidth(column), texts.TextWidth(column));
}

template <typename WidthOf>
std::vector<std::size_t> Widths(const TableTexts& texts, const WidthOf& widthOf) {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < texts.Columns().size(); ++i) {
        widths.push_back(widthOf(texts, i));
    }
    return widths;
}

template <typename WidthOf>
std::size_t Sum(const std::vector<std::size_t>& columns, const WidthOf& widthOf) {
    return std::accumulate(columns.begin(), columns.end(), std::size_t{0},
                           [&](std::size_t sum, std::size_t column) { return sum + widthOf(column); });
}

/// The last number from `first` to `last` for which something is true that is true for none after one for which it is
/// false; `first` in any case.
template <typename Predicate>
std::size_t LastThat(const Predicate& isTrue, std::size_t first, std::size_t last) {
    while (first < last) {
        const std::size_t middle = last - (last - first) / 2;
        if (isTrue(middle)) {
            first = middle;
        } else {
            last = middle - 1;
        }
    }
    return first;
}

} // namespace

TableLayout::TableLayout(const TableTexts& texts, std::size_t width)
    : texts_(texts),
      width_(width),
      isShown_(texts.Columns().size(), true),
      widths_(Widths(texts, NaturalWidth)),
      shown_(widths_.size()),
      used_(std::accumulate(widths_.begin(), widths_.end(), std::size_t{0})),
      isTight_(width > 0 && !Fits()) {
    if (isTight_) {
        const ColumnRanking ranking(texts);
        Choose(ranking);
        Squeeze();
        WidenTexts();
        TakeBack(ranking, [&](std::size_t i) { return ranking.IsImportantConstant(i); });
        WidenHeadings();
        std::copy_if(ranking.Columns().rbegin(), ranking.Columns().rend(), std::back_inserter(leftOut_),
                     [&](std::size_t i) { return !isShown_[i]; });
    }
}

std::vector<std::size_t> TableLayout::Shown() const {
    std::vector<std::size_t> shown;
    for (std::size_t i = 0; i < isShown_.size(); ++i) {
        if (isShown_[i]) {
            shown.push_back(i);
        }
    }
    return shown;
}

void TableLayout::Show(std::size_t column, bool isShown) {
    if (isShown_[column] != isShown) {
        isShown_[column] = isShown;
        used_ = isShown ? used_ + widths_[column] : used_ - widths_[column];
        shown_ = isShown ? shown_ + 1 : shown_ - 1;
    }
}

void TableLayout::SetWidth(std::size_t column, std::size_t width) {
    if (isShown_[column]) {
        used_ = used_ - widths_[column] + width;
    }
    widths_[column] = width;
}

void TableLayout::SetWidths(std::vector<std::size_t> widths) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
        SetWidth(i, widths[i]);
    }
}

void TableLayout::Choose(const ColumnRanking& ranking) {
    SetWidths(Widths(texts_, ReadableWidth));
    if (!Fits()) {
        for (const std::size_t i : ranking.Columns()) {
            Show(i, ranking.IsTelling(i) || i == ranking.Columns().back());
        }
    }
    LeaveOut(ranking, [&](std::size_t i) { return !IsKey(texts_, i); });
    if (Fits()) {
        TakeBack(ranking, [&](std::size_t i) { return ranking.IsTelling(i); });
    } else {
        SetWidths(Widths(texts_, TightWidth));
        LeaveOut(ranking, [](std::size_t) { return true; });
    }
}

template <typename Predicate>
void TableLayout::LeaveOut(const ColumnRanking& ranking, const Predicate& mayGo) {
    for (auto i = ranking.Columns().begin(); i != ranking.Columns().end() && !Fits(); ++i) {
        if (shown_ > 1 && mayGo(*i) && !IsAsked(texts_, *i)) {
            Show(*i, false);
        }
    }
}

template <typename Predicate>
void TableLayout::TakeBack(const ColumnRanking& ranking, const Predicate& isWanted) {
    for (auto i = ranking.Columns().rbegin(); i != ranking.Columns().rend(); ++i) {
        if (!isShown_[*i] && isWanted(*i)) {
            Show(*i, true);
            Show(*i, Fits());
        }
    }
}

void TableLayout::Squeeze() {
    const std::vector<std::size_t> shown = Shown();
    const std::size_t gaps = UsedWidth() - used_;
    const auto fits = [&](std::size_t most) {
        return gaps + Sum(shown, [&](std::size_t i) { return std::min(widths_[i], most); }) <= width_;
    };
    if (Fits()) {
        return;
    }
    const std::size_t least = shown.size() == 1 ? 1 : kSqueezedWidth;
    const std::size_t most = LastThat(fits, least, width_);
    std::vector<std::size_t> squeezed; // those that may get one back
    for (const std::size_t i : shown) {
        if (widths_[i] > most) {
            SetWidth(i, most);
            squeezed.push_back(i);
        }
    }
    for (auto i = squeezed.rbegin(); i != squeezed.rend() && UsedWidth() < width_; ++i) {
        SetWidth(*i, most + 1);
    }
}

void TableLayout::WidenTexts() {
    const std::vector<std::size_t> shown = Shown();
    const std::size_t gaps = UsedWidth() - used_;
    const auto wider = [&](std::size_t i, std::size_t more) {
        return std::max(widths_[i], std::min(widths_[i] + more, texts_.TextWidth(i)));
    };
    const auto fits = [&](std::size_t more) {
        return gaps + Sum(shown, [&](std::size_t i) { return wider(i, more); }) <= width_;
    };
    if (UsedWidth() >= width_) {
        return;
    }
    const std::size_t more = LastThat(fits, 0, width_);
    for (const std::size_t i : shown) {
        SetWidth(i, wider(i, more));
    }
    for (auto i = shown.begin(); i != shown.end() && UsedWidth() < width_; ++i) {
        SetWidth(*i, wider(*i, 1));
    }
}

void TableLayout::WidenHeadings() {
    for (const std::size_t i : Shown()) {
        const std::size_t width = widths_[i];
        SetWidth(i, std::max(width, texts_.HeadingWidth(i)));
        if (!Fits()) {
            SetWidth(i, width);
        }
    }
}

} // namespace cimhttp
