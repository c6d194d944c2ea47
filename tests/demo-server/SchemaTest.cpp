#include "schema/PathText.h"
#include "schema/SchemaReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kQualifiers = R"(
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="Key" TYPE="boolean" OVERRIDABLE="false">
  <SCOPE PROPERTY="true" REFERENCE="true"/><VALUE>FALSE</VALUE></QUALIFIER.DECLARATION></VALUE.OBJECT>
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="Description" TYPE="string" TRANSLATABLE="true">
  <SCOPE CLASS="true" PROPERTY="true" METHOD="true"/></QUALIFIER.DECLARATION></VALUE.OBJECT>
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="Version" TYPE="string" TOSUBCLASS="false">
  <SCOPE CLASS="true"/></QUALIFIER.DECLARATION></VALUE.OBJECT>
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="Override" TYPE="string" TOSUBCLASS="false">
  <SCOPE PROPERTY="true" METHOD="true"/></QUALIFIER.DECLARATION></VALUE.OBJECT>
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="ValueMap" TYPE="string" ISARRAY="true">
  <SCOPE PROPERTY="true"/></QUALIFIER.DECLARATION></VALUE.OBJECT>
<VALUE.OBJECT><QUALIFIER.DECLARATION NAME="Values" TYPE="string" ISARRAY="true">
  <SCOPE PROPERTY="true"/></QUALIFIER.DECLARATION></VALUE.OBJECT>
)";

std::string Document(const std::string& classes) {
    return "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><DECLARATION><DECLGROUP>" + std::string(kQualifiers) +
           "<VALUE.OBJECT>" + classes + "</VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>";
}

demo::Schema Read(const std::string& classes) { return demo::ReadSchema(Document(classes)); }

/// The text of the error with which reading ends, empty if there is none.
std::string ErrorOf(const std::string& classes) {
    try {
        Read(classes);
    } catch (const demo::SchemaError& error) {
        return error.what();
    }
    return "";
}

std::vector<std::string> Names(const std::vector<const demo::Class*>& classes) {
    std::vector<std::string> names;
    names.reserve(classes.size());
    for (const auto* const declaration : classes) {
        names.push_back(declaration->name);
    }
    return names;
}

constexpr const char* kFamily = R"(
<CLASS NAME="C" SUPERCLASS="b"/>
<CLASS NAME="A">
  <QUALIFIER NAME="Description" TYPE="string"><VALUE>of A</VALUE></QUALIFIER>
  <QUALIFIER NAME="Version" TYPE="string"><VALUE>1.0</VALUE></QUALIFIER>
  <PROPERTY NAME="Id" TYPE="string">
    <QUALIFIER NAME="Key" TYPE="boolean"><VALUE>TRUE</VALUE></QUALIFIER>
    <QUALIFIER NAME="Description" TYPE="string"><VALUE>Id of A</VALUE></QUALIFIER></PROPERTY>
  <PROPERTY.ARRAY NAME="List" TYPE="uint8"><VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY>
  <METHOD NAME="Run" TYPE="uint32"/>
</CLASS>
<CLASS NAME="B" SUPERCLASS="A">
  <PROPERTY NAME="Own" TYPE="sint8"><VALUE>-7</VALUE></PROPERTY>
  <PROPERTY NAME="ID" TYPE="string">
    <QUALIFIER NAME="Override" TYPE="string"><VALUE>Id</VALUE></QUALIFIER>
    <QUALIFIER NAME="Description" TYPE="string"><VALUE>Id of B</VALUE></QUALIFIER></PROPERTY>
</CLASS>
)";

TEST(Schema, ClassesAreFoundWhateverTheOrderOfTheDocumentAndTheCaseOfTheName) {
    const auto schema = Read(kFamily);
    ASSERT_TRUE(schema.FindClass("c"));
    EXPECT_EQ(schema.FindClass("c")->name, "C");
    EXPECT_EQ(schema.FindClass("C")->superclass, "B");
    EXPECT_FALSE(schema.FindClass("D"));
    EXPECT_THAT(Names(schema.Subclasses("", false)), ElementsAre("A"));
    EXPECT_THAT(Names(schema.Subclasses("", true)), ElementsAre("A", "B", "C"));
    EXPECT_THAT(Names(schema.Subclasses("a", false)), ElementsAre("B"));
    EXPECT_TRUE(schema.Subclasses("C", true).empty());
}

TEST(Schema, AClassHoldsWhatItInherits) {
    const auto schema = Read(kFamily);
    const auto& c = *schema.FindClass("C");
    ASSERT_EQ(c.properties.size(), 3U);
    EXPECT_EQ(c.properties[1].name, "List");
    EXPECT_TRUE(c.properties[1].isArray);
    EXPECT_TRUE(c.properties[1].propagated);
    EXPECT_EQ(c.properties[1].classOrigin, "A");
    EXPECT_EQ(c.properties[2].classOrigin, "B");
    ASSERT_EQ(c.methods.size(), 1U);
    EXPECT_EQ(c.methods[0].classOrigin, "A");
    EXPECT_TRUE(c.methods[0].propagated);
}

