#pragma once

#include "host/TCIMValue.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// What rows are sorted by: names such as `State` or `Size:desc`, the first of which counts the most.
class SortOrder {
  public:
    /// `texts` are such as `State,Size:desc`; none for no order. Throws Failure(kUsage) for what is no name with
    /// `:asc`, `:desc` or nothing after it.
    explicit SortOrder(const std::vector<std::string>& texts);

    bool IsEmpty() const { return names_.empty(); }

    const std::vector<std::string>& Names() const { return names_; }

    /// Whether the greatest comes first by the name at this place among them.
    bool IsDescending(std::size_t place) const { return isDescending_[place]; }

    /// The places of the rows in the order. Each row has a value for each name. Values are in the order that ValuePlace
    /// says, arrays in that of their first elements that differ; null comes after all, also where the greatest comes
    /// first. Equal rows keep their order.
    std::vector<std::size_t> Sorted(const std::vector<std::vector<NQORVYX20::TCIMValue>>& rows) const;

  private:
    void Add(const std::string& text);

    std::vector<std::string> names_;
    std::vector<bool> isDescending_;
};

/// Items in another order, that of these places.
template <typename Item>
std::vector<Item> Ordered(const std::vector<Item>& items, const std::vector<std::size_t>& places) {
    std::vector<Item> ordered;
    ordered.reserve(items.size());
    for (const std::size_t place : places) {
        ordered.push_back(items[place]);
    }
    return ordered;
}

} // namespace cimhttp
