#include "PropertyTest.h"
#include "cimhttp/DisplayTexts.h"

#include <array>
#include <clocale>
#include <limits>
#include <locale>
#include <map>

using namespace NQORVYX20;

namespace {

constexpr unsigned long long kMax64 = std::numeric_limits<unsigned long long>::max();
constexpr unsigned long long k2To63 = 1ULL << 63U;

Qualifiers Units(const std::string& units) { return {{"UNITS", TCIMValue(units)}}; }

Qualifiers Units(const std::string& units, const std::string& fixedPrefix, bool isAbbreviated) {
    Qualifiers qualifiers = Units(units);
    if (!fixedPrefix.empty()) {
        qualifiers.emplace_back("DISPLAYFIXEDUNITS", TCIMValue(fixedPrefix));
    }
    if (isAbbreviated) {
        qualifiers.emplace_back("ABBREVIATEUNITS", TCIMValue(true));
    }
    return qualifiers;
}

/// How a unit of data reads after a prefix, and after none.
struct TUnitText {
    std::string unit;
    std::string afterPrefix;
    std::string alone;
    std::string abbreviated;
};

const std::map<std::string, std::string> kShortPrefixes{{"Peta", "P"},  {"Tera", "T"},  {"Giga", "G"},
                                                        {"Mega", "M"},  {"Kilo", "K"},  {"", ""},
                                                        {"Milli", "m"}, {"Micro", "u"}, {"Nano", "n"}};

/// A number and the prefix that it is shown with.
struct TScaled {
    std::string number;
    std::string prefix;
};

/// One number in every prefix: as it scales itself, and as it is fixed to Tera, Giga, Mega and Kilo.
using ScaledByPrefix = std::map<std::string, std::array<TScaled, 5>>;
constexpr std::array kTargets{"", "Tera", "Giga", "Mega", "Kilo"};

class PropertyDisplayTest : public PropertyTest {
  protected:
    void ExpectScaled(unsigned long long number, const ScaledByPrefix& scaled, const TUnitText& unit) {
        for (const auto& [prefix, results] : scaled) {
            for (std::size_t i = 0; i < kTargets.size(); ++i) {
                SCOPED_TRACE(prefix + unit.unit + " to " + kTargets.at(i));
                const TScaled& result = results.at(i);
                EXPECT_EQ(TextOf(Uint64(number), Units(prefix + unit.unit, kTargets.at(i), false)),
                          result.number + " " + result.prefix +
                              (result.prefix.empty() ? unit.alone : unit.afterPrefix));
                EXPECT_EQ(TextOf(Uint64(number), Units(prefix + unit.unit, kTargets.at(i), true)),
                          result.number + " " + kShortPrefixes.at(result.prefix) + unit.abbreviated);
            }
        }
    }
};

/// Values of every type that has no unit and no value map, with their texts.
std::vector<std::pair<TCIMValue, std::string>> ValuesWithoutUnit() {
    TCIMReference reference({}, {});
    reference.AddKeyValue("Name", TCIMValue("sda"));
    return {{TCIMValue(true), "true"},
            {TCIMValue(false), "false"},
            {TCIMValue(static_cast<signed char>(-128)), "-128"},
            {TCIMValue(static_cast<short>(2048)), "2048"},
            {TCIMValue(2048), "2048"},
            {TCIMValue(2048LL), "2048"},
            {TCIMValue(2048.5F), "2048.5"},
            {TCIMValue(2048.5), "2048.5"},
            {TCIMValue(TCIMChar16("65")), "A"},
            {TCIMValue("2048"), "2048"},
            {TCIMValue(TCIMDateTime("20261121083900.000000+060")), "20261121083900.000000+060"},
            {TCIMValue(reference), reference.GetPath()},
            {ArrayOf<unsigned int>({1024, 2048}), "{1024, 2048}"},
            {ArrayOf<std::string>({"a", "b"}), "{a, b}"}};
}

} // namespace

// --- Null --------------------------------------------------------------------------------------------------------

