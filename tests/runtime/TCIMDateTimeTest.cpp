#include "host/TCIMDateTime.h"

#include "runtime/ExpectStatus.h"

#include <gtest/gtest.h>

namespace NQORVYX20 {
namespace {

std::string ForPeople(const std::string& text) { return TCIMDateTime(text).ToUIString(); }

TEST(TCIMDateTime, IsTheZeroIntervalByDefault) {
    EXPECT_EQ(TCIMDateTime().ToString(), "00000000000000.000000:000");
    EXPECT_TRUE(TCIMDateTime().IsInterval());
}

class WellFormed : public testing::TestWithParam<const char*> {};

TEST_P(WellFormed, KeepsItsCharacters) { EXPECT_EQ(TCIMDateTime(GetParam()).ToString(), GetParam()); }

INSTANTIATE_TEST_SUITE_P(TCIMDateTime, WellFormed,
                         testing::Values("20261121083900.000000+060", "20261121083900.999999-720",
                                         "00000101000000.000000+000", "99991231235959.999999+999",
                                         "20240229000000.000000+000", // a leap year
                                         "20000229000000.000000+000", // a leap year too
                                         "20161231235960.000000+000", // a leap second
                                         "****0229000000.000000+000", // perhaps a leap year
                                         "2025**31000000.000000+000", // perhaps a long month
                                         "20261121******.******+060", "2026112108****.******+060",
                                         "20261121083900.125***+060", "20261121083900.000000+***",
                                         "**************.******-***", "99999999235959.999999:000",
                                         "00000001******.******:000", "********010101.000000:000"));

class Malformed : public testing::TestWithParam<std::string> {};

TEST_P(Malformed, IsRefused) { EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, TCIMDateTime(GetParam())); }

INSTANTIATE_TEST_SUITE_P(
    TCIMDateTime, Malformed,
    testing::Values("", "2026", "20261121083900.000000+0600", "20261121083900.000000+06", "20260021083900.000000+060",
                    "20261321083900.000000+060", "20261100083900.000000+060", "20261131083900.000000+060",
                    "20250229000000.000000+000", "19000229000000.000000+000", "20261121240000.000000+060",
                    "20261121086000.000000+060", "20261121083961.000000+060", "20261121083900,000000+060",
                    "20261121083900.00000x+060", "20261121083900.***000+060", "20261121083900.000000 060",
                    "20261121083900.000000+0*0", "2026112*083900.000000+060", "20261121 83900.000000+060",
                    "20261121083900.000000:060", "00000000000060.000000:000", "00000000240000.000000:000",
                    "00000000006000.000000:000", "00000000000000.000000:***", "0000000-000000.000000:000",
                    std::string(25, '\0'), std::string("20261121083900.000000+060\0", 26)));

TEST(TCIMDateTime, BecomesAnInterval) {
    TCIMDateTime interval("20261121083900.000000+060");
    interval.Set(1, 2, 3, 4, 5);
    EXPECT_EQ(interval.ToString(), "00000001020304.000005:000");
    EXPECT_TRUE(interval.IsInterval());
    interval.Set(99999999, 23, 59, 59, 999999);
    EXPECT_EQ(interval.ToString(), "99999999235959.999999:000");
}

TEST(TCIMDateTime, StaysAsItWasWhenAFieldDoesNotFit) {
    TCIMDateTime interval;
    interval.Set(1, 2, 3, 4, 5);
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, interval.Set(100000000, 0, 0, 0, 0));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, interval.Set(0, 24, 0, 0, 0));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, interval.Set(0, 0, 60, 0, 0));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, interval.Set(0, 0, 0, 60, 0));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, interval.Set(0, 0, 0, 0, 1000000));
    EXPECT_EQ(interval.ToString(), "00000001020304.000005:000");
}

TEST(TCIMDateTime, ShowsAnIntervalToPeople) {
    EXPECT_EQ(ForPeople("00000001010101.000000:000"), "1 day 01:01:01");
    EXPECT_EQ(ForPeople("00000012000000.000000:000"), "12 days 00:00:00");
    EXPECT_EQ(ForPeople("00000000000000.000000:000"), "00:00:00");
    EXPECT_EQ(ForPeople("00000000000001.500000:000"), "00:00:01.500000");
    EXPECT_EQ(ForPeople("00000000000001.125***:000"), "00:00:01.125");
    EXPECT_EQ(ForPeople("000000010101**.******:000"), "1 day 01:01");
    EXPECT_EQ(ForPeople("00000001******.******:000"), "1 day");
    EXPECT_EQ(ForPeople("00000000******.******:000"), "0 days");
    EXPECT_EQ(ForPeople("********010101.000000:000"), "01:01:01");
    EXPECT_EQ(ForPeople("**************.******:000"), "");
}

TEST(TCIMDateTime, ShowsATimestampToPeople) {
    EXPECT_EQ(ForPeople("20261121083900.000000+060"), "2026-11-21 08:39:00 +01:00");
    EXPECT_EQ(ForPeople("20261121083900.000001-210"), "2026-11-21 08:39:00.000001 -03:30");
    EXPECT_EQ(ForPeople("20261121083900.000000+000"), "2026-11-21 08:39:00 +00:00");
    EXPECT_EQ(ForPeople("20261121083900.000000+***"), "2026-11-21 08:39:00");
    EXPECT_EQ(ForPeople("20261121******.******+060"), "2026-11-21 +01:00");
    EXPECT_EQ(ForPeople("****11210839**.******+060"), "11-21 08:39 +01:00");
    EXPECT_EQ(ForPeople("**************.******+***"), "");
}

TEST(TCIMDateTime, IsOrderedByItsCharacters) {
    const TCIMDateTime earlier("20261121083900.000000+060");
    const TCIMDateTime later("20261121083900.000001+060");
    EXPECT_TRUE(earlier < later);
    EXPECT_FALSE(later < earlier);
    EXPECT_NE(earlier, later);
    EXPECT_EQ(earlier, TCIMDateTime("20261121083900.000000+060"));
}

} // namespace
} // namespace NQORVYX20
