// Each form that the elements, attributes and values of an answer may have (DSP0201), and the malformed ones, in
// tables.

#include "AnswerBody.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace Pegasus;
using testing::HasSubstr;
using testing::SizeIs;

std::string property(const std::string& type, const std::string& text) {
    return "<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"" + type + "\"><VALUE>" + text +
           "</VALUE></PROPERTY></INSTANCE>";
}

CIMValue valueOf(const std::string& type, const std::string& text) {
    return decodeBodyWith(property(type, text)).instances.at(0).getProperty(0).getValue();
}

std::string valueErrorOf(const std::string& type, const std::string& text) {
    return errorInBodyWith(property(type, text));
}

// ---- Integers ----

/// The decimal digits of the next higher number.
std::string successor(std::string digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return digits;
        }
        *digit = '0';
    }
    return '1' + digits;
}

std::string hexadecimal(Uint64 number, const char* digits) {
    std::string text;
    for (; number != 0; number >>= 4U) {
        text.insert(text.begin(), digits[number & 0xFU]);
    }
    return text;
}

template <class T>
class IntegerFormsTest : public testing::Test {
  protected:
    static constexpr bool kSigned = std::is_signed_v<T>;
    static constexpr T kMin = std::numeric_limits<T>::min();
    static constexpr T kMax = std::numeric_limits<T>::max();
    static constexpr Uint64 kMaxBits = ~Uint64{0} >> (64U - std::numeric_limits<T>::digits);

    static std::string type() { return cimTypeToString(CIMValue(T()).getType()); }
    static CIMValue read(const std::string& text) { return valueOf(type(), text); }
    static std::string errorOf(const std::string& text) { return valueErrorOf(type(), text); }
};

using IntegerTypes = testing::Types<Uint8, Sint8, Uint16, Sint16, Uint32, Sint32, Uint64, Sint64>;
TYPED_TEST_SUITE(IntegerFormsTest, IntegerTypes, );

TYPED_TEST(IntegerFormsTest, EveryFormIsRead) {
    const std::string max = std::to_string(this->kMax);
    std::vector<std::pair<std::string, TypeParam>> forms = {
        {"0", TypeParam(0)},          {"-0", TypeParam(0)},
        {"+0", TypeParam(0)},         {"7", TypeParam(7)},
        {"+7", TypeParam(7)},         {"007", TypeParam(7)},
        {"0x7", TypeParam(7)},        {"0X07", TypeParam(7)},
        {"0xa", TypeParam(10)},       {"0xA", TypeParam(10)},
        {"+0x7", TypeParam(7)},       {" 7", TypeParam(7)},
        {"7 ", TypeParam(7)},         {"\t\r\n7\n", TypeParam(7)},
        {"&#55;", TypeParam(7)},      {"<![CDATA[7]]>", TypeParam(7)},
        {"1<!-- -->2", TypeParam(12)}};
    forms.emplace_back(max, this->kMax);
    forms.emplace_back(std::string(100, '0') + max, this->kMax);
    forms.emplace_back("0x" + hexadecimal(this->kMaxBits, "0123456789abcdef"), this->kMax);
    forms.emplace_back("0x000" + hexadecimal(this->kMaxBits, "0123456789ABCDEF"), this->kMax);
    forms.emplace_back(std::to_string(this->kMin), this->kMin);
    if (this->kSigned) {
        forms.emplace_back("-7", static_cast<TypeParam>(-7));
        forms.emplace_back("-0x7", static_cast<TypeParam>(-7));
        forms.emplace_back("-0x" + hexadecimal(this->kMaxBits + 1, "0123456789abcdef"), this->kMin);
    }
    for (const auto& [text, number] : forms) {
        EXPECT_EQ(this->read(text), CIMValue(number)) << text;
    }
}

TYPED_TEST(IntegerFormsTest, OneBeyondTheRangeIsAnErrorAndSoIsMuchMore) {
    const std::string max = std::to_string(this->kMax);
    const std::string beyondBits = this->kMaxBits == std::numeric_limits<Uint64>::max()
                                       ? "10000000000000000"
                                       : hexadecimal(this->kMaxBits + 1, "0123456789abcdef");
    std::vector<std::string> outside = {successor(max),
                                        '+' + successor(max),
                                        "0x" + beyondBits,
                                        '-' + successor(this->kSigned ? successor(max) : "0"),
                                        std::string(100, '9'),
                                        '-' + std::string(100, '9'),
                                        "0x" + std::string(100, 'f')};
    if (!this->kSigned) {
        outside.emplace_back("-0x1");
    }
    for (const std::string& text : outside) {
        EXPECT_THAT(this->errorOf(text), HasSubstr("integer out of range: " + text));
    }
}

