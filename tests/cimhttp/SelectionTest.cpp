// Which instances cimhttp shows, and in which order: --where, --sort and --limit, over values of every type.

#include "CimXml.h"
#include "InProcessRun.h"
#include "ProgramRun.h"
#include "selection/DateTimeRange.h"
#include "selection/ValuePlace.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

using cimhttp::DateTimeIn;
using cimhttp::DateTimeRange;
using cimhttp::ValuePlace;
using nlohmann::json;
using NQORVYX20::TCIMDateTime;
using NQORVYX20::TCIMValue;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

using Texts = std::vector<std::string>;

/// DEMO_AllTypes has three instances: `least` and `greatest`, with the extremes of each type, and `null`.
class AllTypesTest : public testing::Test {
  protected:
    static ProgramRun Run(Texts arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress()});
        return RunInProcess(std::move(arguments));
    }

    /// The keys of the instances that are shown, in their order.
    static Texts Ids(const Texts& options) {
        Texts arguments{"instances", "DEMO_AllTypes", "--property", "InstanceID", "-o", "json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        Texts ids;
        for (const json& instance : run.status == 0 ? support::ParsedJson(run.output) : json::array()) {
            EXPECT_EQ(instance.at("properties").size(), 1U) << "only what was asked for is shown";
            ids.push_back(instance.at("properties").at("InstanceID").at("value"));
        }
        return ids;
    }

    static Texts Where(const std::string& condition) { return Ids({"--where", condition}); }

  private:
    static demo::DemoServerOptions Options() {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        return options;
    }

    demo::DemoServer server_{Options()};
};

/// TEST_Disk, whose instances have one property `Value` beside their key, the name of which is the value's text.
class SelectionTest : public testing::Test {
  protected:
    SelectionTest() { server_.Listen(kHttpPort); }

    void AnswerWith(const std::string& type, const Texts& values) {
        server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", DeclarationXml("Value", type)));
        std::string instances;
        for (const std::string& value : values) {
            instances += InstanceXml("TEST_Disk", value.empty() ? "null" : value, PropertyXml("Value", type, value));
        }
        server_.Answer("EnumerateInstances", "TEST_Disk", instances);
    }

    ProgramRun Run(Texts arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return RunInProcess(std::move(arguments));
    }

    /// The names of the instances that are shown, in their order.
    Texts Names(const Texts& options) const {
        Texts arguments{"instances", "TEST_Disk", "-o", "json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        Texts names;
        for (const json& instance : run.status == 0 ? support::ParsedJson(run.output) : json::array()) {
            names.push_back(instance.at("properties").at("Name").at("value"));
        }
        return names;
    }

    Texts Where(const std::string& condition) const { return Names({"--where", condition}); }

    support::CimServer server_;
};

struct Extremes {
    std::string property;
    std::string least;
    std::string between; ///< greater than one, less than the other
    std::string greatest;
};

const std::vector<Extremes> kExtremes{
    {"AUint8", "0", "1", "255"},
    {"ASint8", "-128", "-1.5", "127"},
    {"AUint16", "0", "1e3", "65535"},
    {"ASint16", "-32768", "0", "32767"},
    {"AUint32", "0", "4294967294", "4294967295"},
    {"ASint32", "-2147483648", "-2147483647", "2147483647"},
    {"AUint64", "0", "18446744073709551614", "18446744073709551615"},
    {"ASint64", "-9223372036854775808", "-9223372036854775807", "9223372036854775807"},
    {"AReal32", "-3.4028235e+38", "0.1", "3.4028235e+38"},
    {"AReal64", "-1.7976931348623157e+308", "1e-300", "1.7976931348623157e+308"},
    {"AChar16", "!", "a", "\xEF\xBF\xBD"},
    {"ATimestamp", "00010101000000.000000+000", "2026-11-21 08:39", "99991231235959.999999+720"},
    {"AnInterval", "00000000000000.000000:000", "1 day", "99999999 days 23:59:59.999999"},
    {"ABoolean", "false", "", "TRUE"}};

} // namespace

// --- The operators over all types --------------------------------------------------------------------------------