TEST_F(PropertyDisplayTest, NullShowsAsTheTextThatNullDisplayGives) {
    for (const auto type : {ECIMType::eCIMUint8, ECIMType::eCIMString, ECIMType::eCIMSint32, ECIMType::eCIMBoolean,
                            ECIMType::eCIMUint8Array, ECIMType::eCIMReference}) {
        EXPECT_EQ(TextOf(NullOf(type), {}), "");
        EXPECT_EQ(TextOf(NullOf(type), {{"NULLDISPLAY", TCIMValue("n/a")}}), "n/a");
        EXPECT_EQ(TextOf(NullOf(type), {{"NullDisplay", TCIMValue("n/a")}}), "n/a") << "in any case";
    }
}

TEST_F(PropertyDisplayTest, NullDisplayCountsOnlyAsAString) {
    const TCIMValue null = NullOf(ECIMType::eCIMUint8);
    EXPECT_EQ(TextOf(null, {{"NULLDISPLAY", TCIMValue(1)}}), "");
    EXPECT_EQ(TextOf(null, {{"NULLDISPLAY", NullOf(ECIMType::eCIMString)}}), "");
    EXPECT_EQ(TextOf(null, {{"NULLDISPLAY", ArrayOf<std::string>({"n/a"})}}), "");
}

TEST_F(PropertyDisplayTest, NullDisplayHasNothingToSayAboutValues) {
    const Qualifiers nullDisplay{{"NULLDISPLAY", TCIMValue("n/a")}};
    EXPECT_EQ(TextOf(Uint8(0), nullDisplay), "0");
    EXPECT_EQ(TextOf(TCIMValue(""), nullDisplay), "");
}

TEST_F(PropertyDisplayTest, AResetPreviousValueShowsAsNull) {
    TCimHTTPProperty property(Declare(Uint32(2048), {{"NULLDISPLAY", TCIMValue("n/a")}}));
    property.SetPrevValue();
    EXPECT_EQ(property.PrevValueToString(), "n/a");
    EXPECT_EQ(property.ToString(), "2048");
}

// --- Base --------------------------------------------------------------------------------------------------------

TEST_F(PropertyDisplayTest, BaseGivesTheBaseOfIntegers) {
    constexpr std::array<const char*, 35> kTexts{
        "10001011100", "1112100", "101130", "13431", "5100", "3153", "2134", "1470", "1116", "925", "790", "67b",
        "59a",         "4e6",     "45c",    "3eb",   "380",  "31e",  "2fg",  "2b3",  "26g",  "22c", "1mc", "1jg",
        "1go",         "1e9",     "1bo",    "19e",   "176",  "150",  "12s",  "10r",  "ws",   "vv",  "v0"};
    for (std::size_t i = 0; i < kTexts.size(); ++i) {
        const auto base = static_cast<unsigned char>(i + 2);
        SCOPED_TRACE(i + 2);
        EXPECT_EQ(TextOf(Uint32(1116), {{"BASE", Uint8(base)}}), kTexts.at(i));
        EXPECT_EQ(TextOf(TCIMValue(-1116), {{"BASE", Uint8(base)}}), std::string("-") + kTexts.at(i));
    }
    EXPECT_EQ(TextOf(Uint64(kMax64), {{"BASE", Uint8(16)}}), "ffffffffffffffff");
    EXPECT_EQ(TextOf(ArrayOf<unsigned int>({10, 255}), {{"BASE", Uint8(16)}}), "{a, ff}");
}

TEST_F(PropertyDisplayTest, BaseCountsOnlyAsAUint8) {
    for (const auto& base : {Uint16(16), TCIMValue(16), TCIMValue("16"), NullOf(ECIMType::eCIMUint8),
                             ArrayOf<unsigned char>({16}), TCIMValue(true)}) {
        EXPECT_EQ(TextOf(Uint32(255), {{"BASE", base}}), "255");
    }
}

TEST_F(PropertyDisplayTest, ABaseInWhichNumbersCannotBeWrittenIsIgnored) {
    for (const auto& base : {Uint8(0), Uint8(1), Uint8(37), Uint8(255)}) {
        EXPECT_EQ(TextOf(Uint32(255), {{"BASE", base}}), "255");
    }
}

TEST_F(PropertyDisplayTest, ValuesThatAreNoIntegersHaveNoBase) {
    const Qualifiers binary{{"BASE", Uint8(2)}};
    EXPECT_EQ(TextOf(TCIMValue(true), binary), "true");
    EXPECT_EQ(TextOf(TCIMValue(2.5), binary), "2.5");
    EXPECT_EQ(TextOf(TCIMValue("5"), binary), "5");
}

