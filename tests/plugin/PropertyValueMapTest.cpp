#include "PropertyTest.h"

#include <limits>
#include <ostream>
#include <typeinfo>

namespace NQORVYX20 {

bool operator==(const TCimHTTPProperty::TValueMapEntry& left, const TCimHTTPProperty::TValueMapEntry& right) {
    return left.low == right.low && left.high == right.high && left.text == right.text;
}

std::ostream& operator<<(std::ostream& stream, const TCimHTTPProperty::TValueMapEntry& row) {
    return stream << row.low << " to " << row.high << ": " << row.text;
}

} // namespace NQORVYX20

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Rows = std::vector<TCimHTTPProperty::TValueMapEntry>;
using Strings = std::vector<std::string>;

constexpr unsigned long long kMax = std::numeric_limits<unsigned long long>::max();

Qualifiers ValueMap(const Strings& entries, const Strings& texts) {
    return {{"ValueMap", ArrayOf(entries)}, {"Values", ArrayOf(texts)}};
}

class PropertyValueMapTest : public PropertyTest {
  protected:
    bool Build(const Qualifiers& qualifiers) {
        return TCimHTTPProperty(Declare(Uint32(0), qualifiers)).BuildValueMapEntryArray(rows_, defaultText_);
    }

    /// What was there before must not matter.
    Rows rows_{{1, kMax, "left over"}};
    std::string defaultText_ = "left over";
};

} // namespace

// --- The table ---------------------------------------------------------------------------------------------------

TEST_F(PropertyValueMapTest, EveryFormOfEntryGivesItsRow) {
    struct TCase {
        Strings entries;
        Rows rows;
        std::string defaultText;
    };
    const std::vector<TCase> cases{
        {{}, {}, ""},
        // numbers
        {{"1"}, {{1, 1, "a"}}, ""},
        {{"0", "1"}, {{0, 0, "a"}, {1, 1, "b"}}, ""},
        {{"2", "1", "2"}, {{2, 2, "a"}, {1, 1, "b"}, {2, 2, "c"}}, ""},
        {{"007"}, {{7, 7, "a"}}, ""},
        {{"18446744073709551615"}, {{kMax, kMax, "a"}}, ""},
        // the default text
        {{".."}, {}, "a"},
        {{"1", ".."}, {{1, 1, "a"}}, "b"},
        {{"..", "1"}, {{1, 1, "b"}}, "a"},
        {{"..", ".."}, {}, "b"},
        // ranges from 0
        {{"..4"}, {{0, 4, "a"}}, ""},
        {{"..0"}, {{0, 0, "a"}}, ""},
        {{"..4", ".."}, {{0, 4, "a"}}, "b"},
        {{"..4..9"}, {{0, 4, "a"}}, ""},
        {{"..18446744073709551615"}, {{0, kMax, "a"}}, ""},
        // open ranges, ended by the next number
        {{"5.."}, {{5, kMax, "a"}}, ""},
        {{"0..", "10"}, {{0, 9, "a"}, {10, 10, "b"}}, ""},
        {{"0..", "10.."}, {{0, 9, "a"}, {10, kMax, "b"}}, ""},
        {{"0..", "10..", "20.."}, {{0, 9, "a"}, {10, 19, "b"}, {20, kMax, "c"}}, ""},
        {{"5..", "10", ".."}, {{5, 9, "a"}, {10, 10, "b"}}, "c"},
        {{"5..", "3"}, {{5, 2, "a"}, {3, 3, "b"}}, ""},
        {{"5..", "0"}, {{5, kMax, "a"}, {0, 0, "b"}}, ""},
        {{"5..", "..4"}, {{5, kMax, "a"}, {0, 4, "b"}}, ""},
        {{"5..", "..4", ".."}, {{5, kMax, "a"}, {0, 4, "b"}}, "c"},
        // the upper bound of a range is not read
        {{"5..9"}, {{5, kMax, "a"}}, ""},
        {{"5..9", "20"}, {{5, 19, "a"}, {20, 20, "b"}}, ""},
        {{"5..9", "10..19", "20.."}, {{5, 9, "a"}, {10, 19, "b"}, {20, kMax, "c"}}, ""},
        {{"5..x"}, {{5, kMax, "a"}}, ""},
        // what follows a number is ignored, unless it is two dots
        {{"5."}, {{5, 5, "a"}}, ""},
        {{"5.x"}, {{5, 5, "a"}}, ""},
        {{"5x"}, {{5, 5, "a"}}, ""},
        {{"5 .."}, {{5, 5, "a"}}, ""},
        {{"5..."}, {{5, kMax, "a"}}, ""},
        {{"0x10"}, {{0, 0, "a"}}, ""},
        // blanks and a plus before a number
        {{" \t5.."}, {{5, kMax, "a"}}, ""},
        {{"+5"}, {{5, 5, "a"}}, ""},
        {{".. 4"}, {{0, 4, "a"}}, ""},
    };
    const Strings texts{"a", "b", "c"};
    for (const auto& [entries, rows, defaultText] : cases) {
        SCOPED_TRACE(testing::PrintToString(entries));
        EXPECT_TRUE(Build(ValueMap(entries, texts)));
        EXPECT_EQ(rows_, rows);
        EXPECT_EQ(defaultText_, defaultText);
    }
}

