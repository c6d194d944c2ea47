#include "DecodedAnswer.h"
#include "cimxml/Limits.h"
#include "cimxml/ObjectDecoder.h"
#include "xml/XmlLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace Pegasus;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string response(const std::string& content, const std::string& method = "GetClass") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"1001\" PROTOCOLVERSION=\"1.0\">\n<SIMPLERSP>\n<IMETHODRESPONSE NAME=\"" +
           method + "\">" + content + "</IMETHODRESPONSE>\n</SIMPLERSP>\n</MESSAGE>\n</CIM>\n";
}

std::string returning(const std::string& objects) {
    return response("\n<IRETURNVALUE>\n" + objects + "</IRETURNVALUE>\n");
}

DecodedAnswer decodeObjects(const std::string& objects) { return decode("GetClass", returning(objects)); }

CIMInstance decodeInstance(const std::string& properties) {
    return decodeObjects("<INSTANCE CLASSNAME=\"A\">" + properties + "</INSTANCE>").instances.at(0);
}

CIMProperty decodeProperty(const std::string& property) { return decodeInstance(property).getProperty(0); }

/// The value of a property of the type, from the text of its VALUE element.
CIMValue decodeValue(const std::string& type, const std::string& text) {
    return decodeProperty("<PROPERTY NAME=\"P\" TYPE=\"" + type + "\"><VALUE>" + text + "</VALUE></PROPERTY>")
        .getValue();
}

CIMValue decodeArray(const std::string& type, const std::string& items) {
    return decodeProperty("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"" + type + "\"><VALUE.ARRAY>" + items +
                          "</VALUE.ARRAY></PROPERTY.ARRAY>")
        .getValue();
}

CIMObjectPath decodePath(const std::string& path) {
    CIMObjectPath decoded;
    decodeProperty("<PROPERTY.REFERENCE NAME=\"P\"><VALUE.REFERENCE>" + path +
                   "</VALUE.REFERENCE></PROPERTY.REFERENCE>")
        .getValue()
        .get(decoded);
    return decoded;
}

std::string pathText(const std::string& path) { return std::string(decodePath(path).toString().view()); }

CIMClass decodeClass(const std::string& content) {
    return decodeObjects("<CLASS NAME=\"A\">" + content + "</CLASS>").classes.at(0);
}

/// The message of the CIMClientXmlException that decoding ends in; empty when it does not.
std::string xmlErrorOf(const std::string& body) {
    try {
        decode("GetClass", body);
        return "";
    } catch (const CIMClientXmlException& exception) {
        return std::string(exception.getMessage().view());
    }
}

std::string valueErrorOf(const std::string& type, const std::string& text) {
    return xmlErrorOf(returning("<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"" + type + "\"><VALUE>" + text +
                                "</VALUE></PROPERTY></INSTANCE>"));
}

// ---- Values ----

TEST(DecodeValueTest, BooleansAreReadInEitherCase) {
    EXPECT_EQ(decodeValue("boolean", "TRUE"), CIMValue(true));
    EXPECT_EQ(decodeValue("boolean", "true"), CIMValue(true));
    EXPECT_EQ(decodeValue("boolean", " False\n"), CIMValue(false));
    EXPECT_THAT(valueErrorOf("boolean", "1"), HasSubstr("not a boolean: 1"));
    EXPECT_EQ(decodeValue("boolean", ""), CIMValue(CIMTYPE_BOOLEAN, false));
}

TEST(DecodeValueTest, IntegersAreDecimalOrHexadecimal) {
    EXPECT_EQ(decodeValue("uint8", "0xfF"), CIMValue(Uint8(255)));
    EXPECT_EQ(decodeValue("sint8", " -128 "), CIMValue(Sint8(-128)));
    EXPECT_EQ(decodeValue("sint16", "-0x8000"), CIMValue(Sint16(-32768)));
    EXPECT_EQ(decodeValue("uint16", "+1"), CIMValue(Uint16(1)));
    EXPECT_EQ(decodeValue("uint32", "0010"), CIMValue(Uint32(10)));
    EXPECT_EQ(decodeValue("sint32", "-2147483648"), CIMValue(std::numeric_limits<Sint32>::min()));
    EXPECT_EQ(decodeValue("uint64", "18446744073709551615"), CIMValue(std::numeric_limits<Uint64>::max()));
    EXPECT_EQ(decodeValue("sint64", "-9223372036854775808"), CIMValue(std::numeric_limits<Sint64>::min()));
    EXPECT_EQ(decodeValue("uint8", "-0"), CIMValue(Uint8(0)));
}

TEST(DecodeValueTest, AnIntegerOutOfItsTypesRangeIsAnError) {
    const std::pair<const char*, const char*> outOfRange[] = {{"uint8", "256"},
                                                              {"uint8", "-1"},
                                                              {"sint8", "128"},
                                                              {"sint8", "-129"},
                                                              {"uint16", "65536"},
                                                              {"sint16", "32768"},
                                                              {"uint32", "4294967296"},
                                                              {"sint32", "-2147483649"},
                                                              {"sint64", "9223372036854775808"},
                                                              {"uint64", "18446744073709551616"},
                                                              {"uint64", "0x10000000000000000"}};
    for (const auto& [type, text] : outOfRange) {
        EXPECT_THAT(valueErrorOf(type, text), HasSubstr(std::string("integer out of range: ") + text)) << type;
    }
}

TEST(DecodeValueTest, WhatIsNoNumberIsAnError) {
    for (const char* text : {"", " ", "x", "0x", "1.5", "1 2", "--1", "+-1", "1e3", "0b1", "0x-1"}) {
        EXPECT_THAT(valueErrorOf("sint32", text), HasSubstr("not an integer")) << text;
    }
    for (const char* text : {"", "x", "1,5", "--1", "+-1", "1e", "0x", "1.5 kB"}) {
        EXPECT_THAT(valueErrorOf("real64", text), HasSubstr("not a real")) << text;
    }
}

TEST(DecodeValueTest, RealsAreReadAsCWritesThem) {
    EXPECT_EQ(decodeValue("real64", "-2.2500000000000002e+100"), CIMValue(-2.25e100));
    EXPECT_EQ(decodeValue("real64", "+1.5"), CIMValue(1.5));
    EXPECT_EQ(decodeValue("real64", ".5"), CIMValue(0.5));
    EXPECT_EQ(decodeValue("real64", "5."), CIMValue(5.0));
    EXPECT_EQ(decodeValue("real64", "7"), CIMValue(7.0));
    EXPECT_EQ(decodeValue("real64", "1E-2"), CIMValue(0.01));
    EXPECT_EQ(decodeValue("real64", "-0x1.8p1"), CIMValue(-3.0));
    EXPECT_EQ(decodeValue("real64", "INF"), CIMValue(std::numeric_limits<Real64>::infinity()));
    EXPECT_EQ(decodeValue("real32", "-5.0000000e-01"), CIMValue(-0.5F));
    EXPECT_EQ(decodeValue("real32", "1e-60"), CIMValue(0.0F));
    EXPECT_EQ(decodeValue("real64", "-1e-999"), CIMValue(0.0));
    EXPECT_EQ(decodeValue("real32", "1e39"), CIMValue(std::numeric_limits<Real32>::infinity()));
    EXPECT_EQ(decodeValue("real64", "-1e999"), CIMValue(-std::numeric_limits<Real64>::infinity()));
    Real64 notANumber = 0;
    decodeValue("real64", "nan").get(notANumber);
    EXPECT_TRUE(std::isnan(notANumber));
}

TEST(DecodeValueTest, AChar16IsOneCharacter) {
    EXPECT_EQ(decodeValue("char16", "A"), CIMValue(Char16('A')));
    EXPECT_EQ(decodeValue("char16", " "), CIMValue(Char16(' ')));
    EXPECT_EQ(decodeValue("char16", "&#x20AC;"), CIMValue(Char16(0x20AC)));
    EXPECT_EQ(decodeValue("char16", "\xC3\xA9"), CIMValue(Char16(0xE9)));
    for (const char* text : {"", "AB", "&#x1F600;"}) {
        EXPECT_THAT(valueErrorOf("char16", text), HasSubstr("not one UTF-16 character")) << text;
    }
}

