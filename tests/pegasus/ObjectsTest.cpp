#include <Pegasus/Client/FailureMarks.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace {

using namespace Pegasus;

template <class T>
Array<T> arrayOf(std::initializer_list<T> items) {
    return Array<T>(items.begin(), static_cast<Uint32>(items.size()));
}

std::string text(const String& string) { return std::string(string.view()); }

// A text that loses its String would turn into a boolean.
static_assert(!std::is_constructible_v<CIMValue, const char*> && !std::is_constructible_v<CIMValue, const char (&)[2]>);
static_assert(sizeof(CIMValue) <= 24, "instances are mostly values");

template <class... Handles>
constexpr bool areThin = ((sizeof(Handles) == sizeof(void*) && std::is_nothrow_default_constructible_v<Handles> &&
                           std::is_nothrow_copy_constructible_v<Handles>)&&...);
static_assert(areThin<CIMQualifier, CIMQualifierDecl, CIMProperty, CIMParameter, CIMMethod, CIMClass, CIMInstance>);
static_assert(areThin<CIMObject, CIMConstQualifier, CIMConstProperty, CIMConstParameter, CIMConstMethod>);
static_assert(areThin<CIMConstClass, CIMConstInstance, CIMConstObject>);

template <class Const, class Plain>
constexpr bool isOneWay = std::is_convertible_v<Plain, Const> && !std::is_constructible_v<Plain, Const>;
static_assert(isOneWay<CIMConstQualifier, CIMQualifier> && isOneWay<CIMConstProperty, CIMProperty>);
static_assert(isOneWay<CIMConstParameter, CIMParameter> && isOneWay<CIMConstMethod, CIMMethod>);
static_assert(isOneWay<CIMConstClass, CIMClass> && isOneWay<CIMConstInstance, CIMInstance>);
static_assert(isOneWay<CIMConstObject, CIMObject>);

// ---- CIMValue ----

template <class T>
void expectHeld(const T& scalar, CIMType type, T other) {
    SCOPED_TRACE(cimTypeToString(type));
    const CIMValue value(scalar);
    EXPECT_EQ(value.getType(), type);
    EXPECT_FALSE(value.isArray());
    EXPECT_FALSE(value.isNull());
    T read = other;
    value.get(read);
    EXPECT_EQ(CIMValue(read), value);
    EXPECT_NE(CIMValue(other), value);

    const CIMValue array(arrayOf<T>({scalar, other}));
    EXPECT_EQ(array.getType(), type);
    EXPECT_TRUE(array.isArray());
    EXPECT_EQ(array.getArraySize(), 2U);
    Array<T> items;
    array.get(items);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(CIMValue(items[1]), CIMValue(other));
    EXPECT_EQ(CIMValue(items), array);
    EXPECT_NE(CIMValue(arrayOf<T>({other, scalar})), array);
    EXPECT_NE(array, value);

    EXPECT_THROW(value.get(items), TypeMismatchException);
    EXPECT_THROW(array.get(read), TypeMismatchException);

    const CIMValue null(type, false);
    EXPECT_TRUE(null.isNull());
    null.get(read);
    EXPECT_EQ(CIMValue(read), value) << "a null leaves the argument as it is";
    CIMValue(type, true).get(items);
    EXPECT_EQ(items.size(), 2U);
    EXPECT_NE(null, value);
    EXPECT_EQ(null, CIMValue(type, false, 5));
    EXPECT_NE(null, CIMValue(type, true));
}

TEST(CIMValueTest, EveryTypeIsHeldAsScalarArrayAndNull) {
    expectHeld<Boolean>(true, CIMTYPE_BOOLEAN, false);
    expectHeld<Uint8>(255, CIMTYPE_UINT8, 0);
    expectHeld<Sint8>(-128, CIMTYPE_SINT8, 127);
    expectHeld<Uint16>(65535, CIMTYPE_UINT16, 1);
    expectHeld<Sint16>(-32768, CIMTYPE_SINT16, 1);
    expectHeld<Uint32>(4294967295U, CIMTYPE_UINT32, 1);
    expectHeld<Sint32>(std::numeric_limits<Sint32>::min(), CIMTYPE_SINT32, 1);
    expectHeld<Uint64>(std::numeric_limits<Uint64>::max(), CIMTYPE_UINT64, 1);
    expectHeld<Sint64>(std::numeric_limits<Sint64>::min(), CIMTYPE_SINT64, 1);
    expectHeld<Real32>(1.5F, CIMTYPE_REAL32, 0);
    expectHeld<Real64>(-1e300, CIMTYPE_REAL64, 0);
    expectHeld<Char16>(Char16('x'), CIMTYPE_CHAR16, Char16('y'));
    expectHeld<String>("text", CIMTYPE_STRING, "");
    expectHeld<CIMDateTime>(CIMDateTime(String("20261121083900.123456+060")), CIMTYPE_DATETIME, CIMDateTime());
    expectHeld<CIMObjectPath>("A.K=1", CIMTYPE_REFERENCE, "A.K=2");
    expectHeld<CIMInstance>(CIMInstance(CIMName("A")), CIMTYPE_INSTANCE, CIMInstance(CIMName("B")));
    expectHeld<CIMObject>(CIMClass(CIMName("A")), CIMTYPE_OBJECT, CIMInstance(CIMName("A")));
}

