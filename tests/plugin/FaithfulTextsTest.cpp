#include "display/FaithfulTexts.h"

#include "PropertyTest.h"
#include "display/DisplayQualifiers.h"

#include <algorithm>
#include <limits>
#include <random>

using namespace NQORVYX20;

namespace {

constexpr unsigned long long kMax64 = std::numeric_limits<unsigned long long>::max();

/// A number of any type; the type is that of the C++ literal.
struct TQuantity {
    const char* units;
    const char* programmatic;
    TCIMValue value;
    const char* text;
    const char* unscaled;
};

TCIMValue Sint8(int number) { return {static_cast<signed char>(number)}; }
TCIMValue Sint16(int number) { return {static_cast<short>(number)}; }
TCIMValue Real32(float number) { return {number}; }
TCIMValue Real64(double number) { return {number}; }

Qualifiers UnitsOf(const TQuantity& quantity) {
    Qualifiers qualifiers;
    if (quantity.units[0] != '\0') {
        qualifiers.emplace_back("Units", TCIMValue(quantity.units));
    }
    if (quantity.programmatic[0] != '\0') {
        qualifiers.emplace_back("PUnit", TCIMValue(quantity.programmatic));
    }
    return qualifiers;
}

class FaithfulTextsTest : public PropertyTest {
  protected:
    FaithfulTexts Texts(TCIMValue::TCIMType type, const Qualifiers& qualifiers) {
        return {{}, type, TCimHTTPPropertyDecl::DisplayQualifiersOf(Declare(NullOf(type), qualifiers))};
    }

    std::string Shown(const TCIMValue& value, const Qualifiers& qualifiers, const DisplayChoice& choice = {}) {
        return Texts(value.GetType(), qualifiers).Of(value, choice);
    }

    void ExpectShown(const std::vector<TQuantity>& quantities) {
        for (const TQuantity& quantity : quantities) {
            SCOPED_TRACE(quantity.value.ToString(10) + " '" + quantity.units + "' '" + quantity.programmatic + "'");
            EXPECT_EQ(Shown(quantity.value, UnitsOf(quantity)), quantity.text);
            EXPECT_EQ(Shown(quantity.value, UnitsOf(quantity), {true, false, nullptr}), quantity.unscaled);
        }
    }

    /// The texts of numbers under one value map.
    void ExpectMapped(const Qualifiers& map, const std::vector<std::pair<TCIMValue, std::string>>& expected) {
        for (const auto& [value, text] : expected) {
            SCOPED_TRACE(value.ToString(10));
            EXPECT_EQ(Shown(value, map), text);
        }
    }
};

Qualifiers Map(const std::vector<std::string>& entries, const std::vector<std::string>& texts) {
    return {{"ValueMap", ArrayOf(entries)}, {"Values", ArrayOf(texts)}};
}

} // namespace

// --- Units -----------------------------------------------------------------------------------------------------------

TEST_F(FaithfulTextsTest, SizesAreExactWhenSmallAndCountedIn1024s) {
    ExpectShown({{"Bytes", "byte", Uint64(0), "0 B", "0 B"},
                 {"Bytes", "byte", Uint64(1), "1 B", "1 B"},
                 {"Bytes", "byte", Uint64(1023), "1023 B", "1023 B"},
                 {"Bytes", "byte", Uint64(1024), "1 KiB", "1024 B"},
                 {"Bytes", "byte", Uint64(1500), "1500 B", "1500 B"},
                 {"Bytes", "byte", Uint64(1536), "1.5 KiB", "1536 B"},
                 {"Bytes", "byte", Uint64(9999), "9999 B", "9999 B"},
                 {"Bytes", "byte", Uint64(10000), "9.8 KiB", "10000 B"},
                 {"Bytes", "byte", Uint64(1048575), "1.0 MiB", "1048575 B"},
                 {"Bytes", "byte", Uint64(1048576), "1 MiB", "1048576 B"},
                 {"Bytes", "byte", Uint64(1126400), "1100 KiB", "1126400 B"},
                 {"Bytes", "", Uint32(4096), "4 KiB", "4096 B"},
                 {"Bytes", "", Uint16(512), "512 B", "512 B"},
                 {"Bytes", "", Uint64(17179869184), "16 GiB", "17179869184 B"},
                 {"Bytes", "", Uint64(17179000000), "16.0 GiB", "17179000000 B"},
                 {"Bytes", "", Uint64(1099511627776), "1 TiB", "1099511627776 B"},
                 {"Bytes", "", Uint64(1000000000000), "931.3 GiB", "1000000000000 B"},
                 {"Bytes", "", Uint64(kMax64 - 1), "16.0 EiB", "18446744073709551614 B"},
                 {"Bytes", "", Uint64(kMax64), "18446744073709551615 B", "18446744073709551615 B"},
                 {"", "byte", Uint64(2048), "2 KiB", "2048 B"},
                 {"", "byte", Uint64(123456789), "117.7 MiB", "123456789 B"},
                 {"", "byte", Uint64(5), "5 B", "5 B"},
                 {"KiloBytes", "", Uint64(1), "1 KiB", "1 KiB"},
                 {"KiloBytes", "", Uint64(2048), "2 MiB", "2048 KiB"},
                 {"KiloBytes", "", Uint32(16777216), "16 GiB", "16777216 KiB"},
                 {"KiloBytes", "", Uint64(16315032), "15.6 GiB", "16315032 KiB"},
                 {"KiloBytes", "byte * 10^3", Uint64(1), "1 kB", "1 kB"},
                 {"KiloBytes", "byte * 10^3", Uint64(16000000), "16 GB", "16000000 kB"},
                 {"KiloBytes", "byte * 10^3", Uint32(1234), "1.234 MB", "1234 kB"},
                 {"KiloBytes", "byte * 10^3", Uint32(12345), "12.3 MB", "12345 kB"},
                 {"KiloBytes", "byte * 2^10", Uint64(1), "1 KiB", "1 KiB"},
                 {"KiloBytes", "byte * 2^10", Uint64(1025), "1025 KiB", "1025 KiB"},
                 {"KiloBytes", "byte * 2^10", Uint64(4194304), "4 GiB", "4194304 KiB"},
                 {"KiloBytes", "byte * 2^10", Uint64(kMax64), "18446744073709551615 KiB", "18446744073709551615 KiB"},
                 {"MegaBytes", "", Uint64(512), "512 MiB", "512 MiB"},
                 {"GigaBytes", "", Uint64(3072), "3 TiB", "3072 GiB"},
                 {"", "byte * 512", Uint64(2048), "1 MiB", "2048 × 512 B"},
                 {"Bits", "bit", Uint16(64), "64 bit", "64 bit"},
                 {"Bits", "bit", Uint64(8192), "8192 bit", "8192 bit"},
                 {"Bits", "", Uint16(32), "32 bit", "32 bit"},
                 {"Bits", "", Uint32(1000000), "1000000 bit", "1000000 bit"},
                 {"KiloBits", "", Uint32(64), "64 kbit", "64 kbit"},
                 {"DoubleWords", "dataword * 2", Uint32(4), "8 words", "4 × 2 words"},
                 {"DoubleWords", "dataword * 2", Uint8(1), "2 words", "1 × 2 words"},
                 {"", "dataword", Uint8(1), "1 word", "1 word"}});
}