TEST(DecodeValueTest, TextKeepsItsWhiteSpaceReferencesAndCData) {
    EXPECT_EQ(decodeValue("string", " a &lt;b&gt; &amp; &#99;&#x64; "), CIMValue(String(" a <b> & cd ")));
    EXPECT_EQ(decodeValue("string", "  "), CIMValue(String("  ")));
    EXPECT_EQ(decodeValue("string", ""), CIMValue(String()));
    EXPECT_EQ(decodeValue("string", "<![CDATA[<a> & ]] ]>]]>"), CIMValue(String("<a> & ]] ]>")));
    EXPECT_EQ(decodeValue("string", "x<![CDATA[1]]> <![CDATA[2]]>y"), CIMValue(String("x1 2y")));
    EXPECT_EQ(decodeValue("string", "one<!-- two -->three<?four?>"), CIMValue(String("onethree")));
}

TEST(DecodeValueTest, LineEndsAreReadAsOneCharacter) {
    EXPECT_EQ(decodeValue("string", "a\r\nb\rc\nd"), CIMValue(String("a\nb\nc\nd")));
    EXPECT_EQ(decodeValue("string", "<![CDATA[a\r\nb]]>"), CIMValue(String("a\nb")));
    EXPECT_EQ(decodeValue("string", "a&#13;&#10;b"), CIMValue(String("a\r\nb")));
}

TEST(DecodeValueTest, DateTimesAreChecked) {
    EXPECT_EQ(decodeValue("datetime", "20261121083900.12345*+060"),
              CIMValue(CIMDateTime(String("20261121083900.12345*+060"))));
    EXPECT_THAT(valueErrorOf("datetime", "yesterday"), HasSubstr("yesterday"));
    EXPECT_THAT(valueErrorOf("datetime", "20261321083900.000000+060"), HasSubstr("month out of range"));
}

TEST(DecodeValueTest, AnUnknownOrMissingTypeIsAnError) {
    EXPECT_THAT(valueErrorOf("uint128", "1"), HasSubstr("unknown type: uint128"));
    EXPECT_THAT(valueErrorOf("reference", "1"), HasSubstr("unknown type: reference"));
    EXPECT_THAT(xmlErrorOf(returning("<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"P\"/></INSTANCE>")),
                HasSubstr("PROPERTY has no attribute TYPE"));
}

TEST(DecodeValueTest, ArraysKeepTheirOrderAndNullItemsAreDefaults) {
    Array<Uint16> numbers;
    decodeArray("uint16", "<VALUE>3</VALUE>\n<VALUE.NULL/><VALUE>1</VALUE>").get(numbers);
    EXPECT_EQ(std::vector<Uint16>(numbers.begin(), numbers.end()), (std::vector<Uint16>{3, 0, 1}));
    Array<String> texts;
    decodeArray("string", "<VALUE>a</VALUE><VALUE/><VALUE.NULL/>").get(texts);
    EXPECT_EQ(std::vector<String>(texts.begin(), texts.end()), (std::vector<String>{"a", String(), String()}));
}

TEST(DecodeValueTest, NullItemsAreKnownAsSuch) {
    const CIMValue numbers = decodeArray("uint16", "<VALUE>0</VALUE><VALUE.NULL/><VALUE.NULL/><VALUE>1</VALUE>");
    EXPECT_FALSE(numbers.isNullElement(0));
    EXPECT_TRUE(numbers.isNullElement(1));
    EXPECT_TRUE(numbers.isNullElement(2));
    EXPECT_FALSE(numbers.isNullElement(3));
    EXPECT_NE(numbers, decodeArray("uint16", "<VALUE>0</VALUE><VALUE>0</VALUE><VALUE>0</VALUE><VALUE>1</VALUE>"));
    const CIMValue texts = decodeArray("string", "<VALUE.NULL/><VALUE/>");
    EXPECT_TRUE(texts.isNullElement(0));
    EXPECT_FALSE(texts.isNullElement(1)) << "a text that is empty";
}

TEST(DecodeValueTest, AnEmptyArrayIsNotNull) {
    const CIMValue value = decodeArray("boolean", "");
    EXPECT_FALSE(value.isNull());
    EXPECT_TRUE(value.isArray());
    EXPECT_EQ(value.getArraySize(), 0U);
}

TEST(DecodeValueTest, AScalarWhereAnArrayIsDeclaredIsAnError) {
    EXPECT_THAT(xmlErrorOf(returning("<INSTANCE CLASSNAME=\"A\"><PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\">"
                                     "<VALUE>1</VALUE></PROPERTY.ARRAY></INSTANCE>")),
                HasSubstr("VALUE does not belong into PROPERTY.ARRAY"));
    EXPECT_THAT(xmlErrorOf(returning("<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\">"
                                     "<VALUE.ARRAY/></PROPERTY></INSTANCE>")),
                HasSubstr("VALUE.ARRAY does not belong into PROPERTY"));
}

// ---- Embedded objects ----

const std::string kEmbedded =
    "&lt;INSTANCE CLASSNAME=&quot;B&quot;&gt;&lt;PROPERTY NAME=&quot;Q&quot; "
    "TYPE=&quot;uint8&quot;&gt;&lt;VALUE&gt;7&lt;/VALUE&gt;&lt;/PROPERTY&gt;&lt;/INSTANCE&gt;";

TEST(DecodeEmbeddedTest, AnEmbeddedInstanceIsAnInstance) {
    for (const char* name : {"EmbeddedObject", "EMBEDDEDOBJECT"}) {
        const CIMProperty property = decodeProperty("<PROPERTY NAME=\"P\" TYPE=\"string\" " + std::string(name) +
                                                    "=\"instance\"><VALUE>" + kEmbedded + "</VALUE></PROPERTY>");
        EXPECT_EQ(property.getType(), CIMTYPE_INSTANCE);
        CIMInstance embedded;
        property.getValue().get(embedded);
        EXPECT_EQ(embedded.getClassName(), CIMName("B"));
        EXPECT_EQ(embedded.getProperty(0).getValue(), CIMValue(Uint8(7)));
    }
}

TEST(DecodeEmbeddedTest, AnEmbeddedObjectIsAClassOrAnInstance) {
    const auto decodeObject = [](const std::string& text) {
        const CIMProperty property = decodeProperty(
            "<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"object\"><VALUE>" + text + "</VALUE></PROPERTY>");
        EXPECT_EQ(property.getType(), CIMTYPE_OBJECT);
        CIMObject object;
        property.getValue().get(object);
        return object;
    };
    EXPECT_EQ(CIMInstance(decodeObject(kEmbedded)).getClassName(), CIMName("B"));
    EXPECT_EQ(CIMClass(decodeObject("<![CDATA[<?xml version=\"1.0\"?> <CLASS NAME=\"C\"/> ]]>")).getClassName(),
              CIMName("C"));
}

