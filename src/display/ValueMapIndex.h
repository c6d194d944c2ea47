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
    std::optional<std::size_t> RowOf(std::uint64_t number) const;

  private:
    /// The numbers from here to the begin of the next span.
    struct TSpan {
        std::uint64_t begin;
        std::optional<std::size_t> row;
    };

    std::vector<TSpan> spans_; // by their begins
};

} // namespace NQORVYX20