TYPED_TEST(IntegerFormsTest, WhatIsNoIntegerIsAnError) {
    for (const char* text :
         {"",    " ",   "-",    "+",   "x",   "0x",  "0xg",   "x7",   "7x",       "7.",        "7.0",
          "7 7", "--7", "+-7",  "- 7", "7-",  "7e0", "7,0",   "1_0",  "0x-7",     "0x 7",      "0b1",
          "1b",  "#7",  "TRUE", "NaN", "INF", "'7'", "\"7\"", "0x7.", "\xD9\xA7", "7\xC2\xA0", "\xEF\xBC\x97"}) {
        EXPECT_THAT(this->errorOf(text), HasSubstr("not an integer: ")) << text;
    }
}

// ---- Reals ----

template <class T>
class RealFormsTest : public testing::Test {
  protected:
    static std::string type() { return cimTypeToString(CIMValue(T()).getType()); }

    static T read(const std::string& text) {
        T number{};
        valueOf(type(), text).get(number);
        return number;
    }
};

using RealTypes = testing::Types<Real32, Real64>;
TYPED_TEST_SUITE(RealFormsTest, RealTypes, );

TYPED_TEST(RealFormsTest, EveryFormIsRead) {
    const std::vector<std::pair<const char*, TypeParam>> forms = {
        {"0", TypeParam(0)},           {"+0", TypeParam(0)},
        {"7", TypeParam(7)},           {"7.", TypeParam(7)},
        {".5", TypeParam(0.5)},        {"-.5", TypeParam(-0.5)},
        {"+1.25", TypeParam(1.25)},    {"007.50", TypeParam(7.5)},
        {"1e3", TypeParam(1000)},      {"1E3", TypeParam(1000)},
        {"1e+3", TypeParam(1000)},     {"125e-2", TypeParam(1.25)},
        {"1e0003", TypeParam(1000)},   {"0e999999999", TypeParam(0)},
        {"0x1p-2", TypeParam(0.25)},   {"-0X1.8P+1", TypeParam(-3)},
        {" 1.25", TypeParam(1.25)},    {"\n1.25\t", TypeParam(1.25)},
        {"&#49;.25", TypeParam(1.25)}, {"<![CDATA[1.25]]>", TypeParam(1.25)}};
    for (const auto& [text, number] : forms) {
        EXPECT_EQ(this->read(text), number) << text;
    }
    EXPECT_TRUE(std::signbit(this->read("-0")));
    EXPECT_TRUE(std::signbit(this->read("-0.0e5")));
}

TYPED_TEST(RealFormsTest, InfinitiesAndNotANumberAreRead) {
    constexpr TypeParam kInfinity = std::numeric_limits<TypeParam>::infinity();
    for (const char* text : {"INF", "inf", "Inf", "+INF", "infinity", "INFINITY", " INF "}) {
        EXPECT_EQ(this->read(text), kInfinity) << text;
    }
    for (const char* text : {"-INF", "-inf", "-Infinity"}) {
        EXPECT_EQ(this->read(text), -kInfinity) << text;
    }
    for (const char* text : {"NaN", "nan", "NAN", "-NaN", "+nan", " NaN\n"}) {
        EXPECT_TRUE(std::isnan(this->read(text))) << text;
    }
}

TYPED_TEST(RealFormsTest, WhatIsNoRealIsAnError) {
    for (const char* text :
         {"",        " ",    "-",       "+",    ".",   "-.",  "e5",      ".e5",  "1e",     "1e+",
          "1.2.3",   "1,5",  "0x",      "0xp1", "--1", "+-1", "-+1",     "- 1",  "1 2",    "1.5f",
          "1.5e3.5", "INFI", "infinit", "NaNs", "IN",  "one", "1_000.0", "TRUE", "1.5 kB", "\xE2\x88\x92.5"}) {
        EXPECT_THAT(valueErrorOf(this->type(), text), HasSubstr("not a real: ")) << text;
    }
}

TEST(RealExtremesTest, TheLargestAreReadAndLargerOnesAreInfinite) {
    EXPECT_EQ(valueOf("real32", "3.4028234663852886e+38"), CIMValue(std::numeric_limits<Real32>::max()));
    EXPECT_EQ(valueOf("real32", "-3.4028235e38"), CIMValue(std::numeric_limits<Real32>::lowest()));
    EXPECT_EQ(valueOf("real64", "1.7976931348623157e+308"), CIMValue(std::numeric_limits<Real64>::max()));
    EXPECT_EQ(valueOf("real64", "-0x1.fffffffffffffp1023"), CIMValue(std::numeric_limits<Real64>::lowest()));
    for (const std::string& text : {std::string("3.4028236e38"), std::string("1.7976931348623157e+308"),
                                    std::string("0x1p128"), std::string(40, '9') + ".5"}) {
        EXPECT_EQ(valueOf("real32", text), CIMValue(std::numeric_limits<Real32>::infinity())) << text;
        EXPECT_EQ(valueOf("real32", '-' + text), CIMValue(-std::numeric_limits<Real32>::infinity())) << text;
    }
    for (const std::string& text : {std::string("1.7976932e308"), std::string("1e309"), std::string("1e999999999999"),
                                    std::string("0x1p1024"), std::string(400, '9')}) {
        EXPECT_EQ(valueOf("real64", text), CIMValue(std::numeric_limits<Real64>::infinity())) << text;
        EXPECT_EQ(valueOf("real64", '-' + text), CIMValue(-std::numeric_limits<Real64>::infinity())) << text;
    }
}

