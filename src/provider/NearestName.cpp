#include "provider/NearestName.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace NQORVYX20 {

namespace {

constexpr std::size_t kNear = 3;         // letters to change, at most
constexpr std::size_t kLongestName = 64; // longer ones resemble none

/// How many letters have to be changed, added or left out to make one name the other.
std::size_t DistanceBetween(const std::string& one, const std::string& other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = i;
        row[0] = i + 1;
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t changed = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string NearestNameHint(const std::string& mistyped, const std::vector<std::string>& names) {
    std::size_t least = mistyped.size() > kLongestName ? 0 : kNear + 1;
    std::string nearest;
    for (const std::string& name : names) {
        if (const std::size_t distance = least == 0 ? 0 : DistanceBetween(mistyped, name); distance < least) {
            least = distance;
            nearest = name;
        }
    }
    return nearest.empty() ? "" : " (did you mean '" + nearest + "'?)";
}

} // namespace NQORVYX20