TEST(DecodeEmbeddedTest, NullsHaveTheRightTypeToo) {
    EXPECT_EQ(decodeProperty("<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"/>").getValue(),
              CIMValue(CIMTYPE_INSTANCE, false));
    EXPECT_EQ(
        decodeProperty("<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"object\"><VALUE/></PROPERTY>").getValue(),
        CIMValue(CIMTYPE_OBJECT, false));
    EXPECT_EQ(decodeProperty("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"/>").getValue(),
              CIMValue(CIMTYPE_INSTANCE, true));
    EXPECT_EQ(decodeProperty("<PROPERTY NAME=\"P\" TYPE=\"uint8\" EmbeddedObject=\"object\"/>").getType(),
              CIMTYPE_UINT8);
}

TEST(DecodeEmbeddedTest, ArraysHoldEmbeddedInstances) {
    const CIMProperty property =
        decodeProperty("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE.ARRAY><VALUE>" +
                       kEmbedded + "</VALUE><VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY>");
    Array<CIMInstance> instances;
    property.getValue().get(instances);
    ASSERT_EQ(instances.size(), 2U);
    EXPECT_EQ(instances[0].getClassName(), CIMName("B"));
    EXPECT_TRUE(instances[1].isUninitialized());
    EXPECT_FALSE(property.getValue().isNullElement(0));
    EXPECT_TRUE(property.getValue().isNullElement(1));
    EXPECT_TRUE(property.identical(property));
}

TEST(DecodeEmbeddedTest, WhatIsNotOneObjectIsAnError) {
    const auto errorOf = [](const std::string& kind, const std::string& text) {
        return xmlErrorOf(returning("<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"" +
                                    kind + "\"><VALUE><![CDATA[" + text + "]]></VALUE></PROPERTY></INSTANCE>"));
    };
    EXPECT_THAT(errorOf("instance", "instance of B {};"), HasSubstr("not one element"));
    EXPECT_THAT(errorOf("instance", "<INSTANCE CLASSNAME='B'/><INSTANCE CLASSNAME='B'/>"),
                HasSubstr("not one element"));
    EXPECT_THAT(errorOf("instance", "<INSTANCE CLASSNAME='B'>"), HasSubstr("not complete"));
    EXPECT_THAT(errorOf("instance", "<CLASS NAME='B'/>"), HasSubstr("a class is embedded"));
    EXPECT_THAT(errorOf("object", "<VALUE>1</VALUE>"), HasSubstr("the element VALUE is embedded"));
    EXPECT_THAT(errorOf("object", "<!DOCTYPE a []><CLASS NAME='B'/>"), HasSubstr("document type"));
    EXPECT_THAT(errorOf("thing", "<CLASS NAME='B'/>"), HasSubstr("unknown kind of EmbeddedObject: thing"));
}

TEST(DecodeEmbeddedTest, EmbeddingIsLimited) {
    const auto escaped = [](const std::string& text) {
        std::string out;
        for (const char c : text) {
            if (c == '<') {
                out += "&lt;";
            } else if (c == '&') {
                out += "&amp;";
            } else {
                out += c;
            }
        }
        return out;
    };
    std::string object = "<INSTANCE CLASSNAME='B'/>";
    const auto embed = [&] {
        object = "<INSTANCE CLASSNAME='B'><PROPERTY NAME='P' TYPE='string' EmbeddedObject='instance'><VALUE>" +
                 escaped(object) + "</VALUE></PROPERTY></INSTANCE>";
    };
    for (std::size_t i = 0; i < cimxml::kMaxEmbedding; ++i) {
        embed();
    }
    EXPECT_EQ(xmlErrorOf(returning(object)), "");
    embed();
    EXPECT_THAT(xmlErrorOf(returning(object)), HasSubstr("embedded deeper than 8"));
}

// ---- Object paths ----

const std::string kKey = "<KEYBINDING NAME=\"K\"><KEYVALUE VALUETYPE=\"numeric\">5</KEYVALUE></KEYBINDING>";
const std::string kInstanceName = "<INSTANCENAME CLASSNAME=\"A\">" + kKey + "</INSTANCENAME>";
const std::string kLocalNamespace =
    "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>\n<NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";
const std::string kNamespace = "<NAMESPACEPATH><HOST>h:5988</HOST>" + kLocalNamespace + "</NAMESPACEPATH>";

TEST(DecodePathTest, EveryFormOfAReferenceIsRead) {
    EXPECT_EQ(pathText(kInstanceName), "A.K=5");
    EXPECT_EQ(pathText("<INSTANCEPATH>" + kNamespace + kInstanceName + "</INSTANCEPATH>"), "//h:5988/root/cimv2:A.K=5");
    EXPECT_EQ(pathText("<LOCALINSTANCEPATH>" + kLocalNamespace + kInstanceName + "</LOCALINSTANCEPATH>"),
              "root/cimv2:A.K=5");
    EXPECT_EQ(pathText("<CLASSPATH>" + kNamespace + "<CLASSNAME NAME=\"A\"/></CLASSPATH>"), "//h:5988/root/cimv2:A");
    EXPECT_EQ(pathText("<LOCALCLASSPATH>" + kLocalNamespace + "<CLASSNAME NAME=\"A\"/></LOCALCLASSPATH>"),
              "root/cimv2:A");
    EXPECT_EQ(pathText("<CLASSNAME NAME=\"A\"/>"), "A");
}

TEST(DecodePathTest, KeysComeNamedOrAloneOrNotAtAll) {
    EXPECT_EQ(pathText("<INSTANCENAME CLASSNAME=\"A\"/>"), "A");
    EXPECT_EQ(pathText("<INSTANCENAME CLASSNAME=\"A\"><KEYVALUE>x</KEYVALUE></INSTANCENAME>"), "A=\"x\"");
    EXPECT_EQ(pathText("<INSTANCENAME CLASSNAME=\"A\"> <!-- alone --> <VALUE.REFERENCE>" + kInstanceName +
                       "</VALUE.REFERENCE> </INSTANCENAME>"),
              "A=\"A.K=5\"");
    EXPECT_EQ(pathText("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"b\"><KEYVALUE>x</KEYVALUE></KEYBINDING>"
                       "<KEYBINDING NAME=\"A\"><KEYVALUE>y</KEYVALUE></KEYBINDING></INSTANCENAME>"),
              "A.A=\"y\",b=\"x\"");
    EXPECT_EQ(pathText("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"R\"><VALUE.REFERENCE>" + kInstanceName +
                       "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>"),
              "A.R=\"A.K=5\"");
}

TEST(DecodePathTest, ValueTypeDecidesTheKindOfAKeyAndTypeHelpsWhereItIsMissing) {
    const auto key = [](const std::string& attributes, const std::string& text) {
        const auto path = decodePath("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE " + attributes +
                                     ">" + text + "</KEYVALUE></KEYBINDING></INSTANCENAME>");
        return path.getKeyBindings()[0];
    };
    EXPECT_EQ(key("", "1"), CIMKeyBinding("K", "1", CIMKeyBinding::STRING));
    EXPECT_EQ(key("VALUETYPE=\"string\" TYPE=\"string\"", " a "), CIMKeyBinding("K", " a ", CIMKeyBinding::STRING));
    EXPECT_EQ(key("VALUETYPE=\"numeric\" TYPE=\"uint32\"", " 12 "), CIMKeyBinding("K", "12", CIMKeyBinding::NUMERIC));
    EXPECT_EQ(key("VALUETYPE=\"boolean\"", "true").getValue(), String("TRUE"));
    EXPECT_EQ(key("TYPE=\"sint64\"", "-1"), CIMKeyBinding("K", "-1", CIMKeyBinding::NUMERIC));
    EXPECT_EQ(key("TYPE=\"boolean\"", "FALSE"), CIMKeyBinding("K", "FALSE", CIMKeyBinding::BOOLEAN));
    EXPECT_EQ(key("TYPE=\"datetime\"", "x"), CIMKeyBinding("K", "x", CIMKeyBinding::STRING));
    EXPECT_THROW(key("VALUETYPE=\"number\"", "1"), CIMClientXmlException);
    EXPECT_EQ(key("VALUETYPE=\"numeric\"", " many"), CIMKeyBinding("K", " many", CIMKeyBinding::STRING));
    EXPECT_EQ(key("VALUETYPE=\"boolean\"", "maybe"), CIMKeyBinding("K", "maybe", CIMKeyBinding::STRING));
    EXPECT_EQ(key("TYPE=\"uint8\"", ""), CIMKeyBinding("K", "", CIMKeyBinding::STRING));
    EXPECT_EQ(key("TYPE=\"\"", "1"), CIMKeyBinding("K", "1", CIMKeyBinding::STRING));
    EXPECT_EQ(key("VALUETYPE=\"\" TYPE=\" uint8 \"", "1"), CIMKeyBinding("K", "1", CIMKeyBinding::NUMERIC));
    EXPECT_EQ(key("VALUETYPE=\" numeric\" TYPE=\"\"", "1"), CIMKeyBinding("K", "1", CIMKeyBinding::NUMERIC));
}

TEST(DecodePathTest, AMalformedPathIsAnError) {
    for (const std::string& path :
         {std::string(), std::string("<FOO/>"), "<INSTANCEPATH>" + kInstanceName + "</INSTANCEPATH>",
          "<INSTANCEPATH>" + kNamespace + kInstanceName + kInstanceName + "</INSTANCEPATH>",
          "<INSTANCEPATH>" + kInstanceName + kNamespace + "</INSTANCEPATH>",
          std::string("<INSTANCENAME CLASSNAME=\"1A\"/>"), std::string("<INSTANCENAME/>"),
          std::string("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"/></INSTANCENAME>"),
          "<INSTANCENAME CLASSNAME=\"A\"><KEYVALUE>x</KEYVALUE>" + kKey + "</INSTANCENAME>",
          "<INSTANCENAME CLASSNAME=\"A\">" + kKey + "<KEYVALUE>x</KEYVALUE></INSTANCENAME>",
          std::string("<CLASSPATH><NAMESPACEPATH/></CLASSPATH>"),
          std::string("<CLASSPATH><NAMESPACEPATH/><CLASSNAME NAME=\"A\"/></CLASSPATH>"),
          std::string("<CLASSPATH><NAMESPACEPATH><HOST>h</HOST></NAMESPACEPATH><CLASSNAME NAME=\"A\"/></CLASSPATH>"),
          "<CLASSPATH><NAMESPACEPATH><HOST>h</HOST><HOST>h</HOST>" + kLocalNamespace +
              "</NAMESPACEPATH><CLASSNAME NAME=\"A\"/></CLASSPATH>",
          "<CLASSPATH><NAMESPACEPATH>" + kLocalNamespace + kLocalNamespace +
              "</NAMESPACEPATH><CLASSNAME NAME=\"A\"/></CLASSPATH>",
          "<CLASSPATH>" + kNamespace + kInstanceName + "</CLASSPATH>",
          "<INSTANCEPATH>" + kNamespace + "<CLASSNAME NAME=\"A\"/></INSTANCEPATH>",
          "<LOCALINSTANCEPATH>" + kLocalNamespace + "<CLASSNAME NAME=\"A\"/></LOCALINSTANCEPATH>"}) {
        EXPECT_THROW(decodePath(path), CIMClientXmlException) << path;
    }
}

TEST(DecodePathTest, ALocalNamespaceWithoutStepsIsNone) {
    EXPECT_EQ(pathText("<LOCALCLASSPATH><LOCALNAMESPACEPATH/><CLASSNAME NAME=\"A\"/></LOCALCLASSPATH>"), "A");
    EXPECT_EQ(pathText("<CLASSPATH><NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH></LOCALNAMESPACEPATH>"
                       "</NAMESPACEPATH><CLASSNAME NAME=\"A\"/></CLASSPATH>"),
              "//h/A");
}

TEST(DecodePathTest, AClassIsReferredToByAKeyToo) {
    const auto keyed = [](const std::string& path) {
        return decodePath("<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><VALUE.REFERENCE>" + path +
                          "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>")
            .getKeyBindings()[0];
    };
    EXPECT_EQ(keyed("<CLASSPATH>" + kNamespace + "<CLASSNAME NAME=\"B\"/></CLASSPATH>"),
              CIMKeyBinding("K", "//h:5988/root/cimv2:B", CIMKeyBinding::REFERENCE));
    EXPECT_EQ(keyed("<LOCALCLASSPATH>" + kLocalNamespace + "<CLASSNAME NAME=\"B\"/></LOCALCLASSPATH>"),
              CIMKeyBinding("K", "root/cimv2:B", CIMKeyBinding::REFERENCE));
}

/// A path with a reference as its key, which is a path with a reference as its key, and so on.
std::string nestedReferences(int count) {
    std::string path = kInstanceName;
    for (int i = 0; i < count; ++i) {
        path = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><VALUE.REFERENCE>" + path +
               "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    }
    return path;
}

TEST(DecodePathTest, ReferencesAreReadWithinReferences) {
    EXPECT_EQ(pathText(nestedReferences(2)), R"(A.K="A.K=\"A.K=5\"")");
    EXPECT_EQ(decodePath(nestedReferences(8)).getKeyBindings()[0].getType(), CIMKeyBinding::REFERENCE);
}

TEST(DecodePathTest, PathsThatAreCutWithinReferencesAreReadHoweverManyThereAre) {
    const std::string reference = "<INSTANCE CLASSNAME=\"A\"><PROPERTY.REFERENCE NAME=\"P\"><VALUE.REFERENCE>" +
                                  nestedReferences(3) + "</VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>";
    std::string objects;
    for (int i = 0; i < 100; ++i) {
        objects += reference;
    }
    EXPECT_THAT(decode("GetClass", returning(objects), reference.size() - 1).instances, SizeIs(100));
}

TEST(DecodePathTest, ReferencesWithinReferencesCannotExhaustMemory) {
    for (const int count : {16, 24, 60}) {
        EXPECT_THAT(xmlErrorOf(returning("<VALUE.NAMEDINSTANCE>" + nestedReferences(count) +
                                         "<INSTANCE CLASSNAME=\"A\"/></VALUE.NAMEDINSTANCE>")),
                    AnyOf(HasSubstr("the path of a reference is too long for its element"),
                          HasSubstr("references are nested deeper than 16")));
    }
}

TEST(DecodePathTest, ArraysOfReferencesAreRead) {
    const CIMProperty property =
        decodeProperty("<PROPERTY.REFARRAY NAME=\"P\" REFERENCECLASS=\"A\" ARRAYSIZE=\"2\"><VALUE.REFARRAY>"
                       "<VALUE.REFERENCE>" +
                       kInstanceName + "</VALUE.REFERENCE><VALUE.NULL/></VALUE.REFARRAY></PROPERTY.REFARRAY>");
    EXPECT_EQ(property.getType(), CIMTYPE_REFERENCE);
    EXPECT_TRUE(property.isArray());
    EXPECT_EQ(property.getArraySize(), 2U);
    Array<CIMObjectPath> paths;
    property.getValue().get(paths);
    ASSERT_EQ(paths.size(), 2U);
    EXPECT_EQ(paths[0], CIMObjectPath("A.K=5"));
    EXPECT_EQ(paths[1], CIMObjectPath());
}

// ---- Classes, instances, declarations ----

TEST(DecodeClassTest, QualifierFlavorsComeFromTheirAttributes) {
    const auto flavor = [](const std::string& attributes) {
        const CIMClass cimClass =
            decodeClass("<QUALIFIER NAME=\"Q\" TYPE=\"boolean\" " + attributes + "><VALUE>TRUE</VALUE></QUALIFIER>");
        return std::string(cimClass.getQualifier(0).getFlavor().toString().view());
    };
    EXPECT_EQ(flavor(""), "OVERRIDABLE TOSUBCLASS");
    EXPECT_EQ(flavor("OVERRIDABLE=\"true\" TOSUBCLASS=\"TRUE\""), "OVERRIDABLE TOSUBCLASS");
    EXPECT_EQ(flavor("OVERRIDABLE=\"false\""), "TOSUBCLASS DISABLEOVERRIDE");
    EXPECT_EQ(flavor("TOSUBCLASS=\"false\""), "OVERRIDABLE RESTRICTED");
    EXPECT_EQ(flavor("TOINSTANCE=\"true\" TRANSLATABLE=\"true\""), "OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE");
    EXPECT_EQ(flavor("OVERRIDABLE=\"false\" TOSUBCLASS=\"false\" TOINSTANCE=\"false\""), "DISABLEOVERRIDE RESTRICTED");
}

TEST(DecodeClassTest, AQualifierWithoutAValueIsNull) {
    const CIMQualifier qualifier = decodeClass("<QUALIFIER NAME=\"Q\" TYPE=\"string\" PROPAGATED=\"true\" "
                                               "xml:lang=\"en\"/>")
                                       .getQualifier(0);
    EXPECT_TRUE(qualifier.getValue().isNull());
    EXPECT_EQ(qualifier.getType(), CIMTYPE_STRING);
    EXPECT_TRUE(qualifier.getPropagated());
}

TEST(DecodeClassTest, MethodsTakeParametersOfEveryForm) {
    const CIMClass cimClass = decodeClass(
        "<METHOD NAME=\"M\" TYPE=\"string\" EmbeddedObject=\"instance\" CLASSORIGIN=\"B\" PROPAGATED=\"true\">"
        "<QUALIFIER NAME=\"Q\" TYPE=\"boolean\"/>"
        "<PARAMETER NAME=\"A\" TYPE=\"uint8\"><QUALIFIER NAME=\"In\" TYPE=\"boolean\"/></PARAMETER>"
        "<PARAMETER.ARRAY NAME=\"B\" TYPE=\"string\" ARRAYSIZE=\"4\" EmbeddedObject=\"object\"/>"
        "<PARAMETER.REFERENCE NAME=\"C\" REFERENCECLASS=\"D\"/>"
        "<PARAMETER.REFARRAY NAME=\"D\" REFERENCECLASS=\"D\"/></METHOD>");
    const CIMConstMethod method = cimClass.getMethod(cimClass.findMethod("m"));
    EXPECT_EQ(method.getType(), CIMTYPE_INSTANCE);
    EXPECT_EQ(method.getClassOrigin(), CIMName("B"));
    EXPECT_TRUE(method.getPropagated());
    EXPECT_EQ(method.getQualifierCount(), 1U);
    ASSERT_EQ(method.getParameterCount(), 4U);
    EXPECT_EQ(method.getParameter(0).getType(), CIMTYPE_UINT8);
    EXPECT_FALSE(method.getParameter(0).isArray());
    EXPECT_EQ(method.getParameter(0).findQualifier("IN"), 0U);
    EXPECT_EQ(method.getParameter(1).getType(), CIMTYPE_OBJECT);
    EXPECT_TRUE(method.getParameter(1).isArray());
    EXPECT_EQ(method.getParameter(1).getArraySize(), 4U);
    EXPECT_EQ(method.getParameter(2).getType(), CIMTYPE_REFERENCE);
    EXPECT_EQ(method.getParameter(2).getReferenceClassName(), CIMName("D"));
    EXPECT_TRUE(method.getParameter(3).isArray());
}

TEST(DecodeClassTest, WhiteSpaceCommentsAndUnknownAttributesAreIgnored) {
    const auto answer =
        decode("GetClass", "\xEF\xBB\xBF  <!-- a --><CIM\tX='>'\n CIMVERSION = \"2.0\" >\n<MESSAGE "
                           "PROTOCOLVERSION='1.0' ID='1001' Y=\"'\"\n><SIMPLERSP><IMETHODRESPONSE Z='/' "
                           "NAME='GetClass' ><?pi a>b ?><IRETURNVALUE > <!--- <CLASS> ---> "
                           "<CLASS\nNAME\n=\n'A' FOO=\"a>b\" xml:lang='en'\n>\n<!-- b --> "
                           "<?pi?></CLASS\n> </IRETURNVALUE\t></IMETHODRESPONSE>\n</SIMPLERSP></MESSAGE>"
                           "</CIM> <!-- end -->\n");
    ASSERT_THAT(answer.classes, SizeIs(1));
    EXPECT_EQ(answer.classes[0].getClassName(), CIMName("A"));
}

TEST(DecodeClassTest, AnElementThatDoesNotBelongIsAnError) {
    EXPECT_THAT(xmlErrorOf(returning("<CLASS NAME=\"A\"><INSTANCE CLASSNAME=\"A\"/></CLASS>")),
                HasSubstr("INSTANCE does not belong into CLASS"));
    EXPECT_THAT(xmlErrorOf(returning("<CLASS NAME=\"A\">text</CLASS>")),
                HasSubstr("text between the elements of CLASS"));
    EXPECT_THAT(xmlErrorOf(returning("<CLASS/>")), HasSubstr("CLASS has no attribute NAME"));
    EXPECT_THAT(xmlErrorOf(returning("<CLASS NAME=\"no name\"/>")), HasSubstr("not a name: \"no name\""));
    EXPECT_THAT(xmlErrorOf(returning("<CLASS NAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE>1</VALUE>"
                                     "<VALUE>2</VALUE></PROPERTY></CLASS>")),
                HasSubstr("VALUE does not belong into PROPERTY"));
    EXPECT_THAT(xmlErrorOf(returning("<CLASS NAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE>1<B/></VALUE>"
                                     "</PROPERTY></CLASS>")),
                HasSubstr("B does not belong into VALUE"));
}

TEST(DecodeInstanceTest, ANamedInstanceCarriesItsPath) {
    const auto answer =
        decodeObjects("<VALUE.NAMEDINSTANCE>" + kInstanceName +
                      "<INSTANCE CLASSNAME=\"A\"><QUALIFIER NAME=\"Q\" TYPE=\"boolean\"/>"
                      "<PROPERTY NAME=\"K\" TYPE=\"uint8\" CLASSORIGIN=\"B\"><VALUE>5</VALUE></PROPERTY>"
                      "</INSTANCE></VALUE.NAMEDINSTANCE><INSTANCE CLASSNAME=\"C\"/>");
    ASSERT_THAT(answer.instances, SizeIs(2));
    EXPECT_EQ(answer.instances[0].getPath(), CIMObjectPath("A.K=5"));
    EXPECT_EQ(answer.instances[0].getProperty(0).getClassOrigin(), CIMName("B"));
    EXPECT_EQ(answer.instances[1].getPath(), CIMObjectPath("C"));
    EXPECT_THAT(xmlErrorOf(returning("<VALUE.NAMEDINSTANCE>" + kInstanceName + "</VALUE.NAMEDINSTANCE>")),
                HasSubstr("lacks the instance"));
}

TEST(DecodeObjectTest, AnObjectOrAPathThatIsMissingIsAnError) {
    const std::string name = "<INSTANCENAME CLASSNAME='A'/>";
    const std::string instance = "<INSTANCE CLASSNAME='A'/>";
    for (const std::string& content : {std::string(), name, instance}) {
        EXPECT_THAT(xmlErrorOf(returning("<VALUE.OBJECTWITHPATH>" + content + "</VALUE.OBJECTWITHPATH>")),
                    HasSubstr("VALUE.OBJECTWITHPATH lacks the object or its path"));
    }
    EXPECT_THAT(xmlErrorOf(returning("<VALUE.OBJECT>" + name + "</VALUE.OBJECT>")), HasSubstr("VALUE.OBJECT lacks"));
    EXPECT_THAT(xmlErrorOf(returning("<VALUE.OBJECT><METHOD NAME='M'/></VALUE.OBJECT>")), HasSubstr("METHOD"));
    EXPECT_THAT(xmlErrorOf(returning("<OBJECTPATH/>")), HasSubstr("OBJECTPATH is empty"));
    EXPECT_THAT(xmlErrorOf(returning("<OBJECTPATH>" + instance + "</OBJECTPATH>")), HasSubstr("INSTANCE"));
}

TEST(DecodeQualifierDeclTest, ScopeFlavorArraySizeAndDefaultAreRead) {
    const CIMQualifierDecl decl =
        decodeObjects("<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint16\" ISARRAY=\"true\" ARRAYSIZE=\"3\" "
                      "TOSUBCLASS=\"false\"><SCOPE CLASS=\"true\" METHOD=\"TRUE\" PARAMETER=\"false\"/>"
                      "<VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY></QUALIFIER.DECLARATION>")
            .qualifierDecls.at(0);
    EXPECT_EQ(decl.getName(), CIMName("Q"));
    EXPECT_EQ(decl.getType(), CIMTYPE_UINT16);
    EXPECT_TRUE(decl.isArray());
    EXPECT_EQ(decl.getArraySize(), 3U);
    EXPECT_EQ(decl.getValue().getArraySize(), 1U);
    EXPECT_EQ(decl.getScope().toString(), String("CLASS METHOD"));
    EXPECT_EQ(decl.getFlavor().toString(), String("OVERRIDABLE RESTRICTED"));

    const CIMQualifierDecl plain =
        decodeObjects("<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"boolean\"/>").qualifierDecls.at(0);
    EXPECT_EQ(plain.getScope(), CIMScope::NONE);
    EXPECT_EQ(plain.getFlavor(), CIMFlavor::DEFAULTS);
    EXPECT_FALSE(plain.isArray());
    EXPECT_TRUE(plain.getValue().isNull());
}

// ---- Answers as a whole ----

TEST(ResponseDecoderTest, ItMakesNoDifferenceWhereTheBodyIsCut) {
    const std::string body =
        "\xEF\xBB\xBF" +
        returning("<!-- <CLASS NAME='X'> -- --><CLASS NAME=\"A\" X='>'><?p <x> ?><QUALIFIER NAME=\"D\" TYPE=\"string\">"
                  "<VALUE>caf\xC3\xA9 &lt;&#8364;\r\n<![CDATA[ </CLASS>\r\n ]] ]]></VALUE></QUALIFIER></CLASS>"
                  "<CLASS NAME=\"B\"/>");
    const auto whole = decode("GetClass", body, body.size());
    ASSERT_THAT(whole.classes, SizeIs(2));
    EXPECT_EQ(whole.classes[0].getQualifier(0).getValue(),
              CIMValue(String("caf\xC3\xA9 <\xE2\x82\xAC\n </CLASS>\n ]] ")));
    for (std::size_t cut = 0; cut <= body.size(); ++cut) {
        DecodedAnswer answer;
        cimxml::ResponseDecoder decoder("1001", "GetClass", answer);
        decoder.feed(std::string_view(body).substr(0, cut));
        decoder.feed(std::string_view(body).substr(cut));
        decoder.finish();
        ASSERT_THAT(answer.classes, SizeIs(2)) << cut;
        EXPECT_TRUE(answer.classes[0].identical(whole.classes[0])) << cut;
    }
    EXPECT_TRUE(decode("GetClass", body, 1).classes.at(0).identical(whole.classes[0]));
}

TEST(ResponseDecoderTest, EachObjectIsDeliveredAsSoonAsItIsComplete) {
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer);
    const std::string body = returning("<CLASSNAME NAME=\"A\"/><CLASSNAME NAME=\"B\"/>");
    const std::size_t second = body.find("<CLASSNAME NAME=\"B\"");
    decoder.feed(std::string_view(body).substr(0, second));
    EXPECT_THAT(answer.classNames, ElementsAre(CIMName("A")));
    decoder.feed(std::string_view(body).substr(second));
    decoder.finish();
    EXPECT_THAT(answer.classNames, ElementsAre(CIMName("A"), CIMName("B")));
}

TEST(ResponseDecoderTest, EveryTruncatedBodyIsAnError) {
    const std::string body = returning("<CLASS NAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\"/></CLASS>");
    const std::size_t end = body.find("</CIM>") + 6;
    for (std::size_t length = 0; length < end; ++length) {
        EXPECT_NE(xmlErrorOf(body.substr(0, length)), "") << length;
    }
    EXPECT_EQ(xmlErrorOf(body.substr(0, end)), "");
}

TEST(ResponseDecoderTest, AnAnswerWithoutAReturnValueIsAccepted) {
    EXPECT_EQ(xmlErrorOf(response("")), "");
    EXPECT_EQ(xmlErrorOf(response("<IRETURNVALUE/>")), "");
    EXPECT_EQ(xmlErrorOf(response("<IRETURNVALUE></IRETURNVALUE>")), "");
    EXPECT_EQ(
        xmlErrorOf("<CIM><MESSAGE ID='1001'><SIMPLERSP><IMETHODRESPONSE NAME='GetClass'/></SIMPLERSP></MESSAGE></CIM>"),
        "");
}

TEST(ResponseDecoderTest, AnErrorElementBecomesACIMExceptionAtTheEnd) {
    for (const std::string objects : {"", "<IRETURNVALUE><CLASSNAME NAME=\"A\"/></IRETURNVALUE>"}) {
        try {
            decode("GetClass", response(objects + "<ERROR CODE=\"6\" DESCRIPTION=\"no &lt;A&gt;\"><INSTANCE "
                                                  "CLASSNAME=\"CIM_Error\"/></ERROR>"));
            FAIL() << "no exception";
        } catch (const CIMException& exception) {
            EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_FOUND);
            EXPECT_EQ(exception.getMessage(), String("CIM_ERR_NOT_FOUND: no <A>"));
        }
    }
    EXPECT_THAT(xmlErrorOf(response("<ERROR CODE=\"x\"/>")), HasSubstr("not an integer: x"));
    EXPECT_THAT(xmlErrorOf(response("<ERROR CODE=\"4294967296\"/>")), HasSubstr("integer out of range"));
    EXPECT_THAT(xmlErrorOf(response("<ERROR CODE=\"0\"/>")), HasSubstr("code 0"));
    EXPECT_THAT(xmlErrorOf(response("<ERROR/>")), HasSubstr("ERROR has no attribute CODE"));
}

TEST(ResponseDecoderTest, AnErrorWithAnUnknownCodeIsAFailure) {
    for (const std::string code : {"18", "29", "4294967295"}) {
        try {
            decode("GetClass", response("<ERROR CODE=\"" + code + "\" DESCRIPTION=\"odd\"/>"));
            FAIL() << "no exception";
        } catch (const CIMException& exception) {
            EXPECT_EQ(exception.getCode(), CIM_ERR_FAILED);
            EXPECT_EQ(std::string(exception.getMessage().view()),
                      "CIM_ERR_FAILED: unknown status code " + code + ": odd");
        }
    }
}

TEST(ResponseDecoderTest, WhiteSpaceInAnAttributeIsReadAsBlanks) {
    try {
        decode("GetClass", response("<ERROR CODE='6' DESCRIPTION='a\tb\r\nc\nd&#10;e'/>"));
        FAIL() << "no error";
    } catch (const CIMException& exception) {
        EXPECT_EQ(exception.getMessage(), String("CIM_ERR_NOT_FOUND: a b c d\ne"));
    }
}

TEST(ResponseDecoderTest, TheAnswerToAnotherRequestIsRefused) {
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1002", "GetClass", answer);
    EXPECT_THROW(decoder.feed(returning("<CLASS NAME=\"A\"/>")), CIMClientResponseException);
    EXPECT_THAT(answer.classes, IsEmpty());
    EXPECT_THROW(decode("GetQualifier", returning("<CLASS NAME=\"A\"/>")), CIMClientResponseException);
    EXPECT_THROW(decode("GetClass", "<CIM><MESSAGE ID='1001'><SIMPLERSP><METHODRESPONSE NAME='GetClass'/></SIMPLERSP>"
                                    "</MESSAGE></CIM>"),
                 CIMClientResponseException);
}

TEST(ResponseDecoderTest, AnObjectThatTheOperationDoesNotReturnIsRefused) {
    struct OnlyNames : cimxml::ReturnValueSink {
        void onClassName(const CIMName&) override {}
    };
    for (const char* object :
         {"<CLASS NAME=\"A\"/>", "<INSTANCE CLASSNAME=\"A\"/>", "<QUALIFIER.DECLARATION NAME=\"A\" TYPE=\"boolean\"/>",
          "<VALUE>1</VALUE>", "<INSTANCENAME CLASSNAME=\"A\"/>"}) {
        OnlyNames sink;
        cimxml::ResponseDecoder decoder("1001", "GetClass", sink);
        EXPECT_THROW(decoder.feed(returning(object)), CIMClientResponseException) << object;
    }
}

TEST(ResponseDecoderTest, WhatTheSinkThrowsPassesThrough) {
    struct Full : cimxml::ReturnValueSink {
        void onClassName(const CIMName& name) override { throw InvalidNameException(name.getString()); }
    };
    Full sink;
    cimxml::ResponseDecoder decoder("1001", "GetClass", sink);
    EXPECT_THROW(decoder.feed(returning("<CLASSNAME NAME=\"A\"/>")), InvalidNameException);
}

TEST(ResponseDecoderTest, WhatIsNotCimXmlIsAnError) {
    EXPECT_THAT(xmlErrorOf(""), HasSubstr("its body is empty"));
    EXPECT_THAT(xmlErrorOf(" "), HasSubstr("it has no CIM"));
    EXPECT_THAT(xmlErrorOf("  <!-- nothing -->"), HasSubstr("it has no CIM"));
    EXPECT_THAT(xmlErrorOf("not found"), HasSubstr("it is a text and not XML, at byte 0: not found"));
    EXPECT_THAT(xmlErrorOf("\n{\"error\": 404}"), HasSubstr("it is JSON, or another text, and not XML, at byte 1: {"));
    EXPECT_THAT(xmlErrorOf("<html><body/></html>"), HasSubstr("html stands where CIM is expected"));
    EXPECT_THAT(xmlErrorOf("<CIM/>"), HasSubstr("it has no MESSAGE"));
    EXPECT_THAT(xmlErrorOf("<CIM><MESSAGE ID='1001'><SIMPLEREQ/></MESSAGE></CIM>"),
                HasSubstr("SIMPLEREQ stands where SIMPLERSP is expected"));
    EXPECT_THAT(xmlErrorOf("<CIM><MESSAGE ID='1001'><METHODRESPONSE/></MESSAGE></CIM>"),
                HasSubstr("METHODRESPONSE stands where SIMPLERSP is expected"));
    EXPECT_THAT(xmlErrorOf("<CIM><MESSAGE/></CIM>"), HasSubstr("MESSAGE has no attribute ID"));
    EXPECT_THAT(xmlErrorOf(returning("<FOO/>")), HasSubstr("FOO does not belong into IRETURNVALUE"));
    EXPECT_THAT(xmlErrorOf(returning("FOO")), HasSubstr("text between the elements"));
    EXPECT_THAT(xmlErrorOf(response("<FOO/>")), HasSubstr("FOO does not belong into IMETHODRESPONSE"));
    EXPECT_THAT(xmlErrorOf(response("<IRETURNVALUE/><IRETURNVALUE/>")),
                HasSubstr("IRETURNVALUE does not belong into IMETHODRESPONSE"));
    EXPECT_THAT(xmlErrorOf(response("") + "<CIM/>"), HasSubstr("CIM stands where nothing more is expected"));
    EXPECT_THAT(xmlErrorOf(response("") + "&lt;"), HasSubstr("text between the elements"));
    EXPECT_THAT(xmlErrorOf(response("") + "<"), HasSubstr("middle of the document"));
}

TEST(ResponseDecoderTest, IllFormedXmlIsAnError) {
    const auto errorIn = [](const std::string& content) { return xmlErrorOf(returning(content)); };
    for (const char* content : {"<CLASS NAME=\"A\"><B></CLASS></B>",
                                "<CLASS NAME=\"A\"></CLAS>",
                                "</CLASS>",
                                "<CLASS NAME=\"A\" NAME=\"B\"/>",
                                "<CLASS NAME=A/>",
                                "<CLASS NAME/>",
                                "<CLASS NAME==\"A\"/>",
                                "<CLASS =\"A\"/>",
                                "<CLASS NAME=\"A\" \"B\"/>",
                                "<CLASS NAME=\"A/>",
                                "<CLASS NAME=\"A\"></CLASS X=\"1\">",
                                "<CLASS NAME=\"A\"></CLASSES>",
                                "<CLASS NAME=\"A\"></>",
                                "<CLASS NAME=\"A\"X=\"1\"/>",
                                "<CLASS NAME=\"A<B\"/>",
                                "<CLASS NAME=\"A\" < >",
                                "< CLASS NAME=\"A\"/>",
                                "<CLASS NAME=\"A\"/ >",
                                "<1/>",
                                "<>",
                                "<!ELEMENT a>",
                                "<![CDATA[x]]>",
                                "<CLASS NAME=\"A\">&foo;</CLASS>",
                                "<CLASS NAME=\"&foo;\"/>",
                                "<CLASS NAME=\"A\">&</CLASS>",
                                "<CLASS NAME=\"A\">& ;</CLASS>",
                                "<CLASS NAME=\"&#0;\"/>",
                                "<CLASS NAME=\"&#xD800;\"/>",
                                "<CLASS NAME=\"&#x110000;\"/>",
                                "<CLASS NAME=\"&#;\"/>",
                                "<CLASS NAME=\"&#99999999999;\"/>",
                                "<CLASS NAME=\"A\"><!-- \xFF --></CLASS>",
                                "<CLASS NAME=\"A\xC3\"/>",
                                "<CLASS NAME=\"A\xC0\x80\"/>",
                                "<CLASS NAME=\"A\xED\xA0\x80\"/>",
                                "<CLASS NAME=\"A\xF4\x90\x80\x80\"/>",
                                "<CLASS NAME=\"A\xE0\x80\x80\"/>",
                                "<CLASS NAME=\"A\xEF\xBF\xBE\"/>",
                                "<CLASS NAME=\"A\x01\"/>"}) {
        EXPECT_NE(errorIn(content), "") << content;
    }
    EXPECT_NE(errorIn(std::string("<CLASS NAME=\"A\0\"/>", 19)), "");
    EXPECT_NE(xmlErrorOf("\xEF\xBB<CIM/>"), "");
}

TEST(ResponseDecoderTest, ADocumentTypeWithDeclarationsIsRefused) {
    EXPECT_THAT(xmlErrorOf("<?xml version=\"1.0\"?><!DOCTYPE CIM [<!ENTITY a \"aaaa\">]><CIM/>"),
                HasSubstr("document type"));
    EXPECT_THAT(xmlErrorOf("<!DOCTYPE CIM SYSTEM \"x\" []><CIM/>"), HasSubstr("document type"));
    EXPECT_THAT(xmlErrorOf("<!ENTITY a \"aaaa\"><CIM/>"), HasSubstr("document type"));
    EXPECT_THAT(xmlErrorOf(returning("<!DOCTYPE CIM><CLASS NAME=\"A\"/>")), HasSubstr("document type"));
}

TEST(ResponseDecoderTest, ADocumentTypeWithoutDeclarationsOfItsOwnIsSkipped) {
    for (const char* type :
         {"<!DOCTYPE CIM>", "<!DOCTYPE CIM SYSTEM \"CIM_DTD_V20.dtd\">",
          "<!DOCTYPE CIM PUBLIC '-//DMTF//DTD CIM \"2.0\"//EN'\n\"http://x/[y]>z\">", "<!-- a --><!DOCTYPE\nCIM\n>"}) {
        std::string body = returning("<CLASSNAME NAME=\"A\"/>");
        body.insert(body.find("<CIM "), type);
        EXPECT_THAT(decode("GetClass", body, 1).classNames, SizeIs(1)) << type;
    }
}

// ---- Limits ----

TEST(ResponseDecoderLimitsTest, DeepNestingIsRefused) {
    std::string open;
    std::string close;
    for (std::size_t i = 0; i < xml::kMaxNesting; ++i) {
        open += "<A>";
        close += "</A>";
    }
    EXPECT_THAT(xmlErrorOf(returning(open + close)), HasSubstr("A does not belong into IRETURNVALUE"));
    EXPECT_THAT(xmlErrorOf(returning(open + "<A>")), HasSubstr("nested deeper than 256"));
}

TEST(ResponseDecoderLimitsTest, AnObjectThatIsTooLargeIsRefusedWhileItArrives) {
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer);
    const std::string body = returning("<CLASS NAME=\"A\">");
    decoder.feed(std::string_view(body).substr(0, body.find("</IRETURNVALUE>")));
    const std::string blanks(1U << 20U, ' ');
    for (std::size_t fed = blanks.size(); fed < cimxml::kMaxObjectBytes; fed += blanks.size()) {
        decoder.feed(blanks);
    }
    EXPECT_THROW(decoder.feed(blanks), CIMClientXmlException);
}

TEST(ResponseDecoderLimitsTest, TooManyElementsInOneObjectAreRefused) {
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer);
    const std::string body = returning("<CLASS NAME=\"A\">");
    decoder.feed(std::string_view(body).substr(0, body.find("</IRETURNVALUE>")));
    std::string comments;
    for (int i = 0; i < 1024; ++i) {
        comments += "<!---->";
    }
    for (std::size_t fed = 1024; fed < xml::kMaxNodes; fed += 1024) {
        decoder.feed(comments);
    }
    try {
        decoder.feed(comments);
        decoder.finish();
        FAIL() << "no error";
    } catch (const CIMClientXmlException& exception) {
        EXPECT_THAT(std::string(exception.getMessage().view()), HasSubstr("more than 2097152 elements"));
    }
}