TEST_F(PropertyValueMapTest, ADefaultAfterAnOpenRangeMakesTheMapUnusable) {
    for (const Strings& entries : {Strings{"5..", ".."}, Strings{"1", "5..9", ".."}, Strings{"..", "5..", ".."},
                                   Strings{"18446744073709551615", ".."}, Strings{"..18446744073709551615", ".."}}) {
        SCOPED_TRACE(testing::PrintToString(entries));
        EXPECT_FALSE(Build(ValueMap(entries, {"a", "b", "c"})));
        EXPECT_THAT(rows_, IsEmpty());
        EXPECT_EQ(defaultText_, "");
    }
}

TEST_F(PropertyValueMapTest, AnEntryWithoutAReadableNumberGivesNoRow) {
    for (const char* entry : {"", " ", "x", "TRUE", "-1", "-5..-1", "+-1", "18446744073709551616",
                              "99999999999999999999..", "...", "..x", "..-1", "..18446744073709551616", ". .", "."}) {
        SCOPED_TRACE(entry);
        EXPECT_TRUE(Build(ValueMap({"0..", entry, "7"}, {"a", "b", "c"})));
        EXPECT_THAT(rows_, ElementsAre(Rows::value_type{0, 6, "a"}, Rows::value_type{7, 7, "c"}));
    }
    EXPECT_EQ(TextOf(TCIMValue(false), ValueMap({"TRUE", "FALSE"}, {"yes", "no"})), "false");
}

TEST_F(PropertyValueMapTest, AMissingTextIsEmpty) {
    EXPECT_TRUE(Build(ValueMap({"1", "2", ".."}, {"one"})));
    EXPECT_THAT(rows_, ElementsAre(Rows::value_type{1, 1, "one"}, Rows::value_type{2, 2, ""}));
    EXPECT_EQ(defaultText_, "");
    EXPECT_EQ(TextOf(Uint32(2), ValueMap({"1", "2"}, {"one"})), "");
}

TEST_F(PropertyValueMapTest, ATextWithoutAnEntryIsIgnored) {
    EXPECT_TRUE(Build(ValueMap({"1"}, {"one", "two"})));
    EXPECT_THAT(rows_, ElementsAre(Rows::value_type{1, 1, "one"}));
    EXPECT_EQ(TextOf(Uint32(2), ValueMap({"1"}, {"one", "two"})), "2");
}

TEST_F(PropertyValueMapTest, ElementsThatAreNotStringsCountAsTheirText) {
    EXPECT_TRUE(Build({{"ValueMap", ArrayOf<unsigned short>({1, 20})}, {"Values", ArrayOf<int>({-1, 2})}}));
    EXPECT_THAT(rows_, ElementsAre(Rows::value_type{1, 1, "-1"}, Rows::value_type{20, 20, "2"}));
    const TCIMValue nulls(ECIMType::eCIMString, 0, {NullOf(ECIMType::eCIMString), TCIMValue("2")});
    EXPECT_TRUE(Build({{"ValueMap", nulls}, {"Values", nulls}}));
    EXPECT_THAT(rows_, ElementsAre(Rows::value_type{2, 2, "2"}));
}

TEST_F(PropertyValueMapTest, ThereIsNoMapUnlessBothQualifiersAreArrays) {
    const TCIMValue map = ArrayOf<std::string>({"1"});
    const std::vector<Qualifiers> cases{
        {},
        {{"ValueMap", map}},
        {{"Values", map}},
        {{"ValueMap", map}, {"Values", NullOf(ECIMType::eCIMStringArray)}},
        {{"ValueMap", NullOf(ECIMType::eCIMStringArray)}, {"Values", map}},
        {{"ValueMap", map}, {"Values", TCIMValue("1")}},
        {{"ValueMap", TCIMValue("1")}, {"Values", map}},
    };
    for (const auto& qualifiers : cases) {
        rows_ = {{1, kMax, "left over"}};
        EXPECT_FALSE(Build(qualifiers));
        EXPECT_THAT(rows_, IsEmpty());
        EXPECT_EQ(TextOf(Uint32(1), qualifiers), "1");
    }
}