// --- Units in general --------------------------------------------------------------------------------------------

TEST_F(PropertyDisplayTest, OnlyUnsignedIntegersHaveAUnit) {
    for (const auto& [value, text] : ValuesWithoutUnit()) {
        EXPECT_EQ(TextOf(value, {}), text);
        EXPECT_EQ(TextOf(value, Units("Bytes")), text);
        EXPECT_EQ(TextOf(value, Units("Seconds")), text);
    }
    Qualifiers qualifiers = Units("Bytes");
    qualifiers.emplace_back("BASE", Uint8(16));
    EXPECT_EQ(TextOf(TCIMValue(2048), qualifiers), "800");
    EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "2 Kilobytes") << "a unit goes before the base";
}

TEST_F(PropertyDisplayTest, UnitsCountOnlyAsAString) {
    for (const auto& units :
         {NullOf(ECIMType::eCIMString), TCIMValue(1), ArrayOf<std::string>({"Bytes"}), TCIMValue(true)}) {
        EXPECT_EQ(TextOf(Uint32(2048), {{"UNITS", units}}), "2048");
    }
}

TEST_F(PropertyDisplayTest, NumbersOfOtherUnitsStayPlain) {
    for (const char* units : {"", "Kilo", "Volts", "KiloVolts", "bytes", "BYTES", "kiloBytes", "Kilobytes", "Byte",
                              "Bytes ", " Bytes", "Kilo Bytes", "KiloKiloBytes", "Bytes per second", "seconds",
                              "Milliseconds", "Seconds ", "BitsperSecond", "Hundredths of Seconds"}) {
        SCOPED_TRACE(units);
        EXPECT_EQ(TextOf(Uint32(2048), Units(units)), "2048");
        EXPECT_EQ(TextOf(Uint32(2048), Units(units, "Kilo", true)), "2048");
        Qualifiers qualifiers = Units(units);
        qualifiers.emplace_back("BASE", Uint8(16));
        EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "800");
    }
}

TEST_F(PropertyDisplayTest, AnyValueCanBeShownWithTheQualifiersOrWithTheBaseAlone) {
    Qualifiers qualifiers = Units("Bytes");
    qualifiers.emplace_back("BASE", Uint8(16));
    qualifiers.emplace_back("NULLDISPLAY", TCIMValue("n/a"));
    qualifiers.emplace_back("ValueMap", ArrayOf<std::string>({"2048"}));
    qualifiers.emplace_back("Values", ArrayOf<std::string>({"Page"}));
    const TCimHTTPProperty property(Declare(Uint32(0), qualifiers));
    EXPECT_EQ(property.ToStringWithQualifiers(Uint32(2048)), "2 Kilobytes") << "the value map is left out";
    EXPECT_EQ(property.ToStringWithQualifiers(TCIMValue(-2048)), "-800") << "whatever type is declared";
    EXPECT_EQ(property.ToStringWithQualifiers(TCIMValue()), "n/a");
    EXPECT_EQ(property.ToStringWithBase(Uint32(2048)), "800");
    EXPECT_EQ(property.ToStringWithBase(TCIMValue(-2048)), "-800");
    EXPECT_EQ(property.ToStringWithBase(TCIMValue()), "");
}

TEST_F(PropertyDisplayTest, ThePreviousValueShowsWithItsUnitToo) {
    TCimHTTPProperty property(Declare(Uint32(2048), Units("Bytes")));
    property.SetPrevValue(Uint32(1536));
    EXPECT_EQ(property.ToString(), "2 Kilobytes");
    EXPECT_EQ(property.PrevValueToString(), "1.5 Kilobytes");
}

// --- Data sizes and rates ----------------------------------------------------------------------------------------

