// Letter case as the plug-in understands it: A to Z and nothing else.

#include "convert/LetterCase.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace NQORVYX20;

TEST(LetterCase, OnlyLettersFromAToZHaveIt) {
    for (int code = 0; code < 256; ++code) {
        const char letter = static_cast<char>(code);
        const bool isUpper = code >= 0x41 && code <= 0x5a;
        EXPECT_EQ(ToLower(letter), isUpper ? static_cast<char>(code + 0x20) : letter) << code;
    }
}

TEST(LetterCase, ATextBecomesLowerCaseByteByByte) {
    EXPECT_EQ(LowerCase("CIM_System2 \xc3\x84"), "cim_system2 \xc3\x84");
    EXPECT_EQ(LowerCase(std::string("A\0B", 3)), std::string("a\0b", 3));
    EXPECT_EQ(LowerCase(""), "");
}

TEST(LetterCase, TextsThatDifferInNothingElseAreEqualAndHaveOneHash) {
    for (const std::string text : {"", "_", "Name", "EightSix", "NineBytes", "SixteenBytesLong", "\xc3\x84hnlichkeit",
                                   "A much longer text than most of the names that are looked up"}) {
        EXPECT_TRUE(EqualInAnyCase()(text, LowerCase(text)));
        EXPECT_EQ(HashInAnyCase()(text), HashInAnyCase()(LowerCase(text)));
    }
}

TEST(LetterCase, TextsThatDifferInMoreAreNotEqual) {
    const std::pair<std::string, std::string> pairs[] = {
        {"a", "b"}, {"a", "aa"}, {"", "a"}, {"_", "\x7f"}, {"0", "\x10"}, {"@", "`"}, {"\xc3\x84", "\xc3\xa4"}};
    for (const auto& [left, right] : pairs) {
        EXPECT_FALSE(EqualInAnyCase()(left, right)) << left << ' ' << right;
    }
}
