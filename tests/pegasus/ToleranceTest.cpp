// What an answer may have although no standard says so, because nothing is lost; and what no answer may have.

#include "AnswerBody.h"
#include "cimxml/ObjectDecoder.h"

#include <Pegasus/Common/Exception.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace Pegasus;
using testing::HasSubstr;
using testing::SizeIs;

const std::string kName = "<INSTANCENAME CLASSNAME=\"A\"/>";
const std::string kInstance = "<INSTANCE CLASSNAME=\"A\"/>";
const std::string kSpace = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"n\"/></LOCALNAMESPACEPATH>";
const std::string kHere = "<NAMESPACEPATH><HOST>h</HOST>" + kSpace + "</NAMESPACEPATH>";

std::string propertyWith(const std::string& attributes, const std::string& value) {
    return "<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"P\" " + attributes + "><VALUE>" + value +
           "</VALUE></PROPERTY></INSTANCE>";
}

CIMValue valueIn(const std::string& instance) {
    return decodeBodyWith(instance).instances.at(0).getProperty(0).getValue();
}

struct CountingObjects : cimxml::ReturnValueSink {
    void onObject(const CIMObject&) override { ++count; }
    int count = 0;
};

/// The message of the CIMClientXmlException that the decoding of an object of an association ends in.
std::string errorInObject(const std::string& content) {
    CountingObjects objects;
    cimxml::ResponseDecoder decoder("1001", "GetClass", objects);
    try {
        decoder.feed(bodyWith("<VALUE.OBJECTWITHPATH>" + content + "</VALUE.OBJECTWITHPATH>"));
        decoder.finish();
        return "";
    } catch (const CIMClientXmlException& error) {
        return std::string(error.getMessage().view());
    }
}

TEST(ToleranceTest, ControlCharactersAreCharactersRawOrAsReferences) {
    for (int code = 1; code < 0x20; ++code) {
        const std::string raw(1, static_cast<char>(code));
        const std::string expected = code == '\r' ? "\n" : raw;
        EXPECT_EQ(valueIn(propertyWith("TYPE=\"string\"", 'a' + raw + 'b')), CIMValue(String('a' + expected + 'b')));
        EXPECT_EQ(valueIn(propertyWith("TYPE=\"string\"", "a&#" + std::to_string(code) + ";b")),
                  CIMValue(String('a' + raw + 'b')));
    }
    EXPECT_EQ(valueIn(propertyWith("TYPE=\"string\"", std::string(200, '\x1F'))),
              CIMValue(String(std::string(200, '\x1F'))));
}

TEST(ToleranceTest, AnEmptyItemOfBooleansOrDateTimesIsNull) {
    for (const std::string type : {"boolean", "datetime"}) {
        const CIMValue value = valueIn("<INSTANCE CLASSNAME=\"A\"><PROPERTY.ARRAY NAME=\"P\" TYPE=\"" + type +
                                       "\"><VALUE.ARRAY><VALUE/><VALUE> </VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
                                       "</INSTANCE>");
        ASSERT_EQ(value.getArraySize(), 2U);
        EXPECT_TRUE(value.isNullElement(0));
        EXPECT_TRUE(value.isNullElement(1));
    }
}

TEST(ToleranceTest, ANullAmongNumbersStaysKnownAsOne) {
    const CIMValue value = valueIn("<INSTANCE CLASSNAME=\"A\"><PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\"><VALUE.ARRAY>"
                                   "<VALUE>0</VALUE><VALUE.NULL/></VALUE.ARRAY></PROPERTY.ARRAY></INSTANCE>");
    EXPECT_FALSE(value.isNullElement(0));
    EXPECT_TRUE(value.isNullElement(1));
}