TEST(ResponseDecoderLimitsTest, ManyDifferentNamesAreAllRead) {
    std::string properties;
    const int count = static_cast<int>(cimxml::kMaxCachedNames) + 10;
    for (int i = 0; i < count; ++i) {
        properties +=
            "<PROPERTY NAME=\"P" + std::to_string(i) + "\" TYPE=\"uint8\" CLASSORIGIN=\"O" + std::to_string(i) + "\"/>";
    }
    const CIMInstance instance = decodeInstance(properties);
    ASSERT_EQ(instance.getPropertyCount(), static_cast<Uint32>(count));
    EXPECT_EQ(instance.getProperty(0).getName(), CIMName("P0"));
    EXPECT_EQ(instance.getProperty(static_cast<Uint32>(count) - 1).getClassOrigin(),
              CIMName(String(std::string_view("O" + std::to_string(count - 1)))));
}

// ---- Tags that come again ----

TEST(ResponseDecoderRepetitionTest, TheSameTagsInAnotherOrderAreReadAsTheyAre) {
    const std::string a = "<PROPERTY NAME=\"A\" TYPE=\"uint8\"><VALUE>1</VALUE></PROPERTY>";
    const std::string b = "<PROPERTY NAME=\"B\" TYPE=\"string\"><VALUE>b</VALUE></PROPERTY>";
    const auto instance = [](const std::string& properties) {
        return "<INSTANCE CLASSNAME=\"A\">" + properties + "</INSTANCE>";
    };
    const auto instances = decodeObjects(instance(a + b) + instance(b + a) + instance(b) + instance(a + b)).instances;
    ASSERT_THAT(instances, SizeIs(4));
    EXPECT_TRUE(instances[0].identical(instances[3]));
    EXPECT_EQ(instances[1].getProperty(0).getName(), CIMName("B"));
    EXPECT_EQ(instances[1].getProperty(1).getValue(), CIMValue(Uint8(1)));
    EXPECT_EQ(instances[2].getPropertyCount(), 1U);
}

