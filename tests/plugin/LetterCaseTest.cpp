// Letter case as the plug-in understands it: A to Z and nothing else.

#include "convert/LetterCase.h"

#include <gtest/gtest.h>

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