TEST(RealExtremesTest, TheSmallestAreReadAndSmallerOnesAreZero) {
    EXPECT_EQ(valueOf("real32", "1.17549435e-38"), CIMValue(std::numeric_limits<Real32>::min()));
    EXPECT_EQ(valueOf("real32", "1.4e-45"), CIMValue(std::numeric_limits<Real32>::denorm_min()));
    EXPECT_EQ(valueOf("real64", "2.2250738585072014e-308"), CIMValue(std::numeric_limits<Real64>::min()));
    EXPECT_EQ(valueOf("real64", "5e-324"), CIMValue(std::numeric_limits<Real64>::denorm_min()));
    EXPECT_EQ(valueOf("real64", "-4.9e-324"), CIMValue(-std::numeric_limits<Real64>::denorm_min()));
    for (const char* text : {"1e-46", "-1e-46", "1e-400", "1e-999999999999"}) {
        EXPECT_EQ(valueOf("real32", text), CIMValue(Real32(0))) << text;
    }
    for (const char* text : {"2e-324", "-1e-400", "0x1p-1080", "1e-999999999999"}) {
        EXPECT_EQ(valueOf("real64", text), CIMValue(Real64(0))) << text;
    }
    const std::string manyZeros = "0." + std::string(400, '0') + '1';
    EXPECT_EQ(valueOf("real64", manyZeros), CIMValue(Real64(0)));
}

// ---- Booleans, characters, date-times ----

TEST(BooleanFormsTest, TheWordsAreReadInAnyCaseAndNoOtherWordIs) {
    for (const char* text : {"TRUE", "true", "True", "tRuE", " TRUE", "TRUE\n", "&#84;RUE", "<![CDATA[true]]>"}) {
        EXPECT_EQ(valueOf("boolean", text), CIMValue(true)) << text;
    }
    for (const char* text : {"FALSE", "false", "False", "\tfAlSe "}) {
        EXPECT_EQ(valueOf("boolean", text), CIMValue(false)) << text;
    }
    for (const char* text : {"T", "F", "1", "0", "yes", "no", "on", "TRUEE", "TRU", "TRUE FALSE", "T RUE", "NULL",
                             "\"TRUE\"", "-TRUE", "wahr"}) {
        EXPECT_THAT(valueErrorOf("boolean", text), HasSubstr("not a boolean: ")) << text;
    }
}

TEST(BooleanFormsTest, NoWordIsNull) {
    for (const char* text : {"", " ", "\n", "<![CDATA[]]>", "<!-- -->"}) {
        EXPECT_EQ(valueOf("boolean", text), CIMValue(CIMTYPE_BOOLEAN, false)) << text;
    }
}

TEST(Char16FormsTest, OneCharacterOfTheBasicPlaneIsRead) {
    const std::vector<std::pair<const char*, Uint16>> forms = {{"A", 'A'},
                                                               {"7", '7'},
                                                               {" ", ' '},
                                                               {"\t", '\t'},
                                                               {"\n", '\n'},
                                                               {"\r\n", '\n'},
                                                               {"\r", '\n'},
                                                               {"&#13;", '\r'},
                                                               {"&lt;", '<'},
                                                               {"&amp;", '&'},
                                                               {"&quot;", '"'},
                                                               {"'", '\''},
                                                               {"<![CDATA[<]]>", '<'},
                                                               {"<![CDATA[ ]]>", ' '},
                                                               {"&#x7F;", 0x7F},
                                                               {"&#x1;", 0x01},
                                                               {"\x01", 0x01},
                                                               {"\xC3\xA4", 0xE4},
                                                               {"&#228;", 0xE4},
                                                               {"\xE2\x82\xAC", 0x20AC},
                                                               {"&#xD7FF;", 0xD7FF},
                                                               {"&#xE000;", 0xE000},
                                                               {"\xEF\xBF\xBD", 0xFFFD}};
    for (const auto& [text, unit] : forms) {
        EXPECT_EQ(valueOf("char16", text), CIMValue(Char16(unit))) << text;
    }
}

