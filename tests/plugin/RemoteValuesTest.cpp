#include "convert/RemoteValues.h"

#include "convert/StreamedText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace NQORVYX20;
using testing::ElementsAre;

namespace {

using Type = TCIMValue::TCIMType;

TCIMValue Converted(const Pegasus::CIMValue& value) {
    TCIMValue out;
    pegValToVYX(value, value.getType(), value.isArray(), out);
    return out;
}

template <typename T>
Pegasus::CIMValue RemoteArray(std::initializer_list<T> elements) {
    Pegasus::Array<T> array;
    for (const T& element : elements) {
        array.append(element);
    }
    return Pegasus::CIMValue(array);
}

std::vector<TCIMValue>& Elements(const TCIMValue& value) { return value; }

/// What the conversion leaves in a value that held 7 before.
TCIMValue ConvertedOver7(const Pegasus::CIMValue& value, Pegasus::CIMType type, bool isArray) {
    TCIMValue out(7);
    pegValToVYX(value, type, isArray, out);
    return out;
}

template <typename T>
void ExpectScalarAndArray(T lowest, T highest, Type::ECIMType type) {
    for (const T value : {lowest, highest}) {
        const TCIMValue scalar = Converted(Pegasus::CIMValue(value));
        EXPECT_EQ(scalar.GetType(), type);
        EXPECT_EQ(scalar, TCIMValue(value));
    }
    const TCIMValue array = Converted(RemoteArray<T>({lowest, highest}));
    EXPECT_EQ(array.GetType(), type + 16);
    EXPECT_THAT(Elements(array), ElementsAre(TCIMValue(lowest), TCIMValue(highest)));
}

} // namespace

TEST(RemoteValues, NumbersKeepTheirTypeAndExtremes) {
    const auto check = [](auto sample, Type::ECIMType type) {
        using T = decltype(sample);
        ExpectScalarAndArray<T>(std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(), type);
    };
    check(Pegasus::Uint8(), Type::eCIMUint8);
    check(Pegasus::Sint8(), Type::eCIMSint8);
    check(Pegasus::Uint16(), Type::eCIMUint16);
    check(Pegasus::Sint16(), Type::eCIMSint16);
    check(Pegasus::Uint32(), Type::eCIMUint32);
    check(Pegasus::Sint32(), Type::eCIMSint32);
    check(Pegasus::Uint64(), Type::eCIMUint64);
    check(Pegasus::Sint64(), Type::eCIMSint64);
    check(Pegasus::Real32(), Type::eCIMReal32);
    check(Pegasus::Real64(), Type::eCIMReal64);
}

TEST(RemoteValues, BooleansKeepTheirTruth) {
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::Boolean(true))), TCIMValue(true));
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::Boolean(false))), TCIMValue(false));
    const TCIMValue array = Converted(RemoteArray<Pegasus::Boolean>({true, false}));
    EXPECT_EQ(array.GetType(), Type::eCIMBooleanArray);
    EXPECT_THAT(Elements(array), ElementsAre(TCIMValue(true), TCIMValue(false)));
}

TEST(RemoteValues, ANullBooleanBecomesFalse) {
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::CIMTYPE_BOOLEAN, false)), TCIMValue(false));
}

TEST(RemoteValues, ABooleanIsComparedWithTrueAndNotRead) {
    EXPECT_EQ(ConvertedOver7(Pegasus::CIMValue(Pegasus::String("TRUE")), Pegasus::CIMTYPE_BOOLEAN, false),
              TCIMValue(false));
    EXPECT_EQ(ConvertedOver7(RemoteArray<Pegasus::Boolean>({true}), Pegasus::CIMTYPE_BOOLEAN, false), TCIMValue(false));
}

