// The ranges of checks, units, and performance data, without a server.

#include "monitoring/PerformanceData.h"
#include "monitoring/ServiceState.h"
#include "monitoring/StatusText.h"
#include "monitoring/ThresholdRange.h"
#include "text/TerminalText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using cimhttp::NumberText;
using cimhttp::PerformanceData;
using cimhttp::QuantityOf;
using cimhttp::ServiceState;
using cimhttp::StatusText;
using cimhttp::ThresholdRange;
using cimhttp::UnitScale;
using cimhttp::Worse;
using testing::HasSubstr;
using testing::Not;

namespace {

/// Whether a range alerts about a number; nothing where they cannot be compared. Fails for what is no range.
std::optional<bool> Alerts(const std::string& range, long double number, const std::string& unit = {}) {
    const auto parsed = ThresholdRange::In(range);
    EXPECT_TRUE(parsed) << range;
    return parsed ? parsed->Alerts({number, UnitScale::Of(unit)}) : std::nullopt;
}

std::string InPerformanceData(const std::string& range, const std::string& unit) {
    return ThresholdRange::In(range)->PerformanceText({0, UnitScale::Of(unit)});
}

} // namespace

TEST(ThresholdRangeTest, EachFormAlertsAsTheGuidelinesSay) {
    struct Example {
        const char* range;
        std::vector<long double> alerts;
        std::vector<long double> fine;
    };
    const std::vector<Example> examples{
        {"10", {-1, 10.5, 11}, {0, 10}},
        {"10:", {-1, 9.9L}, {10, 1e30L}},
        {"~:10", {10.1L, 1e30L}, {10, -1e30L}},
        {"10:20", {9, 21}, {10, 15, 20}},
        {"@10:20", {10, 15, 20}, {9, 21}},
        {"@10", {0, 10}, {-1, 11}},
        {"-5:-1", {-6, 0}, {-5, -1}},
        {":10", {-1, 11}, {0, 10}},
        {"@~:10", {-100, 10}, {11}},
        {"0.5:1.5", {0.4L, 1.6L}, {0.5L, 1.5L}},
        {"~:", {}, {-1e30L, 1e30L}},
        {"10:10", {9, 11}, {10}},
    };
    for (const Example& example : examples) {
        for (const long double number : example.alerts) {
            EXPECT_EQ(Alerts(example.range, number), true) << example.range << ' ' << NumberText(number);
        }
        for (const long double number : example.fine) {
            EXPECT_EQ(Alerts(example.range, number), false) << example.range << ' ' << NumberText(number);
        }
    }
}

TEST(ThresholdRangeTest, RefusesWhatIsNoRange) {
    for (const char* text :
         {"", "@", ":", "abc", "20:10", "10:20:30", "~", "10..20", "1e5", "nan", "inf", "10:~", "--1", "10MB:5kB"}) {
        EXPECT_FALSE(ThresholdRange::In(text)) << text;
    }
}

TEST(ThresholdRangeTest, UnitsAreConverted) {
    EXPECT_EQ(Alerts("10GB:", 9999999999.0L, "B"), true);
    EXPECT_EQ(Alerts("10GB:", 10000000000.0L, "B"), false);
    EXPECT_EQ(Alerts("10GiB:", 10000000000.0L, "B"), true);
    EXPECT_EQ(Alerts("~:1.5 KiB", 1536, "B"), false);
    EXPECT_EQ(Alerts("~:1.5KiB", 1537, "B"), true);
    EXPECT_EQ(Alerts("~:5min", 300, "s"), false);
    EXPECT_EQ(Alerts("~:5min", 301, "s"), true);
    EXPECT_EQ(Alerts("~:100ms", 101, "ms"), true);
    EXPECT_EQ(Alerts("~:1us", 1000, "ns"), false);
    EXPECT_EQ(Alerts("~:90%", 91, "%"), true);
    EXPECT_EQ(Alerts("1Gbit/s:", 100, "Mbit/s"), true);
    EXPECT_EQ(Alerts("10:20GB", 15, "GB"), false) << "the unit is meant for both";
    EXPECT_EQ(Alerts("10:20GB", 5, "GB"), true);
    EXPECT_EQ(Alerts("1000:", 999, "kB"), true) << "without a unit, the property's own";
}

TEST(ThresholdRangeTest, OtherUnitsCannotBeCompared) {
    EXPECT_EQ(Alerts("10GB:", 5, "s"), std::nullopt);
    EXPECT_EQ(Alerts("10GB:", 5), std::nullopt);
    EXPECT_EQ(Alerts("10furlongs:", 5, "m"), std::nullopt);
    EXPECT_EQ(Alerts("10furlongs:", 5, "furlongs"), true);
}