TEST(Schema, QualifiersPropagateUnlessTheyAreRestricted) {
    const auto schema = Read(kFamily);
    const auto& b = *schema.FindClass("B");
    ASSERT_TRUE(b.FindQualifier("description"));
    EXPECT_TRUE(b.FindQualifier("description")->propagated);
    EXPECT_FALSE(b.FindQualifier("Version"));
    EXPECT_TRUE(schema.FindClass("A")->FindQualifier("Version"));
}

TEST(Schema, AnOverrideKeepsTheOriginAndInheritsTheOtherQualifiers) {
    const auto schema = Read(kFamily);
    const auto& id = *schema.FindClass("B")->FindProperty("Id");
    EXPECT_FALSE(id.propagated);
    EXPECT_EQ(id.classOrigin, "A");
    EXPECT_TRUE(id.Is("Key"));
    EXPECT_TRUE(id.FindQualifier("Key")->propagated);
    EXPECT_EQ(*id.FindQualifier("Description")->value.AsText(), "Id of B");
    EXPECT_FALSE(id.FindQualifier("Description")->propagated);
    EXPECT_FALSE(schema.FindClass("C")->FindProperty("Id")->FindQualifier("Override"));
}

TEST(SchemaErrors, AreSaidWithTheNameOfTheClass) {
    EXPECT_THAT(ErrorOf("<CLASS NAME='A'/><CLASS NAME='a'/>"), HasSubstr("class a is declared twice"));
    EXPECT_THAT(ErrorOf("<CLASS NAME='A' SUPERCLASS='X'/>"), HasSubstr("superclass X is not declared"));
    EXPECT_THAT(ErrorOf("<CLASS NAME='A' SUPERCLASS='B'/><CLASS NAME='B' SUPERCLASS='A'/>"),
                HasSubstr("its own superclass"));
    EXPECT_THAT(ErrorOf("<CLASS/>"), HasSubstr("without a name"));
    EXPECT_THAT(ErrorOf("<NONSENSE/>"), HasSubstr("unexpected element NONSENSE"));
}

TEST(SchemaErrors, ConcernNamesThatAreNoCimNames) {
    for (const std::string name : {"1A", "A B", "A-B", "A.B"}) {
        EXPECT_THAT(ErrorOf("<CLASS NAME='" + name + "'/>"), HasSubstr("no name: " + name));
        EXPECT_THAT(ErrorOf("<CLASS NAME='A'><METHOD NAME='" + name + "' TYPE='uint32'/></CLASS>"),
                    HasSubstr("no name: " + name));
    }
    EXPECT_EQ(ErrorOf("<CLASS NAME='Ger\xc3\xa4t_1'/>"), "");
}

TEST(SchemaErrors, ConcernQualifiersThatBreakTheirDeclaration) {
    const auto withQualifier = [](const std::string& qualifier) {
        return ErrorOf("<CLASS NAME='A'>" + qualifier + "</CLASS>");
    };
    EXPECT_THAT(withQualifier("<QUALIFIER NAME='Nope' TYPE='string'/>"), HasSubstr("Nope has no declaration"));
    EXPECT_THAT(withQualifier("<QUALIFIER NAME='Key' TYPE='boolean'/>"), HasSubstr("not meant for this kind"));
    EXPECT_THAT(withQualifier("<QUALIFIER NAME='Description' TYPE='uint8'/>"), HasSubstr("another type"));
    EXPECT_THAT(withQualifier("<QUALIFIER NAME='Version' TYPE='string'/><QUALIFIER NAME='version' TYPE='string'/>"),
                HasSubstr("twice"));
    EXPECT_THAT(withQualifier("<QUALIFIER NAME='Version' TYPE='string'><VALUE.ARRAY/></QUALIFIER>"),
                HasSubstr("a scalar must have a VALUE"));
}

