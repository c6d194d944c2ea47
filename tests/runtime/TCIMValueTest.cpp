#include "host/TCIMValue.h"

#include "host/TVYXException.h"
#include "runtime/ExpectStatus.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace NQORVYX20 {
namespace {

using TType = TCIMValue::TCIMType;

constexpr float kNanF = std::numeric_limits<float>::quiet_NaN();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kTwoTo63 = 9223372036854775808.0;
constexpr double kTwoTo64 = 18446744073709551616.0;

template <typename T>
T As(const TCIMValue& value) {
    return static_cast<T>(value);
}

TCIMReference MakeReference(const std::string& className, const TCIMContext& keys) {
    TCIMReference reference({}, keys);
    reference.SetClassName(className);
    return reference;
}

TCIMValue MakeReferenceValue(const std::string& className, const TCIMContext& keys) {
    TCIMReference reference = MakeReference(className, keys);
    return reference;
}

std::string NameOf(TType type) {
    std::ostringstream stream;
    stream << type;
    return stream.str();
}

TEST(TCIMValue, IsNullWithTypeZeroByDefault) {
    const TCIMValue value;
    EXPECT_TRUE(value.IsNull());
    EXPECT_FALSE(value.IsArray());
    EXPECT_EQ(value.GetType(), TType::eCIMUnknown);
}

TEST(TCIMValue, HasTheTypeOfWhatItIsMadeFrom) {
    TCIMReference reference({}, {});
    EXPECT_EQ(TCIMValue(true).GetType(), TType::eCIMBoolean);
    EXPECT_EQ(TCIMValue(static_cast<unsigned char>(1)).GetType(), TType::eCIMUint8);
    EXPECT_EQ(TCIMValue(static_cast<signed char>(1)).GetType(), TType::eCIMSint8);
    EXPECT_EQ(TCIMValue(static_cast<unsigned short>(1)).GetType(), TType::eCIMUint16);
    EXPECT_EQ(TCIMValue(static_cast<short>(1)).GetType(), TType::eCIMSint16);
    EXPECT_EQ(TCIMValue(1U).GetType(), TType::eCIMUint32);
    EXPECT_EQ(TCIMValue(1).GetType(), TType::eCIMSint32);
    EXPECT_EQ(TCIMValue(1ULL).GetType(), TType::eCIMUint64);
    EXPECT_EQ(TCIMValue(1LL).GetType(), TType::eCIMSint64);
    EXPECT_EQ(TCIMValue(1.0F).GetType(), TType::eCIMReal32);
    EXPECT_EQ(TCIMValue(1.0).GetType(), TType::eCIMReal64);
    EXPECT_EQ(TCIMValue(TCIMChar16("65")).GetType(), TType::eCIMChar16);
    EXPECT_EQ(TCIMValue("text").GetType(), TType::eCIMString);
    EXPECT_EQ(TCIMValue(std::string("text")).GetType(), TType::eCIMString);
    EXPECT_EQ(TCIMValue(TCIMDateTime()).GetType(), TType::eCIMDateTime);
    EXPECT_EQ(TCIMValue(reference).GetType(), TType::eCIMReference);
}

TEST(TCIMValue, IsANullStringWhenMadeFromANullPointer) {
    const TCIMValue value(static_cast<const char*>(nullptr));
    EXPECT_TRUE(value.IsNull());
    EXPECT_EQ(value.GetType(), TType::eCIMString);
}

TEST(TCIMValue, KeepsItsTypeWhenNull) {
    const TCIMValue scalar(TType::eCIMUint16, 0);
    EXPECT_TRUE(scalar.IsNull());
    EXPECT_FALSE(scalar.IsArray());
    EXPECT_EQ(scalar.GetType(), TType::eCIMUint16);

    const TCIMValue array(TType::eCIMUint16Array, 7);
    EXPECT_TRUE(array.IsNull());
    EXPECT_TRUE(array.IsArray());
    EXPECT_EQ(array.GetType(), TType::eCIMUint16Array);
}

TEST(TCIMValue, SetsTheArrayBitOfTheElementType) {
    const TCIMValue array(TType::eCIMSint32, 0, {1, 2});
    EXPECT_TRUE(array.IsArray());
    EXPECT_FALSE(array.IsNull());
    EXPECT_EQ(array.GetType(), TType::eCIMSint32Array);
    EXPECT_EQ(TCIMValue(TType::eCIMUnknown, 0, {}).GetType(), TType::eCIMArrayUnknown);
    EXPECT_EQ(TCIMValue(TType::eCIMSint32Array, 0, {1}).GetType(), TType::eCIMSint32Array);
}

TEST(TCIMValue, IsNotNullAsAnEmptyArray) {
    const TCIMValue empty(TType::eCIMString, 0, {});
    EXPECT_FALSE(empty.IsNull());
    EXPECT_TRUE(empty.IsArray());
    EXPECT_EQ(empty.GetType(), TType::eCIMStringArray);
    EXPECT_TRUE(As<std::vector<TCIMValue>&>(empty).empty());
}

TEST(TCIMValue, GivesTheElementsOfAnArrayInPlace) {
    const TCIMValue array(TType::eCIMSint32, 0, {1, 2});
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): its elements are modified
    TCIMValue copy = array;
    As<std::vector<TCIMValue>&>(copy).emplace_back(3);
    EXPECT_EQ(copy.ToString(10), "{1, 2, 3}");
    EXPECT_EQ(array.ToString(10), "{1, 2}");
}