TEST_F(AllTypesTest, LessAndGreaterCompareEveryTypeByValue) {
    for (const auto& [property, least, between, greatest] : kExtremes) {
        SCOPED_TRACE(property);
        EXPECT_THAT(Where(property + "<=" + least), ElementsAre("least"));
        EXPECT_THAT(Where(property + "<" + least), IsEmpty());
        EXPECT_THAT(Where(property + ">" + least), ElementsAre("greatest"));
        EXPECT_THAT(Where(property + ">=" + least), ElementsAre("greatest", "least"));
        EXPECT_THAT(Where(property + ">=" + greatest), ElementsAre("greatest"));
        EXPECT_THAT(Where(property + ">" + greatest), IsEmpty());
        EXPECT_THAT(Where(property + "<" + greatest), ElementsAre("least"));
        EXPECT_THAT(Where(property + "<=" + greatest), ElementsAre("greatest", "least"));
        if (!between.empty()) {
            EXPECT_THAT(Where(property + "<" + between), ElementsAre("least"));
            EXPECT_THAT(Where(property + ">" + between), ElementsAre("greatest"));
        }
    }
}

TEST_F(AllTypesTest, ArraysAreSelectedByOneOfTheirElements) {
    EXPECT_THAT(Where("Uint64s>=18446744073709551615"), ElementsAre("greatest"));
    EXPECT_THAT(Where("Sint64s<0"), ElementsAre("greatest"));
    EXPECT_THAT(Where("Sint64s<-9223372036854775808"), IsEmpty());
    EXPECT_THAT(Where("Booleans>=true"), ElementsAre("greatest"));
    EXPECT_THAT(Where("Strings>a"), ElementsAre("greatest"));
}

TEST_F(AllTypesTest, NotEqualSelectsWhatEqualDoesNotExceptNull) {
    EXPECT_THAT(Where("InstanceID!=*e*st"), ElementsAre("null"));
    EXPECT_THAT(Where("AUint8!=255"), ElementsAre("least"));
    EXPECT_THAT(Where("AUint8!=?"), ElementsAre("greatest"));
    EXPECT_THAT(Where("AUint8!="), ElementsAre("greatest", "least"));
    EXPECT_THAT(Where("AUint8="), ElementsAre("null"));
    EXPECT_THAT(Where("AString="), ElementsAre("least", "null"));
    EXPECT_THAT(Where("AString!="), ElementsAre("greatest"));
    EXPECT_THAT(Where("Uint8s!=255"), ElementsAre("least"));
}

TEST_F(AllTypesTest, WhatCannotBeComparedIsRefusedWithTheTypeBeforeInstancesAreRead) {
    const std::pair<const char*, const char*> wrong[] = {
        {"AUint8<abc", "'abc' cannot be compared with AUint8, which is of type uint8"},
        {"auint8<abc", "'abc' cannot be compared with AUint8, which is of type uint8"},
        {"Uint16s>1x", "'1x' cannot be compared with Uint16s, which is of type uint16[]"},
        {"AReal64>=nan", "'nan' cannot be compared with AReal64, which is of type real64"},
        {"AUint64<", "'' cannot be compared with AUint64, which is of type uint64"},
        {"ABoolean<1", "'1' cannot be compared with ABoolean, which is of type boolean"},
        {"ATimestamp>yesterday", "'yesterday' cannot be compared with ATimestamp, which is of type datetime"},
        {"ATimestamp>2026-02-30", "'2026-02-30' cannot be compared with"},
        {"AnInterval>1 day 25:00:00", "cannot be compared with AnInterval"},
        {"Nothing<1", "the class DEMO_AllTypes has no property Nothing"}};
    for (const auto& [condition, complaint] : wrong) {
        for (const char* command : {"instances", "watch"}) {
            const auto run = Run({command, "DEMO_AllTypes", "--where", condition});
            EXPECT_EQ(run.status, 2) << condition;
            EXPECT_THAT(run.errors, HasSubstr(complaint));
            EXPECT_EQ(run.output, "");
        }
    }
}

TEST_F(AllTypesTest, EveryTypeIsSortedByValueWithNullLast) {
    for (const auto& extremes : kExtremes) {
        SCOPED_TRACE(extremes.property);
        EXPECT_THAT(Ids({"--sort", extremes.property}), ElementsAre("least", "greatest", "null"));
        EXPECT_THAT(Ids({"--sort", extremes.property + ":desc"}), ElementsAre("greatest", "least", "null"));
    }
}

TEST_F(AllTypesTest, AnEmptyArrayIsSortedFirstAndNullLast) {
    EXPECT_THAT(Ids({"--sort", "Uint8s"}), ElementsAre("least", "greatest", "null"));
    EXPECT_THAT(Ids({"--sort", "uint8s:DESC"}), ElementsAre("greatest", "least", "null"));
}

// --- Numbers -----------------------------------------------------------------------------------------------------