TEST(ThresholdRangeTest, IsInTheBaseUnitInPerformanceData) {
    EXPECT_EQ(InPerformanceData("10", "kB"), "10000");
    EXPECT_EQ(InPerformanceData("10GiB:", "B"), "10737418240:");
    EXPECT_EQ(InPerformanceData("~:1500", "ms"), "~:1.5");
    EXPECT_EQ(InPerformanceData("@10:20", "%"), "@10:20");
    EXPECT_EQ(InPerformanceData("0:", ""), "0:");
    EXPECT_EQ(InPerformanceData("@~:", ""), "@~:");
}

TEST(QuantityTest, IsReadFromTheUnscaledText) {
    const auto base = [](const std::string& plain, const std::string& exact) {
        const auto quantity = QuantityOf(plain, exact);
        return quantity ? NumberText(quantity->InBase()) + ' ' + quantity->unit.base : "none";
    };
    EXPECT_EQ(base("18446744073709551615", "18446744073709551615 B"), "18446744073709551615 B");
    EXPECT_EQ(base("16000000", "16000000 kB"), "16000000000 B");
    EXPECT_EQ(base("2", "2 KiB"), "2048 B");
    EXPECT_EQ(base("2300", "2300 MHz"), "2300000000 Hz");
    EXPECT_EQ(base("45", "45 %"), "45 %");
    EXPECT_EQ(base("40", "-40 dBm"), "-40 dBm");
    EXPECT_EQ(base("2351", "2351 × 0.01 °C"), "23.51 °C");
    EXPECT_EQ(base("7", "7 furlongs"), "7 furlongs");
    EXPECT_EQ(base("7", "7"), "7 ");
    EXPECT_EQ(base("3", "3 min"), "180 s");
    EXPECT_EQ(base("31", "0x1F"), "31 ") << "a text in another base";
    EXPECT_EQ(base("", ""), "none");
    EXPECT_EQ(base("nan", "nan"), "none");
    EXPECT_EQ(base("OK", "OK"), "none");
}

TEST(QuantityTest, APartOfAUnitIsAsExactAsTheNumberThatIsWritten) {
    for (int number = 0; number < 10000; ++number) {
        const auto quantity = QuantityOf(std::to_string(number), std::to_string(number) + " × 0.01 °C");
        const std::string written = NumberText(number / 100.0L) + "°C";
        std::string range = written;
        range.append(":").append(written);
        EXPECT_EQ(ThresholdRange::In(range)->Alerts(*quantity), false) << written;
    }
}

TEST(PerformanceDataTest, LabelsHaveNeitherQuotesNorEqualsSignsAndAreThereOnce) {
    PerformanceData data;
    for (const char* const identity : {"a", "b", "b"}) {
        data.Add({"it's=1|2\n", identity, {1, {}}, false, {}, {}});
    }
    const std::string text = data.Text();
    EXPECT_EQ(text, "'it_s_1¦2  of a'=1 'it_s_1¦2  of b'=1 'it_s_1¦2  of b#2'=1");
}

TEST(PerformanceDataTest, AThousandNumbersAreShownAndAllAreCounted) {
    PerformanceData data;
    for (int i = 0; i < 1500; ++i) {
        data.Add({std::to_string(i), {}, {1, {}}, false, {}, {}});
    }
    EXPECT_EQ(data.Count(), 1500U);
    EXPECT_EQ(data.ShownCount(), 1000U);
}

TEST(StatusTextTest, IsOneBoundedLineWithoutABar) {
    const std::string text = StatusText("a|b\nc\x1b[31m" + std::string(1 << 20, 'x'), 40);
    EXPECT_THAT(text, testing::StartsWith("a¦b c"));
    EXPECT_THAT(text, Not(HasSubstr("\x1b")));
    EXPECT_EQ(cimhttp::DisplayWidth(text), 40U);
    EXPECT_EQ(StatusText("short", 5), "short");
    EXPECT_EQ(StatusText("longer", 5), "long…");
}

TEST(ServiceStateTest, WhatIsWrongIsWorseThanWhatIsUnknown) {
    EXPECT_EQ(Worse(ServiceState::kCritical, ServiceState::kUnknown), ServiceState::kCritical);
    EXPECT_EQ(Worse(ServiceState::kUnknown, ServiceState::kWarning), ServiceState::kWarning);
    EXPECT_EQ(Worse(ServiceState::kOk, ServiceState::kUnknown), ServiceState::kUnknown);
    EXPECT_EQ(Worse(ServiceState::kWarning, ServiceState::kCritical), ServiceState::kCritical);
}