TEST(ToleranceTest, BlanksAroundNamesIdsAndTypesDoNotCount) {
    std::string body =
        "<CIM><MESSAGE ID=\" 1001\n\"><SIMPLERSP><IMETHODRESPONSE NAME=\" GetClass \"><IRETURNVALUE>"
        "<CLASS NAME=\" A \" SUPERCLASS=\"B\t\"><PROPERTY NAME=\" P\" TYPE=\" uint8 \" CLASSORIGIN=\" B\" "
        "PROPAGATED=\" true\"/></CLASS></IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
    const CIMClass cimClass = decode("GetClass", body).classes.at(0);
    EXPECT_EQ(cimClass.getClassName().getString(), String("A"));
    EXPECT_EQ(cimClass.getSuperClassName().getString(), String("B"));
    EXPECT_EQ(cimClass.getProperty(0).getName().getString(), String("P"));
    EXPECT_EQ(cimClass.getProperty(0).getType(), CIMTYPE_UINT8);
    EXPECT_EQ(cimClass.getProperty(0).getClassOrigin().getString(), String("B"));
}

TEST(ToleranceTest, AnEmptyEmbeddedObjectAttributeSaysNothing) {
    EXPECT_EQ(valueIn(propertyWith("TYPE=\"string\" EmbeddedObject=\"\"", "x")), CIMValue(String("x")));
    EXPECT_EQ(valueIn(propertyWith("TYPE=\"string\" EMBEDDEDOBJECT=\" instance \"", "")),
              CIMValue(CIMTYPE_INSTANCE, false));
}

TEST(ToleranceTest, NullsBlanksAndXmlDeclarationsMayStandBehindTheDocument) {
    const std::string body = bodyWith(kInstance);
    for (const std::string& behind :
         {std::string("\0", 1), std::string("\0\0\0\0\0\0", 6), std::string(" \0\n\0 ", 5),
          std::string("\n<?xml version=\"1.0\"?>\n"), std::string("\0<?xml version=\"1.0\"?>\0<!-- -->", 32)}) {
        for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
            EXPECT_THAT(decode("GetClass", body + behind, piece).instances, SizeIs(1)) << behind;
        }
    }
    EXPECT_THROW(decode("GetClass", std::string(1, '\0') + body), CIMClientXmlException);
}

TEST(ToleranceTest, CorrelatorsAreSkipped) {
    const std::string correlator = "<CORRELATOR NAME=\"C\" TYPE=\"string\"><VALUE>1</VALUE></CORRELATOR>";
    for (const char* place : {"<MESSAGE ", "<SIMPLERSP>", "<IMETHODRESPONSE ", "<IRETURNVALUE>", "<INSTANCE "}) {
        std::string body = bodyWith(kInstance);
        body.insert(body.find(place), correlator);
        EXPECT_THAT(decode("GetClass", body).instances, SizeIs(1)) << place;
    }
}

TEST(ToleranceTest, OutputParametersHaveTheirTypeInEitherAttributeOrNone) {
    std::string body = bodyWith(kInstance);
    body.insert(body.find("</IMETHODRESPONSE>"),
                "<PARAMVALUE NAME=\"a\" PARAMTYPE=\"string\"><VALUE>x</VALUE></PARAMVALUE>"
                "<PARAMVALUE NAME=\"b\" TYPE=\"string\"><VALUE>x</VALUE></PARAMVALUE>"
                "<PARAMVALUE NAME=\"c\"><VALUE>x</VALUE></PARAMVALUE>");
    EXPECT_THAT(decode("GetClass", body).instances, SizeIs(1));
}

TEST(RefusalTest, AnElementThatMayComeOnceIsRefusedTheSecondTime) {
    for (const std::string& content : {kName + kName + kInstance, kName + kInstance + kInstance}) {
        EXPECT_THAT(errorInBodyWith("<VALUE.NAMEDINSTANCE>" + content + "</VALUE.NAMEDINSTANCE>"),
                    HasSubstr("does not belong into VALUE.NAMEDINSTANCE"));
        EXPECT_THAT(errorInObject(content), HasSubstr("does not belong into VALUE.OBJECTWITHPATH"));
    }
    const std::string classPath = "<CLASSPATH>" + kHere + "<CLASSNAME NAME=\"A\"/></CLASSPATH>";
    EXPECT_EQ(errorInObject(classPath + "<CLASS NAME=\"A\"/>"), "");
    EXPECT_THAT(errorInObject(classPath + "<CLASS NAME=\"A\"/><CLASS NAME=\"A\"/>"),
                HasSubstr("CLASS does not belong"));
    EXPECT_THAT(errorInObject(classPath + "<CLASS NAME=\"A\"/>" + kInstance), HasSubstr("INSTANCE does not belong"));
}

