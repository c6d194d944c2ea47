// How the row of a value map is found: the first one that covers the number, however many there are.

#include "display/ValueMapIndex.h"

#include "display/ValueMapTable.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

using namespace NQORVYX20;

namespace {

constexpr std::uint64_t kLast = std::numeric_limits<std::uint64_t>::max();

std::optional<std::size_t> FirstRowOf(const std::vector<ValueMapRow>& rows, std::uint64_t number) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].low <= number && number <= rows[i].high) {
            return i;
        }
    }
    return std::nullopt;
}

TEST(ValueMapIndexTest, FindsTheRowThatASearchFromTheBeginFinds) {
    std::mt19937_64 random(7);
    for (int run = 0; run < 300; ++run) {
        std::vector<ValueMapRow> rows(random() % 12);
        for (ValueMapRow& row : rows) {
            row.low = random() % 20;
            row.high = random() % 8 == 0 ? kLast : random() % 24; // some end before they begin
        }
        const ValueMapIndex index(rows);
        for (std::uint64_t number = 0; number < 30; ++number) {
            ASSERT_EQ(index.RowOf(number), FirstRowOf(rows, number)) << "run " << run << ", number " << number;
        }
        ASSERT_EQ(index.RowOf(kLast), FirstRowOf(rows, kLast));
    }
}

TEST(ValueMapIndexTest, AMapWithoutRowsCoversNothing) {
    const ValueMapIndex index({});
    EXPECT_EQ(index.RowOf(0), std::nullopt);
    EXPECT_EQ(index.RowOf(kLast), std::nullopt);
}

// From row to row, this would take hours.
TEST(ValueMapIndexTest, ManyNumbersAreFoundInManyRows) {
    constexpr std::uint64_t kCount = 300000;
    std::vector<ValueMapRow> rows;
    for (std::uint64_t i = 0; i < kCount; ++i) {
        rows.push_back({2 * i, 2 * i, ""});
    }
    const ValueMapIndex index(rows);
    for (std::uint64_t i = 0; i < kCount; ++i) {
        ASSERT_EQ(index.RowOf(2 * i), std::optional<std::size_t>(i));
        ASSERT_EQ(index.RowOf(2 * i + 1), std::nullopt);
    }
}

} // namespace