TEST(SchemaErrors, ConcernOverrides) {
    const std::string base = "<CLASS NAME='A'><PROPERTY NAME='P' TYPE='string'>"
                             "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>true</VALUE></QUALIFIER></PROPERTY></CLASS>";
    const auto overridden = [&](const std::string& property) {
        return ErrorOf(base + "<CLASS NAME='B' SUPERCLASS='A'>" + property + "</CLASS>");
    };
    const std::string mark = "<QUALIFIER NAME='Override' TYPE='string'><VALUE>P</VALUE></QUALIFIER>";
    EXPECT_EQ(overridden("<PROPERTY NAME='P' TYPE='string'>" + mark + "</PROPERTY>"), "");
    EXPECT_THAT(overridden("<PROPERTY NAME='P' TYPE='string'/>"), HasSubstr("needs the qualifier Override"));
    EXPECT_THAT(overridden("<PROPERTY NAME='Q' TYPE='string'>" + mark + "</PROPERTY>"), HasSubstr("no superclass"));
    EXPECT_THAT(overridden("<PROPERTY NAME='P' TYPE='uint8'>" + mark + "</PROPERTY>"), HasSubstr("change the type"));
    EXPECT_THAT(overridden("<PROPERTY NAME='P' TYPE='string'>" + mark +
                           "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>FALSE</VALUE></QUALIFIER></PROPERTY>"),
                HasSubstr("Key is inherited and cannot be overridden"));
    EXPECT_EQ(overridden("<PROPERTY NAME='P' TYPE='string'>" + mark +
                         "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>true</VALUE></QUALIFIER></PROPERTY>"),
              "");
}

TEST(SchemaErrors, ConcernValuesThatTheirTypeDoesNotHave) {
    const auto withDefault = [](const std::string& type, const std::string& text) {
        return ErrorOf("<CLASS NAME='A'><PROPERTY NAME='P' TYPE='" + type + "'><VALUE>" + text +
                       "</VALUE></PROPERTY></CLASS>");
    };
    EXPECT_EQ(withDefault("uint8", "255"), "");
    EXPECT_THAT(withDefault("uint8", "256"), HasSubstr("\"256\" is no uint8"));
    EXPECT_THAT(withDefault("uint64", "-1"), HasSubstr("is no uint64"));
    EXPECT_THAT(withDefault("boolean", "yes"), HasSubstr("is no boolean"));
    EXPECT_EQ(withDefault("real32", "1.5e3"), "");
    EXPECT_THAT(withDefault("real64", "1.5x"), HasSubstr("is no real64"));
    EXPECT_EQ(withDefault("char16", "\xE2\x82\xAC"), "");
    EXPECT_THAT(withDefault("char16", "ab"), HasSubstr("is no char16"));
    EXPECT_THAT(withDefault("char16", "\xF0\x9F\x98\x80"), HasSubstr("is no char16"));
    EXPECT_THAT(withDefault("string", "&#1;"), HasSubstr("has a character that XML does not have"));
    EXPECT_EQ(withDefault("datetime", "20261121083900.123456+060"), "");
    for (const char* good : {"20240229000000.000000-999", "20261121******.******+060", "20261121083900.12****+000",
                             "00000001020304.000005:000", "00000001******.******:000", "**************.******+000"}) {
        EXPECT_EQ(withDefault("datetime", good), "") << good;
    }
    for (const char* bad : {"2026-11-21", "20261121083960.000000+060", "20261121083900.000000*060",
                            "20261121083900.000000+0*0", "20231121243900.000000+060", "20261321083900.000000+060",
                            "20230229000000.000000+060", "2026**21083900.000000+060", "202611210839**.12****+060",
                            "00000001020304.000005:001", "-0000001020304.000005:000", "2026112108*900.000000+060"}) {
        EXPECT_THAT(withDefault("datetime", bad), HasSubstr("is no datetime")) << bad;
    }
    EXPECT_THAT(withDefault("text", "a"), HasSubstr("\"text\" is no type"));
}

TEST(SchemaErrors, ConcernReferencesAndValueMaps) {
    EXPECT_THAT(ErrorOf("<CLASS NAME='A'><PROPERTY.REFERENCE NAME='R' REFERENCECLASS='X'/></CLASS>"),
                HasSubstr("class A, R: refers to class X"));
    EXPECT_THAT(
        ErrorOf("<CLASS NAME='A'><PROPERTY NAME='P' TYPE='uint8'>"
                "<QUALIFIER NAME='ValueMap' TYPE='string'><VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY></QUALIFIER>"
                "<QUALIFIER NAME='Values' TYPE='string'><VALUE.ARRAY/></QUALIFIER></PROPERTY></CLASS>"),
        HasSubstr("different lengths"));
}

TEST(SchemaErrors, ConcernDocumentsThatAreNoDeclaration) {
    EXPECT_THROW(demo::ReadSchema("<CIM>"), demo::SchemaError);
    EXPECT_THROW(demo::ReadSchema("<CIM><MESSAGE/></CIM>"), demo::SchemaError);
    EXPECT_THROW(demo::ReadSchema(""), demo::SchemaError);
}

TEST(SchemaErrors, ConcernBytesThatAreNoCharacters) {
    for (const std::string bytes : {"\xBE", "x\xBE", "P\xCF\xD0", "\xE2\x82", "\xED\xA0\x80", "\xEF\xBF\xBE", "\x01"}) {
        EXPECT_THAT(ErrorOf("\n<CLASS NAME='A'><PROPERTY NAME='P' TYPE='char16'><VALUE>" + bytes +
                            "</VALUE></PROPERTY></CLASS>"),
                    HasSubstr(":15: not UTF-8 that XML can have"));
    }
    EXPECT_THAT(ErrorOf("<CLASS NAME='A&#xFFFE;'/>"), HasSubstr("no name"));
}

