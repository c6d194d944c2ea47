#include "cimxml/ScalarDecoder.h"

#include "xml/DecodingError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace Pegasus;
using cimxml::decodeScalar;
using cimxml::decodeType;
using cimxml::isNumber;
using cimxml::readBoolean;
using xml::DecodingError;

/// What is wrong with a text as a scalar of some type; empty where it is one.
template <class T>
std::string errorOf(std::string_view text) {
    try {
        decodeScalar<T>(text);
        return "";
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind, DecodingError::Kind::Content) << text;
        return error.what;
    }
}

TEST(ScalarDecoder, ReadsBooleansInEitherCase) {
    for (const char* text : {"TRUE", "true", "True", " \r\ntrue\t"}) {
        EXPECT_TRUE(decodeScalar<Boolean>(text)) << text;
    }
    EXPECT_FALSE(decodeScalar<Boolean>("FALSE"));
    EXPECT_EQ(readBoolean("faLse"), false);
    for (const char* text : {"", "1", "tru", "truee", "yes", "\x54RUe\x01"}) {
        EXPECT_FALSE(readBoolean(text).has_value()) << text;
        EXPECT_EQ(errorOf<Boolean>(text), "not a boolean: " + std::string(text));
    }
}

TEST(ScalarDecoder, ReadsIntegersUpToTheEndsOfTheirTypes) {
    EXPECT_EQ(decodeScalar<Uint8>("255"), 255);
    EXPECT_EQ(decodeScalar<Sint8>("-128"), -128);
    EXPECT_EQ(decodeScalar<Sint8>("127"), 127);
    EXPECT_EQ(decodeScalar<Uint16>("65535"), 65535);
    EXPECT_EQ(decodeScalar<Sint16>("-32768"), -32768);
    EXPECT_EQ(decodeScalar<Uint32>("4294967295"), 4294967295U);
    EXPECT_EQ(decodeScalar<Sint32>("-2147483648"), std::numeric_limits<Sint32>::min());
    EXPECT_EQ(decodeScalar<Uint64>("18446744073709551615"), std::numeric_limits<Uint64>::max());
    EXPECT_EQ(decodeScalar<Sint64>("-9223372036854775808"), std::numeric_limits<Sint64>::min());
}

TEST(ScalarDecoder, RefusesIntegersBeyondTheEndsOfTheirTypes) {
    EXPECT_EQ(errorOf<Uint8>("256"), "integer out of range: 256");
    EXPECT_EQ(errorOf<Uint8>("-1"), "integer out of range: -1");
    EXPECT_EQ(errorOf<Sint8>("128"), "integer out of range: 128");
    EXPECT_EQ(errorOf<Sint8>("-129"), "integer out of range: -129");
    EXPECT_EQ(errorOf<Uint16>("65536"), "integer out of range: 65536");
    EXPECT_EQ(errorOf<Sint64>("9223372036854775808"), "integer out of range: 9223372036854775808");
    EXPECT_EQ(errorOf<Uint64>("18446744073709551616"), "integer out of range: 18446744073709551616");
}

TEST(ScalarDecoder, ReadsIntegersWithASignInBase16AndWithWhiteSpaceAroundThem) {
    EXPECT_EQ(decodeScalar<Uint8>("+7"), 7);
    EXPECT_EQ(decodeScalar<Uint8>("-0"), 0);
    EXPECT_EQ(decodeScalar<Uint32>("0xfF"), 255U);
    EXPECT_EQ(decodeScalar<Sint32>("-0X10"), -16);
    EXPECT_EQ(decodeScalar<Uint16>("\n 42\t"), 42);
    for (const char* text : {"", "-", "0x", "1.0", "1 2", "--1", "+-1", "1e3", "0xg", "ten"}) {
        EXPECT_EQ(errorOf<Sint32>(text), "not an integer: " + std::string(text));
    }
}