TEST_F(PropertyDisplayTest, DataScalesFromEveryPrefixToEveryFixedOne) {
    constexpr unsigned long long kNumber = 1649267441664; // 1.5 * 1024^4
    const std::string all = std::to_string(kNumber);
    const ScaledByPrefix scaled{
        {"Peta", {{{all, "Peta"}, {all, "Peta"}, {all, "Peta"}, {all, "Peta"}, {all, "Peta"}}}},
        {"Tera", {{{"1610612736", "Peta"}, {all, "Tera"}, {all, "Tera"}, {all, "Tera"}, {all, "Tera"}}}},
        {"Giga", {{{"1572864", "Peta"}, {"1610612736", "Tera"}, {all, "Giga"}, {all, "Giga"}, {all, "Giga"}}}},
        {"Mega", {{{"1536", "Peta"}, {"1572864", "Tera"}, {"1610612736", "Giga"}, {all, "Mega"}, {all, "Mega"}}}},
        {"Kilo", {{{"1.5", "Peta"}, {"1536", "Tera"}, {"1572864", "Giga"}, {"1610612736", "Mega"}, {all, "Kilo"}}}},
        {"", {{{"1.5", "Tera"}, {"1.5", "Tera"}, {"1536", "Giga"}, {"1572864", "Mega"}, {"1610612736", "Kilo"}}}},
        {"Milli", {{{"1.5", "Giga"}, {"0", "Tera"}, {"1.5", "Giga"}, {"1536", "Mega"}, {"1572864", "Kilo"}}}},
        {"Micro", {{{"1.5", "Mega"}, {"0", "Tera"}, {"0", "Giga"}, {"1.5", "Mega"}, {"1536", "Kilo"}}}},
        {"Nano", {{{"1.5", "Kilo"}, {"0", "Tera"}, {"0", "Giga"}, {"0", "Mega"}, {"1.5", "Kilo"}}}},
    };
    ExpectScaled(kNumber, scaled, {"Bytes", "bytes", "Bytes", "B"});
    ExpectScaled(kNumber, scaled, {"Bits", "bits", "Bits", "Bits"});
    ExpectScaled(kNumber, scaled, {"Bytes per Second", "bytes per second", "Bytes per second", "B/s"});
}

TEST_F(PropertyDisplayTest, BitRatesScaleByThousandsInSinglePrecision) {
    constexpr unsigned long long kNumber = 1500000000000;
    const std::string all = "1500000026624"; // the nearest float
    const ScaledByPrefix scaled{
        {"Peta", {{{all, "Peta"}, {all, "Peta"}, {all, "Peta"}, {all, "Peta"}, {all, "Peta"}}}},
        {"Tera", {{{"1500000000", "Peta"}, {all, "Tera"}, {all, "Tera"}, {all, "Tera"}, {all, "Tera"}}}},
        {"Giga", {{{"1500000", "Peta"}, {"1500000000", "Tera"}, {all, "Giga"}, {all, "Giga"}, {all, "Giga"}}}},
        {"Mega", {{{"1500", "Peta"}, {"1500000", "Tera"}, {"1500000000", "Giga"}, {all, "Mega"}, {all, "Mega"}}}},
        {"Kilo", {{{"1.5", "Peta"}, {"1500", "Tera"}, {"1500000", "Giga"}, {"1500000000", "Mega"}, {all, "Kilo"}}}},
        {"", {{{"1.5", "Tera"}, {"1.5", "Tera"}, {"1500", "Giga"}, {"1500000", "Mega"}, {"1500000000", "Kilo"}}}},
        {"Milli", {{{"1.5", "Giga"}, {"0", "Tera"}, {"1.5", "Giga"}, {"1500", "Mega"}, {"1500000", "Kilo"}}}},
        {"Micro", {{{"1.5", "Mega"}, {"0", "Tera"}, {"0", "Giga"}, {"1.5", "Mega"}, {"1500", "Kilo"}}}},
        {"Nano", {{{"1.5", "Kilo"}, {"0", "Tera"}, {"0", "Giga"}, {"0", "Mega"}, {"1.5", "Kilo"}}}},
    };
    ExpectScaled(kNumber, scaled, {"Bits per Second", "bits per second", "Bits per second", "bps"});
}

TEST_F(PropertyDisplayTest, SmallNumbersKeepTheirPrefix) {
    const std::vector<TUnitText> units{{"Bytes", "bytes", "Bytes", "B"},
                                       {"Bits", "bits", "Bits", "Bits"},
                                       {"Bytes per Second", "bytes per second", "Bytes per second", "B/s"},
                                       {"Bits per Second", "bits per second", "Bits per second", "bps"}};
    for (const auto& unit : units) {
        for (const auto& [prefix, shortPrefix] : kShortPrefixes) {
            SCOPED_TRACE(prefix + unit.unit);
            EXPECT_EQ(TextOf(Uint8(5), Units(prefix + unit.unit)),
                      "5 " + prefix + (prefix.empty() ? unit.alone : unit.afterPrefix));
            EXPECT_EQ(TextOf(Uint8(5), Units(prefix + unit.unit, "", true)), "5 " + shortPrefix + unit.abbreviated);
        }
    }
}

