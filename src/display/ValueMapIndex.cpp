#include "display/ValueMapIndex.h"

#include "display/ValueMapTable.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <set>

namespace NQORVYX20 {

namespace {

/// Where a row begins to cover, or ends.
struct TBound {
    std::uint64_t at;
    std::size_t row;
    bool isBegin;
};

std::vector<TBound> BoundsOf(const std::vector<ValueMapRow>& rows) {
    std::vector<TBound> bounds;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].low > rows[i].high) {
            continue;
        }
        bounds.push_back({rows[i].low, i, true});
        if (rows[i].high != std::numeric_limits<std::uint64_t>::max()) {
            bounds.push_back({rows[i].high + 1, i, false});
        }
    }
    std::sort(bounds.begin(), bounds.end(), [](const TBound& left, const TBound& right) { return left.at < right.at; });
    return bounds;
}

} // namespace

ValueMapIndex::ValueMapIndex(const std::vector<ValueMapRow>& rows) {
    std::set<std::size_t> covering;
    const auto bounds = BoundsOf(rows);
    for (auto bound = bounds.begin(); bound != bounds.end();) {
        const std::uint64_t at = bound->at;
        for (; bound != bounds.end() && bound->at == at; ++bound) {
            if (bound->isBegin) {
                covering.insert(bound->row);
            } else {
                covering.erase(bound->row);
            }
        }
        spans_.push_back({at, covering.empty() ? std::nullopt : std::make_optional(*covering.begin())});
    }
    constexpr std::uint64_t kMost = 64;
    const std::uint64_t end = spans_.empty() ? 0 : spans_.back().begin + 1;
    for (std::uint64_t number = 0; number < std::min(end, kMost); ++number) {
        small_.push_back(Search(number));
    }
}

std::optional<std::size_t> ValueMapIndex::Search(std::uint64_t number) const {
    const auto next = std::upper_bound(spans_.begin(), spans_.end(), number,
                                       [](std::uint64_t wanted, const TSpan& span) { return wanted < span.begin; });
    return next == spans_.begin() ? std::nullopt : std::prev(next)->row;
}

} // namespace NQORVYX20