TEST(RemoteValues, OtherNullsBecomeTheEmptyValueOfTheirType) {
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::CIMTYPE_UINT16, false)), TCIMValue(static_cast<unsigned short>(0)));
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::CIMTYPE_REAL64, false)), TCIMValue(0.0));
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::CIMTYPE_STRING, false)), TCIMValue(""));
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::CIMTYPE_DATETIME, false)), TCIMValue(TCIMDateTime()));
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::CIMTYPE_CHAR16, false)), TCIMValue(TCIMChar16("0")));
    TCIMReference withoutKeys{boost::shared_ptr<ICIMNamespace>(), TCIMContext()};
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::CIMTYPE_REFERENCE, false)), TCIMValue(withoutKeys));
}

TEST(RemoteValues, NullArraysBecomeEmptyOnes) {
    for (int code = Pegasus::CIMTYPE_BOOLEAN; code <= Pegasus::CIMTYPE_DATETIME; ++code) {
        const TCIMValue array = Converted(Pegasus::CIMValue(static_cast<Pegasus::CIMType>(code), true));
        EXPECT_EQ(array.GetType(), code + 17);
        EXPECT_FALSE(array.IsNull());
        EXPECT_TRUE(Elements(array).empty());
    }
}

TEST(RemoteValues, ACharacterIsHandedOverAsTheDigitsOfItsCode) {
    const TCIMValue letter = Converted(Pegasus::CIMValue(Pegasus::Char16('A')));
    EXPECT_EQ(letter, TCIMValue(TCIMChar16("65")));
    EXPECT_EQ(letter.ToString(10), "A");
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::Char16(0))), TCIMValue(TCIMChar16("0")));
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::Char16(0xffff))), TCIMValue(TCIMChar16("65535")));
    const TCIMValue array = Converted(RemoteArray<Pegasus::Char16>({Pegasus::Char16('x'), Pegasus::Char16(0x20ac)}));
    EXPECT_EQ(array.GetType(), Type::eCIMChar16Array);
    EXPECT_THAT(Elements(array), ElementsAre(TCIMValue(TCIMChar16("120")), TCIMValue(TCIMChar16("8364"))));
}

TEST(RemoteValues, StringsKeepTheirUtf8) {
    const char* const text = "Gr\xc3\xb6\xc3\x9f"
                             "e \xf0\x9f\x98\x80 <&>";
    EXPECT_EQ(Converted(Pegasus::CIMValue(Pegasus::String(text))), TCIMValue(text));
    const TCIMValue array = Converted(RemoteArray<Pegasus::String>({Pegasus::String(text), Pegasus::String()}));
    EXPECT_EQ(array.GetType(), Type::eCIMStringArray);
    EXPECT_THAT(Elements(array), ElementsAre(TCIMValue(text), TCIMValue("")));
}

TEST(RemoteValues, DateTimesKeepTheir25Characters) {
    for (const char* text : {"20261121083900.123456+060", "00000001010101.000000:000", "20261121******.******-300"}) {
        const Pegasus::CIMDateTime remote{Pegasus::String(text)};
        EXPECT_EQ(Converted(Pegasus::CIMValue(remote)), TCIMValue(TCIMDateTime(text)));
        const TCIMValue array = Converted(RemoteArray<Pegasus::CIMDateTime>({remote}));
        EXPECT_EQ(array.GetType(), Type::eCIMDateTimeArray);
        EXPECT_THAT(Elements(array), ElementsAre(TCIMValue(TCIMDateTime(text))));
    }
}

TEST(RemoteValues, AReferenceCarriesItsKeysAsStringsInOrderAndNoClass) {
    using Binding = Pegasus::CIMKeyBinding;
    Pegasus::Array<Binding> keys;
    keys.append(Binding(Pegasus::CIMName("Alpha"), Pegasus::String("a"), Binding::STRING));
    keys.append(Binding(Pegasus::CIMName("Beta"), Pegasus::String("2"), Binding::NUMERIC));
    keys.append(Binding(Pegasus::CIMName("Gamma"), Pegasus::String("TRUE"), Binding::BOOLEAN));
    const Pegasus::CIMObjectPath path("server", Pegasus::CIMNamespaceName("root/other"), Pegasus::CIMName("TEST_Disk"),
                                      keys);
    const TCIMValue value = Converted(Pegasus::CIMValue(path));
    ASSERT_TRUE(value.IsReference());
    EXPECT_EQ(value.GetReferencedClass(), "");
    EXPECT_FALSE(value.GetReference().GetNamespace());
    std::vector<std::string> names;
    std::vector<TCIMValue> values;
    value.GetReference().EnumerateKeyValues([&](const std::string& name, const TCIMValue& key) {
        names.push_back(name);
        values.push_back(key);
        return true;
    });
    EXPECT_THAT(names, ElementsAre("Alpha", "Beta", "Gamma"));
    EXPECT_THAT(values, ElementsAre(TCIMValue("a"), TCIMValue("2"), TCIMValue("TRUE")));
}