TEST(ResponseDecoderRepetitionTest, TagsThatBeginAlikeAreToldApart) {
    const std::string plain = "<PROPERTY NAME=\"P\" TYPE=\"string\"><VALUE>&lt;</VALUE></PROPERTY>";
    const std::string embedded =
        "<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE></VALUE></PROPERTY>";
    const std::string empty = "<PROPERTY NAME=\"P\" TYPE=\"string\"/>";
    std::string objects;
    for (const std::string& property : {plain, embedded, plain, empty, plain}) {
        objects += "<INSTANCE CLASSNAME=\"A\">" + property + "</INSTANCE>";
    }
    const auto instances = decodeObjects(objects).instances;
    EXPECT_EQ(instances.at(1).getProperty(0).getType(), CIMTYPE_INSTANCE);
    EXPECT_EQ(instances.at(2).getProperty(0).getValue(), CIMValue(String("<")));
    EXPECT_TRUE(instances.at(3).getProperty(0).getValue().isNull());
    EXPECT_EQ(instances.at(4).getProperty(0).getType(), CIMTYPE_STRING);
}

TEST(ResponseDecoderRepetitionTest, TagsWithReferencesAreReadEachTime) {
    const std::string begin = "<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"&#80;\" TYPE=\"string\"";
    const std::string empty = begin + "/></INSTANCE>";
    const auto instances = decodeObjects(empty + begin + "><VALUE>x</VALUE></PROPERTY></INSTANCE>" + empty).instances;
    ASSERT_THAT(instances, SizeIs(3));
    for (const CIMInstance& instance : instances) {
        EXPECT_EQ(instance.getProperty(0).getName(), CIMName("P"));
    }
}

