// Value maps as DSP0004 has them, for faithful namespaces.

#include "display/StandardValueMap.h"

#include <gtest/gtest.h>

using namespace NQORVYX20;

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;
using Strings = std::vector<std::string>;

/// The text of a value in a map of its type.
std::string TextOf(const TCIMValue& value, const std::optional<Strings>& entries, const Strings& texts) {
    const StandardValueMap map(value.GetType(), entries, texts);
    const std::string* const text = map.Find(value);
    return text == nullptr ? "nothing" : *text;
}

TCIMValue Uint8(unsigned char number) { return {number}; }
TCIMValue Sint8(signed char number) { return {number}; }

} // namespace

TEST(StandardValueMap, FindsNumbersInEveryNotation) {
    for (const char* entry : {"10", "0xA", "0Xa", "012", "1010b", "1010B", "+10", " 10 "}) {
        EXPECT_EQ(TextOf(Uint8(10), Strings{entry}, {"ten"}), "ten") << entry;
    }
    for (const char* entry : {"", "ten", "0x", "b", "12b", "-10", "10.5"}) {
        EXPECT_EQ(TextOf(Uint8(10), Strings{entry}, {"ten"}), "nothing") << entry;
    }
    EXPECT_EQ(TextOf(Uint8(89), Strings{"089"}, {"no octal number"}), "no octal number");
}

TEST(StandardValueMap, FindsNumbersInRanges) {
    const Strings entries{"..1", "5..7", "100.."};
    const Strings texts{"low", "middle", "high"};
    EXPECT_EQ(TextOf(Uint8(0), entries, texts), "low");
    EXPECT_EQ(TextOf(Uint8(1), entries, texts), "low");
    EXPECT_EQ(TextOf(Uint8(2), entries, texts), "nothing");
    EXPECT_EQ(TextOf(Uint8(5), entries, texts), "middle");
    EXPECT_EQ(TextOf(Uint8(7), entries, texts), "middle");
    EXPECT_EQ(TextOf(Uint8(8), entries, texts), "nothing");
    EXPECT_EQ(TextOf(Uint8(255), entries, texts), "high");
}

TEST(StandardValueMap, FindsSignedNumbers) {
    const Strings entries{"..-2", "-1", "0..127"};
    const Strings texts{"early", "just early", "late"};
    EXPECT_EQ(TextOf(Sint8(-128), entries, texts), "early");
    EXPECT_EQ(TextOf(Sint8(-2), entries, texts), "early");
    EXPECT_EQ(TextOf(Sint8(-1), entries, texts), "just early");
    EXPECT_EQ(TextOf(Sint8(0), entries, texts), "late");
}

TEST(StandardValueMap, FindsTruthInAnyLetterCase) {
    EXPECT_EQ(TextOf(TCIMValue(true), Strings{"FALSE", "True"}, {"no", "yes"}), "yes");
    EXPECT_EQ(TextOf(TCIMValue(false), Strings{"FALSE", "True"}, {"no", "yes"}), "no");
    EXPECT_EQ(TextOf(TCIMValue(true), Strings{"0", "1"}, {"no", "yes"}), "yes");
    EXPECT_EQ(TextOf(TCIMValue(true), Strings{"truth"}, {"yes"}), "nothing");
}

TEST(StandardValueMap, FindsTextsAsTheyAre) {
    EXPECT_EQ(TextOf(TCIMValue("on"), Strings{"off", "on"}, {"Off", "On"}), "On");
    EXPECT_EQ(TextOf(TCIMValue("ON"), Strings{"off", "on"}, {"Off", "On"}), "nothing");
}

TEST(StandardValueMap, CountsTheTextsFromZeroWhereThereAreNoEntries) {
    EXPECT_EQ(TextOf(Uint8(1), std::nullopt, {"zero", "one"}), "one");
    EXPECT_EQ(TextOf(Uint8(2), std::nullopt, {"zero", "one"}), "nothing");
    EXPECT_EQ(TextOf(TCIMValue("0"), std::nullopt, {"zero"}), "nothing") << "a text has no place";
    EXPECT_EQ(TextOf(Uint8(0), Strings{}, {"zero"}), "nothing") << "entries are there, and none claims it";
}

TEST(StandardValueMap, GivesTwoDotsToWhatNoOtherEntryClaims) {
    EXPECT_EQ(TextOf(Uint8(9), Strings{"..", "1"}, {"other", "one"}), "other");
    EXPECT_EQ(TextOf(Uint8(1), Strings{"..", "1"}, {"other", "one"}), "one");
    EXPECT_EQ(TextOf(TCIMValue("x"), Strings{"..", "y"}, {"other", "why"}), "other");
}

TEST(StandardValueMap, LetsTheFirstOfOverlappingEntriesCount) {
    EXPECT_EQ(TextOf(Uint8(3), Strings{"3", "..4"}, {"three", "few"}), "three");
    EXPECT_EQ(TextOf(Uint8(3), Strings{"..4", "3"}, {"few", "three"}), "few");
}

TEST(StandardValueMap, HasNoTextForAnEmptyOne) {
    EXPECT_EQ(TextOf(Uint8(1), Strings{"1", "2"}, {"", "two"}), "nothing");
    EXPECT_EQ(TextOf(Uint8(2), Strings{"1", "2"}, {"one"}), "nothing");
}