TEST(TCIMValue, GivesElementsOfArraysOnly) {
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<std::vector<TCIMValue>&>(TCIMValue(1)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<std::vector<TCIMValue>&>(TCIMValue(TType::eCIMUint8Array, 0)));
}

TEST(TCIMValue, IsIndependentOfItsCopies) {
    TCIMValue original("before");
    const TCIMValue copy = original;
    original = TCIMValue("after");
    EXPECT_EQ(As<std::string>(copy), "before");

    const TCIMValue& itself = original;
    original = itself;
    EXPECT_EQ(As<std::string>(original), "after");
}

TEST(TCIMValue, CanTakeTheValueOfOneOfItsElements) {
    TCIMValue value(TType::eCIMString, 0, {"inner"});
    value = As<std::vector<TCIMValue>&>(value)[0];
    EXPECT_EQ(As<std::string>(value), "inner");
}

TEST(TCIMValue, ConvertsIntegersThatFit) {
    EXPECT_EQ(As<unsigned char>(TCIMValue(255)), 255);
    EXPECT_EQ(As<signed char>(TCIMValue(-128LL)), -128);
    EXPECT_EQ(As<unsigned short>(TCIMValue(65535U)), 65535);
    EXPECT_EQ(As<short>(TCIMValue(static_cast<signed char>(-1))), -1);
    EXPECT_EQ(As<unsigned int>(TCIMValue(4294967295LL)), 4294967295U);
    EXPECT_EQ(As<int>(TCIMValue(-2147483648LL)), std::numeric_limits<int>::min());
    EXPECT_EQ(As<unsigned long long>(TCIMValue(0)), 0U);
    EXPECT_EQ(As<long long>(TCIMValue(9223372036854775807ULL)), 9223372036854775807LL);
}