TEST(Schema, AClassIsAllOfItsSuperclasses) {
    const auto schema = Read(kFamily);
    EXPECT_TRUE(schema.IsA("c", "A"));
    EXPECT_TRUE(schema.IsA("A", "a"));
    EXPECT_FALSE(schema.IsA("A", "C"));
    EXPECT_FALSE(schema.IsA("D", "A"));
}

TEST(Values, HaveOneNormalFormForEachValue) {
    const struct {
        demo::CimType type;
        const char* text;
        const char* normal;
    } kCases[]{
        {demo::CimType::kUint8, "7", "7"},
        {demo::CimType::kUint8, "+007", "7"},
        {demo::CimType::kUint8, "0xfF", "255"},
        {demo::CimType::kSint8, "-0X80", "-128"},
        {demo::CimType::kSint16, "-0", "0"},
        {demo::CimType::kUint64, "18446744073709551615", "18446744073709551615"},
        {demo::CimType::kBoolean, "true", "TRUE"},
        {demo::CimType::kBoolean, "False", "FALSE"},
        {demo::CimType::kString, "0x7", "0x7"},
        {demo::CimType::kString, "", ""},
    };
    for (const auto& [type, text, normal] : kCases) {
        EXPECT_EQ(demo::NormalForm(type, text), normal) << text;
    }
    for (const char* const text :
         {"", "-", "+", "0x", "0xg", "1x", " 1", "1.0", "--1", "256", "-1", "99999999999999999999"}) {
        EXPECT_EQ(demo::NormalForm(demo::CimType::kUint8, text), std::nullopt) << text;
    }
    EXPECT_EQ(demo::NormalForm(demo::CimType::kBoolean, "1"), std::nullopt);
    EXPECT_EQ(demo::NormalForm(demo::CimType::kReference, "A"), std::nullopt);
}

TEST(PathText, IsTheSameForTheSameObjectOnly) {
    const auto path = [](const std::string& className, const std::vector<std::pair<std::string, std::string>>& keys) {
        demo::ObjectPath result{className, {}};
        for (const auto& [name, value] : keys) {
            result.keys.push_back({name, demo::CimType::kString, demo::Value::Text(value)});
        }
        return result;
    };
    const std::string text = demo::PathText(path("A", {{"x", "1"}, {"y", "2"}}));
    EXPECT_EQ(text, demo::PathText(path("a", {{"Y", "2"}, {"X", "1"}})));
    for (const auto& other : {path("B", {{"x", "1"}, {"y", "2"}}), path("A", {{"x", "2"}, {"y", "1"}}),
                              path("A", {{"x", "1"}}), path("A", {{"x", "1\".y=\"2"}}), path("A", {})}) {
        EXPECT_NE(text, demo::PathText(other));
    }
    auto elsewhere = path("A", {{"x", "1"}, {"y", "2"}});
    elsewhere.nameSpace = "root/other";
    EXPECT_NE(text, demo::PathText(elsewhere));
    EXPECT_NE(demo::PathText(path("A", {{"x", "v"}})), demo::PathText(path("A", {{"x", "V"}})));
    const demo::ObjectPath link{"L",
                                {{"r", demo::CimType::kReference, demo::Value::Reference(path("A", {{"x", "1"}}))}}};
    const demo::ObjectPath same{"l",
                                {{"R", demo::CimType::kReference, demo::Value::Reference(path("a", {{"X", "1"}}))}}};
    EXPECT_EQ(demo::PathText(link), demo::PathText(same));
}

TEST(BuiltInSchema, HasTheDemoClassesOverThreeLevelsAndMore) {
    const auto schema = demo::BuiltInSchema();
    for (const char* const name :
         {"DEMO_ComputerSystem", "DEMO_OperatingSystem", "DEMO_Processor", "DEMO_Memory", "DEMO_FileSystem",
          "DEMO_NetworkPort", "DEMO_Process", "DEMO_StorageVolume", "DEMO_RunningOS", "DEMO_AllTypes"}) {
        EXPECT_TRUE(schema.FindClass(name)) << name;
    }
    std::size_t levels = 0;
    for (const auto* found = schema.FindClass("DEMO_StorageVolume"); found;
         found = schema.FindClass(found->superclass)) {
        ++levels;
    }
    EXPECT_GE(levels, 6U);
    EXPECT_TRUE(schema.FindClass("DEMO_RunningOS")->Is("Association"));
    EXPECT_FALSE(schema.FindClass("DEMO_RunningOS")->Is("Abstract"));
}

} // namespace