TEST_F(FaithfulTextsTest, RatesAreCountedInThousands) {
    ExpectShown({{"Bits per Second", "bit / second", Uint64(0), "0 bit/s", "0 bit/s"},
                 {"Bits per Second", "bit / second", Uint64(10000000000), "10 Gbit/s", "10000000000 bit/s"},
                 {"Bits per Second", "bit / second", Uint32(9600), "9.6 kbit/s", "9600 bit/s"},
                 {"Bits per Second", "bit / second", Uint64(1544000), "1.544 Mbit/s", "1544000 bit/s"},
                 {"Bits per Second", "bit / second", Uint64(123456), "123.5 kbit/s", "123456 bit/s"},
                 {"Bits per Second", "", Uint64(2500000000), "2.5 Gbit/s", "2500000000 bit/s"},
                 {"KiloBits per Second", "", Uint32(100000), "100 Mbit/s", "100000 kbit/s"},
                 {"KiloBits per Second", "", Uint32(56), "56 kbit/s", "56 kbit/s"},
                 {"KiloBits Per Second", "", Uint32(1), "1 kbit/s", "1 kbit/s"},
                 {"KiloBytes per Second", "byte / second * 10^3", Uint32(550), "550 kB/s", "550 kB/s"},
                 {"KiloBytes per Second", "byte / second * 10^3", Uint32(550000), "550 MB/s", "550000 kB/s"},
                 {"KiloBytes per Second", "", Uint32(1500), "1.5 MB/s", "1500 kB/s"},
                 {"Bytes per Second", "", Uint64(1048576), "1.0 MB/s", "1048576 B/s"},
                 {"", "byte / second * 2^10", Uint64(2048), "2 MiB/s", "2048 KiB/s"},
                 {"Hertz", "hertz", Uint32(60), "60 Hz", "60 Hz"},
                 {"Hertz", "hertz", Uint32(44100), "44.1 kHz", "44100 Hz"},
                 {"Hertz", "hertz", Uint32(4294967294U), "4.3 GHz", "4294967294 Hz"},
                 {"Hertz", "hertz", Uint32(4294967295U), "4294967295 Hz", "4294967295 Hz"},
                 {"MegaHertz", "hertz * 10^6", Uint32(2300), "2.3 GHz", "2300 MHz"},
                 {"MegaHertz", "hertz * 10^6", Uint32(800), "800 MHz", "800 MHz"},
                 {"MegaHertz", "", Uint32(2666), "2.666 GHz", "2666 MHz"},
                 {"MegaHertz", "", Uint32(1), "1 MHz", "1 MHz"},
                 {"", "hertz * 10^6", Uint32(100), "100 MHz", "100 MHz"},
                 {"", "hertz * 10^6", Uint32(12345), "12.3 GHz", "12345 MHz"},
                 {"Pixels per Inch", "pixel / inch", Uint32(300), "300 px/in", "300 px/in"},
                 {"Pixels per Inch", "pixel / inch", Uint32(12000), "12000 px/in", "12000 px/in"},
                 {"Counts per Inch", "count / inch", Uint32(400), "400 count/in", "400 count/in"},
                 {"Revolutions per Minute", "", Uint64(1200), "1200 rpm", "1200 rpm"},
                 {"Revolutions per Minute", "", Uint64(15000), "15000 rpm", "15000 rpm"},
                 {"Tenths of Revolutions per Minute", "revolution / minute * 10^-1", Uint32(72000), "7200 rpm",
                  "72000 × 0.1 rpm"},
                 {"Tenths of Revolutions per Minute", "revolution / minute * 10^-1", Uint32(54005), "5400.5 rpm",
                  "54005 × 0.1 rpm"},
                 {"BTU per Hour", "", Uint16(3412), "3412 BTU/h", "3412 BTU/h"},
                 {"Per Thousand Packets", "", Uint32(3), "3 per 1000 packets", "3 per 1000 packets"},
                 {"Per Thousand Packets", "", Uint32(0), "0 per 1000 packets", "0 per 1000 packets"}});
}