TEST(ScalarDecoder, ReadsRealsAsCWritesThem) {
    EXPECT_EQ(decodeScalar<Real64>("1.5"), 1.5);
    EXPECT_EQ(decodeScalar<Real64>(" -2e3 "), -2000.0);
    EXPECT_EQ(decodeScalar<Real64>("+.25"), 0.25);
    EXPECT_EQ(decodeScalar<Real64>("0x1p4"), 16.0);
    EXPECT_EQ(decodeScalar<Real32>("3.4028235e38"), std::numeric_limits<Real32>::max());
    EXPECT_TRUE(std::isnan(decodeScalar<Real64>("nan")));
    for (const char* text : {"", "-", "1,5", "1.5x", "e5", "--1", "-+1"}) {
        EXPECT_EQ(errorOf<Real64>(text), "not a real: " + std::string(text));
        EXPECT_FALSE(isNumber(text));
    }
    EXPECT_TRUE(isNumber("1.5"));
    EXPECT_TRUE(isNumber(" 12 "));
}

TEST(ScalarDecoder, MakesRealsInfiniteThatAreTooLargeAndZeroThatAreTooSmall) {
    constexpr Real64 kInfinite = std::numeric_limits<Real64>::infinity();
    EXPECT_EQ(decodeScalar<Real64>("1e999"), kInfinite);
    EXPECT_EQ(decodeScalar<Real64>("-1e999"), -kInfinite);
    EXPECT_EQ(decodeScalar<Real32>("1e39"), std::numeric_limits<Real32>::infinity());
    EXPECT_EQ(decodeScalar<Real64>("1e-999"), 0.0);
    EXPECT_TRUE(std::signbit(decodeScalar<Real64>("-1e-999")));
}

TEST(ScalarDecoder, ReadsOneCharacterOfUtf16AsChar16) {
    EXPECT_EQ(Uint16(decodeScalar<Char16>("A")), 'A');
    EXPECT_EQ(Uint16(decodeScalar<Char16>(" ")), ' ');
    EXPECT_EQ(Uint16(decodeScalar<Char16>("\xE2\x82\xAC")), 0x20AC);
    for (const char* text : {"", "AB", "\xF0\x9F\x98\x80", "\xE2\x82\xACx", "\xE2\x82", "\xFF"}) {
        EXPECT_EQ(errorOf<Char16>(text), "not one UTF-16 character: " + std::string(text));
    }
}

TEST(ScalarDecoder, KeepsATextWithItsWhiteSpace) {
    EXPECT_EQ(decodeScalar<String>(" a\n"), String(" a\n"));
    EXPECT_EQ(decodeScalar<String>(""), String());
}

TEST(ScalarDecoder, ReadsDateTimesAndShowsThoseThatAreNone) {
    EXPECT_EQ(decodeScalar<CIMDateTime>(" 20261122184500.000000+000 ").toString(), String("20261122184500.000000+000"));
    try {
        decodeScalar<CIMDateTime>("yesterday");
        FAIL() << "no error";
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind, DecodingError::Kind::Content);
        EXPECT_EQ(error.value, "yesterday");
    }
}

TEST(ScalarDecoder, KeepsTheTextThatIsNoValueForWhoeverReportsIt) {
    try {
        decodeScalar<Uint8>(" x ");
        FAIL() << "no error";
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.value, " x ");
    }
}

TEST(ScalarDecoder, KnowsTheTypesByTheirNames) {
    const std::vector<std::pair<const char*, CIMType>> types = {
        {"boolean", CIMTYPE_BOOLEAN}, {"uint8", CIMTYPE_UINT8},      {"sint8", CIMTYPE_SINT8},
        {"uint16", CIMTYPE_UINT16},   {"sint16", CIMTYPE_SINT16},    {"uint32", CIMTYPE_UINT32},
        {"sint32", CIMTYPE_SINT32},   {"uint64", CIMTYPE_UINT64},    {"sint64", CIMTYPE_SINT64},
        {"real32", CIMTYPE_REAL32},   {"real64", CIMTYPE_REAL64},    {"char16", CIMTYPE_CHAR16},
        {"string", CIMTYPE_STRING},   {"datetime", CIMTYPE_DATETIME}};
    for (const auto& [name, type] : types) {
        EXPECT_EQ(decodeType(name), type) << name;
        EXPECT_EQ(decodeType(" " + std::string(name) + "\n"), type) << name;
    }
    for (const char* name : {"", "String", "reference", "uint128", "datetimes", "xdatetime"}) {
        EXPECT_THROW(decodeType(name), DecodingError) << name;
    }
}

} // namespace
