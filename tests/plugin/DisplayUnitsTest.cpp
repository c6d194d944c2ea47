// What a compatible namespace makes of a number and the qualifier UNITS.

#include "display/DisplayUnits.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

using namespace NQORVYX20;

namespace {

std::string Data(const char* units, std::uint64_t number, const char* fixedPrefix = "", bool isAbbreviated = false) {
    return DisplayUnits(units).DataText(number, fixedPrefix, isAbbreviated);
}

std::string Time(const char* units, std::uint64_t number) {
    return DisplayUnits(units).TimeText(number).value_or("nothing");
}

} // namespace

TEST(DisplayUnits, TellTimeFromData) {
    for (const char* units : {"Seconds", "KiloSeconds", "MilliSeconds", "MicroSeconds", "NanoSeconds"}) {
        EXPECT_TRUE(DisplayUnits(units).IsTime()) << units;
        EXPECT_FALSE(DisplayUnits(units).IsData()) << units;
    }
    for (const char* units : {"Bytes", "Bits", "Bytes per Second", "Bits per Second", "KiloBytes", "PetaBits"}) {
        EXPECT_TRUE(DisplayUnits(units).IsData()) << units;
        EXPECT_FALSE(DisplayUnits(units).IsTime()) << units;
    }
}

TEST(DisplayUnits, KnowNoOtherSpelling) {
    for (const char* units : {"", "bytes", "kiloBytes", "Kilo Bytes", "Bytes Per Second", "seconds", "Kilo", "Volts"}) {
        EXPECT_FALSE(DisplayUnits(units).IsData()) << units;
        EXPECT_FALSE(DisplayUnits(units).IsTime()) << units;
    }
}

TEST(DisplayUnits, DivideANumberUntilItIsSmall) {
    EXPECT_EQ(Data("Bytes", 0), "0 Bytes");
    EXPECT_EQ(Data("Bytes", 1023), "1023 Bytes");
    EXPECT_EQ(Data("Bytes", 1024), "1 Kilobytes");
    EXPECT_EQ(Data("Bytes", 1536), "1.5 Kilobytes");
    EXPECT_EQ(Data("Bytes", std::uint64_t{1} << 40U), "1 Terabytes");
    EXPECT_EQ(Data("Bytes", std::uint64_t{1} << 60U), "1024 Petabytes") << "there is no larger prefix";
}

TEST(DisplayUnits, StartFromTheirOwnPrefix) {
    EXPECT_EQ(Data("KiloBytes", 2048), "2 Megabytes");
    EXPECT_EQ(Data("MegaBits", 512), "512 Megabits");
}

TEST(DisplayUnits, CountBitsPerSecondInThousands) {
    EXPECT_EQ(Data("Bits per Second", 1000), "1 Kilobits per second");
    EXPECT_EQ(Data("Bits per Second", 1000000000), "1 Gigabits per second");
    EXPECT_EQ(Data("Bytes per Second", 1000), "1000 Bytes per second");
}

TEST(DisplayUnits, ReachTheFixedPrefixWhateverTheNumber) {
    EXPECT_EQ(Data("Bytes", 1048576, "Kilo"), "1024 Kilobytes");
    EXPECT_EQ(Data("Bytes", 524288, "Mega"), "0.5 Megabytes");
    EXPECT_EQ(Data("GigaBytes", 3, "Kilo"), "3 Gigabytes") << "a larger prefix stays";
    EXPECT_EQ(Data("Bytes", 2048, "Peta"), "2 Kilobytes") << "which is no fixed prefix";
}

TEST(DisplayUnits, HaveShortForms) {
    EXPECT_EQ(Data("Bytes", 1536, "", true), "1.5 KB");
    EXPECT_EQ(Data("Bytes per Second", 2048, "", true), "2 KB/s");
    EXPECT_EQ(Data("Bits per Second", 2000, "", true), "2 Kbps");
    EXPECT_EQ(Data("Bits", 2048, "", true), "2 KBits");
}

TEST(DisplayUnits, WriteTimeAsAnInterval) {
    EXPECT_EQ(Time("Seconds", 90061), "1 day 01:01:01");
    EXPECT_EQ(Time("MilliSeconds", 61001), "00:01:01.001000");
    EXPECT_EQ(Time("NanoSeconds", 1000), "00:00:00.000001");
}

TEST(DisplayUnits, GiveNoTimeForMoreDaysThanAnIntervalHolds) {
    constexpr std::uint64_t kDay = 86400;
    EXPECT_NE(Time("Seconds", kDay * 100000000 - 1), "nothing");
    EXPECT_EQ(Time("Seconds", kDay * 100000000), "nothing");
}

TEST(DisplayUnits, GiveTheEmptyIntervalForTimeWithALargePrefix) {
    EXPECT_EQ(Time("KiloSeconds", 5), Time("Seconds", 0));
}

TEST(DisplayUnits, RoundToOneDecimalAsTheStandardLibraryDoes) {
    std::mt19937_64 random(1); // the same numbers each time
    for (int i = 0; i < 20000; ++i) {
        const std::uint64_t number = random() >> (random() % 64);
        const float kilobytes = static_cast<float>(number) / 1024;
        char text[64];
        std::snprintf(text, sizeof text, "%.1f", static_cast<double>(kilobytes));
        std::string expected(text);
        if (expected.substr(expected.size() - 2) == ".0") {
            expected.resize(expected.size() - 2);
        }
        ASSERT_EQ(Data("Bytes", number, "Kilo"), expected + " Kilobytes") << number;
    }
    EXPECT_EQ(Data("Bytes", 256, "Kilo"), "0.2 Kilobytes"); // a tie goes to the even digit
    EXPECT_EQ(Data("Bytes", 768, "Kilo"), "0.8 Kilobytes");
}