TEST(CIMValueTest, TheDefaultIsTheNullBoolean) {
    EXPECT_EQ(CIMValue(), CIMValue(CIMTYPE_BOOLEAN, false));
    EXPECT_TRUE(CIMValue().isNull());
    EXPECT_EQ(CIMValue().getArraySize(), 0U);
}

TEST(CIMValueTest, AValueIsReadOnlyAsItsOwnType) {
    String string = "untouched";
    Uint16 number = 7;
    EXPECT_THROW(CIMValue(Uint8(1)).get(number), TypeMismatchException);
    EXPECT_THROW(CIMValue(CIMTYPE_UINT8, false).get(string), TypeMismatchException);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(string, String("untouched"));
    try {
        CIMValue(CIMTYPE_UINT8, true).get(string);
        FAIL() << "no exception";
    } catch (const TypeMismatchException& exception) {
        EXPECT_EQ(exception.getMessage(), String("the value is of type uint8 array, asked for as string"));
    }
}

TEST(CIMValueTest, SettingReplacesTypeAndContent) {
    CIMValue value(Uint8(1));
    const CIMValue copy = value;
    value.set(arrayOf<String>({"a"}));
    EXPECT_EQ(value.getType(), CIMTYPE_STRING);
    EXPECT_TRUE(value.isArray());
    value.setNullValue(CIMTYPE_REAL32, false);
    EXPECT_EQ(value, CIMValue(CIMTYPE_REAL32, false));
    EXPECT_EQ(copy, CIMValue(Uint8(1)));
}

template <class T>
void expectNullElement(const T& scalar) {
    const CIMValue full(arrayOf<T>({scalar, T(), scalar}));
    SCOPED_TRACE(cimTypeToString(full.getType()));
    const CIMValue value(arrayOf<T>({scalar, scalar, scalar}), arrayOf<Boolean>({false, true}));
    EXPECT_EQ(value.getType(), full.getType());
    EXPECT_TRUE(value.isArray());
    EXPECT_FALSE(value.isNull());
    ASSERT_EQ(value.getArraySize(), 3U);
    EXPECT_FALSE(value.isNullElement(0));
    EXPECT_TRUE(value.isNullElement(1));
    EXPECT_FALSE(value.isNullElement(2));
    EXPECT_EQ(value, CIMValue(arrayOf<T>({scalar, T(), scalar}), arrayOf<Boolean>({false, true, false})));
    Array<T> items;
    value.get(items);
    EXPECT_EQ(CIMValue(items), full) << "a null element is read as T()";
}

TEST(CIMValueTest, AnAssignedOneHasTypeAndContentOfTheOther) {
    CIMValue value(Uint8(1));
    const CIMValue texts(arrayOf<String>({"a", "b"}));
    value.assign(texts);
    EXPECT_EQ(value, texts);
    value.set(Uint8(2));
    EXPECT_EQ(texts.getArraySize(), 2U) << "the other is another";
}

TEST(CIMValueTest, AClearedOneIsTheNullBoolean) {
    CIMValue value(arrayOf<String>({"a", "b"}));
    value.clear();
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(value.getType(), CIMTYPE_BOOLEAN);
    EXPECT_FALSE(value.isArray());
}

TEST(CIMValueTest, TypesAreCompatibleWhenTypeAndArrayNessAre) {
    EXPECT_TRUE(CIMValue(Uint8(1)).typeCompatible(CIMValue(Uint8(2))));
    EXPECT_TRUE(CIMValue(Uint8(1)).typeCompatible(CIMValue(CIMTYPE_UINT8, false)));
    EXPECT_FALSE(CIMValue(Uint8(1)).typeCompatible(CIMValue(Sint8(1))));
    EXPECT_FALSE(CIMValue(Uint8(1)).typeCompatible(CIMValue(CIMTYPE_UINT8, true)));
}

TEST(CIMValueTest, AnElementOfAnArrayCanBeNull) {
    expectNullElement<Boolean>(true);
    expectNullElement<Uint8>(255);
    expectNullElement<Sint8>(-128);
    expectNullElement<Uint16>(65535);
    expectNullElement<Sint16>(-32768);
    expectNullElement<Uint32>(4294967295U);
    expectNullElement<Sint32>(-1);
    expectNullElement<Uint64>(1);
    expectNullElement<Sint64>(-1);
    expectNullElement<Real32>(1.5F);
    expectNullElement<Real64>(-1e300);
    expectNullElement<Char16>(Char16('x'));
    expectNullElement<String>("text");
    expectNullElement<CIMDateTime>(CIMDateTime(String("20261121083900.123456+060")));
    expectNullElement<CIMObjectPath>("A.K=1");
    expectNullElement<CIMInstance>(CIMInstance(CIMName("A")));
    expectNullElement<CIMObject>(CIMClass(CIMName("A")));
}