TEST(ResponseDecoderRepetitionTest, MoreTagsThanTheCacheHoldsAreAllRead) {
    std::string objects;
    const int count = static_cast<int>(xml::kMaxCachedTags) + 10;
    for (int i = 0; i < count; ++i) {
        objects += "<CLASSNAME NAME=\"C" + std::to_string(i) + "\"/>";
    }
    const auto names = decodeObjects(objects + objects).classNames;
    ASSERT_THAT(names, SizeIs(2 * count));
    for (int i = 0; i < 2 * count; ++i) {
        EXPECT_EQ(names[static_cast<std::size_t>(i)].getString().view(), "C" + std::to_string(i % count));
    }
}

/// A class with one property for each QUALIFIER element.
std::string classWith(const std::vector<std::string>& qualifiers) {
    std::string text = "<CLASS NAME=\"A\">";
    for (std::size_t i = 0; i < qualifiers.size(); ++i) {
        text += "<PROPERTY NAME=\"P" + std::to_string(i) + "\" TYPE=\"string\">" + qualifiers[i] + "</PROPERTY>";
    }
    return text + "</CLASS>";
}

std::string qualifierElement(const std::string& content) {
    return "<QUALIFIER NAME=\"Q\" TYPE=\"string\">" + content + "</QUALIFIER>";
}