TEST(Char16FormsTest, NoneAndMoreThanOneAreErrors) {
    for (const char* text : {"", "AB", "  ", " A", "A ", "65", "<![CDATA[]]>", "e\xCC\x81", "\xF0\x9F\x98\x80",
                             "&#x10000;", "&#x1F600;", "\xF0\x90\x80\x80", "A<![CDATA[B]]>"}) {
        EXPECT_THAT(valueErrorOf("char16", text), HasSubstr("not one UTF-16 character")) << text;
    }
    for (const char* text :
         {"&#xD83D;", "&#xDE00;", "\xED\xA0\xBD", "&#xFFFE;", "&#xFFFF;", "\xEF\xBF\xBF", "&#0;", "\xFF"}) {
        EXPECT_NE(valueErrorOf("char16", text), "") << text;
    }
}

TEST(DateTimeFormsTest, TimestampsAndIntervalsAreRead) {
    for (const char* text : {"20260228235959.999999+000", "20240229000000.000000-720", "00010101000000.000000+999",
                             "2026**********.******+060", "20260228235959.******+060", "20260228235959.123***-060",
                             "99999999235959.999999:000", "00000000000000.000000:000", "0000000112****.******:000",
                             "**************.******+000"}) {
        EXPECT_EQ(valueOf("datetime", text), CIMValue(CIMDateTime(String(text)))) << text;
    }
    EXPECT_EQ(valueOf("datetime", "\n 20260228235959.999999+000\t"),
              CIMValue(CIMDateTime(String("20260228235959.999999+000"))));
}

TEST(DateTimeFormsTest, NoneIsNull) {
    for (const char* text : {"", " ", "\n\t", "<![CDATA[ ]]>"}) {
        EXPECT_EQ(valueOf("datetime", text), CIMValue(CIMTYPE_DATETIME, false)) << text;
    }
}

TEST(DateTimeFormsTest, MalformedOnesAreErrorsThatShowThem) {
    for (const char* text : {"0",
                             "now",
                             "2026-02-28T23:59:59Z",
                             "20260228235959.999999+00",
                             "20260228235959.999999+0000",
                             "20260228235959,999999+000",
                             "20260228235959.999999 000",
                             "20260228235959.999999*000",
                             "20260228235959.999999+0*0",
                             "2026022823595 .999999+000",
                             "202602282359xx.999999+000",
                             "20261328235959.999999+000",
                             "20260028235959.999999+000",
                             "20260229000000.000000+000",
                             "20260431000000.000000+000",
                             "20260200000000.000000+000",
                             "20260228240000.000000+000",
                             "20260228236000.000000+000",
                             "20260228235960.000000+000",
                             "20260*28235959.999999+000",
                             "2026**28235959.999999+000",
                             "20260228235959.9*9999+000",
                             "00000001240000.000000:000",
                             "00000001006000.000000:000",
                             "00000001000060.000000:000",
                             "00000001000000.000000:001",
                             "0000000*000000.000000:000",
                             "-0000001000000.000000:000",
                             "202602282359\xD9\xA2.999999+000"}) {
        EXPECT_THAT(valueErrorOf("datetime", text), HasSubstr(text)) << text;
    }
}

// ---- Types and arrays ----

TEST(TypeFormsTest, TypesAreNamedInLowerCase) {
    for (const char* type : {"", "Boolean", "UINT8", "uint 8", "int", "uint128", "real", "text", "reference", "object",
                             "instance", "char8", "dateTime"}) {
        EXPECT_THAT(valueErrorOf(type, "1"), HasSubstr(std::string("unknown type: ") + type));
    }
    for (const char* type : {" uint8", "uint8 ", "\tuint8\n"}) {
        EXPECT_EQ(valueOf(type, "1"), CIMValue(Uint8(1))) << type;
    }
}

TEST(ArrayFormsTest, EveryTypeHasArraysWithNullsAndWithoutItems) {
    const std::vector<std::pair<std::string, std::string>> items = {{"boolean", "TRUE"},
                                                                    {"uint8", "255"},
                                                                    {"sint8", "-128"},
                                                                    {"uint16", "65535"},
                                                                    {"sint16", "-32768"},
                                                                    {"uint32", "4294967295"},
                                                                    {"sint32", "-2147483648"},
                                                                    {"uint64", "18446744073709551615"},
                                                                    {"sint64", "-9223372036854775808"},
                                                                    {"real32", "-1.5"},
                                                                    {"real64", "2.5"},
                                                                    {"char16", "x"},
                                                                    {"string", " a "},
                                                                    {"datetime", "20260228235959.999999+000"}};
    const auto arrayOf = [](const std::string& type, const std::string& content) {
        return decodeBodyWith("<INSTANCE CLASSNAME=\"A\"><PROPERTY.ARRAY NAME=\"P\" TYPE=\"" + type + "\">" + content +
                              "</PROPERTY.ARRAY></INSTANCE>")
            .instances.at(0)
            .getProperty(0)
            .getValue();
    };
    for (const auto& [type, item] : items) {
        const CIMValue scalar = valueOf(type, item);
        std::string three = "<VALUE.ARRAY> ";
        for (const char* separator : {"\n<VALUE.NULL/>", "</VALUE.ARRAY>"}) {
            three.append("<VALUE>").append(item).append("</VALUE>").append(separator);
        }
        const CIMValue array = arrayOf(type, three);
        EXPECT_EQ(array.getType(), scalar.getType());
        ASSERT_TRUE(array.isArray());
        EXPECT_EQ(array.getArraySize(), 3U);
        const std::string text(array.toString().view());
        EXPECT_THAT(text, HasSubstr(std::string(scalar.toString().view()))) << type;
        EXPECT_EQ(arrayOf(type, "<VALUE.ARRAY/>").getArraySize(), 0U);
        EXPECT_FALSE(arrayOf(type, "<VALUE.ARRAY></VALUE.ARRAY>").isNull());
        EXPECT_TRUE(arrayOf(type, "").isNull());
    }
}

