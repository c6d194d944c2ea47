#pragma once

#include <cstddef>
#include <vector>

namespace cimhttp {

class ColumnRanking;
class TableTexts;

/// Which columns of a table are shown, and how wide.
class TableLayout {
  public:
    /// The blanks between two columns.
    static constexpr std::size_t kGap = 2;

    /// A table for lines of `width`, or of any width for 0. The texts must live as long.
    TableLayout(const TableTexts& texts, std::size_t width);

    /// True for a table that is too wide to be shown as it is.
    bool IsTight() const { return isTight_; }

    /// True when not even the columns that must stay have room beside each other.
    bool IsHopeless() const { return isTight_ && !Fits(); }

    /// The columns that are shown, from the left. At least one of a table that has any.
    std::vector<std::size_t> Shown() const;

    /// The columns that are not shown, those that are missed the most first.
    const std::vector<std::size_t>& LeftOut() const { return leftOut_; }

    /// The width of a column that is shown.
    std::size_t Width(std::size_t column) const { return widths_[column]; }

  private:
    void Show(std::size_t column, bool isShown);
    void SetWidth(std::size_t column, std::size_t width);
    void SetWidths(std::vector<std::size_t> widths);

    std::size_t UsedWidth() const { return used_ + (shown_ == 0 ? 0 : (shown_ - 1) * kGap); }
    bool Fits() const { return UsedWidth() <= width_; }

    /// Chooses the columns, with the least widths that they need.
    void Choose(const ColumnRanking& ranking);

    /// Leaves out columns until the rest fits, first those that are missed the least. One column always stays, and so
    /// do those that were asked for.
    template <typename Predicate>
    void LeaveOut(const ColumnRanking& ranking, const Predicate& mayGo);

    /// Shows columns again for which there is room, first those that are missed the most.
    template <typename Predicate>
    void TakeBack(const ColumnRanking& ranking, const Predicate& isWanted);

    /// Takes from the widest columns until all fit or are as narrow as may be; of equal ones first from the leftmost.
    void Squeeze();

    /// Give what is left of a line to folded texts, evenly, first to the leftmost, and to folded headings that fit then
    /// as a whole.
    void WidenTexts();
    void WidenHeadings();

    const TableTexts& texts_;
    std::size_t width_;
    std::vector<bool> isShown_;
    std::vector<std::size_t> widths_;
    std::size_t shown_; ///< how many columns are
    std::size_t used_;  ///< the widths of these
    bool isTight_;
    std::vector<std::size_t> leftOut_;
};

} // namespace cimhttp