TEST_F(FaithfulTextsTest, SpansOfTimeAreWrittenAsPeopleDo) {
    ExpectShown({{"Seconds", "second", Uint64(0), "0 s", "0 s"},
                 {"Seconds", "second", Uint64(1), "1 s", "1 s"},
                 {"Seconds", "second", Uint32(30), "30 s", "30 s"},
                 {"Seconds", "second", Uint32(59), "59 s", "59 s"},
                 {"Seconds", "second", Uint32(60), "1 min", "60 s"},
                 {"Seconds", "second", Uint16(90), "00:01:30", "90 s"},
                 {"Seconds", "second", Uint16(180), "3 min", "180 s"},
                 {"Seconds", "second", Uint16(3600), "1 h", "3600 s"},
                 {"Seconds", "second", Uint16(3661), "01:01:01", "3661 s"},
                 {"Seconds", "", Uint32(86400), "1 d", "86400 s"},
                 {"Seconds", "", Uint32(86399), "23:59:59", "86399 s"},
                 {"Seconds", "", Uint64(183845), "2 d 03:04:05", "183845 s"},
                 {"Seconds", "", Uint64(90000), "1 d 01:00:00", "90000 s"},
                 {"Seconds", "", Uint32(4294967295U), "4294967295 s", "4294967295 s"},
                 {"Seconds", "", Uint64(kMax64), "18446744073709551615 s", "18446744073709551615 s"},
                 {"Seconds", "", Uint64(kMax64 - 1), "213503982334601 d 07:00:14", "18446744073709551614 s"},
                 {"", "second", Uint8(5), "5 s", "5 s"},
                 {"", "second", Uint16(7200), "2 h", "7200 s"},
                 {"MilliSeconds", "second * 10^-3", Uint32(0), "0 s", "0 ms"},
                 {"MilliSeconds", "second * 10^-3", Uint32(250), "250 ms", "250 ms"},
                 {"MilliSeconds", "second * 10^-3", Uint32(1500), "1.5 s", "1500 ms"},
                 {"MilliSeconds", "second * 10^-3", Uint32(59999), "60.0 s", "59999 ms"},
                 {"MilliSeconds", "second * 10^-3", Uint64(90061000), "1 d 01:01:01", "90061000 ms"},
                 {"MilliSeconds", "second * 10^-3", Uint64(90500), "00:01:30.5", "90500 ms"},
                 {"MilliSeconds", "second * 10^-3", Uint64(90001), "00:01:30.0", "90001 ms"},
                 {"MilliSeconds", "", Uint64(3600000), "1 h", "3600000 ms"},
                 {"Milliseconds", "second * 10^-3", Uint64(2), "2 ms", "2 ms"},
                 {"MicroSeconds", "second * 10^-6", Uint32(1), "1 µs", "1 µs"},
                 {"MicroSeconds", "second * 10^-6", Uint64(1500), "1.5 ms", "1500 µs"},
                 {"MicroSeconds", "", Uint64(1234567), "1.2 s", "1234567 µs"},
                 {"MicroSeconds", "", Uint64(2000000), "2 s", "2000000 µs"},
                 {"NanoSeconds", "", Uint32(500), "500 ns", "500 ns"},
                 {"NanoSeconds", "second * 10^-9", Uint64(1000000000), "1 s", "1000000000 ns"},
                 {"NanoSeconds", "second * 10^-9", Uint64(12345), "12.3 µs", "12345 ns"},
                 {"Hundredths of Seconds", "", Uint32(50), "500 ms", "50 × 0.01 s"},
                 {"Hundredths of Seconds", "", Uint32(6000), "1 min", "6000 × 0.01 s"},
                 {"Hundredths of Seconds", "", Uint32(12345), "00:02:03.5", "12345 × 0.01 s"},
                 {"Tenths of Seconds", "", Uint32(15), "1.5 s", "15 × 0.1 s"},
                 {"Tenths of Seconds", "", Uint32(36000), "1 h", "36000 × 0.1 s"},
                 {"250 nanoseconds", "second * 250 * 10^-9", Uint8(4), "1 µs", "4 × 250 × 10^-9 s"},
                 {"250 nanoseconds", "second * 250 * 10^-9", Uint8(1), "250 ns", "1 × 250 × 10^-9 s"},
                 {"250 nanoseconds", "", Uint8(2), "500 ns", "2 × 250 × 10^-9 s"},
                 {"Minutes", "minute", Uint32(3), "3 min", "3 min"},
                 {"Minutes", "minute", Uint32(90), "01:30:00", "90 min"},
                 {"Minutes", "", Sint16(-300), "-5 h", "-300 min"},
                 {"Minutes", "", Sint16(60), "1 h", "60 min"},
                 {"Minutes", "", TCIMValue(-1), "-1 min", "-1 min"},
                 {"Hours", "hour", Uint8(24), "1 d", "24 h"},
                 {"Hours", "hour", Uint8(5), "5 h", "5 h"},
                 {"Hours", "", Uint64(36), "1 d 12:00:00", "36 h"},
                 {"Days", "day", Uint32(7), "7 d", "7 d"},
                 {"Days", "day", Uint32(365), "365 d", "365 d"},
                 {"Weeks", "week", Uint32(2), "14 d", "2 weeks"}});
}

