#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace NQORVYX20 {

struct ValueMapRow;

/// Finds the row of a value map that a number belongs to, in as many steps as the count of rows has bits: arrays of
/// thousands of numbers are shown with maps of thousands of rows.
class ValueMapIndex {
  public:
    /// Rows may overlap, the first one counts; one that ends before it begins covers nothing.
    explicit ValueMapIndex(const std::vector<ValueMapRow>& rows);

    /// The place of the first row that covers the number; empty when none does.
    std::optional<std::size_t> RowOf(std::uint64_t number) const {
        return number < small_.size() ? small_[static_cast<std::size_t>(number)] : Search(number);
    }

  private:
    std::optional<std::size_t> Search(std::uint64_t number) const;

    /// The numbers from here to the begin of the next span.
    struct TSpan {
        std::uint64_t begin;
        std::optional<std::size_t> row;
    };

    std::vector<TSpan> spans_;                      // by their begins
    std::vector<std::optional<std::size_t>> small_; // the rows of the numbers from 0 on that most maps are about
};

} // namespace NQORVYX20