TEST_F(SelectionTest, NumbersAreNotComparedAsTexts) {
    AnswerWith("uint64", {"9", "10", "18446744073709551615", "18446744073709551614", "9223372036854775808"});
    EXPECT_THAT(Where("Value<10"), ElementsAre("9"));
    EXPECT_THAT(Where("Value>9223372036854775807.5"),
                ElementsAre("18446744073709551614", "18446744073709551615", "9223372036854775808"));
    EXPECT_THAT(Where("Value>18446744073709551614"), ElementsAre("18446744073709551615"));
    EXPECT_THAT(Where("Value>-1e30").size(), 5U);
    EXPECT_THAT(Where("Value>1e30"), IsEmpty());
    EXPECT_THAT(Names({"--sort", "Value"}),
                ElementsAre("9", "10", "9223372036854775808", "18446744073709551614", "18446744073709551615"));
}

TEST_F(SelectionTest, ARealIsComparedWithTheRealThatTheTextStandsFor) {
    AnswerWith("real32", {"0.1", "0.2"});
    EXPECT_THAT(Where("Value<=0.1"), ElementsAre("0.1"));
    EXPECT_THAT(Where("Value>0.1"), ElementsAre("0.2"));
    EXPECT_THAT(Where("Value<1e300").size(), 2U);
    AnswerWith("real64", {"0.1", "0.2"});
    EXPECT_THAT(Where("Value<=0.1"), ElementsAre("0.1"));
    EXPECT_THAT(Where("Value>=0.2"), ElementsAre("0.2"));
}