TEST_F(PropertyValueMapTest, AMapWithoutEntriesShowsNumbers) { EXPECT_EQ(TextOf(Uint32(1), ValueMap({}, {})), "1"); }

// --- The look-up -------------------------------------------------------------------------------------------------

TEST_F(PropertyValueMapTest, AValueShowsTheTextOfItsRow) {
    struct TCase {
        Strings entries;
        Strings texts;
        std::vector<std::pair<unsigned long long, std::string>> shown;
    };
    const std::vector<TCase> cases{
        {{"1", "2", ".."}, {"On", "Off", "Unknown"}, {{1, "On"}, {2, "Off"}, {9, "Unknown"}, {0, "Unknown"}}},
        {{"1", "2"}, {"On", "Off"}, {{2, "Off"}, {9, "9"}}},
        {{"0..", "10"}, {"Low", "Ten"}, {{0, "Low"}, {5, "Low"}, {9, "Low"}, {10, "Ten"}, {11, "11"}}},
        {{"..4"}, {"Few"}, {{0, "Few"}, {4, "Few"}, {5, "5"}}},
        {{"5.."}, {"Many"}, {{4, "4"}, {5, "Many"}, {kMax, "Many"}}},
        {{"18446744073709551615"}, {"All"}, {{kMax, "All"}, {kMax - 1, "18446744073709551614"}}},
        {{"1", ".."}, {"On", ""}, {{9, "9"}}},
        {{"5..", "..4"}, {"Many", "Few"}, {{4, "Few"}, {5, "Many"}}},
    };
    for (const auto& [entries, texts, shown] : cases) {
        SCOPED_TRACE(testing::PrintToString(entries));
        for (const auto& [number, text] : shown) {
            EXPECT_EQ(TextOf(Uint64(number), ValueMap(entries, texts)), text);
        }
    }
}

TEST_F(PropertyValueMapTest, TheFirstOfOverlappingRowsWins) {
    const Qualifiers map = ValueMap({"3", "..4", "2"}, {"Three", "Few", "Two"});
    EXPECT_EQ(TextOf(Uint32(3), map), "Three");
    EXPECT_EQ(TextOf(Uint32(2), map), "Few");
}

TEST_F(PropertyValueMapTest, BooleansAndUnsignedIntegersAreMapped) {
    const Qualifiers map = ValueMap({"0", "1", "255"}, {"No", "Yes", "Full"});
    EXPECT_EQ(TextOf(TCIMValue(false), map), "No");
    EXPECT_EQ(TextOf(TCIMValue(true), map), "Yes");
    for (const auto& value : {Uint8(255), Uint16(255), Uint32(255), Uint64(255)}) {
        EXPECT_EQ(TextOf(value, map), "Full");
    }
    EXPECT_EQ(TextOf(TCIMValue(true), ValueMap({"0"}, {"No"})), "true");
}

TEST_F(PropertyValueMapTest, AllOtherValuesAreNotMapped) {
    const Qualifiers map = ValueMap({"1", ".."}, {"Yes", "Other"});
    for (const auto& value :
         {TCIMValue(static_cast<signed char>(1)), TCIMValue(static_cast<short>(1)), TCIMValue(1), TCIMValue(1LL),
          TCIMValue(1.0F), TCIMValue(1.0), TCIMValue("1"), TCIMValue(TCIMChar16("49"))}) {
        EXPECT_EQ(TextOf(value, map), "1");
    }
    EXPECT_EQ(TextOf(NullOf(ECIMType::eCIMUint8), map), "");
    EXPECT_EQ(TextOf(ArrayOf<unsigned char>({1, 2}), map), "{1, 2}");
}

TEST_F(PropertyValueMapTest, AMapGoesBeforeUnitsAndBase) {
    Qualifiers qualifiers = ValueMap({"2048"}, {"Page"});
    qualifiers.emplace_back("UNITS", TCIMValue("Bytes"));
    qualifiers.emplace_back("BASE", Uint8(16));
    EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "Page");
    EXPECT_EQ(TextOf(Uint32(1024), qualifiers), "1024") << "a value that is not in the map shows in base 10";
}