/// The values of the first qualifiers of all properties of the class.
std::vector<std::string> qualifierValues(const CIMClass& cimClass) {
    std::vector<std::string> values;
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i) {
        values.emplace_back(cimClass.getProperty(i).getQualifier(0).getValue().toString().view());
    }
    return values;
}

TEST(ResponseDecoderTest, QualifiersSayWhichTextsAreObjects) {
    const auto property = [](const std::string& form, const std::string& qualifier, const std::string& value) {
        return "<CLASS NAME=\"A\"><PROPERTY" + form + " NAME=\"P\" TYPE=\"string\">" + qualifier + value +
               "</PROPERTY" + form + "></CLASS>";
    };
    const auto propertyOf = [](const std::string& xml) { return decodeObjects(xml).classes.at(0).getProperty(0); };
    const std::string object = "<QUALIFIER NAME=\"EmbeddedObject\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>";
    const std::string no = "<QUALIFIER NAME=\"EmbeddedObject\" TYPE=\"boolean\"><VALUE>false</VALUE></QUALIFIER>";
    const std::string instance = "<QUALIFIER NAME=\"EmbeddedInstance\" TYPE=\"string\"><VALUE>B</VALUE></QUALIFIER>";
    const std::string text = "&lt;INSTANCE CLASSNAME=&quot;B&quot;/&gt;";
    EXPECT_EQ(propertyOf(property("", object, "")).getValue(), CIMValue(CIMTYPE_OBJECT, false));
    EXPECT_EQ(propertyOf(property("", instance, "")).getValue(), CIMValue(CIMTYPE_INSTANCE, false));
    EXPECT_EQ(propertyOf(property("", no, "")).getType(), CIMTYPE_STRING);
    EXPECT_EQ(propertyOf(property("", instance, "<VALUE>" + text + "</VALUE>")).getValue(), CIMValue(CIMInstance("B")));
    const CIMProperty array =
        propertyOf(property(".ARRAY", object, "<VALUE.ARRAY><VALUE>" + text + "</VALUE></VALUE.ARRAY>"));
    EXPECT_TRUE(array.isArray());
    EXPECT_EQ(array.getType(), CIMTYPE_OBJECT);
    EXPECT_EQ(array.findQualifier("EmbeddedObject"), 0U);
}