TEST(RefusalTest, AClassPathWithAnInstanceAndAnInstancePathWithAClassAreRefused) {
    const std::string classPath = "<CLASSPATH>" + kHere + "<CLASSNAME NAME=\"A\"/></CLASSPATH>";
    const std::string path = "<INSTANCEPATH>" + kHere + kName + "</INSTANCEPATH>";
    EXPECT_EQ(errorInObject(path + kInstance), "");
    EXPECT_THAT(errorInObject(classPath + kInstance), HasSubstr("has the path of a class and an instance"));
    EXPECT_THAT(errorInObject(path + "<CLASS NAME=\"A\"/>"), HasSubstr("has a class and the path of an instance"));
}

const std::string kInstanceWithTwo = "<VALUE.NAMEDINSTANCE>" + kName +
                                     "<INSTANCE CLASSNAME=\"A\">"
                                     "<PROPERTY NAME=\"Twice\" TYPE=\"uint8\"><VALUE>1</VALUE></PROPERTY>"
                                     "<PROPERTY NAME=\"Other\" TYPE=\"uint8\"/>"
                                     "<PROPERTY NAME=\"tWICE\" TYPE=\"string\"><VALUE>2</VALUE></PROPERTY>"
                                     "</INSTANCE></VALUE.NAMEDINSTANCE>";
const std::string kClassWithTwo = "<CLASS NAME=\"A\"><PROPERTY NAME=\"P\" TYPE=\"uint8\"/>"
                                  "<PROPERTY NAME=\"P\" TYPE=\"uint8\"/></CLASS>";

TEST(RefusalTest, AnObjectWithAPropertyThatComesTwiceIsRefused) {
    EXPECT_THAT(errorInBodyWith(kInstanceWithTwo), HasSubstr("the property tWICE comes twice, in "));
    EXPECT_THAT(errorInBodyWith(kClassWithTwo), HasSubstr("the property P comes twice, in "));
}

/// Decodes with a decoder that reads doubled properties.
DecodedAnswer decodeWithBoth(const std::string& objects) {
    const auto decoder = std::make_shared<cimxml::ObjectDecoder>();
    decoder->setDoubledProperties(true);
    return decode("GetClass", bodyWith(objects), 4096, decoder);
}

TEST(ToleranceTest, AnInstanceIsDeliveredWithBothPropertiesOfANameIfThatIsAskedFor) {
    const CIMInstance instance = decodeWithBoth(kInstanceWithTwo).instances.at(0);
    ASSERT_EQ(instance.getPropertyCount(), 3U);
    EXPECT_EQ(instance.getProperty(0).getValue(), CIMValue(Uint8(1)));
    EXPECT_EQ(instance.getProperty(2).getValue(), CIMValue(String("2")));
}

TEST(ToleranceTest, AClassIsDeliveredWithBothPropertiesOfANameIfThatIsAskedFor) {
    EXPECT_EQ(decodeWithBoth(kClassWithTwo).classes.at(0).getPropertyCount(), 2U);
}

TEST(RefusalTest, TheFirstOfTwoErrorsCounts) {
    std::string body = bodyWith("");
    body.insert(body.find("<IRETURNVALUE>"), "<ERROR CODE=\"4\" DESCRIPTION=\"first\"/><ERROR CODE=\"6\"/>");
    try {
        decode("GetClass", body);
        FAIL() << "no error";
    } catch (const CIMException& error) {
        EXPECT_EQ(error.getCode(), CIM_ERR_INVALID_PARAMETER);
    }
}

} // namespace