TEST(TCIMValue, RefusesIntegersThatDoNotFit) {
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned char>(TCIMValue(256)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<signed char>(TCIMValue(128)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<signed char>(TCIMValue(-129)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned short>(TCIMValue(-1)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<int>(TCIMValue(2147483648U)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned int>(TCIMValue(-1LL)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned long long>(TCIMValue(static_cast<signed char>(-1))));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch,
                  As<unsigned long long>(TCIMValue(std::numeric_limits<long long>::min())));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<long long>(TCIMValue(9223372036854775808ULL)));
}

TEST(TCIMValue, ConvertsWholeRealsToIntegersWithinTheirRange) {
    EXPECT_EQ(As<int>(TCIMValue(-3.0)), -3);
    EXPECT_EQ(As<unsigned char>(TCIMValue(255.0F)), 255);
    EXPECT_EQ(As<unsigned int>(TCIMValue(-0.0)), 0U);
    EXPECT_EQ(As<long long>(TCIMValue(-kTwoTo63)), std::numeric_limits<long long>::min());
    EXPECT_EQ(As<unsigned long long>(TCIMValue(kTwoTo63)), 9223372036854775808ULL);

    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<int>(TCIMValue(1.5)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned char>(TCIMValue(256.0)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned long long>(TCIMValue(-1.0)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<long long>(TCIMValue(kTwoTo63)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<long long>(TCIMValue(std::nextafter(-kTwoTo63, -kInf))));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned long long>(TCIMValue(kTwoTo64)));
    for (const double noNumber : {kNan, kInf, -kInf}) {
        EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<int>(TCIMValue(noNumber)));
        EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned long long>(TCIMValue(noNumber)));
    }
}

TEST(TCIMValue, ConvertsIntegersToRealsThatHoldThemExactly) {
    EXPECT_EQ(As<float>(TCIMValue(16777216)), 16777216.0F);
    EXPECT_EQ(As<float>(TCIMValue(-16777218)), -16777218.0F);
    EXPECT_EQ(As<float>(TCIMValue(9223372036854775808ULL)), 9223372036854775808.0F);
    EXPECT_EQ(As<double>(TCIMValue(std::numeric_limits<long long>::min())), -kTwoTo63);
    EXPECT_EQ(As<double>(TCIMValue(9007199254740993LL - 1)), 9007199254740992.0);
    EXPECT_EQ(As<float>(TCIMValue(static_cast<signed char>(-128))), -128.0F);
    EXPECT_EQ(As<float>(TCIMValue(std::numeric_limits<int>::min())), -2147483648.0F);

    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<float>(TCIMValue(16777217)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<float>(TCIMValue(-16777217)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<double>(TCIMValue(9007199254740993LL)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<double>(TCIMValue(std::numeric_limits<unsigned long long>::max())));
}

TEST(TCIMValue, ConvertsBetweenRealsWithoutLoss) {
    EXPECT_EQ(As<double>(TCIMValue(0.1F)), static_cast<double>(0.1F));
    EXPECT_EQ(As<float>(TCIMValue(0.5)), 0.5F);
    EXPECT_TRUE(std::isnan(As<float>(TCIMValue(kNan))));
    EXPECT_TRUE(std::isnan(As<double>(TCIMValue(kNanF))));
    EXPECT_EQ(As<float>(TCIMValue(-kInf)), -std::numeric_limits<float>::infinity());

    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<float>(TCIMValue(0.1)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<float>(TCIMValue(1e300)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<float>(TCIMValue(1e-300)));
}

TEST(TCIMValue, ConvertsToBoolOnlyFromBoolean) {
    EXPECT_TRUE(As<bool>(TCIMValue(true)));
    EXPECT_FALSE(As<bool>(TCIMValue(false)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<bool>(TCIMValue(1)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<bool>(TCIMValue("true")));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<int>(TCIMValue(true)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<double>(TCIMValue(true)));
}

TEST(TCIMValue, ConvertsNoTextToNumbers) {
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<int>(TCIMValue("1")));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned short>(TCIMValue(TCIMChar16("65"))));
}

TEST(TCIMValue, ConvertsEveryContentToString) {
    EXPECT_EQ(As<std::string>(TCIMValue("text")), "text");
    EXPECT_EQ(As<std::string>(TCIMValue(255)), "255");
    EXPECT_EQ(As<std::string>(TCIMValue(TType::eCIMBoolean, 0, {true, false})), "{true, false}");
}

TEST(TCIMValue, ConvertsNullToNothing) {
    const TCIMValue null(TType::eCIMUint8, 0);
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<unsigned char>(null));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<std::string>(TCIMValue(TType::eCIMString, 0)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<bool>(TCIMValue(TType::eCIMBoolean, 0)));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, As<double>(TCIMValue()));
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, TCIMValue(TType::eCIMDateTime, 0).GetDateTime());
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, TCIMValue(TType::eCIMReference, 0).GetReference());
}

TEST(TCIMValue, GivesTheDateTimeAndTheReferenceThatItHolds) {
    EXPECT_EQ(TCIMValue(TCIMDateTime()).GetDateTime(), TCIMDateTime());
    EXPECT_EQ(MakeReferenceValue("A", {}).GetReference().GetClassName(), "A");
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, TCIMValue("20261121083900.000000+060").GetDateTime());
    EXPECT_STATUS(TVYXStatusCode::eTypeMismatch, TCIMValue("A").GetReference());
}

TEST(TCIMValue, KnowsAReferenceAndItsClass) {
    const TCIMValue reference = MakeReferenceValue("CIM_Thing", {});
    EXPECT_TRUE(reference.IsReference());
    EXPECT_EQ(reference.GetReferencedClass(), "CIM_Thing");
    EXPECT_EQ(MakeReferenceValue("", {}).GetReferencedClass(), "");

    const TCIMValue null(TType::eCIMReference, 0);
    EXPECT_TRUE(null.IsReference());
    EXPECT_EQ(null.GetReferencedClass(), "");

    EXPECT_FALSE(TCIMValue("CIM_Thing").IsReference());
    EXPECT_EQ(TCIMValue("CIM_Thing").GetReferencedClass(), "");
    EXPECT_FALSE(TCIMValue(TType::eCIMReference, 0, {reference}).IsReference());
}

TEST(TCIMValue, WritesIntegersInAnyBaseFrom2To36) {
    EXPECT_EQ(TCIMValue(static_cast<unsigned char>(255)).ToString(16), "ff");
    EXPECT_EQ(TCIMValue(-255).ToString(16), "-ff");
    EXPECT_EQ(TCIMValue(35).ToString(36), "z");
    EXPECT_EQ(TCIMValue(static_cast<signed char>(-128)).ToString(2), "-10000000");
    EXPECT_EQ(TCIMValue(std::numeric_limits<long long>::min()).ToString(2), "-1" + std::string(63, '0'));
    EXPECT_EQ(TCIMValue(std::numeric_limits<unsigned long long>::max()).ToString(2), std::string(64, '1'));
    EXPECT_EQ(TCIMValue(std::numeric_limits<unsigned long long>::max()).ToString(10), "18446744073709551615");
}

TEST(TCIMValue, WritesIntegersInBase10WhereTheBaseIsNone) {
    for (const unsigned char base : std::vector<unsigned char>{0, 1, 37, 255}) {
        EXPECT_EQ(TCIMValue(-255).ToString(base), "-255");
        EXPECT_EQ(TCIMValue(TType::eCIMSint32, 0, {10, 255}).ToString(base), "{10, 255}");
        EXPECT_EQ(TCIMValue("text").ToString(base), "text");
    }
}

TEST(TCIMValue, WritesRealsInTheShortestFormThatReadsBackTheSame) {
    EXPECT_EQ(TCIMValue(0.1).ToString(10), "0.1");
    EXPECT_EQ(TCIMValue(0.1F).ToString(10), "0.1");
    EXPECT_EQ(TCIMValue(1.0 / 3).ToString(10), "0.3333333333333333");
    EXPECT_EQ(TCIMValue(-1.5).ToString(16), "-1.5");
    EXPECT_EQ(TCIMValue(1e300).ToString(10), "1e+300");
    EXPECT_EQ(TCIMValue(-std::numeric_limits<double>::min()).ToString(10), "-2.2250738585072014e-308");
    EXPECT_EQ(TCIMValue(kNan).ToString(10), "nan");
    EXPECT_EQ(TCIMValue(-kNanF).ToString(10), "nan");
    EXPECT_EQ(TCIMValue(kInf).ToString(10), "inf");
    EXPECT_EQ(TCIMValue(-kInf).ToString(10), "-inf");
}

TEST(TCIMValue, WritesEveryOtherTypeAsItsText) {
    EXPECT_EQ(TCIMValue().ToString(10), "");
    EXPECT_EQ(TCIMValue(TType::eCIMUint8, 0).ToString(10), "");
    EXPECT_EQ(TCIMValue(true).ToString(10), "true");
    EXPECT_EQ(TCIMValue(false).ToString(2), "false");
    EXPECT_EQ(TCIMValue(TCIMChar16("8364")).ToString(10), "\xE2\x82\xAC");
    EXPECT_EQ(TCIMValue(TCIMDateTime()).ToString(10), "00000000000000.000000:000");
    EXPECT_EQ(MakeReferenceValue("A", {{"k", 1}}).ToString(10), "A.k=1");
}

TEST(TCIMValue, WritesArraysInBraces) {
    EXPECT_EQ(TCIMValue(TType::eCIMString, 0, {}).ToString(10), "{}");
    EXPECT_EQ(TCIMValue(TType::eCIMString, 0, {"a", "b"}).ToString(10), "{a, b}");
    EXPECT_EQ(TCIMValue(TType::eCIMString, 0, {"", TCIMValue(TType::eCIMString, 0), "c"}).ToString(10), "{, , c}");
    EXPECT_EQ(TCIMValue(TType::eCIMSint32, 0, {10, 11}).ToString(16), "{a, b}");
}

TEST(TCIMValue, EqualsAValueOfTheSameTypeAndContent) {
    EXPECT_EQ(TCIMValue(1), TCIMValue(1));
    EXPECT_NE(TCIMValue(1), TCIMValue(2));
    EXPECT_NE(TCIMValue(1), TCIMValue(1U));
    EXPECT_EQ(TCIMValue(TType::eCIMString, 0, {"a"}), TCIMValue(TType::eCIMString, 0, {"a"}));
    EXPECT_NE(TCIMValue(TType::eCIMString, 0, {"a"}), TCIMValue(TType::eCIMString, 0, {"b"}));
    EXPECT_NE(TCIMValue(TType::eCIMString, 0, {}), TCIMValue(TType::eCIMSint32, 0, {}));
    EXPECT_EQ(MakeReferenceValue("A", {{"k", 1}}), MakeReferenceValue("A", {{"k", 1}}));
    EXPECT_NE(MakeReferenceValue("A", {{"k", 1}}), MakeReferenceValue("A", {{"k", "1"}}));
}

TEST(TCIMValue, EqualsAnotherNullOfItsTypeOnly) {
    EXPECT_EQ(TCIMValue(TType::eCIMString, 0), TCIMValue(TType::eCIMString, 1));
    EXPECT_NE(TCIMValue(TType::eCIMString, 0), TCIMValue(TType::eCIMUint8, 0));
    EXPECT_NE(TCIMValue(TType::eCIMString, 0), TCIMValue(""));
    EXPECT_NE(TCIMValue(TType::eCIMStringArray, 0), TCIMValue(TType::eCIMString, 0, {}));
}

TEST(TCIMValue, IsOrderedByTypeThenNullThenContent) {
    const std::vector<TCIMValue> ascending{TCIMValue(),
                                           TCIMValue(TType::eCIMBoolean, 0),
                                           false,
                                           true,
                                           static_cast<unsigned char>(200),
                                           TCIMValue(TType::eCIMSint32, 0),
                                           -1,
                                           5,
                                           -kInf,
                                           0.5,
                                           kInf,
                                           kNan,
                                           TCIMChar16("65"),
                                           TCIMValue(TType::eCIMString, 0),
                                           "",
                                           "a",
                                           "b",
                                           TCIMDateTime(),
                                           MakeReferenceValue("A", {}),
                                           MakeReferenceValue("B", {}),
                                           TCIMValue(TType::eCIMSint32Array, 0),
                                           TCIMValue(TType::eCIMSint32, 0, {}),
                                           TCIMValue(TType::eCIMSint32, 0, {1}),
                                           TCIMValue(TType::eCIMSint32, 0, {1, 0}),
                                           TCIMValue(TType::eCIMSint32, 0, {2})};
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t j = 0; j < ascending.size(); ++j) {
            EXPECT_EQ(ascending[i] < ascending[j], i < j) << i << ' ' << j;
            EXPECT_EQ(ascending[i] == ascending[j], i == j) << i << ' ' << j;
        }
    }
}

TEST(TCIMValue, StaysSmall) { EXPECT_LE(sizeof(TCIMValue), sizeof(std::string) + sizeof(void*)); }

TEST(TCIMType, HasAReadableName) {
    const std::vector<std::string> names{"unknown", "boolean", "uint8",    "sint8",    "uint16", "sint16",
                                         "uint32",  "sint32",  "uint64",   "sint64",   "real32", "real64",
                                         "char16",  "string",  "datetime", "reference"};
    for (std::size_t code = 0; code < names.size(); ++code) {
        EXPECT_EQ(NameOf(static_cast<TType::ECIMType>(code)), names[code]);
        EXPECT_EQ(NameOf(static_cast<TType::ECIMType>(code + TType::eCIMArrayUnknown)), names[code] + "[]");
    }
}

} // namespace
} // namespace NQORVYX20