TEST_F(SelectionTest, WhatIsNotANumberIsNeitherLessNorGreaterAndIsSortedAfterNumbers) {
    AnswerWith("real64", {"nan", "INF", "-INF", "1", ""});
    const auto run = Run({"instances", "TEST_Disk", "--where", "Value<=INF", "--property", "Name", "-o", "csv"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, HasSubstr("1 value cannot be compared"));
    EXPECT_THAT(Names({"--sort", "Value"}), ElementsAre("-INF", "1", "INF", "nan", "null"));
}

// --- Times -------------------------------------------------------------------------------------------------------

TEST_F(SelectionTest, InstantsAreComparedAcrossZones) {
    const std::string early = "20261121083900.000000+120"; // 06:39 UTC
    const std::string middle = "20261121073900.000000+000";
    const std::string late = "20261121013900.000000-480"; // 09:39 UTC
    AnswerWith("datetime", {late, middle, early});
    EXPECT_THAT(Names({"--sort", "Value"}), ElementsAre(early, middle, late));
    EXPECT_THAT(Names({"--sort", "Value:desc"}), ElementsAre(late, middle, early));
    EXPECT_THAT(Where("Value<2026-11-21 07:39"), ElementsAre(early));
    EXPECT_THAT(Where("Value<=2026-11-21 08:39:00 +01:00"), UnorderedElementsAreArray({early, middle}));
    EXPECT_THAT(Where("Value>2026-11-21T07:39:00.5Z"), ElementsAre(late));
    EXPECT_THAT(Where("Value>=20261121094000.000000+001"), ElementsAre(late));
    EXPECT_THAT(Where("Value>2026-11-21").size(), 3U);
    EXPECT_THAT(Where("Value<2026-11-22 00:00 +16:39"), ElementsAre(early));
}

TEST_F(SelectionTest, DaysAreCountedThroughLeapYearsAndCenturies) {
    const Texts days{"19000228000000.000000+000", "19000301000000.000000+000", "20000229000000.000000+000",
                     "20000301000000.000000+000", "20241231235959.999999+000", "20250101000000.000000+000"};
    AnswerWith("datetime", days);
    EXPECT_THAT(Where("Value<1900-03-01"), ElementsAre(days[0]));
    EXPECT_THAT(Where("Value>2024-12-31 23:59:59.999998"), UnorderedElementsAreArray({days[4], days[5]}));
    EXPECT_THAT(Where("Value>=2000-02-29").size(), 4U);
    EXPECT_EQ(DateTimeRange(*DateTimeIn("2026-11-21")).lowest - DateTimeRange(*DateTimeIn("1970-01-01")).lowest,
              1795219200LL * 1000000);
    EXPECT_EQ(DateTimeRange(*DateTimeIn("1970-01-01")).lowest - DateTimeRange(*DateTimeIn("0000-01-01")).lowest,
              719528LL * 24 * 3600 * 1000000);
}

TEST_F(SelectionTest, LengthsOfTimeAreComparedByTheirLength) {
    const std::string hour = "00000000010000.000000:000";
    const std::string days = "00000003000000.000000:000";
    AnswerWith("datetime", {days, hour});
    EXPECT_THAT(Where("Value<1 day"), ElementsAre(hour));
    EXPECT_THAT(Where("Value<=01:00:00"), ElementsAre(hour));
    EXPECT_THAT(Where("Value>2 days 23:59:59.999999"), ElementsAre(days));
    EXPECT_THAT(Where("Value>=00000003000000.000000:000"), ElementsAre(days));
}

TEST(DateTimeIn, TakesLengthsAsTheyAreShown) {
    const auto sent = [](const char* text) {
        const auto length = DateTimeIn(text);
        return length ? length->ToString() : std::string("none");
    };
    EXPECT_EQ(sent("2 d 03:04:05"), "00000002030405.000000:000");
    EXPECT_EQ(sent("99999999 d 23:59:59.999999"), "99999999235959.999999:000");
    EXPECT_EQ(sent("2 d 03:04"), "00000002030400.000000:000");
    EXPECT_EQ(sent("2 d"), "00000002000000.000000:000");
    EXPECT_EQ(sent("5 h"), "00000000050000.000000:000");
    EXPECT_EQ(sent("3 min"), "00000000000300.000000:000");
    EXPECT_EQ(sent("30 s"), "00000000000030.000000:000");
    EXPECT_EQ(sent("0.25 s"), "00000000000000.250000:000");
    for (const char* const text : {"d", "2 d ", "2 da", "5", "5 m", "h", "30.5 min", "300 s", "61 s", "5 h 3 min"}) {
        EXPECT_EQ(sent(text), "none") << text;
    }
}

TEST_F(SelectionTest, AsterisksLeaveOpenOnlyWhatTheyHide) {
    const std::string someDay = "202611********.******+000";
    const std::string someSecond = "20261121083900.******+000";
    const std::string someLength = "00000003******.******:000";
    AnswerWith("datetime", {someDay, someSecond, someLength, ""});
    EXPECT_THAT(Where("Value<2026-12-01 00:00:01 +01:00"), ElementsAre(someSecond));
    EXPECT_THAT(Where("Value>=2026-11-01"), ElementsAre(someDay, someSecond));
    EXPECT_THAT(Where("Value<2027-01-01"), ElementsAre(someDay, someSecond));
    const auto run = Run({"instances", "TEST_Disk", "--where", "Value<2026-11-10"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, HasSubstr("cimhttp: 2 values cannot be compared, so that --where does not select the "
                                      "instance; the first: Value=00000003******.******:000\n"));
    const auto watch = Run({"watch", "TEST_Disk", "--where", "Value<2026-11-10", "--count", "1", "--interval", "0.01"});
    EXPECT_EQ(watch.errors, "cimhttp: 2 values cannot be compared, so that --where does not select the instance; the "
                            "first: Value=00000003******.******:000\n");
}

TEST_F(SelectionTest, TheFirstUncomparedValueIsNamedWhereOneInstanceHasSeveral) {
    server_.Answer("GetClass", "TEST_Disk",
                   ClassXml("TEST_Disk", "", DeclarationXml("Begin", "real64") + DeclarationXml("End", "real64")));
    server_.Answer(
        "EnumerateInstances", "TEST_Disk",
        InstanceXml("TEST_Disk", "a", PropertyXml("Begin", "real64", "nan") + PropertyXml("End", "real64", "nan")));
    const auto run = Run({"instances", "TEST_Disk", "--where", "Begin<1", "--where", "End<1"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, HasSubstr("2 values cannot be compared, so that --where does not select the instance; the "
                                      "first: Begin=nan\n"));
}

TEST(ValuePlace, OfAnUnknownZoneLeavesOpenSomeHours) {
    const ValuePlace place{TCIMValue(TCIMDateTime("20261121083900.000000+***"))};
    const auto isLessThan = [&](const char* text) {
        return place.IsLessThan(*ValuePlace::Of(text, TCIMValue::TCIMType::eCIMDateTime));
    };
    EXPECT_EQ(isLessThan("2026-11-23"), true);
    EXPECT_EQ(isLessThan("2026-11-20"), false);
    EXPECT_EQ(isLessThan("2026-11-21 08:40"), std::nullopt);
    EXPECT_EQ(isLessThan("2026-11-21 08:38"), std::nullopt);
}

// --- Texts -------------------------------------------------------------------------------------------------------

TEST_F(SelectionTest, TextsAreComparedWithoutRegardToCase) {
    AnswerWith("string", {"alpha", "Beta", "GAMMA", ""});
    EXPECT_THAT(Where("Value<beta"), ElementsAre("alpha"));
    EXPECT_THAT(Where("Value<=BETA"), ElementsAre("Beta", "alpha"));
    EXPECT_THAT(Names({"--sort", "Value"}), ElementsAre("alpha", "Beta", "GAMMA", "null"));
    EXPECT_THAT(Names({"--sort", "Value:desc"}), ElementsAre("GAMMA", "Beta", "alpha", "null"));
}

// --- What is asked for -------------------------------------------------------------------------------------------

TEST_F(SelectionTest, TheServerIsAskedForWhatIsSortedBy) {
    AnswerWith("uint32", {"2", "1"});
    const auto run = Run({"instances", "TEST_Disk", "--property", "Name", "--sort", "VALUE"});
    EXPECT_EQ(run.output, "Name\n----\n1\n2\n");
    EXPECT_EQ(server_.Calls().back().parameters.at("PropertyList"), "Name,Value");
}

TEST_F(SelectionTest, EqualInstancesStayInTheOrderOfTheirPaths) {
    server_.Answer("GetClass", "TEST_Disk",
                   ClassXml("TEST_Disk", "", DeclarationXml("A", "uint8") + DeclarationXml("B", "uint8")));
    const auto disk = [](const char* name, const char* a, const char* b) {
        return InstanceXml("TEST_Disk", name, PropertyXml("A", "uint8", a) + PropertyXml("B", "uint8", b));
    };
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   disk("d", "1", "1") + disk("c", "1", "1") + disk("b", "2", "9") + disk("a", "1", "2"));
    EXPECT_THAT(Names({"--sort", "A"}), ElementsAre("a", "c", "d", "b"));
    EXPECT_THAT(Names({"--sort", "A:asc,B"}), ElementsAre("c", "d", "a", "b"));
    EXPECT_THAT(Names({"--sort", "A:desc", "--sort", "B:desc"}), ElementsAre("b", "a", "c", "d"));
}

TEST_F(SelectionTest, ASortThatIsNoNameWithADirectionIsRefused) {
    AnswerWith("uint32", {"2"});
    for (const char* order : {"Value:down", ":desc", "", "Value:", "Name,,Value"}) {
        const auto run = Run({"instances", "TEST_Disk", "--sort", order});
        EXPECT_EQ(run.status, 2) << order;
        EXPECT_THAT(run.errors, HasSubstr("is nothing to sort by, such as Name, or Size:desc"));
    }
    EXPECT_THAT(Run({"instances", "TEST_Disk", "--sort", "Vaule"}).errors, HasSubstr("did you mean Value?"));
}

TEST_F(SelectionTest, ALimitShowsTheFirstInstancesAndSaysHowManyThereAre) {
    AnswerWith("uint32", {"3", "1", "2"});
    const auto run = Run({"instances", "TEST_Disk", "--sort", "Value:desc", "--limit", "2", "--property", "Value"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "Value\n-----\n    3\n    2\n");
    EXPECT_EQ(run.errors, "cimhttp: 2 of 3 instances shown; without --limit all are\n");
    EXPECT_EQ(Names({"--limit", "2"}).size(), 2U);
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--limit", "3"}).errors, "");
    EXPECT_THAT(Run({"instances", "TEST_Disk", "--limit", "0"}).errors, HasSubstr("--limit is 1 or more"));
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--limit", "0"}).status, 2);
}

TEST_F(SelectionTest, ALimitHoldsForListsOfPathsAndKeysToo) {
    server_.Answer("EnumerateInstanceNames", "TEST_Disk", PathXml("TEST_Disk", "b") + PathXml("TEST_Disk", "a"));
    const auto paths = Run({"instances", "TEST_Disk", "--paths", "--limit", "1"});
    EXPECT_EQ(paths.output, "TEST_Disk.Name=\"a\"\n");
    EXPECT_EQ(paths.errors, "cimhttp: 1 of 2 instances shown; without --limit all are\n");
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--keys", "--limit", "1"}).output, "Name\n----\na\n");
}

TEST_F(SelectionTest, ConditionsAlsoHoldForAServerThatDoesNotDescribeItsClasses) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "a", PropertyXml("Value", "uint32", "10")) +
                       InstanceXml("TEST_Disk", "b", PropertyXml("Value", "uint32", "9")));
    server_.Fail("GetClass", "TEST_Disk", 7, "not here");
    EXPECT_THAT(Where("Value<10"), ElementsAre("b"));
    EXPECT_THAT(Names({"--sort", "Value"}), ElementsAre("b", "a"));
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--where", "Value<x"}).status, 2);
}