// ---- Elements and attributes ----

/// A well-formed object in which '@' marks the inside of one element, and the name of that element.
struct Place {
    const char* element;
    std::string object;
};

const std::string kKeys = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE>k</KEYVALUE></KEYBINDING>"
                          "</INSTANCENAME>";

std::string inInstance(const std::string& content) { return "<INSTANCE CLASSNAME=\"A\">" + content + "</INSTANCE>"; }
std::string inClass(const std::string& content) { return "<CLASS NAME=\"A\">" + content + "</CLASS>"; }
std::string inMethod(const std::string& content) {
    return inClass("<METHOD NAME=\"M\" TYPE=\"uint8\">" + content + "</METHOD>");
}
std::string inReference(const std::string& content) {
    return inInstance("<PROPERTY.REFERENCE NAME=\"P\"><VALUE.REFERENCE>" + content +
                      "</VALUE.REFERENCE></PROPERTY.REFERENCE>");
}
std::string inNamespacePath(const std::string& content) {
    return inReference("<CLASSPATH><NAMESPACEPATH>" + content + "</NAMESPACEPATH><CLASSNAME NAME=\"A\"/></CLASSPATH>");
}

std::vector<Place> places() {
    return {
        {"CLASS", inClass("@")},
        {"INSTANCE", inInstance("@")},
        {"VALUE.NAMEDINSTANCE", "<VALUE.NAMEDINSTANCE>" + kKeys + inInstance("") + "@</VALUE.NAMEDINSTANCE>"},
        {"PROPERTY", inInstance("<PROPERTY NAME=\"P\" TYPE=\"uint8\">@</PROPERTY>")},
        {"PROPERTY.ARRAY", inInstance("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\">@</PROPERTY.ARRAY>")},
        {"PROPERTY.REFERENCE", inInstance("<PROPERTY.REFERENCE NAME=\"P\">@</PROPERTY.REFERENCE>")},
        {"PROPERTY.REFARRAY", inInstance("<PROPERTY.REFARRAY NAME=\"P\">@</PROPERTY.REFARRAY>")},
        {"VALUE.ARRAY", inInstance("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\"><VALUE.ARRAY>@</VALUE.ARRAY>"
                                   "</PROPERTY.ARRAY>")},
        {"VALUE.REFARRAY",
         inInstance("<PROPERTY.REFARRAY NAME=\"P\"><VALUE.REFARRAY>@</VALUE.REFARRAY></PROPERTY.REFARRAY>")},
        {"VALUE.REFERENCE", inReference(kKeys + "@")},
        {"INSTANCENAME", inReference("<INSTANCENAME CLASSNAME=\"A\">@</INSTANCENAME>")},
        {"KEYBINDING", inReference("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE/>@</KEYBINDING>"
                                   "</INSTANCENAME>")},
        {"CLASSPATH", inReference("<CLASSPATH><NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"n\"/>"
                                  "</LOCALNAMESPACEPATH></NAMESPACEPATH><CLASSNAME NAME=\"A\"/>@</CLASSPATH>")},
        {"NAMESPACEPATH",
         inNamespacePath("<HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"n\"/></LOCALNAMESPACEPATH>@")},
        {"LOCALNAMESPACEPATH", inNamespacePath("<HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"n\"/>@"
                                               "</LOCALNAMESPACEPATH>")},
        {"METHOD", inMethod("@")},
        {"PARAMETER", inMethod("<PARAMETER NAME=\"P\" TYPE=\"uint8\">@</PARAMETER>")},
        {"PARAMETER.ARRAY", inMethod("<PARAMETER.ARRAY NAME=\"P\" TYPE=\"uint8\">@</PARAMETER.ARRAY>")},
        {"PARAMETER.REFERENCE", inMethod("<PARAMETER.REFERENCE NAME=\"P\">@</PARAMETER.REFERENCE>")},
        {"PARAMETER.REFARRAY", inMethod("<PARAMETER.REFARRAY NAME=\"P\">@</PARAMETER.REFARRAY>")},
        {"QUALIFIER", inClass("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\">@</QUALIFIER>")},
        {"QUALIFIER.DECLARATION", "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\">@</QUALIFIER.DECLARATION>"},
    };
}