TEST_F(FaithfulTextsTest, ElectricityIsShownWithPrefixes) {
    ExpectShown({{"MilliVolts", "volt * 10^-3", Uint32(12000), "12 V", "12000 mV"},
                 {"MilliVolts", "volt * 10^-3", Uint32(11950), "11.95 V", "11950 mV"},
                 {"MilliVolts", "volt * 10^-3", Uint32(12345), "12.3 V", "12345 mV"},
                 {"MilliVolts", "volt * 10^-3", Uint64(500), "500 mV", "500 mV"},
                 {"MilliVolts", "volt * 10^-3", Uint64(0), "0 V", "0 mV"},
                 {"MilliVolts", "volt * 10^-3", Sint16(-5000), "-5 V", "-5000 mV"},
                 {"Tenths of MilliVolts", "volt * 10^-4", Uint32(10000), "1 V", "10000 × 10^-4 V"},
                 {"Tenths of MilliVolts", "volt * 10^-4", Uint32(5), "500 µV", "5 × 10^-4 V"},
                 {"Tenths of MilliAmps", "ampere * 10^-4", Uint32(15000), "1.5 A", "15000 × 10^-4 A"},
                 {"Tenths of MilliAmps", "ampere * 10^-4", Uint32(1), "100 µA", "1 × 10^-4 A"},
                 {"Amps at 120 Volts", "", Sint16(5), "5 A at 120 V", "5 A at 120 V"},
                 {"Amps at 120 Volts", "", Sint16(-1), "-1 A at 120 V", "-1 A at 120 V"},
                 {"MilliWatts", "watt * 10^-3", Uint32(15000), "15 W", "15000 mW"},
                 {"MilliWatts", "watt * 10^-3", Uint32(750000), "750 W", "750000 mW"},
                 {"MilliWatts", "watt * 10^-3", Uint32(2500000), "2.5 kW", "2500000 mW"},
                 {"", "watt * 10^-3", Uint64(90), "90 mW", "90 mW"},
                 {"", "watt", Uint64(1200), "1.2 kW", "1200 W"},
                 {"MilliWattHours", "watt * hour * 10^-3", Uint32(50000), "50 Wh", "50000 mWh"},
                 {"MilliWattHours", "watt * hour * 10^-3", Uint32(999), "999 mWh", "999 mWh"},
                 {"MilliWattHours", "", Uint32(4000), "4 Wh", "4000 mWh"},
                 {"", "volt * ampere", Uint32(750), "750 VA", "750 VA"},
                 {"", "volt ampere * 10^3", Uint32(3), "3 kVA", "3 kVA"},
                 {"", "-dBm", Uint32(3), "3 -dBm", "3 -dBm"},
                 {"-dBm", "decibel(m) * -1", Uint32(40), "-40 dBm", "-40 dBm"},
                 {"", "decibel(m) * -1", Uint16(40), "-40 dBm", "-40 dBm"},
                 {"", "decibel(m) * -1", Uint16(0), "0 dBm", "0 dBm"},
                 {"-dBm", "", Uint32(72), "-72 dBm", "-72 dBm"},
                 {"dBm", "", Sint8(-72), "-72 dBm", "-72 dBm"},
                 {"Tenths of Decibels", "decibel * 10^-1", Uint32(235), "23.5 dB", "235 × 0.1 dB"},
                 {"Tenths of Decibels", "decibel * 10^-1", Uint32(30), "3 dB", "30 × 0.1 dB"}});
}

TEST_F(FaithfulTextsTest, WhatHasNoPrefixesIsShownAsItIs) {
    ExpectShown({{"Percent", "percent", Uint8(45), "45 %", "45 %"},
                 {"Percent", "percent", Uint16(100), "100 %", "100 %"},
                 {"Percent", "", Uint8(0), "0 %", "0 %"},
                 {"Percentage", "", Uint8(7), "7 %", "7 %"},
                 {"Percentage", "percent", Uint8(99), "99 %", "99 %"},
                 {"Percentage", "", Uint16(150), "150 %", "150 %"},
                 {"Hundredths of Percent", "percent * 10^-2", TCIMValue(1250), "12.5 %", "1250 × 0.01 %"},
                 {"Hundredths of Percent", "percent * 10^-2", TCIMValue(-1), "-0.01 %", "-1 × 0.01 %"},
                 {"Hundredths of Percent", "percent * 10^-2", TCIMValue(12345), "123.5 %", "12345 × 0.01 %"},
                 {"Hundredths of Degrees C", "degree celsius * 10^-2", Uint32(2350), "23.5 °C", "2350 × 0.01 °C"},
                 {"Hundredths of Degrees C", "degree celsius * 10^-2", Uint32(0), "0 °C", "0 × 0.01 °C"},
                 {"Degrees C", "", Sint16(-40), "-40 °C", "-40 °C"},
                 {"Degrees F", "", Sint16(98), "98 °F", "98 °F"},
                 {"Inches", "inch", Real32(13.3F), "13.3 in", "13.3 in"},
                 {"Inches", "inch", Real32(0.0F), "0 in", "0 in"},
                 {"Feet", "foot", Real64(6.25), "6.25 ft", "6.25 ft"},
                 {"Feet", "foot", Real32(100000.0F), "100000 ft", "1e+05 ft"},
                 {"Pounds", "pound", Real32(2.5F), "2.5 lb", "2.5 lb"},
                 {"Us", "rack unit", Real32(1.5F), "1.5 U", "1.5 U"},
                 {"Us", "rack unit", Uint16(42), "42 U", "42 U"},
                 {"Pixels", "pixel", Uint32(1920), "1920 px", "1920 px"},
                 {"Pixels", "pixel", Uint32(12288), "12288 px", "12288 px"},
                 {"Thousandths", "", Uint32(1500), "1.5", "1500 × 0.001"},
                 {"Thousandths", "", Uint32(7), "0.007", "7 × 0.001"},
                 {"PCI clock cycles", "cycle", Uint8(8), "8 PCI clock cycles", "8 PCI clock cycles"},
                 {"", "cycle", Uint8(8), "8 cycles", "8 cycles"},
                 {"", "cycle", Uint8(1), "1 cycle", "1 cycle"},
                 {"Clock Ticks", "count", Uint64(12345678), "12345678 Clock Ticks", "12345678 Clock Ticks"},
                 {"", "count", Uint64(7), "7", "7"},
                 {"", "packet", Uint64(1), "1 packet", "1 packet"},
                 {"", "packet", Uint64(2000), "2000 packets", "2000 packets"},
                 {"furlongs", "", Uint8(7), "7 furlongs", "7 furlongs"},
                 {"", "parsec * 10^3", Uint8(7), "7 parsec * 10^3", "7 parsec * 10^3"},
                 {"Bytes", "no such unit", Uint16(2048), "2 KiB", "2048 B"},
                 {"no such unit", "byte", Uint16(2048), "2 KiB", "2048 B"}});
}