TEST_F(PropertyDisplayTest, DataScalesAtEveryStep) {
    struct TCase {
        TCIMValue value;
        std::string text;
    };
    const std::vector<TCase> cases{
        {Uint8(0), "0 Bytes"},
        {Uint8(1), "1 Bytes"},
        {Uint8(255), "255 Bytes"},
        {Uint16(0), "0 Bytes"},
        {Uint16(1), "1 Bytes"},
        {Uint16(1023), "1023 Bytes"},
        {Uint16(1024), "1 Kilobytes"},
        {Uint16(1075), "1 Kilobytes"},
        {Uint16(1076), "1.1 Kilobytes"},
        {Uint16(1280), "1.2 Kilobytes"}, // half way between two decimals: to the even one
        {Uint16(1536), "1.5 Kilobytes"},
        {Uint16(1792), "1.8 Kilobytes"},
        {Uint16(2048), "2 Kilobytes"},
        {Uint16(65535), "64 Kilobytes"},
        {Uint32(0), "0 Bytes"},
        {Uint32(1), "1 Bytes"},
        {Uint32((1U << 20U) - 1), "1024 Kilobytes"}, // below the step, but nearer to it than one decimal can tell
        {Uint32(1U << 20U), "1 Megabytes"},
        {Uint32((1U << 30U) - 64), "1024 Megabytes"}, // the last float below the step
        {Uint32((1U << 30U) - 1), "1 Gigabytes"},     // the nearest float is the step
        {Uint32(1U << 30U), "1 Gigabytes"},
        {Uint32(std::numeric_limits<unsigned int>::max()), "4 Gigabytes"},
        {Uint64(0), "0 Bytes"},
        {Uint64(1), "1 Bytes"},
        {Uint64((1ULL << 40U) - (1U << 16U)), "1024 Gigabytes"},
        {Uint64(1ULL << 40U), "1 Terabytes"},
        {Uint64((1ULL << 50U) - (1U << 26U)), "1024 Terabytes"},
        {Uint64(1ULL << 50U), "1 Petabytes"},
        {Uint64(k2To63 - 1), "8192 Petabytes"},
        {Uint64(k2To63), "8192 Petabytes"},
        {Uint64(k2To63 + (1ULL << 62U)), "12288 Petabytes"},
        {Uint64(kMax64), "16384 Petabytes"},
    };
    for (const auto& [value, text] : cases) {
        SCOPED_TRACE(value.ToString(10));
        EXPECT_EQ(TextOf(value, Units("Bytes")), text);
    }
}

TEST_F(PropertyDisplayTest, BitRatesScaleAtEveryStep) {
    struct TCase {
        TCIMValue value;
        std::string text;
    };
    const std::vector<TCase> cases{
        {Uint8(255), "255 bps"},
        {Uint16(999), "999 bps"},
        {Uint16(1000), "1 Kbps"},
        {Uint16(1049), "1 Kbps"},
        {Uint16(1051), "1.1 Kbps"},
        {Uint16(65535), "65.5 Kbps"},
        {Uint32(999949), "999.9 Kbps"},
        {Uint32(999999), "1000 Kbps"},
        {Uint32(1000000), "1 Mbps"},
        {Uint32(999999936), "1000 Mbps"}, // the last float below the step
        {Uint32(999999999), "1 Gbps"},    // the nearest float is the step
        {Uint32(1000000000), "1 Gbps"},
        {Uint32(std::numeric_limits<unsigned int>::max()), "4.3 Gbps"},
        {Uint64(1000000000000), "1 Tbps"},
        {Uint64(1000000000000000), "1 Pbps"},
        {Uint64(1000000000000000000), "1000 Pbps"},
        {Uint64(k2To63), "9223.4 Pbps"},
        {Uint64(kMax64), "18446.7 Pbps"},
    };
    for (const auto& [value, text] : cases) {
        SCOPED_TRACE(value.ToString(10));
        EXPECT_EQ(TextOf(value, Units("Bits per Second", "", true)), text);
    }
}

