#include "selection/SortOrder.h"

#include "Failure.h"
#include "selection/ValuePlace.h"
#include "text/Names.h"

#include <algorithm>
#include <numeric>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMValue;

/// A value to sort by.
struct SortedValue {
    bool isNull;
    std::vector<ValuePlace> places;
};

using Row = std::vector<SortedValue>;

std::vector<Row> RowsOf(const std::vector<std::vector<TCIMValue>>& rows) {
    std::vector<Row> sorted;
    sorted.reserve(rows.size());
    for (const auto& values : rows) {
        Row& row = sorted.emplace_back();
        for (const TCIMValue& value : values) {
            row.push_back({value.IsNull(), PlacesOf(value)});
        }
    }
    return sorted;
}

bool IsBefore(const Row& one, const Row& other, const std::vector<bool>& isDescending) {
    for (std::size_t i = 0; i < one.size(); ++i) {
        if (one[i].isNull != other[i].isNull) {
            return other[i].isNull;
        }
        if (one[i].places < other[i].places) {
            return !isDescending[i];
        }
        if (other[i].places < one[i].places) {
            return isDescending[i];
        }
    }
    return false;
}

} // namespace

SortOrder::SortOrder(const std::vector<std::string>& texts) {
    for (const std::string& text : NamesIn(texts)) {
        Add(text);
    }
}

void SortOrder::Add(const std::string& text) {
    const std::size_t colon = std::min(text.find(':'), text.size());
    const std::string direction = text.substr(colon);
    const bool isDescending = IsSameName(direction, ":desc");
    if (colon == 0 || !(direction.empty() || isDescending || IsSameName(direction, ":asc"))) {
        throw Failure(Failure::kUsage, "'" + text + "' is nothing to sort by, such as Name, or Size:desc");
    }
    names_.push_back(text.substr(0, colon));
    isDescending_.push_back(isDescending);
}

std::vector<std::size_t> SortOrder::Sorted(const std::vector<std::vector<TCIMValue>>& rows) const {
    const std::vector<Row> sorted = RowsOf(rows);
    std::vector<std::size_t> places(rows.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::stable_sort(places.begin(), places.end(), [&](std::size_t one, std::size_t other) {
        return IsBefore(sorted[one], sorted[other], isDescending_);
    });
    return places;
}

} // namespace cimhttp