TEST_F(FaithfulTextsTest, RealsAreShownExactlyWhereFourDigitsSuffice) {
    ExpectShown({{"", "volt", Real32(-23.5F), "-23.5 V", "-23.5 V"},
                 {"", "volt", Real64(0.0001), "100 µV", "1e-04 V"},
                 {"", "volt", Real64(123.456), "123.5 V", "123.456 V"},
                 {"", "volt", Real64(1.2e-13), "0.12 pV", "1.2e-13 V"},
                 {"", "volt", Real64(1e300), "1e300 V", "1e+300 V"},
                 {"", "degree celsius", Real64(23.49), "23.49 °C", "23.49 °C"},
                 {"", "degree celsius", Real64(0.004), "0.004 °C", "0.004 °C"},
                 {"", "byte", Real64(0.5), "0.5 B", "0.5 B"},
                 {"", "hertz", Real64(2.4e9), "2.4 GHz", "2.4e+09 Hz"},
                 {"", "volt", Real64(std::numeric_limits<double>::infinity()), "inf V", "inf V"}});
}

TEST_F(FaithfulTextsTest, SpellingsOfUnitsDoNotMatter) {
    ExpectShown({{"bytes", "", Uint16(2048), "2 KiB", "2048 B"},
                 {"BYTES", "", Uint16(2048), "2 KiB", "2048 B"},
                 {"Byte", "", Uint16(2048), "2 KiB", "2048 B"},
                 {"  Bytes ", "", Uint16(2048), "2 KiB", "2048 B"},
                 {"kilobyte", "", Uint16(2048), "2 MiB", "2048 KiB"},
                 {"Kilo Bytes", "", Uint16(2048), "2 MiB", "2048 KiB"},
                 {"KILOBYTES", "", Uint16(2048), "2 MiB", "2048 KiB"},
                 {"MB", "", Uint16(2048), "2 GiB", "2048 MiB"},
                 {"second", "", Uint16(60), "1 min", "60 s"},
                 {"SECONDS", "", Uint16(60), "1 min", "60 s"},
                 {"Milli-Seconds", "", Uint16(60), "60 ms", "60 ms"},
                 {"Bits  per   second", "", Uint16(64), "64 bit/s", "64 bit/s"},
                 {"bits/second", "", Uint16(64), "64 bits/second", "64 bits/second"},
                 {"bps", "", Uint16(64), "64 bit/s", "64 bit/s"},
                 {"Mbps", "", Uint16(100), "100 Mbit/s", "100 Mbit/s"},
                 {"MHz", "", Uint16(800), "800 MHz", "800 MHz"},
                 {"Megahertz", "", Uint16(800), "800 MHz", "800 MHz"},
                 {"GHz", "", Real32(2.5F), "2.5 GHz", "2.5 GHz"},
                 {"mV", "", Uint16(500), "500 mV", "500 mV"},
                 {"RPM", "", Uint16(900), "900 rpm", "900 rpm"},
                 {"rpm", "", Uint16(900), "900 rpm", "900 rpm"},
                 {"%", "", Uint16(9), "9 %", "9 %"},
                 {"percent", "", Uint16(9), "9 %", "9 %"},
                 {"Celsius", "", Uint16(9), "9 °C", "9 °C"},
                 {"degrees celsius", "", Uint16(9), "9 °C", "9 °C"},
                 {"Amps", "", Uint16(9), "9 A", "9 A"},
                 {"milliamps", "", Uint16(900), "900 mA", "900 mA"},
                 {"Watts", "", Uint16(900), "900 W", "900 W"},
                 {"watt hours", "", Uint16(900), "900 Wh", "900 Wh"},
                 {"inch", "", Uint16(9), "9 in", "9 in"},
                 {"foot", "", Uint16(9), "9 ft", "9 ft"},
                 {"100 milliseconds", "", Uint16(5), "500 ms", "5 × 100 × 10^-3 s"},
                 {"", "BYTE*10^3", Uint16(5), "5 kB", "5 kB"},
                 {"", "byte*10 ^ 3", Uint16(5), "5 kB", "5 kB"},
                 {"", " bit / second * 10^+6 ", Uint16(5), "5 Mbit/s", "5 Mbit/s"},
                 {"", "meter * meter", Uint16(5), "5 m²", "5 m²"},
                 {"", "meter / second / second", Uint16(5), "5 m/(s²)", "5 m/(s²)"},
                 {"", "byte / 8", Uint16(16), "2 B", "16 × 1/8 B"},
                 {"", "second * 2.5", Uint16(4), "10 s", "4 × 25 × 10^-1 s"}});
}

TEST_F(FaithfulTextsTest, TextsThatAreNoUnitsFollowTheNumber) {
    for (const char* const text : {"byte *", "* byte", "10^3", "byte * 10^", "byte * 3^2", "byte * 10^999", "byte ** 2",
                                   "byte * 0", "byte / 0", "byte * 99999999999999999999", "byte second"}) {
        EXPECT_EQ(Shown(Uint8(7), {{"PUnit", TCIMValue(text)}}), std::string("7 ") + text);
    }
    EXPECT_EQ(Shown(Uint8(7), {{"Units", TCIMValue("")}}), "7");
    EXPECT_EQ(Shown(Uint8(7), {{"Units", TCIMValue("-")}}), "7 -");
    EXPECT_EQ(Shown(Uint8(7), {{"Units", NullOf(TCIMValue::TCIMType::eCIMString)}}), "7");
    EXPECT_EQ(Shown(Uint8(7), {{"Units", Uint8(3)}}), "7");
}