TEST(RemoteValues, EmptyArraysAreArraysNotNulls) {
    const TCIMValue array = Converted(RemoteArray<Pegasus::Uint16>({}));
    EXPECT_EQ(array.GetType(), Type::eCIMUint16Array);
    EXPECT_FALSE(array.IsNull());
    EXPECT_TRUE(Elements(array).empty());
}

TEST(RemoteValues, ReferenceArraysAndEmbeddedObjectsLeaveTheOutputAlone) {
    EXPECT_EQ(ConvertedOver7(Pegasus::CIMValue(Pegasus::CIMTYPE_REFERENCE, true), Pegasus::CIMTYPE_REFERENCE, true),
              TCIMValue(7));
    EXPECT_EQ(ConvertedOver7(RemoteArray<Pegasus::CIMObjectPath>({Pegasus::CIMObjectPath("TEST_Disk.Name=\"sda\"")}),
                             Pegasus::CIMTYPE_REFERENCE, true),
              TCIMValue(7));
    constexpr auto kBeyondTheTable = static_cast<Pegasus::CIMType>(31);
    const Pegasus::CIMValue text(Pegasus::String("x")); // its own type is not asked for
    for (const auto type : {Pegasus::CIMTYPE_OBJECT, Pegasus::CIMTYPE_INSTANCE, kBeyondTheTable}) {
        EXPECT_EQ(ConvertedOver7(text, type, false), TCIMValue(7));
        EXPECT_EQ(ConvertedOver7(text, type, true), TCIMValue(7));
    }
}

TEST(RemoteValues, OneWriterOfTextsServesManyValues) {
    StreamedText texts;
    const auto convert = [&](const Pegasus::CIMValue& value) {
        TCIMValue out;
        pegValToVYX(value, value.getType(), value.isArray(), texts, out);
        return out;
    };
    const Pegasus::CIMDateTime interval{Pegasus::String("00000001010101.000000:000")};
    EXPECT_THAT(Elements(convert(RemoteArray<Pegasus::String>({"a longer text", "", "b"}))),
                ElementsAre(TCIMValue("a longer text"), TCIMValue(""), TCIMValue("b")));
    EXPECT_THAT(Elements(convert(RemoteArray<Pegasus::CIMDateTime>({interval}))),
                ElementsAre(TCIMValue(TCIMDateTime("00000001010101.000000:000"))));
    EXPECT_THAT(Elements(convert(RemoteArray<Pegasus::String>({"c"}))), ElementsAre(TCIMValue("c")));
    EXPECT_EQ(convert(Pegasus::CIMValue(Pegasus::String("d"))), TCIMValue("d"));
}

TEST(RemoteValues, AValueOfAnotherTypeThanSaidThrowsAndLeavesTheOutputAlone) {
    const Pegasus::CIMValue text(Pegasus::String("x"));
    TCIMValue out(7);
    EXPECT_THROW(pegValToVYX(text, Pegasus::CIMTYPE_UINT16, false, out), Pegasus::TypeMismatchException);
    EXPECT_THROW(pegValToVYX(text, Pegasus::CIMTYPE_STRING, true, out), Pegasus::TypeMismatchException);
    EXPECT_THROW(pegValToVYX(RemoteArray<Pegasus::String>({"x"}), Pegasus::CIMTYPE_STRING, false, out),
                 Pegasus::TypeMismatchException);
    EXPECT_EQ(out, TCIMValue(7));
}