TEST_F(PropertyDisplayTest, TheLargestNumbersShowInFullBelowTheirFixedPrefix) {
    EXPECT_EQ(TextOf(Uint64(kMax64), Units("PetaBytes")), "18446744073709551616 Petabytes");
    EXPECT_EQ(TextOf(Uint64(k2To63), Units("KiloBytes", "Kilo", true)), "9223372036854775808 KB");
    EXPECT_EQ(TextOf(Uint64(kMax64), Units("Bytes", "Kilo", true)), "18014398509481984 KB");
}

TEST_F(PropertyDisplayTest, AFixedPrefixIsReachedWhateverTheSize) {
    EXPECT_EQ(TextOf(Uint32(1048576), Units("Bytes")), "1 Megabytes");
    EXPECT_EQ(TextOf(Uint32(1048576), Units("Bytes", "", true)), "1 MB");
    EXPECT_EQ(TextOf(Uint32(1048576), Units("Bytes", "Kilo", false)), "1024 Kilobytes");
    EXPECT_EQ(TextOf(Uint32(512), Units("Bytes", "Kilo", false)), "0.5 Kilobytes");
    EXPECT_EQ(TextOf(Uint32(0), Units("Bytes", "Giga", false)), "0 Gigabytes");
    EXPECT_EQ(TextOf(Uint32(5), Units("MegaBytes", "Kilo", false)), "5 Megabytes") << "never scaled up";
}

TEST_F(PropertyDisplayTest, AnyOtherFixedPrefixScalesAutomatically) {
    for (const auto& fixedPrefix :
         {TCIMValue("Peta"), TCIMValue("kilo"), TCIMValue("KiloBytes"), TCIMValue("Milli"), TCIMValue(""), TCIMValue(4),
          TCIMValue(true), NullOf(ECIMType::eCIMString), ArrayOf<std::string>({"Kilo"})}) {
        Qualifiers qualifiers = Units("Bytes");
        qualifiers.emplace_back("DISPLAYFIXEDUNITS", fixedPrefix);
        EXPECT_EQ(TextOf(Uint32(1048576), qualifiers), "1 Megabytes");
    }
}

TEST_F(PropertyDisplayTest, AnyAbbreviateUnitsThatIsNotNullAbbreviates) {
    for (const auto& abbreviate : {TCIMValue(true), TCIMValue(false), TCIMValue("no"), Uint8(0)}) {
        Qualifiers qualifiers = Units("Bytes");
        qualifiers.emplace_back("ABBREVIATEUNITS", abbreviate);
        EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "2 KB");
    }
    Qualifiers qualifiers = Units("Bytes");
    qualifiers.emplace_back("ABBREVIATEUNITS", NullOf(ECIMType::eCIMBoolean));
    EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "2 Kilobytes");
}

TEST_F(PropertyDisplayTest, BitsKeepTheirNameWhenAbbreviated) {
    EXPECT_EQ(TextOf(Uint32(2048), Units("Bits", "", true)), "2 KBits");
    EXPECT_EQ(TextOf(Uint32(5), Units("Bits", "", true)), "5 Bits");
}

TEST_F(PropertyDisplayTest, EveryUnsignedTypeShowsWithItsUnit) {
    for (const auto& value : {Uint8(200), Uint16(200), Uint32(200), Uint64(200)}) {
        EXPECT_EQ(TextOf(value, Units("KiloBytes")), "200 Kilobytes");
        EXPECT_EQ(TextOf(value, Units("Seconds")), "00:03:20");
    }
}

// --- Time --------------------------------------------------------------------------------------------------------