TEST(CIMValueTest, ANullElementEqualsANullElementAlone) {
    const Array<Uint8> items = arrayOf<Uint8>({1, 0});
    const CIMValue value(items, arrayOf<Boolean>({false, true}));
    EXPECT_NE(value, CIMValue(items)) << "the default is not null";
    EXPECT_NE(CIMValue(items), value);
    EXPECT_EQ(CIMValue(items), CIMValue(items, Array<Boolean>()));
    EXPECT_NE(value, CIMValue(arrayOf<Uint8>({1, 0, 0}), arrayOf<Boolean>({false, true})));
    EXPECT_NE(value, CIMValue(items, arrayOf<Boolean>({true, true})));
    CIMValue copy;
    copy = value;
    EXPECT_EQ(copy, value);
    EXPECT_TRUE(copy.isNullElement(1));
}

TEST(CIMValueTest, AnUninitialisedObjectInAnArrayIsANullElement) {
    const CIMValue instances(arrayOf<CIMInstance>({CIMInstance(CIMName("A")), CIMInstance()}));
    EXPECT_FALSE(instances.isNullElement(0));
    EXPECT_TRUE(instances.isNullElement(1));
    EXPECT_EQ(text(instances.toString()), "<INSTANCE CLASSNAME=\"A\"></INSTANCE> NULL ");
    const CIMValue objects(arrayOf<CIMObject>({CIMObject(), CIMClass(CIMName("A"))}));
    EXPECT_TRUE(objects.isNullElement(0));
    EXPECT_FALSE(objects.isNullElement(1));
}

TEST(CIMValueTest, OnlyElementsOfTheArrayCanBeNullOnes) {
    const CIMValue value(arrayOf<String>({"a"}));
    EXPECT_FALSE(value.isNullElement(0));
    EXPECT_THROW(value.isNullElement(1), IndexOutOfBoundsException);
    EXPECT_THROW(CIMValue(arrayOf<String>({"a"}), arrayOf<Boolean>({true})).isNullElement(1),
                 IndexOutOfBoundsException);
    EXPECT_THROW(CIMValue(String("a")).isNullElement(0), IndexOutOfBoundsException);
    EXPECT_THROW(CIMValue(CIMTYPE_STRING, true).isNullElement(0), IndexOutOfBoundsException);
    EXPECT_THROW(CIMValue(arrayOf<String>({"a"}), arrayOf<Boolean>({false, true})), IndexOutOfBoundsException);
}