TEST_F(PropertyValueMapTest, AnUnusableMapLeavesTheTextToUnitsAndBase) {
    Qualifiers qualifiers = ValueMap({"5..", ".."}, {"Many", "Few"});
    EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "2048");
    qualifiers.emplace_back("BASE", Uint8(16));
    EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "800");
    qualifiers.emplace_back("UNITS", TCIMValue("Bytes"));
    EXPECT_EQ(TextOf(Uint32(2048), qualifiers), "2 Kilobytes");
}

TEST_F(PropertyValueMapTest, ThePreviousValueIsMappedLikeTheValue) {
    const auto declaration = Declare(Uint32(1), ValueMap({"1", "2"}, {"On", "Off"}));
    TCimHTTPProperty property(declaration);
    EXPECT_EQ(property.ToString(), "On") << "the default is mapped too";
    EXPECT_EQ(property.PrevValueToString(), "On");
    property.SetPrevValue(Uint32(2));
    EXPECT_EQ(property.ToString(), "On");
    EXPECT_EQ(property.PrevValueToString(), "Off");
}

TEST_F(PropertyValueMapTest, TheTextFollowsEveryChangeOfTheQualifiers) {
    const auto declaration = Declare(NullOf(ECIMType::eCIMUint32));
    const TCimHTTPProperty property(declaration, Uint32(1));
    EXPECT_EQ(property.ToString(), "1");

    AddQualifiers(*declaration, ValueMap({"1"}, {"On"}));
    EXPECT_EQ(property.ToString(), "On");
    EXPECT_EQ(property.ToString(), "On");

    const auto texts = declaration->LookupQualifier("Values");
    texts->SetValue(ArrayOf(Strings{"Enabled"}), TCIMContext());
    EXPECT_EQ(property.ToString(), "Enabled");

    const auto entries = declaration->LookupQualifier("ValueMap");
    entries->SetValue(ArrayOf(Strings{"5..", ".."}), TCIMContext()); // contradicts itself
    EXPECT_EQ(property.ToString(), "1");
    entries->SetValue(ArrayOf(Strings{"2"}), TCIMContext());
    EXPECT_EQ(property.ToString(), "1");
    entries->SetValue(ArrayOf(Strings{"1"}), TCIMContext());
    EXPECT_EQ(property.ToString(), "Enabled");

    declaration->RemoveQualifier(texts);
    EXPECT_EQ(property.ToString(), "1");
    for (const char* text : {"Up", "Running"}) { // the second differs from the first in nothing but its text
        AddQualifiers(*declaration, {{"Values", ArrayOf(Strings{text})}});
        EXPECT_EQ(property.ToString(), text);
        declaration->RemoveQualifier(declaration->LookupQualifier("Values"));
    }
}

TEST_F(PropertyValueMapTest, OnlyBooleansAndUnsignedIntegersCanBeLookedUp) {
    const TCimHTTPProperty property(Declare(Uint32(0)));
    Rows rows{{0, kMax, "any"}};
    std::string noText;
    EXPECT_EQ(property.LookupInTable(Uint32(1), rows, noText), "any");
    for (const auto& value : {TCIMValue(1), TCIMValue("1"), TCIMValue(1.0), ArrayOf<unsigned char>({1}),
                              NullOf(ECIMType::eCIMUint32), TCIMValue()}) {
        EXPECT_EQ(StatusOf([&] { property.LookupInTable(value, rows, noText); }), TVYXStatusCode::eNotSupported);
    }
}

TEST_F(PropertyValueMapTest, ALookupTakesTheTableThatWasBuiltAndLeavesItAsItIs) {
    // The operation's type is the one that a host links.
    std::string (TCimHTTPProperty::*const lookUp)(TCIMValue const&, Rows&, std::string&) const =
        &TCimHTTPProperty::LookupInTable;
    const TCimHTTPProperty property(Declare(Uint32(0), ValueMap({"1", "2", ".."}, {"On", "Off", "Other"})));
    ASSERT_TRUE(property.BuildValueMapEntryArray(rows_, defaultText_));
    for (const auto& [value, text] : {std::pair(1U, "On"), std::pair(2U, "Off"), std::pair(9U, "Other")}) {
        EXPECT_EQ((property.*lookUp)(Uint32(value), rows_, defaultText_), text);
    }
    EXPECT_EQ(rows_.size(), 2U);
    EXPECT_EQ(defaultText_, "Other");
    defaultText_.clear();
    EXPECT_EQ((property.*lookUp)(Uint32(9), rows_, defaultText_), "9");
}

