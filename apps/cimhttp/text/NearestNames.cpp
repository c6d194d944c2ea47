#include "text/NearestNames.h"

#include "text/Ascii.h"
#include "text/WordList.h"

#include <algorithm>
#include <tuple>

namespace cimhttp {

namespace {

/// Longer texts are not names; the time that a distance takes grows with the product of the lengths.
constexpr std::size_t kLongestName = 256;

/// Written without its prefix, a name is as far away as with one wrong letter.
constexpr std::size_t kCostOfPrefix = 1;

/// What follows the first underscore, which ends a prefix that names share; empty without a prefix.
std::string WithoutPrefix(const std::string& name) {
    const auto underscore = name.find('_');
    return underscore == std::string::npos ? std::string() : name.substr(underscore + 1);
}

std::size_t DistanceTo(const std::string& name, const std::string& candidate) {
    const std::size_t distance = EditDistance(name, candidate);
    const std::string local = WithoutPrefix(candidate);
    return local.empty() ? distance : std::min(distance, EditDistance(name, local) + kCostOfPrefix);
}

} // namespace

std::size_t EditDistance(const std::string& one, const std::string& other) {
    const std::string a = AsciiLower(one);
    const std::string b = AsciiLower(other);
    // Three rows of the table of distances between the beginnings of both: two rows up, one row up, this row.
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> above(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before.swap(above);
        above.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t exchanged = above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({exchanged, above[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

std::vector<std::string> NearestNames(const std::string& name, const std::vector<std::string>& names,
                                      std::size_t count) {
    const std::size_t limit = std::max<std::size_t>(2, name.size() / 3);
    std::vector<std::tuple<std::size_t, std::string>> near;
    for (const std::string& candidate : names) {
        const bool isMuchShorter = candidate.size() + limit < name.size(); // no letters are that many
        if (isMuchShorter || std::max(name.size(), candidate.size()) > kLongestName) {
            continue;
        }
        const std::size_t distance = DistanceTo(name, candidate);
        if (distance <= limit) {
            near.emplace_back(distance, candidate);
        }
    }
    std::sort(near.begin(), near.end());
    near.resize(std::min(near.size(), count));
    std::vector<std::string> nearest;
    std::transform(near.begin(), near.end(), std::back_inserter(nearest),
                   [](const auto& entry) { return std::get<std::string>(entry); });
    return nearest;
}

std::string DidYouMean(const std::vector<std::string>& names) {
    return names.empty() ? std::string() : " (did you mean " + Listed(names) + "?)";
}

} // namespace cimhttp