TEST_F(FaithfulTextsTest, ElementsOfArraysHaveTheirUnits) {
    const auto sizes = ArrayOf<unsigned short>({512, 2048, 1500});
    EXPECT_EQ(Texts(sizes.GetType(), {{"Units", TCIMValue("Bytes")}}).OfElements(sizes, {}),
              (std::vector<std::string>{"512 B", "2 KiB", "1500 B"}));
    EXPECT_EQ(Shown(sizes, {{"Units", TCIMValue("Bytes")}}), "{512 B, 2 KiB, 1500 B}");
}

// --- Value maps ------------------------------------------------------------------------------------------------------

TEST_F(FaithfulTextsTest, EntriesAreDecimalHexadecimalOctalOrBinary) {
    ExpectMapped(Map({"1", "0x10", "0X1F", "017", "101b", "11B", "+9", "-1"}, {"a", "b", "c", "d", "e", "f", "g", "h"}),
                 {{Uint32(1), "a"},
                  {Uint32(16), "b"},
                  {Uint32(31), "c"},
                  {Uint32(15), "d"},
                  {Uint32(5), "e"},
                  {Uint32(3), "f"},
                  {Uint32(9), "g"},
                  {Uint32(10), "10"},
                  {Uint32(17), "17"},
                  {Uint32(0), "0"}});
    ExpectMapped(Map({"08", "09", "0"}, {"eight", "nine", "zero"}),
                 {{Uint8(8), "eight"}, {Uint8(9), "nine"}, {Uint8(0), "zero"}});
}

TEST_F(FaithfulTextsTest, RangesIncludeTheirBoundsAndGapsHaveNoText) {
    ExpectMapped(
        Map({"0", "1", "2..10", "20..0x1F", "40..", "..5"}, {"Unknown", "Other", "Few", "Some", "Many", "Low"}),
        {{Uint16(0), "Unknown"},
         {Uint16(1), "Other"},
         {Uint16(2), "Few"},
         {Uint16(10), "Few"},
         {Uint16(11), "11"},
         {Uint16(19), "19"},
         {Uint16(20), "Some"},
         {Uint16(31), "Some"},
         {Uint16(32), "32"},
         {Uint16(39), "39"},
         {Uint16(40), "Many"},
         {Uint16(65535), "Many"}});
    ExpectMapped(Map({"..5", "7..7", "9 .. 12"}, {"Low", "Seven", "Wide"}), {{Uint8(0), "Low"},
                                                                             {Uint8(5), "Low"},
                                                                             {Uint8(6), "6"},
                                                                             {Uint8(7), "Seven"},
                                                                             {Uint8(8), "8"},
                                                                             {Uint8(9), "Wide"},
                                                                             {Uint8(12), "Wide"},
                                                                             {Uint8(13), "13"}});
}

TEST_F(FaithfulTextsTest, TheCatchAllTakesWhatNoOtherEntryClaimsWhereverItStands) {
    for (const auto& map : {Map({"..", "0", "3..5"}, {"DMTF Reserved", "Unknown", "Known"}),
                            Map({"0", "..", "3..5"}, {"Unknown", "DMTF Reserved", "Known"}),
                            Map({"0", "3..5", ".."}, {"Unknown", "Known", "DMTF Reserved"})}) {
        ExpectMapped(map, {{Uint16(0), "Unknown"},
                           {Uint16(1), "DMTF Reserved"},
                           {Uint16(3), "Known"},
                           {Uint16(5), "Known"},
                           {Uint16(6), "DMTF Reserved"},
                           {Uint16(65535), "DMTF Reserved"}});
    }
}

TEST_F(FaithfulTextsTest, VendorRangesInHexadecimalLeaveZeroAlone) {
    const Qualifiers map =
        Map({"0", "1", "2", "..", "0x8000.."}, {"Unknown", "Other", "OK", "DMTF Reserved", "Vendor Reserved"});
    ExpectMapped(map, {{Uint16(0), "Unknown"},
                       {Uint16(2), "OK"},
                       {Uint16(3), "DMTF Reserved"},
                       {Uint16(0x7FFF), "DMTF Reserved"},
                       {Uint16(0x8000), "Vendor Reserved"},
                       {Uint16(32769), "Vendor Reserved"},
                       {Uint16(65535), "Vendor Reserved"}});
    const Qualifiers bounded = Map({"0..0x7FFF", "0x8000..0xFFFF", "0x10000.."}, {"a", "b", "c"});
    ExpectMapped(bounded, {{Uint32(0), "a"},
                           {Uint32(32767), "a"},
                           {Uint32(32768), "b"},
                           {Uint32(65535), "b"},
                           {Uint32(65536), "c"},
                           {Uint32(4294967295U), "c"}});
    ExpectMapped(Map({"16384..0xFFFFFFFF"}, {"Vendor"}), {{Uint32(16383), "16383"}, {Uint32(16384), "Vendor"}});
}

TEST_F(FaithfulTextsTest, SignedNumbersHaveMaps) {
    ExpectMapped(Map({"-128..-2", "-1", "0", "1..127"}, {"Behind", "Just behind", "On time", "Ahead"}),
                 {{Sint8(-128), "Behind"},
                  {Sint8(-2), "Behind"},
                  {Sint8(-1), "Just behind"},
                  {Sint8(0), "On time"},
                  {Sint8(1), "Ahead"},
                  {Sint8(127), "Ahead"}});
    ExpectMapped(Map({"..-1", "0.."}, {"minus", "plus"}), {{TCIMValue(std::numeric_limits<long long>::min()), "minus"},
                                                           {TCIMValue(-1LL), "minus"},
                                                           {TCIMValue(0LL), "plus"},
                                                           {TCIMValue(std::numeric_limits<long long>::max()), "plus"}});
    ExpectMapped(Map({"-5", ".."}, {"five below", "other"}), {{Uint8(5), "other"}, {Sint16(-5), "five below"}});
    ExpectMapped(Map({"-9223372036854775808", "9223372036854775808"}, {"least", "too large"}),
                 {{TCIMValue(std::numeric_limits<long long>::min()), "least"},
                  {TCIMValue(std::numeric_limits<long long>::max()), "9223372036854775807"}});
}