// --- Arrays ------------------------------------------------------------------------------------------------------

TEST_F(PropertyValueMapTest, TheElementsOfAnArrayAreMappedInTheirOrder) {
    const Qualifiers map = ValueMap({"0", "1", "200", ".."}, {"No", "Yes", "Full", "Other"});
    EXPECT_THAT(TextsOf(ArrayOf<bool>({true, false}), map), ElementsAre("Yes", "No"));
    const auto expected = ElementsAre("Full", "Yes", "Other");
    EXPECT_THAT(TextsOf(ArrayOf<unsigned char>({200, 1, 5}), map), expected);
    EXPECT_THAT(TextsOf(ArrayOf<unsigned short>({200, 1, 5}), map), expected);
    EXPECT_THAT(TextsOf(ArrayOf<unsigned int>({200, 1, 5}), map), expected);
    EXPECT_THAT(TextsOf(ArrayOf<unsigned long long>({200, 1, 5}), map), expected);
    EXPECT_THAT(TextsOf(ArrayOf<unsigned char>({}), map), IsEmpty());
}

TEST_F(PropertyValueMapTest, ArraysOfOtherTypesAreNotMapped) {
    const Qualifiers map = ValueMap({"1", ".."}, {"Yes", "Other"});
    EXPECT_THAT(TextsOf(ArrayOf<int>({1, 2}), map), ElementsAre("1", "2"));
    EXPECT_THAT(TextsOf(ArrayOf<std::string>({"1", "2"}), map), ElementsAre("1", "2"));
}

TEST_F(PropertyValueMapTest, WithoutAMapElementsShowWithTheirUnit) {
    const TCIMValue sizes = ArrayOf<unsigned int>({1, 2048});
    EXPECT_THAT(TextsOf(sizes, {{"UNITS", TCIMValue("Bytes")}}), ElementsAre("1 Bytes", "2 Kilobytes"));
    EXPECT_THAT(TextsOf(sizes, {{"BASE", Uint8(16)}}), ElementsAre("1", "800"));
    Qualifiers unusable = ValueMap({"5..", ".."}, {"Many", "Few"});
    unusable.emplace_back("UNITS", TCIMValue("Bytes"));
    EXPECT_THAT(TextsOf(sizes, unusable), ElementsAre("1 Bytes", "2 Kilobytes"));
}

TEST_F(PropertyValueMapTest, ToStringVectorWithBaseLeavesTheMapOut) {
    const TCIMValue numbers = ArrayOf<unsigned int>({1, 2});
    const TCimHTTPProperty property(Declare(numbers, ValueMap({"1"}, {"One"})));
    EXPECT_THAT(property.ToStringVector(), ElementsAre("One", "2"));
    EXPECT_THAT(property.ToStringVectorWithBase(), ElementsAre("1", "2"));
}

TEST_F(PropertyValueMapTest, AScalarGivesOneTextWithoutTheMap) {
    EXPECT_THAT(TextsOf(Uint32(1), ValueMap({"1"}, {"One"})), ElementsAre("1"));
    EXPECT_THAT(TextsOf(Uint32(2048), {{"UNITS", TCIMValue("Bytes")}}), ElementsAre("2 Kilobytes"));
    EXPECT_THAT(TextsOf(NullOf(ECIMType::eCIMUint32), {{"NULLDISPLAY", TCIMValue("n/a")}}), ElementsAre("n/a"));
}

TEST_F(PropertyValueMapTest, TheDeclarationSaysWhetherThereIsOneTextOrMany) {
    const auto declaration = Declare(ArrayOf<int>({1, 2}));
    const TCimHTTPProperty property(declaration, ArrayOf<int>({3, 4}));
    EXPECT_THAT(property.ToStringVector(), ElementsAre("3", "4"));
    declaration->SetDefaultValue(TCIMValue(1), {});
    EXPECT_THAT(property.ToStringVector(), ElementsAre("{3, 4}"));
}

TEST_F(PropertyValueMapTest, ANullArrayHasNoTexts) {
    const Qualifiers map = ValueMap({"1"}, {"One"});
    EXPECT_THAT(TextsOf(NullOf(ECIMType::eCIMUint8Array), map), IsEmpty());
    EXPECT_THAT(TextsOf(NullOf(ECIMType::eCIMStringArray), map), IsEmpty());
}

