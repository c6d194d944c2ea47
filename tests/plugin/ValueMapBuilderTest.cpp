// How a compatible namespace reads the entries of the qualifier ValueMap.

#include "display/ValueMapBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::uint64_t kOpen = std::numeric_limits<std::uint64_t>::max();

class ValueMapBuilderTest : public testing::Test {
  protected:
    bool Add(std::string_view entry, const std::string& text = "") { return builder_.Add(entry, text); }

    /// The bounds of the rows.
    std::vector<std::pair<std::uint64_t, std::uint64_t>> Bounds() const {
        std::vector<std::pair<std::uint64_t, std::uint64_t>> bounds;
        for (const ValueMapRow& row : rows_) {
            bounds.emplace_back(row.low, row.high);
        }
        return bounds;
    }

    std::vector<ValueMapRow> rows_;
    std::string defaultText_;
    ValueMapBuilder builder_{rows_, defaultText_};
};

} // namespace

TEST_F(ValueMapBuilderTest, ANumberIsARowOfItsOwn) {
    EXPECT_TRUE(Add("7", "seven"));
    EXPECT_THAT(Bounds(), ElementsAre(std::pair(7U, 7U)));
    EXPECT_EQ(rows_[0].text, "seven");
    EXPECT_EQ(defaultText_, "");
}

TEST_F(ValueMapBuilderTest, ARangeWithoutABeginBeginsAtZero) {
    EXPECT_TRUE(Add("..9"));
    EXPECT_THAT(Bounds(), ElementsAre(std::pair(0U, 9U)));
}

TEST_F(ValueMapBuilderTest, ARangeWithoutAnEndEndsBeforeTheNextNumber) {
    EXPECT_TRUE(Add("5.."));
    EXPECT_THAT(Bounds(), ElementsAre(std::pair(std::uint64_t{5}, kOpen)));
    EXPECT_TRUE(Add("20"));
    EXPECT_THAT(Bounds(), ElementsAre(std::pair(5U, 19U), std::pair(20U, 20U)));
}

TEST_F(ValueMapBuilderTest, WhatFollowsTheDotsOfARangeIsIgnored) {
    EXPECT_TRUE(Add("5..8"));
    EXPECT_THAT(Bounds(), ElementsAre(std::pair(std::uint64_t{5}, kOpen)));
}

TEST_F(ValueMapBuilderTest, TwoDotsAloneAreTheDefault) {
    EXPECT_TRUE(Add("1", "one"));
    EXPECT_TRUE(Add("..", "other"));
    EXPECT_EQ(defaultText_, "other");
    EXPECT_EQ(rows_.size(), 1U);
}

TEST_F(ValueMapBuilderTest, ADefaultAfterAnOpenRangeIsRefused) {
    EXPECT_TRUE(Add("5.."));
    EXPECT_FALSE(Add("..", "other"));
    EXPECT_EQ(defaultText_, "");
}

TEST_F(ValueMapBuilderTest, BlanksAndAPlusBeforeANumberAreSkipped) {
    EXPECT_TRUE(Add(" \t+7 and more"));
    EXPECT_TRUE(Add(".. +9"));
    EXPECT_THAT(Bounds(), ElementsAre(std::pair(7U, 7U), std::pair(0U, 9U)));
}

TEST_F(ValueMapBuilderTest, AnEntryWithoutANumberGivesNoRow) {
    for (const char* entry : {"", "seven", "-7", "..x", "18446744073709551616"}) {
        EXPECT_TRUE(Add(entry)) << entry;
    }
    EXPECT_THAT(Bounds(), IsEmpty());
    EXPECT_TRUE(Add("18446744073709551615"));
    EXPECT_THAT(Bounds(), ElementsAre(std::pair(kOpen, kOpen)));
}

TEST_F(ValueMapBuilderTest, AZeroLeavesTheRangeBeforeItOpen) {
    EXPECT_TRUE(Add("5.."));
    EXPECT_TRUE(Add("0"));
    EXPECT_THAT(Bounds(),
                ElementsAre(std::pair(std::uint64_t{5}, kOpen), std::pair(std::uint64_t{0}, std::uint64_t{0})));
}