std::string at(const Place& place, const std::string& content) {
    const std::size_t mark = place.object.find('@');
    return place.object.substr(0, mark) + content + place.object.substr(mark + 1);
}

TEST(ElementFormsTest, WhiteSpaceAndCommentsStandAnywhere) {
    for (const Place& place : places()) {
        for (const char* content : {"", " ", "\t\r\n", "<!-- <X> -->", " <?x y?> <!----> "}) {
            EXPECT_EQ(errorInBodyWith(at(place, content)), "") << place.element;
        }
    }
}

TEST(ElementFormsTest, AForeignElementIsAnErrorThatNamesIt) {
    for (const Place& place : places()) {
        for (const char* content : {"<FOREIGN/>", "<FOREIGN>x</FOREIGN>", "<MESSAGE/>", "<value/>", "<CLASS.X/>"}) {
            EXPECT_THAT(errorInBodyWith(at(place, content)), HasSubstr("does not belong into"))
                << place.element << content;
        }
    }
}

TEST(ElementFormsTest, TextBetweenElementsIsAnError) {
    for (const Place& place : places()) {
        for (const char* content : {"x", "&lt;", "<![CDATA[x]]>", "\xC2\xA0"}) {
            EXPECT_NE(errorInBodyWith(at(place, content)), "") << place.element << content;
        }
    }
}

TEST(ElementFormsTest, AMissingAttributeIsNamed) {
    // Each element below lacks one attribute and has all the others that it needs.
    const std::vector<std::pair<std::string, const char*>> lacking = {
        {"<CLASS/>", "CLASS has no attribute NAME"},
        {"<CLASSNAME/>", "CLASSNAME has no attribute NAME"},
        {"<INSTANCE/>", "INSTANCE has no attribute CLASSNAME"},
        {inInstance("<PROPERTY TYPE=\"uint8\"/>"), "PROPERTY has no attribute NAME"},
        {inInstance("<PROPERTY NAME=\"P\"/>"), "PROPERTY has no attribute TYPE"},
        {inInstance("<PROPERTY.ARRAY TYPE=\"uint8\"/>"), "PROPERTY.ARRAY has no attribute NAME"},
        {inInstance("<PROPERTY.ARRAY NAME=\"P\"/>"), "PROPERTY.ARRAY has no attribute TYPE"},
        {inInstance("<PROPERTY.REFERENCE/>"), "PROPERTY.REFERENCE has no attribute NAME"},
        {inInstance("<PROPERTY.REFARRAY/>"), "PROPERTY.REFARRAY has no attribute NAME"},
        {inClass("<METHOD TYPE=\"uint8\"/>"), "METHOD has no attribute NAME"},
        {inMethod("<PARAMETER TYPE=\"uint8\"/>"), "PARAMETER has no attribute NAME"},
        {inMethod("<PARAMETER NAME=\"P\"/>"), "PARAMETER has no attribute TYPE"},
        {inMethod("<PARAMETER.ARRAY TYPE=\"uint8\"/>"), "PARAMETER.ARRAY has no attribute NAME"},
        {inMethod("<PARAMETER.ARRAY NAME=\"P\"/>"), "PARAMETER.ARRAY has no attribute TYPE"},
        {inMethod("<PARAMETER.REFERENCE/>"), "PARAMETER.REFERENCE has no attribute NAME"},
        {inMethod("<PARAMETER.REFARRAY/>"), "PARAMETER.REFARRAY has no attribute NAME"},
        {inClass("<QUALIFIER TYPE=\"uint8\"/>"), "QUALIFIER has no attribute NAME"},
        {inClass("<QUALIFIER NAME=\"Q\"/>"), "QUALIFIER has no attribute TYPE"},
        {"<QUALIFIER.DECLARATION TYPE=\"uint8\"/>", "QUALIFIER.DECLARATION has no attribute NAME"},
        {"<QUALIFIER.DECLARATION NAME=\"Q\"/>", "QUALIFIER.DECLARATION has no attribute TYPE"},
        {inReference("<INSTANCENAME/>"), "INSTANCENAME has no attribute CLASSNAME"},
        {inReference("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING><KEYVALUE/></KEYBINDING></INSTANCENAME>"),
         "KEYBINDING has no attribute NAME"},
        {inNamespacePath("<HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE/></LOCALNAMESPACEPATH>"),
         "NAMESPACE has no attribute NAME"},
        // Names are in capitals.
        {"<CLASS name=\"A\"/>", "CLASS has no attribute NAME"},
        {"<CLASS xml:NAME=\"A\"/>", "CLASS has no attribute NAME"},
    };
    for (const auto& [object, error] : lacking) {
        EXPECT_THAT(errorInBodyWith(object), HasSubstr(error)) << object;
    }
}