TEST_F(PropertyValueMapTest, ANullElementShowsAsNullDoes) {
    const TCIMValue numbers(ECIMType::eCIMUint8, 0, {Uint8(1), NullOf(ECIMType::eCIMUint8)});
    Qualifiers qualifiers = ValueMap({"1", ".."}, {"One", "Other"});
    EXPECT_THAT(TextsOf(numbers, qualifiers), ElementsAre("One", ""));
    qualifiers.emplace_back("NULLDISPLAY", TCIMValue("n/a"));
    EXPECT_THAT(TextsOf(numbers, qualifiers), ElementsAre("One", "n/a"));
}

// --- Look-ups of qualifiers that fail ----------------------------------------------------------------------------

TEST_F(PropertyValueMapTest, AFailedLookUpLeavesAsAnExceptionOfItsCode) {
    struct TCase {
        std::string qualifier;
        TCIMValue value;
        Qualifiers others;
    };
    const TCIMValue texts = ArrayOf<std::string>({"One"});
    const std::vector<TCase> cases{
        {"Values", Uint32(1), {}},
        {"ValueMap", Uint32(1), {{"Values", texts}}},
        {"NULLDISPLAY", NullOf(ECIMType::eCIMUint32), {}},
        {"BASE", Uint32(1), {}},
        {"UNITS", Uint32(1), {}},
        {"DISPLAYCPUTIME", Uint32(1), {{"UNITS", TCIMValue("Seconds")}}},
        {"DISPLAYFIXEDUNITS", Uint32(1), {{"UNITS", TCIMValue("Bytes")}}},
        {"ABBREVIATEUNITS", Uint32(1), {{"UNITS", TCIMValue("Bytes")}}},
    };
    for (const auto& [qualifier, value, others] : cases) {
        SCOPED_TRACE(qualifier);
        const auto failing = boost::make_shared<FailingDecl>(value, qualifier, 31);
        AddQualifiers(*failing, others);
        try {
            TCimHTTPProperty{boost::shared_ptr<ICIMPropertyDecl const>(failing)}.ToString();
            ADD_FAILURE() << "the look-up was not reported";
        } catch (const TVYXException& exception) {
            EXPECT_EQ(exception.GetStatusCode().GetCode(), TVYXStatusCode::eReadOnly);
            EXPECT_EQ(typeid(exception), typeid(TVYXException)) << "a new exception, not the look-up's own";
        }
        const auto absent = boost::make_shared<FailingDecl>(value, qualifier, 15);
        AddQualifiers(*absent, others);
        EXPECT_NO_THROW(TCimHTTPProperty{boost::shared_ptr<ICIMPropertyDecl const>(absent)}.ToString());
    }
}

TEST_F(PropertyValueMapTest, OnlyTheQualifiersThatMatterAreLookedUp) {
    struct TCase {
        TCIMValue value;
        Qualifiers qualifiers;
        Strings others;
    };
    const std::vector<TCase> cases{
        {NullOf(ECIMType::eCIMUint32), {}, {"Values", "ValueMap", "BASE", "UNITS"}},
        {TCIMValue(1), {}, {"NULLDISPLAY", "Values", "ValueMap", "UNITS"}},
        {TCIMValue(true), {}, {"NULLDISPLAY", "ValueMap", "UNITS"}},
        {Uint32(1), {}, {"NULLDISPLAY", "ValueMap", "DISPLAYCPUTIME", "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS"}},
        {Uint32(1), ValueMap({"1"}, {"One"}), {"NULLDISPLAY", "BASE", "UNITS"}},
        {Uint32(1), {{"UNITS", TCIMValue("Seconds")}}, {"BASE", "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS"}},
        {Uint32(1), {{"UNITS", TCIMValue("Bytes")}}, {"BASE", "DISPLAYCPUTIME"}},
        {Uint32(1), {{"UNITS", TCIMValue("Volts")}}, {"DISPLAYCPUTIME", "DISPLAYFIXEDUNITS", "ABBREVIATEUNITS"}},
    };
    for (const auto& [value, qualifiers, others] : cases) {
        for (const auto& other : others) {
            SCOPED_TRACE(testing::PrintToString(qualifiers.size()) + " qualifiers, without " + other);
            const auto failing = boost::make_shared<FailingDecl>(value, other, 31);
            AddQualifiers(*failing, qualifiers);
            EXPECT_NO_THROW(TCimHTTPProperty{boost::shared_ptr<ICIMPropertyDecl const>(failing)}.ToString());
        }
    }
}