TEST(CIMValueTest, ValuesHaveTexts) {
    const auto valueText = [](const CIMValue& value) { return text(value.toString()); };
    EXPECT_EQ(valueText(CIMValue()), "");
    EXPECT_EQ(valueText(CIMValue(true)), "TRUE");
    EXPECT_EQ(valueText(CIMValue(Sint8(-128))), "-128");
    EXPECT_EQ(valueText(CIMValue(std::numeric_limits<Uint64>::max())), "18446744073709551615");
    EXPECT_EQ(valueText(CIMValue(0.1)), "1.0000000000000001e-01");
    EXPECT_EQ(valueText(CIMValue(0.1F)), "1.0000000e-01");
    EXPECT_EQ(valueText(CIMValue(Char16('A'))), "A");
    EXPECT_EQ(valueText(CIMValue(Char16(0xE9))), "\xC3\xA9");
    EXPECT_EQ(valueText(CIMValue(Char16(0x20AC))), "\xE2\x82\xAC");
    EXPECT_EQ(valueText(CIMValue(Char16(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(valueText(CIMValue(arrayOf<Uint8>({1, 2}))), "1 2 ");
    EXPECT_EQ(valueText(CIMValue(Array<String>())), "");
    EXPECT_EQ(valueText(CIMValue(arrayOf<Uint8>({1, 0, 2}), arrayOf<Boolean>({false, true}))), "1 NULL 2 ");
    EXPECT_EQ(valueText(CIMValue(CIMObjectPath("A.K=1"))), "A.K=1");
    EXPECT_EQ(valueText(CIMValue(CIMInstance(CIMName("A")))), "<INSTANCE CLASSNAME=\"A\"></INSTANCE>");
    EXPECT_EQ(valueText(CIMValue(Array<CIMInstance>(1))), "NULL ");
}

// ---- CIMObjectPath ----

TEST(CIMObjectPathTest, TheTextFormIsReadAndWritten) {
    for (const char* path :
         {"A", "A.K=1", "A.K=\"text\"", "A.K=TRUE", "A.A=-1.5e3,B=\"x\",c=false", "root/cimv2:A.K=1", "root:A",
          "//host/root/cimv2:A.K=1", "//host:5988/root:A", "//host/A.K=1", "//[::1]:5988/root:A.K=\"a:b/c.d,e=f\"",
          "A.K=\"\"", "A.K=\"quote \\\" and \\\\ backslash\"", "A.K=0x1F", "A=\"alone\"", "A=5",
          "A.R=\"B.K=\\\"x\\\"\""}) {
        EXPECT_EQ(text(CIMObjectPath(path).toString()), path);
    }
}

TEST(CIMObjectPathTest, ThePartsAreTakenApart) {
    const CIMObjectPath path("//host:5988/root/cimv2:CIM_A.Name=\"a \\\"b\\\"\",On=true,Ref=\"B.K=1\",Size=3");
    EXPECT_EQ(path.getHost(), String("host:5988"));
    EXPECT_EQ(path.getNameSpace(), CIMNamespaceName("root/cimv2"));
    EXPECT_EQ(path.getClassName(), CIMName("CIM_A"));
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    ASSERT_EQ(keys.size(), 4U);
    EXPECT_EQ(keys[0].getName(), CIMName("Name"));
    EXPECT_EQ(keys[0].getValue(), String("a \"b\""));
    EXPECT_EQ(keys[0].getType(), CIMKeyBinding::STRING);
    EXPECT_EQ(keys[1].getType(), CIMKeyBinding::BOOLEAN);
    EXPECT_EQ(keys[2].getType(), CIMKeyBinding::REFERENCE);
    EXPECT_EQ(keys[2].getValue(), String("B.K=1"));
    EXPECT_EQ(keys[3].getType(), CIMKeyBinding::NUMERIC);
}

TEST(CIMObjectPathTest, KeysAreSortedWithoutRegardToCase) {
    const auto keys = arrayOf<CIMKeyBinding>(
        {CIMKeyBinding("b", "1", CIMKeyBinding::NUMERIC), CIMKeyBinding("C", "2", CIMKeyBinding::NUMERIC),
         CIMKeyBinding("A", "3", CIMKeyBinding::NUMERIC), CIMKeyBinding("_", "4", CIMKeyBinding::NUMERIC)});
    EXPECT_EQ(text(CIMObjectPath("", CIMNamespaceName(), "X", keys).toString()), "X._=4,A=3,b=1,C=2");
    EXPECT_EQ(text(CIMObjectPath("X.b=1,C=2,A=3").toString()), "X.A=3,b=1,C=2");
}

TEST(CIMObjectPathTest, TheEmptyPathHasNothing) {
    EXPECT_EQ(CIMObjectPath().toString(), String());
    EXPECT_TRUE(CIMObjectPath().getClassName().isNull());
    EXPECT_EQ(CIMObjectPath().getKeyBindings().size(), 0U);
    EXPECT_EQ(CIMObjectPath(), CIMObjectPath());
    EXPECT_NE(CIMObjectPath(), CIMObjectPath("A"));
}

TEST(CIMObjectPathTest, IdenticalPathsAgreeInMeaning) {
    EXPECT_EQ(CIMObjectPath("//Host/Root:a.k=1,L=\"x\""), CIMObjectPath("//host/root:A.l=\"x\",K=1"));
    EXPECT_TRUE(CIMObjectPath("A.K=0x10").identical(CIMObjectPath("A.K=16")));
    EXPECT_EQ(CIMObjectPath("A.K=-0"), CIMObjectPath("A.K=0"));
    EXPECT_EQ(CIMObjectPath("A.K=true"), CIMObjectPath("A.K=TRUE"));
    EXPECT_EQ(CIMObjectPath("A.K=\"B.x=1,y=2\""), CIMObjectPath("A.K=\"b.Y=2,X=1\""));
    for (const char* other :
         {"A", "A.K=\"X\"", "A.K=1", "A.L=\"x\"", "B.K=\"x\"", "root:A.K=\"x\"", "A.K=\"x\",L=1", "//host/A.K=\"x\""}) {
        EXPECT_NE(CIMObjectPath(other), CIMObjectPath("A.K=\"x\"")) << other;
    }
    EXPECT_NE(CIMObjectPath("A.K=1.0"), CIMObjectPath("A.K=1"));
    EXPECT_NE(CIMObjectPath("A.K=-1"), CIMObjectPath("A.K=1"));
}

/// A path with all parts.
CIMObjectPath wholePath() { return CIMObjectPath("//host:5988/root/cimv2:A.B=\"b\",C=3"); }

TEST(CIMObjectPathTest, EachPartIsSetAndTheOthersStay) {
    CIMObjectPath path = wholePath();
    const CIMObjectPath copy(path);
    path.setHost("other");
    EXPECT_EQ(text(path.toString()), "//other/root/cimv2:A.B=\"b\",C=3");
    path.setNameSpace("interop");
    EXPECT_EQ(text(path.toString()), "//other/interop:A.B=\"b\",C=3");
    path.setClassName("Z");
    EXPECT_EQ(text(path.toString()), "//other/interop:Z.B=\"b\",C=3");
    path.setKeyBindings(arrayOf<CIMKeyBinding>(
        {CIMKeyBinding("Y", "1", CIMKeyBinding::NUMERIC), CIMKeyBinding("x", "TRUE", CIMKeyBinding::BOOLEAN)}));
    EXPECT_EQ(text(path.toString()), "//other/interop:Z.x=TRUE,Y=1") << "sorted";
    EXPECT_EQ(copy, wholePath()) << "a path is a value";
}

TEST(CIMObjectPathTest, OneWithoutPartsTakesThem) {
    CIMObjectPath path;
    path.setClassName("A");
    EXPECT_EQ(path, CIMObjectPath("A"));
    path.setHost("host");
    path.setNameSpace("root");
    EXPECT_EQ(text(path.toString()), "//host/root:A");
}

TEST(CIMObjectPathTest, ItIsSetAsAWholeAndCleared) {
    CIMObjectPath path;
    path.set(wholePath().toString());
    EXPECT_EQ(path, wholePath());
    path.set("host", "root", "A");
    EXPECT_EQ(text(path.toString()), "//host/root:A");
    path.set("", "root", "A", arrayOf<CIMKeyBinding>({CIMKeyBinding("K", "1", CIMKeyBinding::NUMERIC)}));
    EXPECT_EQ(text(path.toString()), "root:A.K=1");
    EXPECT_THROW(path.set("A.K"), MalformedObjectNameException);
    EXPECT_EQ(text(path.toString()), "root:A.K=1");
    path.clear();
    EXPECT_EQ(path, CIMObjectPath());
}

TEST(CIMObjectPathTest, EqualPathsHaveEqualHashCodes) {
    for (const auto& [a, b] : {std::pair("//HOST/Root:A.B=\"b\",C=3", "//host/root:a.c=3,b=\"b\""),
                               std::pair("A.K=16", "A.K=0x10"), std::pair("A.K=TRUE", "a.k=true"),
                               std::pair("A.R=\"root:B.K=1\"", "A.R=\"root:b.k=1\""), std::pair("A", "a")}) {
        ASSERT_EQ(CIMObjectPath(a), CIMObjectPath(b));
        EXPECT_EQ(CIMObjectPath(a).makeHashCode(), CIMObjectPath(b).makeHashCode()) << a;
    }
    EXPECT_EQ(CIMObjectPath().makeHashCode(), CIMObjectPath().makeHashCode());
}

TEST(CIMObjectPathTest, EveryPartCountsForTheHashCode) {
    const char* const others[] = {"//other/root:A.K=\"a\"", "//host/other:A.K=\"a\"", "//host/root:B.K=\"a\"",
                                  "//host/root:A.L=\"a\"",  "//host/root:A.K=\"b\"",  "//host/root:A"};
    for (const char* const other : others) {
        EXPECT_NE(CIMObjectPath("//host/root:A.K=\"a\"").makeHashCode(), CIMObjectPath(other).makeHashCode()) << other;
    }
}

TEST(CIMObjectPathTest, ANamespaceMayHaveASlashBeforeIt) {
    EXPECT_EQ(CIMObjectPath("/root/cimv2:A.K=1").toString(), String("root/cimv2:A.K=1"));
}

TEST(CIMObjectPathTest, MalformedTextsAreRefused) {
    for (const char* path :
         {"",           "1A",     "A.",           "A.K",     "A.K=",   "A.K=x",     "A.K=\"x",  "A.K=\"x\\",
          "A.K=\"x\"y", "A.K=1,", "A.=1",         "A.K=1 2", "//host", "///root:A", "//root:A", "root/:A",
          ":A",         "root:",  "//host/root:", "A=",      "A=1,2",  "A B",       "A.K=--1"}) {
        EXPECT_THROW(CIMObjectPath{path}, MalformedObjectNameException) << path;
    }
}

TEST(CIMObjectPathTest, AMalformedTextSaysWhereWhatIsExpected) {
    struct {
        const char* path;
        MalformedPath::Expected expected;
        Uint32 position;
    } const cases[] = {
        {"", MalformedPath::CLASS_NAME, 0},
        {"1A.K=1", MalformedPath::CLASS_NAME, 0},
        {"A B.K=1", MalformedPath::KEYS, 1},
        {"A.", MalformedPath::KEY_NAME, 2},
        {"A.K=1,", MalformedPath::KEY_NAME, 6},
        {"A.K", MalformedPath::EQUALS_SIGN, 3},
        {"A.K=x", MalformedPath::VALUE, 4},
        {"A.K=\"x\\\"", MalformedPath::CLOSING_QUOTE, 8},
        {"A.K=\"x\"y", MalformedPath::COMMA_OR_END, 7},
        {"A=1,B=2", MalformedPath::END, 3},
        {"root/:A.K=1", MalformedPath::NAMESPACE, 5},
        {"//host:A.K=1", MalformedPath::NAMESPACE, 6},
        {"//host", MalformedPath::NAMESPACE, 6},
    };
    for (const auto& [path, expected, position] : cases) {
        try {
            CIMObjectPath{path};
            ADD_FAILURE() << path;
        } catch (const MalformedObjectNameException& error) {
            const auto* const mark = dynamic_cast<const MalformedPath*>(&error);
            ASSERT_NE(mark, nullptr) << path;
            EXPECT_EQ(mark->getExpected(), expected) << path;
            EXPECT_EQ(mark->getPosition(), position) << path;
        }
    }
}

// ---- Declarations and objects ----

TEST(CIMQualifierTest, ItHasWhatItWasMadeFrom) {
    const CIMQualifier qualifier("Values", arrayOf<String>({"a"}), CIMFlavor::TRANSLATABLE, true);
    EXPECT_EQ(qualifier.getName(), CIMName("VALUES"));
    EXPECT_EQ(qualifier.getType(), CIMTYPE_STRING);
    EXPECT_TRUE(qualifier.isArray());
    EXPECT_EQ(qualifier.getValue().getArraySize(), 1U);
    EXPECT_EQ(qualifier.getFlavor(), CIMFlavor::TRANSLATABLE);
    EXPECT_TRUE(qualifier.getPropagated());
    EXPECT_EQ(CIMQualifier("Q", CIMValue()).getFlavor(), CIMFlavor::NONE);
    EXPECT_FALSE(CIMQualifier("Q", CIMValue()).getPropagated());
}

TEST(CIMQualifierDeclTest, ItHasWhatItWasMadeFrom) {
    const CIMQualifierDecl decl("Q", CIMValue(CIMTYPE_UINT16, true), CIMScope::CLASS, CIMFlavor::NONE, 4);
    EXPECT_EQ(decl.getType(), CIMTYPE_UINT16);
    EXPECT_TRUE(decl.isArray());
    EXPECT_EQ(decl.getScope(), CIMScope::CLASS);
    EXPECT_EQ(decl.getFlavor(), CIMFlavor::NONE);
    EXPECT_EQ(decl.getArraySize(), 4U);
}

TEST(CIMPropertyTest, ItHasWhatItWasMadeFrom) {
    const CIMProperty property("P", CIMValue(CIMTYPE_REFERENCE, true), 3, "A", "B", true);
    EXPECT_EQ(property.getType(), CIMTYPE_REFERENCE);
    EXPECT_TRUE(property.isArray());
    EXPECT_EQ(property.getArraySize(), 3U);
    EXPECT_EQ(property.getReferenceClassName(), CIMName("A"));
    EXPECT_EQ(property.getClassOrigin(), CIMName("B"));
    EXPECT_TRUE(property.getPropagated());
}

TEST(CIMPropertyTest, WhatContradictsItselfIsATypeMismatch) {
    EXPECT_THROW(CIMProperty("P", CIMValue(Uint8(1)), 3), TypeMismatchException);
    EXPECT_THROW(CIMProperty("P", CIMValue(Uint8(1)), 0, "A"), TypeMismatchException);
    EXPECT_THROW(CIMParameter("P", CIMTYPE_UINT8, false, 3), TypeMismatchException);
    EXPECT_THROW(CIMParameter("P", CIMTYPE_UINT8, false, 0, "A"), TypeMismatchException);
    CIMProperty property("P", CIMValue(Uint8(1)));
    EXPECT_THROW(property.setValue(CIMValue(Uint16(1))), TypeMismatchException);
    EXPECT_THROW(property.setValue(CIMValue(CIMTYPE_UINT8, true)), TypeMismatchException);
    property.setValue(CIMValue(CIMTYPE_UINT8, false));
    EXPECT_TRUE(property.getValue().isNull());
}

TEST(CIMClassTest, NoTwoPartsHaveOneName) {
    CIMClass cimClass("A");
    cimClass.addProperty(CIMProperty("P", CIMValue())).addMethod(CIMMethod("M", CIMTYPE_UINT8));
    cimClass.addQualifier(CIMQualifier("Q", CIMValue()));
    EXPECT_THROW(cimClass.addProperty(CIMProperty("p", CIMValue())), AlreadyExistsException);
    EXPECT_THROW(cimClass.addMethod(CIMMethod("m", CIMTYPE_UINT8)), AlreadyExistsException);
    EXPECT_THROW(cimClass.addQualifier(CIMQualifier("q", CIMValue())), AlreadyExistsException);
    EXPECT_EQ(cimClass.getPropertyCount(), 1U);
    EXPECT_THROW(cimClass.setPath(CIMObjectPath("B")), TypeMismatchException);
    EXPECT_THROW(CIMInstance("A").setPath(CIMObjectPath("B.K=1")), TypeMismatchException);
}

TEST(CIMClassTest, ItsKeysMakeThePathOfAnInstance) {
    CIMClass cimClass("A");
    EXPECT_FALSE(cimClass.hasKeys());
    for (const char* name : {"B", "C"}) {
        cimClass.addProperty(
            CIMProperty(name, CIMValue(CIMTYPE_STRING, false)).addQualifier(CIMQualifier("Key", CIMValue(true))));
    }
    cimClass.addProperty(CIMProperty("D", CIMValue()));
    Array<CIMName> names;
    cimClass.getKeyNames(names);
    EXPECT_EQ(names.size(), 2U);
    CIMInstance instance("A");
    instance.addProperty(CIMProperty("C", CIMValue(Uint8(7))));
    EXPECT_THROW(instance.buildPath(cimClass), NoSuchPropertyException);
    instance.addProperty(CIMProperty("B", CIMValue(String("b"))));
    EXPECT_EQ(text(instance.buildPath(cimClass).toString()), "A.B=\"b\",C=7");
    EXPECT_THROW(CIMInstance("Z").buildPath(cimClass), TypeMismatchException);
}

TEST(CIMObjectTest, ACloneIsAnObjectOfItsOwn) {
    CIMInstance instance("A");
    instance.addProperty(CIMProperty("P", CIMValue(Uint8(1)))).addQualifier(CIMQualifier("Q", CIMValue(true)));
    CIMInstance copy = instance.clone();
    EXPECT_TRUE(copy.identical(instance));
    CIMProperty property = copy.getProperty(0);
    property.setValue(CIMValue(Uint8(2)));
    EXPECT_EQ(instance.getProperty(0).getValue(), CIMValue(Uint8(1)));
    CIMClass cimClass("A");
    cimClass.addProperty(CIMProperty("P", CIMValue()));
    CIMClass other = cimClass.clone();
    other.addProperty(CIMProperty("R", CIMValue()));
    EXPECT_EQ(cimClass.getPropertyCount(), 1U);
    EXPECT_TRUE(CIMObject(instance).clone().identical(CIMObject(instance)));
    EXPECT_THROW(CIMInstance().clone(), UninitializedObjectException);
}

TEST(CIMObjectTest, ItIsTheCimXmlOfItsKind) {
    CIMClass cimClass("A", "B");
    cimClass.addProperty(CIMProperty("R", CIMValue(CIMTYPE_REFERENCE, false), 0, "C")
                             .addQualifier(CIMQualifier("Key", CIMValue(true), CIMFlavor::DISABLEOVERRIDE)));
    cimClass.addMethod(CIMMethod("M", CIMTYPE_UINT8).addParameter(CIMParameter("X", CIMTYPE_STRING, true, 2)));
    EXPECT_EQ(text(CIMObject(cimClass).toString()),
              "<CLASS NAME=\"A\" SUPERCLASS=\"B\"><PROPERTY.REFERENCE NAME=\"R\" REFERENCECLASS=\"C\"><QUALIFIER "
              "NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\"><VALUE>TRUE</VALUE></QUALIFIER>"
              "</PROPERTY.REFERENCE><METHOD NAME=\"M\" TYPE=\"uint8\"><PARAMETER.ARRAY NAME=\"X\" TYPE=\"string\" "
              "ARRAYSIZE=\"2\"></PARAMETER.ARRAY></METHOD></CLASS>");
    CIMInstance instance("A");
    instance.addProperty(CIMProperty("E", CIMValue(CIMInstance("I"))));
    EXPECT_EQ(text(CIMObject(instance).toString()),
              "<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"E\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>"
              "&lt;INSTANCE CLASSNAME=&quot;I&quot;&gt;&lt;/INSTANCE&gt;</VALUE></PROPERTY></INSTANCE>");
    EXPECT_EQ(CIMObject(instance).findProperty("e"), 0U);
    EXPECT_EQ(CIMObject(instance).getQualifierCount(), 0U);
}

TEST(CIMConstTest, AConstHandleIsMadeFromTheObject) {
    CIMInstance instance("A");
    instance.addProperty(CIMProperty("P", CIMValue(Uint8(1))).addQualifier(CIMQualifier("Q", CIMValue(true))));
    const CIMConstInstance seen(instance);
    const CIMConstProperty property = seen.getProperty(seen.findProperty("P"));
    const CIMConstQualifier qualifier = property.getQualifier(0);
    EXPECT_EQ(qualifier.getValue(), CIMValue(true));
    EXPECT_TRUE(CIMConstProperty().isUninitialized());
}

TEST(CIMConstTest, AConstHandleHasThePartsOfTheObject) {
    CIMClass cimClass("A");
    cimClass.addQualifier(CIMQualifier("Q", CIMValue(true)));
    cimClass.addProperty(CIMProperty("P", CIMValue(Uint8(1))));
    const CIMObject object(cimClass);
    const CIMConstObject seen(object);
    EXPECT_EQ(object.getQualifier(0).getName(), CIMName("Q"));
    EXPECT_EQ(seen.getQualifier(0).getName(), CIMName("Q"));
    EXPECT_EQ(object.getProperty(0).getValue(), CIMValue(Uint8(1)));
    EXPECT_EQ(seen.getProperty(0).getValue(), CIMValue(Uint8(1)));
    EXPECT_THROW(seen.getProperty(1), IndexOutOfBoundsException);
    const CIMConstProperty property = seen.getProperty(0);
    CIMObject(object).getProperty(0).setValue(CIMValue(Uint8(2)));
    EXPECT_EQ(property.getValue(), CIMValue(Uint8(2))) << "it is the object's own";
}

TEST(CIMMethodTest, ParametersAndQualifiersAreFound) {
    CIMMethod method("M", CIMTYPE_UINT32, "A", true);
    method.addParameter(CIMParameter("P", CIMTYPE_REFERENCE, true, 2, "R")).addQualifier(CIMQualifier("Q", CIMValue()));
    const CIMParameter parameter = method.getParameter(method.findParameter("p"));
    EXPECT_EQ(parameter.getType(), CIMTYPE_REFERENCE);
    EXPECT_TRUE(parameter.isArray());
    EXPECT_EQ(parameter.getArraySize(), 2U);
    EXPECT_EQ(parameter.getReferenceClassName(), CIMName("R"));
    EXPECT_EQ(method.getClassOrigin(), CIMName("A"));
    EXPECT_TRUE(method.getPropagated());
    EXPECT_EQ(method.findQualifier("q"), 0U);
    EXPECT_EQ(method.findParameter("x"), PEG_NOT_FOUND);
}

TEST(CIMClassTest, MembersAreFoundByNameAndIndex) {
    CIMClass cimClass("A", "B");
    cimClass.addQualifier(CIMQualifier("Q", CIMValue()))
        .addProperty(CIMProperty("P", CIMValue()))
        .addMethod(CIMMethod("M", CIMTYPE_UINT8));
    EXPECT_EQ(cimClass.getClassName(), CIMName("A"));
    EXPECT_EQ(cimClass.getSuperClassName(), CIMName("B"));
    EXPECT_EQ(cimClass.getPath(), CIMObjectPath("A"));
    cimClass.setPath("root/cimv2:A");
    EXPECT_EQ(cimClass.getPath(), CIMObjectPath("root/cimv2:A"));
    EXPECT_FALSE(cimClass.identical(CIMClass("A", "B")));
    EXPECT_EQ(cimClass.findQualifier("q"), 0U);
    EXPECT_EQ(cimClass.findProperty("p"), 0U);
    EXPECT_EQ(cimClass.findMethod("m"), 0U);
    EXPECT_EQ(cimClass.findMethod("p"), PEG_NOT_FOUND);
    EXPECT_TRUE(CIMClass("A").getSuperClassName().isNull());
}

TEST(CIMClassTest, AQualifierThatIsTrueMakesAnAssociationOrAnAbstractClass) {
    CIMClass plain("A");
    plain.addQualifier(CIMQualifier("Association", false)).addQualifier(CIMQualifier("Abstract", CIMValue()));
    EXPECT_FALSE(plain.isAssociation());
    EXPECT_FALSE(plain.isAbstract());
    CIMClass marked("A");
    marked.addQualifier(CIMQualifier("ASSOCIATION", true)).addQualifier(CIMQualifier("abstract", true));
    EXPECT_TRUE(marked.isAssociation());
    EXPECT_TRUE(marked.isAbstract());
}

TEST(CIMInstanceTest, ItsPathIsItsClassUntilItGetsOne) {
    CIMInstance instance(CIMName("A"));
    EXPECT_EQ(instance.getPath(), CIMObjectPath("A"));
    instance.setPath("root:A.K=1");
    EXPECT_EQ(instance.getPath(), CIMObjectPath("root:A.K=1"));
    EXPECT_FALSE(instance.identical(CIMInstance(CIMName("A"))));
}

TEST(CIMObjectTest, ItIsAClassOrAnInstance) {
    const CIMObject aClass(CIMClass("A"));
    EXPECT_TRUE(aClass.isClass());
    EXPECT_FALSE(aClass.isInstance());
    EXPECT_EQ(CIMClass(aClass).getClassName(), CIMName("A"));
    EXPECT_THROW(CIMInstance{aClass}, DynamicCastFailedException);

    const CIMObject anInstance(CIMInstance(CIMName("A")));
    EXPECT_FALSE(anInstance.isClass());
    EXPECT_TRUE(anInstance.isInstance());
    EXPECT_EQ(CIMInstance(anInstance).getClassName(), CIMName("A"));
    EXPECT_THROW(CIMClass{anInstance}, DynamicCastFailedException);

    EXPECT_FALSE(aClass.identical(anInstance));
    EXPECT_TRUE(aClass.identical(CIMClass("A")));
    EXPECT_TRUE(anInstance.identical(CIMInstance(CIMName("A"))));
    EXPECT_FALSE(anInstance.identical(CIMInstance(CIMName("B"))));
}

TEST(CIMObjectTest, ItSharesNameAndPathWithWhatItHolds) {
    CIMInstance instance(CIMName("A"));
    CIMObject object(instance);
    EXPECT_EQ(object.getClassName(), CIMName("A"));
    EXPECT_EQ(object.getPath(), CIMObjectPath("A"));
    object.setPath("//host/root:A.K=1");
    EXPECT_EQ(instance.getPath(), CIMObjectPath("//host/root:A.K=1"));
    instance.setPath("A.K=2");
    EXPECT_EQ(object.getPath(), CIMObjectPath("A.K=2"));

    CIMObject aClass(CIMClass("B"));
    aClass.setPath("//host/root:B");
    EXPECT_EQ(aClass.getClassName(), CIMName("B"));
    EXPECT_EQ(CIMClass(aClass).getPath(), CIMObjectPath("//host/root:B"));
}

} // namespace