TEST(ElementFormsTest, AnAttributeThatHoldsNonsenseIsAnError) {
    const std::vector<std::pair<std::string, const char*>> nonsense = {
        {inClass("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\" PROPAGATED=\"maybe\"/>"), "not a boolean: maybe"},
        {inClass("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\" OVERRIDABLE=\"\"/>"), "not a boolean: "},
        {inClass("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\" TOSUBCLASS=\"1\"/>"), "not a boolean: 1"},
        {inClass("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\" TOINSTANCE=\"no\"/>"), "not a boolean: no"},
        {inClass("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\" TRANSLATABLE=\"T\"/>"), "not a boolean: T"},
        {inClass("<METHOD NAME=\"M\" TYPE=\"uint8\" PROPAGATED=\"0\"/>"), "not a boolean: 0"},
        {inClass("<PROPERTY NAME=\"P\" TYPE=\"uint8\" PROPAGATED=\"0\"/>"), "not a boolean: 0"},
        {"<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\" ISARRAY=\"x\"/>", "not a boolean: x"},
        {"<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\"><SCOPE CLASS=\"x\"/></QUALIFIER.DECLARATION>",
         "not a boolean: x"},
        {inClass("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\" ARRAYSIZE=\"x\"/>"), "not an integer: x"},
        {inClass("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\" ARRAYSIZE=\"-1\"/>"), "integer out of range: -1"},
        {inClass("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\" ARRAYSIZE=\"4294967296\"/>"),
         "integer out of range: 4294967296"},
        {inClass("<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"Object\"/>"),
         "unknown kind of EmbeddedObject: Object"},
        {inClass("<PROPERTY NAME=\"\" TYPE=\"uint8\"/>"), "not a name: \"\""},
        {inClass("<PROPERTY NAME=\"1P\" TYPE=\"uint8\"/>"), "not a name: \"1P\""},
        {inClass("<PROPERTY NAME=\"P P\" TYPE=\"uint8\"/>"), "not a name: \"P P\""},
        {inClass("<PROPERTY NAME=\"P\" TYPE=\"uint8\" CLASSORIGIN=\"a b\"/>"), "not a name: \"a b\""},
        {inClass("<PROPERTY.REFERENCE NAME=\"P\" REFERENCECLASS=\"a:b\"/>"), "not a name: \"a:b\""},
        {"<CLASS NAME=\"A\" SUPERCLASS=\"a.b\"/>", "not a name: \"a.b\""},
        {inNamespacePath("<HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"a b\"/></LOCALNAMESPACEPATH>"),
         "not the name of a namespace: \"a b\""},
    };
    for (const auto& [object, error] : nonsense) {
        EXPECT_THAT(errorInBodyWith(object), HasSubstr(error)) << object;
    }
}

TEST(ElementFormsTest, AttributesStandInAnyOrderAndQuotesAndUnknownOnesAreIgnored) {
    const auto answer =
        decodeBodyWith("<CLASS\txml:lang='de'\nSUPERCLASS = 'B' X=\"&lt;'>\" NAME\n=\n\"A\" x-y.z='\"'>"
                       "<PROPERTY CLASSORIGIN='' PROPAGATED='true' TYPE='uint8' xml:lang='en' NAME='P' FOO='1'/>"
                       "<PROPERTY.ARRAY ARRAYSIZE=' 4294967295 ' TYPE='uint8' NAME='Q' PROPAGATED='FALSE'/>"
                       "<PROPERTY.REFERENCE TYPE='nonsense' PROPAGATED='True' REFERENCECLASS='' NAME='R'/>"
                       "<METHOD PROPAGATED='true' NAME='M' CLASSORIGIN='&#66;' TYPE='uint32' X=''/></CLASS>"
                       "<CLASS NAME='C' SUPERCLASS=''/>");
    ASSERT_THAT(answer.classes, SizeIs(2));
    const CIMClass& first = answer.classes[0];
    EXPECT_EQ(first.getSuperClassName(), CIMName("B"));
    ASSERT_EQ(first.getPropertyCount(), 3U);
    EXPECT_TRUE(first.getProperty(0).getPropagated());
    EXPECT_TRUE(first.getProperty(0).getClassOrigin().isNull());
    EXPECT_EQ(first.getProperty(1).getArraySize(), 4294967295U);
    EXPECT_FALSE(first.getProperty(1).getPropagated());
    EXPECT_TRUE(first.getProperty(2).getReferenceClassName().isNull());
    EXPECT_EQ(first.getMethod(0).getClassOrigin(), CIMName("B"));
    EXPECT_TRUE(answer.classes[1].getSuperClassName().isNull());
}