TEST_F(PropertyDisplayTest, TimeShowsAsAnInterval) {
    struct TCase {
        std::string units;
        unsigned long long number;
        std::string text;
    };
    const std::vector<TCase> cases{
        {"Seconds", 0, "00:00:00"},
        {"Seconds", 59, "00:00:59"},
        {"Seconds", 60, "00:01:00"},
        {"Seconds", 3599, "00:59:59"},
        {"Seconds", 3600, "01:00:00"},
        {"Seconds", 86399, "23:59:59"},
        {"Seconds", 86400, "1 day 00:00:00"},
        {"Seconds", 90061, "1 day 01:01:01"},
        {"Seconds", 99999999ULL * 86400 + 86399, "99999999 days 23:59:59"},
        {"MilliSeconds", 0, "00:00:00"},
        {"MilliSeconds", 1, "00:00:00.001000"},
        {"MilliSeconds", 999, "00:00:00.999000"},
        {"MilliSeconds", 1000, "00:00:01"},
        {"MilliSeconds", 90061000, "1 day 01:01:01"},
        {"MilliSeconds", 90061042, "1 day 01:01:01.042000"},
        {"MilliSeconds", (99999999ULL * 86400 + 86399) * 1000 + 999, "99999999 days 23:59:59.999000"},
        {"MicroSeconds", 1, "00:00:00.000001"},
        {"MicroSeconds", 999999, "00:00:00.999999"},
        {"MicroSeconds", 90061000042, "1 day 01:01:01.000042"},
        {"MicroSeconds", (99999999ULL * 86400 + 86399) * 1000000 + 999999, "99999999 days 23:59:59.999999"},
        {"NanoSeconds", 999, "00:00:00"},
        {"NanoSeconds", 1000, "00:00:00.000001"},
        {"NanoSeconds", 90061000042999, "1 day 01:01:01.000042"},
        {"NanoSeconds", k2To63, "106751 days 23:47:16.854775"},
        {"NanoSeconds", kMax64, "213503 days 23:34:33.709551"},
    };
    for (const auto& [units, number, text] : cases) {
        SCOPED_TRACE(units + ' ' + std::to_string(number));
        EXPECT_EQ(TextOf(Uint64(number), Units(units)), text);
    }
}

TEST_F(PropertyDisplayTest, MoreDaysThanAnIntervalHoldsShowAsThePlainNumber) {
    constexpr unsigned long long kTooLong = 100000000ULL * 86400;
    EXPECT_EQ(TextOf(Uint64(kTooLong), Units("Seconds")), "8640000000000");
    EXPECT_EQ(TextOf(Uint64(kMax64), Units("Seconds")), "18446744073709551615");
    EXPECT_EQ(TextOf(Uint64(kTooLong * 1000), Units("MilliSeconds")), "8640000000000000");
    EXPECT_EQ(TextOf(Uint64(kMax64), Units("MilliSeconds")), "18446744073709551615");
    EXPECT_EQ(TextOf(Uint64(kTooLong * 1000000), Units("MicroSeconds")), "8640000000000000000");
    EXPECT_EQ(TextOf(Uint64(kMax64), Units("MicroSeconds")), "18446744073709551615");
    Qualifiers qualifiers = Units("Seconds");
    qualifiers.emplace_back("BASE", Uint8(16));
    EXPECT_EQ(TextOf(Uint64(kMax64), qualifiers), "ffffffffffffffff");
}

TEST_F(PropertyDisplayTest, TimeWithAPrefixAboveOneShowsAsTheEmptyInterval) {
    for (const char* units : {"KiloSeconds", "MegaSeconds", "GigaSeconds", "TeraSeconds", "PetaSeconds"}) {
        EXPECT_EQ(TextOf(Uint64(5), Units(units)), "00:00:00");
        EXPECT_EQ(TextOf(Uint64(kMax64), Units(units)), "00:00:00");
    }
}

TEST_F(PropertyDisplayTest, TimeIgnoresTheQualifiersOfDataAndOfCpuTime) {
    EXPECT_EQ(TextOf(Uint32(90061), Units("Seconds", "Kilo", true)), "1 day 01:01:01");
    for (const auto& cpuTime : {TCIMValue(true), TCIMValue(false), NullOf(ECIMType::eCIMBoolean)}) {
        Qualifiers qualifiers = Units("Seconds");
        qualifiers.emplace_back("DISPLAYCPUTIME", cpuTime);
        EXPECT_EQ(TextOf(Uint32(90061), qualifiers), "1 day 01:01:01");
    }
}

// --- Locales -----------------------------------------------------------------------------------------------------

