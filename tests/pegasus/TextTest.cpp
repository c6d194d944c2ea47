// What the folder `text` has for all others: ASCII, hexadecimal digits and UTF-8.

#include "text/Ascii.h"
#include "text/Hexadecimal.h"
#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace Pegasus::text;

std::string allBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(Ascii, KnowsLettersAndDigitsOfAsciiAlone) {
    std::string letters;
    std::string digits;
    for (const char c : allBytes()) {
        letters += isLetter(c) ? std::string(1, c) : "";
        digits += isDigit(c) ? std::string(1, c) : "";
    }
    EXPECT_EQ(letters, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(digits, "0123456789");
}

TEST(Ascii, ChangesTheCaseOfLettersAndNothingElse) {
    for (const char c : allBytes()) {
        EXPECT_EQ(raised(lowered(c)), isLetter(c) ? raised(c) : c);
        EXPECT_EQ(lowered(c) == c, c < 'A' || c > 'Z');
        EXPECT_EQ(raised(c) == c, c < 'a' || c > 'z');
    }
    EXPECT_EQ(lowered('Q'), 'q');
    EXPECT_EQ(raised('q'), 'Q');
}

TEST(Ascii, ComparesWithoutTheCaseOfLetters) {
    EXPECT_TRUE(equalIgnoringCase("Content-LENGTH", "content-length"));
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_FALSE(equalIgnoringCase("a", "ab"));
    EXPECT_FALSE(equalIgnoringCase("[", "{")) << "as far apart as letters are in the two cases";
    EXPECT_FALSE(equalIgnoringCase("\xC3\x84", "\xC3\xA4")) << "letters beyond ASCII";
}

TEST(Hexadecimal, WritesBytesAndReadsDigitsInEitherCase) {
    std::string text;
    appendHex(0x00, text);
    appendHex(0x9A, text);
    appendHex(0xFF, text);
    EXPECT_EQ(text, "009AFF");
    for (unsigned number = 0; number < 16; ++number) {
        EXPECT_EQ(hexNumber(hexDigit(number)), number);
        EXPECT_EQ(hexNumber(lowered(hexDigit(number))), number);
    }
    for (const char c : {'g', 'G', '/', ':', '@', '`', ' ', '\0', '\xB0'}) {
        EXPECT_FALSE(hexNumber(c).has_value()) << c;
    }
}

TEST(Utf8, ReadsEachCharacterThatItWrites) {
    for (const std::uint32_t codePoint : {0x0U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xFFFFU, 0x10000U, 0x10FFFFU}) {
        std::string text;
        appendUtf8(codePoint, text);
        const Utf8Character first = firstCharacter(text + "x");
        EXPECT_EQ(first.length, text.size()) << codePoint;
        EXPECT_EQ(first.codePoint, codePoint);
        EXPECT_TRUE(isUtf8(text));
    }
}

TEST(Utf8, HasNoCharacterThatIsCutOverlongOrBeyondTheLast) {
    for (const char* text : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3x", "\xE0\x9F\xBF", "\xE2\x82",
                             "\xE2\x82x", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        EXPECT_EQ(firstCharacter(text).length, 0U) << text;
        EXPECT_FALSE(isUtf8(text)) << text;
    }
}

TEST(Utf8, TakesHalfOfASurrogatePairForACharacterOfATextThatIsNotUtf8) {
    EXPECT_EQ(firstCharacter("\xED\xA0\x80").codePoint, 0xD800U);
    EXPECT_TRUE(isSurrogate(0xD800) && isSurrogate(0xDFFF));
    EXPECT_FALSE(isSurrogate(0xD7FF) || isSurrogate(0xE000));
    EXPECT_FALSE(isUtf8("\xED\xA0\x80"));
}

TEST(Utf8, CutsATextBetweenCharacters) {
    const std::string_view text = "a\xE2\x82\xAC\xF0\x9F\x98\x80";
    EXPECT_EQ(beginningOf(text, 0), "");
    EXPECT_EQ(beginningOf(text, 1), "a");
    EXPECT_EQ(beginningOf(text, 3), "a");
    EXPECT_EQ(beginningOf(text, 4), "a\xE2\x82\xAC");
    EXPECT_EQ(beginningOf(text, 7), "a\xE2\x82\xAC");
    EXPECT_EQ(beginningOf(text, 8), text);
    EXPECT_EQ(beginningOf(text, 100), text);
}

} // namespace