TEST(ElementFormsTest, ElementsThatTheModelCannotHoldAreSkipped) {
    const auto answer =
        decodeBodyWith(inMethod("<PARAMETER NAME=\"P\" TYPE=\"uint8\"><VALUE>7</VALUE></PARAMETER>") +
                       inClass("<METHOD NAME=\"M\"/>") +
                       inInstance("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\"><VALUE>nonsense</VALUE></QUALIFIER>"
                                  "<PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE.NULL/></PROPERTY>"));
    ASSERT_THAT(answer.classes, SizeIs(2));
    EXPECT_EQ(answer.classes[0].getMethod(0).getParameter(0).getName(), CIMName("P"));
    EXPECT_EQ(answer.classes[1].getMethod(0).getType(), CIMTYPE_UINT32);
    ASSERT_THAT(answer.instances, SizeIs(1));
    ASSERT_EQ(answer.instances[0].getPropertyCount(), 1U);
    EXPECT_TRUE(answer.instances[0].getProperty(0).getValue().isNull());
}

TEST(ElementFormsTest, OutputParametersAfterTheReturnValueAreSkipped) {
    std::string body = bodyWith("<CLASS NAME=\"A\"/>");
    const std::string end = "</IRETURNVALUE>";
    body.insert(body.find(end) + end.size(), "<PARAMVALUE NAME=\"EndOfSequence\"><VALUE>TRUE</VALUE></PARAMVALUE>"
                                             "<PARAMVALUE NAME=\"EnumerationContext\" PARAMTYPE=\"string\"/>");
    EXPECT_THAT(decode("GetClass", body).classes, SizeIs(1));
}

TEST(ElementFormsTest, AnInstanceWithItsWholePathIsANamedInstance) {
    const auto answer = decodeBodyWith(
        "<VALUE.INSTANCEWITHPATH><INSTANCEPATH><NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE "
        "NAME=\"n\"/></LOCALNAMESPACEPATH></NAMESPACEPATH>" +
        kKeys + "</INSTANCEPATH>" + inInstance("") + "</VALUE.INSTANCEWITHPATH>");
    ASSERT_THAT(answer.instances, SizeIs(1));
    EXPECT_EQ(std::string(answer.instances[0].getPath().toString().view()), "//h/n:A.K=\"k\"");
}

TEST(ElementFormsTest, AQualifierIsAnArrayWhereItsDeclarationOrItsValueSaysSo) {
    const auto isArray = [](const std::string& attribute, const std::string& value) {
        const auto answer = decodeBodyWith("<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\"" + attribute + ">" +
                                           value + "</QUALIFIER.DECLARATION>");
        return answer.qualifierDecls.at(0).isArray();
    };
    const std::string scalar = "<VALUE>7</VALUE>";
    const std::string array = "<VALUE.ARRAY><VALUE>7</VALUE></VALUE.ARRAY>";
    EXPECT_FALSE(isArray("", ""));
    EXPECT_FALSE(isArray("", scalar));
    EXPECT_FALSE(isArray(" ISARRAY=\"false\"", scalar));
    EXPECT_TRUE(isArray("", array));
    EXPECT_TRUE(isArray(" ISARRAY=\"true\"", array));
    EXPECT_TRUE(isArray(" ISARRAY=\"true\"", ""));
    EXPECT_TRUE(isArray(" ISARRAY=\"true\"", "<VALUE.NULL/>"));
    const std::vector<std::string> contradictions{" ISARRAY=\"true\">" + scalar, " ISARRAY=\"false\">" + array,
                                                  ">" + scalar + scalar, ">" + array + "<VALUE.NULL/>"};
    for (const std::string& contradiction : contradictions) {
        EXPECT_THAT(errorInBodyWith("<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\"" + contradiction +
                                    "</QUALIFIER.DECLARATION>"),
                    HasSubstr("does not belong into QUALIFIER.DECLARATION"))
            << contradiction;
    }
    EXPECT_THAT(errorInBodyWith(inClass("<QUALIFIER NAME=\"Q\" TYPE=\"uint8\">" + scalar + scalar + "</QUALIFIER>")),
                HasSubstr("VALUE does not belong into QUALIFIER"));
}

TEST(ElementFormsTest, ANamespaceIsOneElementOrOnePerStep) {
    for (const char* path :
         {"<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/>", "<NAMESPACE NAME=\"root/cimv2\"/>",
          " <NAMESPACE NAME=\"root\"></NAMESPACE>\n<NAMESPACE X=\"y\" NAME=\"cimv2\"/> "}) {
        const auto answer = decodeBodyWith(inNamespacePath(std::string("<HOST>\n h:5989 </HOST><LOCALNAMESPACEPATH>") +
                                                           path + "</LOCALNAMESPACEPATH>"));
        CIMObjectPath reference;
        answer.instances.at(0).getProperty(0).getValue().get(reference);
        EXPECT_EQ(std::string(reference.toString().view()), "//h:5989/root/cimv2:A");
    }
}

} // namespace