namespace {

/// How Germans write numbers, for machines without their locale.
struct TGermanNumbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

std::locale GermanLocale() {
    try {
        return std::locale("de_DE.UTF-8");
    } catch (const std::runtime_error&) {
        return {std::locale::classic(), new TGermanNumbers}; // the locale owns the facet
    }
}

/// Sets the locale of C++ and, where it has a name, of C for the time of its life.
class ScopedLocale {
  public:
    explicit ScopedLocale(const std::locale& locale) : previous_(std::locale::global(locale)) {}
    ~ScopedLocale() { std::locale::global(previous_); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

  private:
    std::locale previous_;
};

} // namespace

TEST_F(PropertyDisplayTest, TextsAreMadeOfTheQualifiersAsTheyAreNow) {
    const auto size = Declare(Uint32(0), {{"UNITS", TCIMValue("Bytes")}, {"NULLDISPLAY", TCIMValue("none")}});
    const auto other = Declare(Uint32(0), {{"UNITS", TCIMValue("Bytes")}});
    const TCimHTTPProperty shown(size, Uint32(2048));
    const TCimHTTPProperty empty(size, NullOf(ECIMType::eCIMUint32));
    EXPECT_EQ(shown.ToString(), "2 Kilobytes");
    EXPECT_EQ(empty.ToString(), "none");
    other->GetQualifier("UNITS", {})->SetValue(TCIMValue("Seconds"), {});
    EXPECT_EQ(shown.ToString(), "2 Kilobytes");
    size->GetQualifier("NULLDISPLAY", {})->SetValue(TCIMValue("unknown"), {});
    size->GetQualifier("UNITS", {})->SetValue(TCIMValue("Seconds"), {});
    EXPECT_EQ(shown.ToString(), "00:34:08");
    EXPECT_EQ(empty.ToString(), "unknown");
    size->RemoveQualifier(size->GetQualifier("UNITS", {}));
    EXPECT_EQ(shown.ToString(), "2048");
    AddQualifiers(*size, {{"BASE", Uint8(16)}});
    EXPECT_EQ(shown.ToString(), "800");
}

TEST_F(PropertyDisplayTest, TextsInMemoryOutliveWhatIsAskedOfAnotherProvidersDeclaration) {
    const auto foreign = boost::make_shared<FailingDecl>(Uint32(0), "BASE", TVYXStatusCode::eNotFound);
    AddQualifiers(*foreign, {{"NULLDISPLAY", TCIMValue("a text of more than a few characters")},
                             {"Values", ArrayOf<std::string>({"another text of more than a few"})},
                             {"ValueMap", ArrayOf<std::string>({"7"})}});
    TextMemory memory;
    MakeDisplayTexts(memory, foreign, NullOf(ECIMType::eCIMUint32));
    EXPECT_EQ(memory.texts, std::vector<std::string_view>{"a text of more than a few characters"});
    MakeDisplayTexts(memory, foreign, Uint32(7));
    EXPECT_EQ(memory.texts, std::vector<std::string_view>{"another text of more than a few"});
}

TEST_F(PropertyDisplayTest, TextsAreTheSameInAGermanLocale) {
    const ScopedLocale german{GermanLocale()};
    std::ostringstream written;
    written << 1234.5;
    ASSERT_EQ(written.str(), "1.234,5") << "the locale must be one that would show";
    EXPECT_EQ(TextOf(Uint32(1536), Units("Bytes")), "1.5 Kilobytes");
    EXPECT_EQ(TextOf(Uint64(kMax64), Units("PetaBytes")), "18446744073709551616 Petabytes");
    EXPECT_EQ(TextOf(Uint32(123456), {}), "123456");
    EXPECT_EQ(TextOf(Uint32(123456), Units("MilliSeconds")), "00:02:03.456000");
    EXPECT_EQ(StatusOf([&] { TCimHTTPProperty(Declare(Uint16(0)), Uint32(1)); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), testing::ElementsAre("Inmem: SetValue: decl is type uint16 but value is type uint32"));
}

TEST_F(PropertyDisplayTest, TextsNeedNoOtherLocaleThanC) {
    const ScopedLocale classic{std::locale::classic()};
    EXPECT_EQ(TextOf(Uint32(1536), Units("Bytes")), "1.5 Kilobytes");
    EXPECT_EQ(TextOf(Uint64(kMax64), Units("PetaBytes")), "18446744073709551616 Petabytes");
}