TEST_F(FaithfulTextsTest, TheWholeRangeOfUint64IsMapped) {
    ExpectMapped(Map({"0", "18446744073709551615", "18446744073709551616"}, {"none", "no limit", "beyond"}),
                 {{Uint64(0), "none"}, {Uint64(kMax64), "no limit"}, {Uint64(kMax64 - 1), "18446744073709551614"}});
}

TEST_F(FaithfulTextsTest, TextsHaveMaps) {
    ExpectMapped(Map({"eth", "fc", "1.2", ".."}, {"Ethernet", "Fibre Channel", "Version", "Another"}),
                 {{TCIMValue("eth"), "Ethernet"},
                  {TCIMValue("fc"), "Fibre Channel"},
                  {TCIMValue("1.2"), "Version"},
                  {TCIMValue("ETH"), "Another"},
                  {TCIMValue(""), "Another"}});
    ExpectMapped(Map({"eth"}, {"Ethernet"}), {{TCIMValue("wlan"), "wlan"}});
    ExpectMapped({{"Values", ArrayOf<std::string>({"a", "b"})}}, {{TCIMValue("0"), "0"}});
}

TEST_F(FaithfulTextsTest, ValuesAloneCountFromZero) {
    const Qualifiers values{{"Values", ArrayOf<std::string>({"Unknown", "Red", "Green"})}};
    ExpectMapped(values, {{Uint16(0), "Unknown"},
                          {Uint8(1), "Red"},
                          {Uint64(2), "Green"},
                          {Uint16(3), "3"},
                          {TCIMValue(1), "Red"},
                          {Sint8(-1), "-1"}});
    ExpectMapped({{"Values", ArrayOf<std::string>({"No", "Yes"})}},
                 {{TCIMValue(true), "Yes"}, {TCIMValue(false), "No"}});
}

TEST_F(FaithfulTextsTest, AMissingOrEmptyTextShowsTheNumber) {
    ExpectMapped(Map({"0", "1", "2"}, {"zero", ""}), {{Uint8(0), "zero"}, {Uint8(1), "1"}, {Uint8(2), "2"}});
    ExpectMapped(Map({"0", "1", ".."}, {"zero", "", "other"}), {{Uint8(1), "1"}, {Uint8(2), "other"}});
    ExpectMapped(Map({"0"}, {"zero", "one too many"}), {{Uint8(1), "1"}});
    ExpectMapped(Map({"0", ".."}, {"Unknown", ""}), {{Uint8(0), "Unknown"}, {Uint8(3), "3"}});
}

TEST_F(FaithfulTextsTest, OfOverlappingEntriesTheFirstCounts) {
    ExpectMapped(Map({"0..10", "5", "5..20", "15"}, {"a", "b", "c", "d"}),
                 {{Uint8(5), "a"}, {Uint8(10), "a"}, {Uint8(11), "c"}, {Uint8(15), "c"}, {Uint8(20), "c"}});
    ExpectMapped(Map({"x", "x"}, {"first", "second"}), {{TCIMValue("x"), "first"}});
    ExpectMapped(Map({"..", ".."}, {"first", "second"}), {{Uint8(9), "first"}});
}

TEST_F(FaithfulTextsTest, EntriesThatMakeNoSenseClaimNothing) {
    ExpectMapped(
        Map({"", "abc", "1...3", "5..3", "0x", "2b", "--1", "1 2", "7"}, {"a", "b", "c", "d", "e", "f", "g", "h", "i"}),
        {{Uint8(0), "0"},
         {Uint8(1), "1"},
         {Uint8(2), "2"},
         {Uint8(3), "3"},
         {Uint8(4), "4"},
         {Uint8(5), "5"},
         {Uint8(7), "i"}});
}

TEST_F(FaithfulTextsTest, BooleansAreMappedByNumberOrWord) {
    ExpectMapped(Map({"0", "1"}, {"off", "on"}), {{TCIMValue(false), "off"}, {TCIMValue(true), "on"}});
    ExpectMapped(Map({"TRUE", "FALSE"}, {"on", "off"}), {{TCIMValue(false), "off"}, {TCIMValue(true), "on"}});
    ExpectMapped({}, {{TCIMValue(false), "false"}, {TCIMValue(true), "true"}});
}

TEST_F(FaithfulTextsTest, ArraysAreMappedElementByElement) {
    std::vector<TCIMValue> elements{Uint16(2), Uint16(7), NullOf(TCIMValue::TCIMType::eCIMUint16)};
    const TCIMValue states(TCIMValue::TCIMType::eCIMUint16, 0, elements);
    Qualifiers map = Map({"2"}, {"OK"});
    map.emplace_back("NULLDISPLAY", TCIMValue("none"));
    EXPECT_EQ(Texts(states.GetType(), map).OfElements(states, {}), (std::vector<std::string>{"OK", "7", "none"}));
    EXPECT_TRUE(Texts(states.GetType(), map).OfElements(NullOf(states.GetType()), {}).empty());
    const TCIMValue words = ArrayOf<std::string>({"fc", "x"});
    EXPECT_EQ(Texts(words.GetType(), Map({"fc"}, {"Fibre Channel"})).OfElements(words, {}),
              (std::vector<std::string>{"Fibre Channel", "x"}));
}