TEST(ResponseDecoderRepetitionTest, QualifiersThatComeAgainHaveTheirOwnValues) {
    const auto scalar = [](const std::string& text) { return qualifierElement("<VALUE>" + text + "</VALUE>"); };
    const std::string array = qualifierElement("<VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY>");
    const std::string none = "<QUALIFIER NAME=\"Q\" TYPE=\"string\"/>";
    const CIMClass cimClass =
        decodeObjects(classWith({scalar("1"), scalar("2"), none, scalar("1"), array, scalar("2"), none, array}))
            .classes.at(0);
    EXPECT_THAT(qualifierValues(cimClass), ElementsAre("1", "2", "", "1", "1 ", "2", "", "1 "));
}

TEST(ResponseDecoderRepetitionTest, TheEndTagOfAQualifierMayStandInItsText) {
    const std::string text = qualifierElement("<VALUE><![CDATA[</QUALIFIER>]]></VALUE>");
    const std::string comment = qualifierElement("<!--</QUALIFIER>--><VALUE>c</VALUE>");
    const CIMClass cimClass = decodeObjects(classWith({text, comment, text, comment})).classes.at(0);
    EXPECT_THAT(qualifierValues(cimClass), ElementsAre("</QUALIFIER>", "c", "</QUALIFIER>", "c"));
}

TEST(ResponseDecoderRepetitionTest, ObjectsInQualifiersAreNotShared) {
    const std::string qualifier =
        "<QUALIFIER NAME=\"Q\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>&lt;INSTANCE "
        "CLASSNAME=\"E\"/&gt;</VALUE></QUALIFIER>";
    const CIMClass cimClass = decodeObjects(classWith({qualifier, qualifier})).classes.at(0);
    CIMInstance first;
    CIMInstance second;
    cimClass.getProperty(0).getQualifier(0).getValue().get(first);
    cimClass.getProperty(1).getQualifier(0).getValue().get(second);
    first.addProperty(CIMProperty("P", CIMValue(true)));
    EXPECT_EQ(second.getPropertyCount(), 0U);
}

TEST(ResponseDecoderRepetitionTest, NodesOfQualifiersThatComeAgainCount) {
    constexpr std::size_t kCount = 11; // so that the text of one is short enough to be remembered
    std::string instructions;
    for (std::size_t i = 0; i < xml::kMaxNodes / kCount; ++i) {
        instructions += "<?a?>";
    }
    ASSERT_LT(instructions.size(), cimxml::kMaxCachedQualifierBytes - 1024);
    const std::string qualifier = qualifierElement(instructions + "<VALUE/>");
    EXPECT_THAT(xmlErrorOf(returning(classWith(std::vector<std::string>(kCount - 1, qualifier)))), IsEmpty());
    EXPECT_THAT(xmlErrorOf(returning(classWith(std::vector<std::string>(kCount, qualifier)))),
                HasSubstr("more than 2097152 elements"));
}

TEST(ResponseDecoderRepetitionTest, AnswersDecodedOneAfterTheOtherAreEachRightWhateverTheOtherHeld) {
    const auto objects = std::make_shared<cimxml::ObjectDecoder>();
    const auto decodeNext = [&](const std::string& body) {
        DecodedAnswer answer;
        cimxml::ResponseDecoder decoder("1001", "GetClass", answer, objects);
        decoder.feed(body);
        decoder.finish();
        return answer;
    };
    std::vector<std::string> many;
    std::vector<std::string> values;
    for (std::size_t i = 0; i <= xml::kMaxCachedTags; ++i) {
        values.push_back(std::to_string(i) + std::string(1000, 'x'));
        many.push_back("<QUALIFIER NAME=\"Q" + std::to_string(i) + "\" TYPE=\"string\"><VALUE>" + values.back() +
                       "</VALUE></QUALIFIER>");
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(qualifierValues(decodeNext(returning(classWith(many))).classes.at(0)), values);
        EXPECT_THROW(decodeNext(returning("<CLASS NAME=\"A\"><QUALIFIER NAME=\"Q\"></CLASS>")), CIMClientXmlException);
    }
}

} // namespace