TEST_F(FaithfulTextsTest, WhatTheMapLacksIsSaidWhenAskedFor) {
    const DisplayChoice verbose{false, true, nullptr};
    EXPECT_EQ(Shown(Uint8(17), Map({"2"}, {"OK"}), verbose), "17 (not in the map)");
    EXPECT_EQ(Shown(Uint8(17), Map({}, {}), verbose), "17");
    EXPECT_EQ(Shown(Uint8(2), Map({"2"}, {"OK"}), verbose), "OK");
    EXPECT_EQ(Shown(TCIMValue("x"), Map({"y"}, {"Why"}), verbose), "x (not in the map)");
    EXPECT_EQ(Shown(Uint8(17), {}, verbose), "17");
    EXPECT_EQ(Shown(NullOf(TCIMValue::TCIMType::eCIMUint8), Map({"2"}, {"OK"}), verbose), "");
}

TEST_F(FaithfulTextsTest, ANumberThatTheMapLacksHasItsUnit) {
    Qualifiers map = Map({"0", "4294967295"}, {"Unknown", "No limit"});
    map.emplace_back("Units", TCIMValue("Bytes"));
    ExpectMapped(map, {{Uint32(0), "Unknown"}, {Uint32(4294967295U), "No limit"}, {Uint32(2048), "2 KiB"}});
}

// --- Bits ------------------------------------------------------------------------------------------------------------

TEST_F(FaithfulTextsTest, BitsAreShownByTheirNames) {
    const Qualifiers bits{{"BitMap", ArrayOf<std::string>({"0", "1", "5"})},
                          {"BitValues", ArrayOf<std::string>({"Read", "Write", "Execute"})}};
    ExpectMapped(bits, {{Uint8(0), "0"},
                        {Uint8(1), "Read"},
                        {Uint8(3), "Read, Write"},
                        {Uint8(32), "Execute"},
                        {Uint16(4), "bit 2"},
                        {Uint32(37), "Read, bit 2, Execute"}});
    ExpectMapped({{"BitValues", ArrayOf<std::string>({"Zero", "", "Two"})}},
                 {{Uint8(1), "Zero"}, {Uint8(2), "bit 1"}, {Uint8(4), "Two"}, {Uint64(1ULL << 63U), "bit 63"}});
    ExpectMapped(
        {{"BitMap", ArrayOf<std::string>({"x", "64", "2"})}, {"BitValues", ArrayOf<std::string>({"a", "b", "c"})}},
        {{Uint8(4), "c"}, {Uint8(1), "bit 0"}});
}

// --- Others ----------------------------------------------------------------------------------------------------------

TEST_F(FaithfulTextsTest, NullHasTheTextThatItsDeclarationGivesIt) {
    EXPECT_EQ(Shown(NullOf(TCIMValue::TCIMType::eCIMUint32), {{"NULLDISPLAY", TCIMValue("n/a")}}), "n/a");
    EXPECT_EQ(Shown(NullOf(TCIMValue::TCIMType::eCIMUint32), {{"Units", TCIMValue("Bytes")}}), "");
}

TEST_F(FaithfulTextsTest, NumbersWithoutUnitHaveTheBaseOfTheirDeclaration) {
    EXPECT_EQ(Shown(Uint16(255), {{"BASE", Uint8(16)}}), TCIMValue(Uint16(255)).ToString(16));
    EXPECT_EQ(Shown(Uint16(255), {}), "255");
    EXPECT_EQ(Shown(Real64(2.5), {{"BASE", Uint8(16)}}), "2.5");
}

TEST_F(FaithfulTextsTest, DateTimesAreShownAsFarAsTheyAreGiven) {
    const std::vector<std::pair<const char*, const char*>> expected{
        {"20261121083900.000000+060", "2026-11-21 08:39:00 +01:00"},
        {"20261121083900.250000-300", "2026-11-21 08:39:00.25 -05:00"},
        {"20261121083900.123456+000", "2026-11-21 08:39:00.123456 +00:00"},
        {"20261121083900.12****+000", "2026-11-21 08:39:00.12 +00:00"},
        {"202611210839**.******+060", "2026-11-21 08:39 +01:00"},
        {"20261121******.******+060", "2026-11-21"},
        {"2026**********.******+060", "2026"},
        {"20261121083900.000000+***", "2026-11-21 08:39:00"},
        {"****1121083900.000000+060", "****1121083900.000000+060"},
        {"20261121**3900.000000+060", "20261121**3900.000000+060"},
        {"**************.******+000", "**************.******+000"},
        {"00000000000000.000000:000", "0 s"},
        {"00000000000030.000000:000", "30 s"},
        {"00000000000300.000000:000", "3 min"},
        {"00000000050000.000000:000", "5 h"},
        {"00000002030405.000000:000", "2 d 03:04:05"},
        {"00000002000000.000000:000", "2 d"},
        {"00000000000130.500000:000", "00:01:30.5"},
        {"00000000000000.000250:000", "0.00025 s"},
        {"00000000000000.25****:000", "0.25 s"},
        {"000000020304**.******:000", "2 d 03:04"},
        {"0000000203****.******:000", "2 d 03 h"},
        {"0000000003****.******:000", "03 h"},
        {"00000002******.******:000", "2 d"},
        {"00000000******.******:000", "0 d"},
        {"********030405.000000:000", "********030405.000000:000"},
        {"99999999235959.999999:000", "99999999 d 23:59:59.999999"}};
    for (const auto& [sent, text] : expected) {
        SCOPED_TRACE(sent);
        EXPECT_EQ(Shown(TCIMValue(TCIMDateTime(sent)), {}), text);
    }
}

TEST_F(FaithfulTextsTest, OtherValuesAreShownAsTheyAre) {
    EXPECT_EQ(Shown(TCIMValue("text"), {{"Units", TCIMValue("Bytes")}}), "text");
    EXPECT_EQ(Shown(TCIMValue(TCIMChar16("65")), {}), "A");
    TCIMReference reference({}, {});
    reference.SetClassName("CIM_Disk");
    reference.AddKeyValue("Name", TCIMValue("sda"));
    EXPECT_EQ(Shown(TCIMValue(reference), {}), "CIM_Disk.Name=\"sda\"");
}
