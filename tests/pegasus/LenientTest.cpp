// What a lenient reading makes of an answer that a strict one refuses, and what it says of it.

#include "AnswerBody.h"
#include "cimxml/Findings.h"
#include "cimxml/ObjectDecoder.h"
#include "support/CimXml.h"

#include <Pegasus/Common/Exception.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace Pegasus;
using testing::HasSubstr;
using testing::SizeIs;

struct LenientAnswer : DecodedAnswer {
    LenientFindings findings;
};

LenientAnswer decodeLeniently(std::string_view body, std::size_t pieceSize = 4096,
                              const std::shared_ptr<cimxml::ObjectDecoder>& objects = nullptr) {
    LenientAnswer answer;
    cimxml::Findings findings;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer, objects, {}, nullptr, &findings);
    for (; !body.empty(); body.remove_prefix(std::min(pieceSize, body.size()))) {
        decoder.feed(body.substr(0, pieceSize));
    }
    decoder.finish();
    answer.findings = findings.take();
    return answer;
}

std::string text(const String& string) { return std::string(string.view()); }

const std::string kKeys = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE>k</KEYVALUE></KEYBINDING>"
                          "</INSTANCENAME>";

std::string named(const std::string& content) {
    return "<VALUE.NAMEDINSTANCE>" + kKeys + "<INSTANCE CLASSNAME=\"A\">" + content +
           "</INSTANCE></VALUE.NAMEDINSTANCE>";
}

std::string property(const std::string& name, const std::string& type, const std::string& value) {
    return "<PROPERTY NAME=\"" + name + "\" TYPE=\"" + type + "\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

TEST(LenientTest, AnUnreadableValueIsNullAndReported) {
    const std::string body =
        bodyWith(named(property("P", "uint8", "1") + property("Q", "uint8", "300") + property("R", "string", "r")));
    const LenientAnswer answer = decodeLeniently(body);
    ASSERT_THAT(answer.instances, SizeIs(1));
    EXPECT_EQ(answer.instances[0].getProperty(0).getValue(), CIMValue(Uint8(1)));
    EXPECT_EQ(answer.instances[0].getProperty(1).getValue(), CIMValue(CIMTYPE_UINT8, false));
    EXPECT_EQ(answer.instances[0].getProperty(2).getValue(), CIMValue(String("r")));
    ASSERT_EQ(answer.findings.total, 1U);
    const LenientFinding& finding = answer.findings.first[0];
    EXPECT_EQ(finding.kind, LenientFinding::UNREADABLE_VALUE);
    EXPECT_EQ(text(finding.className), "A");
    EXPECT_EQ(text(finding.path), "A.K=\"k\"");
    EXPECT_EQ(text(finding.element), "Q");
    EXPECT_EQ(text(finding.text), "300");
    EXPECT_EQ(text(finding.reason), "integer out of range: 300");
    EXPECT_EQ(finding.offset, body.find("<VALUE>300"));
}

TEST(LenientTest, AnUnreadableItemIsNullAmongTheOthers) {
    const LenientAnswer answer = decodeLeniently(
        bodyWith(named("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE>x</VALUE>"
                       "<VALUE>3</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>")));
    const CIMValue value = answer.instances.at(0).getProperty(0).getValue();
    ASSERT_EQ(value.getArraySize(), 3U);
    EXPECT_FALSE(value.isNullElement(0));
    EXPECT_TRUE(value.isNullElement(1));
    EXPECT_FALSE(value.isNullElement(2));
    ASSERT_EQ(answer.findings.total, 1U);
    EXPECT_EQ(text(answer.findings.first[0].element), "P");
}

TEST(LenientTest, AValueOfAnotherFormIsNull) {
    for (const char* value : {"<VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY>", "<VALUE><X><Y/>y</X></VALUE>",
                              "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"A\"/></VALUE.REFERENCE>"}) {
        const LenientAnswer answer =
            decodeLeniently(bodyWith(named("<PROPERTY NAME=\"P\" TYPE=\"uint8\">" + std::string(value) + "</PROPERTY>" +
                                           property("Q", "uint8", "7"))));
        EXPECT_TRUE(answer.instances.at(0).getProperty(0).getValue().isNull()) << value;
        EXPECT_EQ(answer.instances.at(0).getProperty(1).getValue(), CIMValue(Uint8(7))) << value;
        EXPECT_EQ(answer.findings.total, 1U);
    }
}

TEST(LenientTest, AnUnreadableReferenceIsNull) {
    const LenientAnswer answer = decodeLeniently(bodyWith(
        named("<PROPERTY.REFERENCE NAME=\"P\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"A\"><KEYBINDING "
              "NAME=\"K\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"no name\"/></VALUE.REFERENCE></KEYBINDING>"
              "</INSTANCENAME></VALUE.REFERENCE></PROPERTY.REFERENCE>")));
    EXPECT_EQ(answer.instances.at(0).getProperty(0).getValue(), CIMValue(CIMTYPE_REFERENCE, false));
    ASSERT_EQ(answer.findings.total, 1U);
    EXPECT_THAT(text(answer.findings.first[0].reason), HasSubstr("not a name: \"no name\""));
}

TEST(LenientTest, InAnEmbeddedObjectOnlyTheValueIsLost) {
    const std::string embedded = "<![CDATA[<INSTANCE CLASSNAME=\"B\">" + property("Q", "uint8", "x") +
                                 property("R", "uint8", "1") + "</INSTANCE>]]>";
    const std::string body = bodyWith(named("<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>" +
                                            embedded + "</VALUE></PROPERTY>"));
    const LenientAnswer answer = decodeLeniently(body);
    CIMInstance inner;
    answer.instances.at(0).getProperty(0).getValue().get(inner);
    EXPECT_TRUE(inner.getProperty(0).getValue().isNull());
    EXPECT_EQ(inner.getProperty(1).getValue(), CIMValue(Uint8(1)));
    ASSERT_EQ(answer.findings.total, 1U);
    EXPECT_EQ(text(answer.findings.first[0].element), "P.Q");
    EXPECT_EQ(answer.findings.first[0].offset, body.find("<VALUE><![CDATA["));
}

TEST(LenientTest, TextsThatQualifiersMakeObjectsAreNullOnlyWhereTheyAreUnreadable) {
    const std::string qualifier = "<QUALIFIER NAME=\"EmbeddedInstance\" TYPE=\"string\"><VALUE>B</VALUE></QUALIFIER>";
    const std::string body = bodyWith(
        named("<PROPERTY NAME=\"P\" TYPE=\"string\">" + qualifier + "<VALUE>none</VALUE></PROPERTY>" +
              "<PROPERTY.ARRAY NAME=\"L\" TYPE=\"string\">" + qualifier +
              "<VALUE.ARRAY><VALUE>&lt;INSTANCE CLASSNAME=\"B\"/&gt;</VALUE><VALUE>&lt;INSTANCE</VALUE></VALUE.ARRAY>"
              "</PROPERTY.ARRAY>" +
              property("Q", "uint8", "7")));
    EXPECT_THROW(
        decodeBodyWith(named("<PROPERTY NAME=\"P\" TYPE=\"string\">" + qualifier + "<VALUE>none</VALUE></PROPERTY>")),
        CIMClientXmlException);
    const LenientAnswer answer = decodeLeniently(body);
    const CIMInstance& instance = answer.instances.at(0);
    EXPECT_EQ(instance.getProperty(0).getValue(), CIMValue(CIMTYPE_INSTANCE, false));
    Array<CIMInstance> objects;
    instance.getProperty(1).getValue().get(objects);
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0].getClassName(), CIMName("B"));
    EXPECT_TRUE(instance.getProperty(1).getValue().isNullElement(1));
    EXPECT_EQ(instance.getProperty(2).getValue(), CIMValue(Uint8(7)));
    ASSERT_EQ(answer.findings.total, 2U);
    EXPECT_EQ(text(answer.findings.first[0].element), "P");
    EXPECT_EQ(text(answer.findings.first[0].text), "none");
    EXPECT_EQ(text(answer.findings.first[1].element), "L");
    EXPECT_EQ(text(answer.findings.first[1].text), "<INSTANCE");
}

TEST(LenientTest, UnreadableEmbeddedObjectsAreNullHoweverManyThereAre) {
    std::string properties;
    for (int i = 0; i < 20; ++i) {
        properties += "<PROPERTY NAME=\"P" + std::to_string(i) +
                      "\" TYPE=\"string\" EmbeddedObject=\"object\"><VALUE>&lt;INSTANCE&gt;</VALUE></PROPERTY>";
    }
    const LenientAnswer answer = decodeLeniently(bodyWith(named(properties)));
    EXPECT_TRUE(answer.instances.at(0).getProperty(19).getValue().isNull());
    EXPECT_EQ(answer.findings.total, 20U);
}

TEST(LenientTest, AnUnreadableQualifierIsReportedEachTimeItComes) {
    const std::string qualifier = "<QUALIFIER NAME=\"Q\" TYPE=\"uint8\"><VALUE>x</VALUE></QUALIFIER>";
    const std::string objects = "<CLASS NAME=\"A\">" + qualifier + "<PROPERTY NAME=\"P\" TYPE=\"uint8\">" + qualifier +
                                "</PROPERTY><METHOD NAME=\"M\" TYPE=\"uint8\"><PARAMETER NAME=\"R\" TYPE=\"uint8\">" +
                                qualifier + "</PARAMETER></METHOD></CLASS>";
    const auto decoder = std::make_shared<cimxml::ObjectDecoder>();
    for (int i = 0; i < 2; ++i) {
        const LenientAnswer answer = decodeLeniently(bodyWith(objects), 4096, decoder);
        ASSERT_EQ(answer.findings.total, 3U);
        EXPECT_EQ(text(answer.findings.first[0].element), "qualifier Q");
        EXPECT_EQ(text(answer.findings.first[1].element), "qualifier Q of P");
        EXPECT_EQ(text(answer.findings.first[2].element), "qualifier Q of parameter R of method M");
        EXPECT_TRUE(answer.classes.at(0).getQualifier(0).getValue().isNull());
    }
}

TEST(LenientTest, OfADoubledPropertyTheLastCounts) {
    const std::string content = property("P", "uint8", "1") + property("Q", "uint8", "2") +
                                property("p", "string", "3") + property("P", "uint8", "4") +
                                property("R", "uint8", "5");
    const LenientAnswer answer = decodeLeniently(bodyWith(named(content)));
    const CIMInstance& instance = answer.instances.at(0);
    ASSERT_EQ(instance.getPropertyCount(), 3U);
    EXPECT_EQ(instance.getProperty(instance.findProperty("P")).getValue(), CIMValue(Uint8(4)));
    EXPECT_EQ(instance.getPath(), CIMObjectPath("A.K=\"k\""));
    ASSERT_EQ(answer.findings.total, 2U);
    EXPECT_EQ(answer.findings.first[0].kind, LenientFinding::DOUBLED_PROPERTY);
    EXPECT_EQ(text(answer.findings.first[0].element), "p");
}

TEST(LenientTest, AClassHasBothPropertiesOfOneName) {
    const LenientAnswer answer = decodeLeniently(
        bodyWith("<CLASS NAME=\"A\">" + property("P", "uint8", "1") + property("P", "uint8", "2") + "</CLASS>"));
    EXPECT_EQ(answer.classes.at(0).getPropertyCount(), 2U);
    EXPECT_EQ(answer.findings.total, 0U);
}

TEST(LenientTest, BytesThatAreNotUtf8AreLatin1OrUnknown) {
    const std::string body = bodyWith(named(property("P", "string",
                                                     "gr\xFC\xDF"
                                                     "e") +
                                            property("Q", "string", "\x80") + property("R", "string", "\xEF\xBF\xBE") +
                                            property("S", "uint8", "7")) +
                                      named(property("P", "uint8", "x")));
    for (const std::size_t piece : {std::size_t{1}, std::size_t{3}, std::size_t{4096}}) {
        const LenientAnswer answer = decodeLeniently(body, piece);
        const CIMInstance& instance = answer.instances.at(0);
        EXPECT_EQ(instance.getProperty(0).getValue(), CIMValue(String("gr\xC3\xBC\xC3\x9F"
                                                                      "e")));
        EXPECT_EQ(instance.getProperty(1).getValue(), CIMValue(String("\xEF\xBF\xBD")));
        EXPECT_EQ(instance.getProperty(2).getValue(), CIMValue(String("\xEF\xBF\xBD")));
        EXPECT_EQ(instance.getProperty(3).getValue(), CIMValue(Uint8(7)));
        ASSERT_EQ(answer.findings.total, 4U) << "one for each value";
        const LenientFinding& first = answer.findings.first[0];
        EXPECT_EQ(first.kind, LenientFinding::FOREIGN_BYTES);
        EXPECT_EQ(text(first.reason), "the byte 0xFC is not UTF-8");
        EXPECT_EQ(text(first.path), "A.K=\"k\"");
        EXPECT_EQ(text(first.className), "A");
        EXPECT_EQ(text(first.element), "P");
        EXPECT_EQ(first.offset, body.find('\xFC'));
        EXPECT_EQ(answer.findings.first[1].offset, body.find('\x80'));
        EXPECT_EQ(text(answer.findings.first[2].reason), "the character U+FFFE is not one of XML");
        EXPECT_EQ(answer.findings.first[3].offset, body.find("<VALUE>x")) << "in the answer as it was sent";
    }
}

TEST(LenientTest, HalfASurrogatePairIsReplacedAsAWhole) {
    const LenientAnswer answer = decodeLeniently(bodyWith(named(property("P", "string", "a\xED\xA0\x80z"))));
    EXPECT_EQ(answer.instances.at(0).getProperty(0).getValue(), CIMValue(String("a\xEF\xBF\xBDz")));
    EXPECT_EQ(answer.findings.counts[LenientFinding::FOREIGN_BYTES], 1U);
}

TEST(LenientTest, AReferenceToWhatIsNoCharacterCostsTheValue) {
    for (const std::string reference : {"&#0;", "&#xD800;", "&#xFFFE;", "a&#0;&#0;b<![CDATA[c]]>&#0;"}) {
        const std::string list = "<PROPERTY.ARRAY NAME=\"L\" TYPE=\"string\"><VALUE.ARRAY><VALUE>a</VALUE><VALUE>" +
                                 reference + "</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>";
        const std::string body =
            bodyWith(named(property("P", "string", reference) + list + property("Q", "uint8", "7")));
        const LenientAnswer answer = decodeLeniently(body);
        const CIMInstance& instance = answer.instances.at(0);
        EXPECT_EQ(instance.getProperty(0).getValue(), CIMValue(CIMTYPE_STRING, false));
        EXPECT_TRUE(instance.getProperty(1).getValue().isNullElement(1));
        EXPECT_EQ(instance.getProperty(2).getValue(), CIMValue(Uint8(7)));
        ASSERT_EQ(answer.findings.total, 2U) << reference;
        EXPECT_EQ(answer.findings.first[0].kind, LenientFinding::UNREADABLE_VALUE);
        EXPECT_THAT(text(answer.findings.first[0].text), HasSubstr(reference.substr(0, 5)));
        EXPECT_THAT(text(answer.findings.first[0].reason), HasSubstr("which XML does not allow"));
    }
    for (const char* tag : {"<PROPERTY NAME=\"&#0;\" TYPE=\"string\"/>",
                            "<PROPERTY.REFERENCE NAME=\"R\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"&#0;\"/>"
                            "</VALUE.REFERENCE></PROPERTY.REFERENCE>"}) {
        EXPECT_THROW(decodeLeniently(bodyWith(named(tag))), CIMClientXmlException) << "of a tag it costs the answer";
    }
}

TEST(LenientTest, ElementsAfterVeryManyForeignBytesAreReported) {
    const std::string body = bodyWith(named(property("P", "string", std::string(20000, '\xE4')) +
                                            property("Q", "string", "\xE4") + property("R", "uint8", "x")));
    for (const std::size_t piece : {std::size_t{1000}, body.size()}) {
        const LenientFindings findings = decodeLeniently(body, piece).findings;
        ASSERT_EQ(findings.total, 3U);
        EXPECT_EQ(findings.first[0].offset, body.find("<VALUE>x")) << "values come first";
        EXPECT_EQ(text(findings.first[1].element), "P");
        EXPECT_EQ(findings.first[1].offset, body.find('\xE4'));
        EXPECT_EQ(text(findings.first[2].element), "Q");
        EXPECT_EQ(findings.first[2].offset, body.rfind('\xE4'));
    }
}

struct WantsNoMore : DecodedAnswer {
    void onInstance(const CIMInstance& /*instance*/) override { throw std::runtime_error("no more"); }
    void onInstanceName(const CIMObjectPath& /*name*/) override { throw std::runtime_error("no more"); }
};

TEST(LenientTest, FindingsInAnObjectAreReportedBeforeItIsHandedOver) {
    const std::string name = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE>\xE4</KEYVALUE>"
                             "</KEYBINDING></INSTANCENAME>";
    for (const std::string& object : {named(property("P", "string", "\xE4")), name}) {
        WantsNoMore sink;
        cimxml::Findings findings;
        cimxml::ResponseDecoder decoder("1001", "GetClass", sink, nullptr, {}, nullptr, &findings);
        EXPECT_THROW(decoder.feed(bodyWith(object)), std::runtime_error);
        EXPECT_EQ(findings.take().counts[LenientFinding::FOREIGN_BYTES], 1U) << object;
    }
}

/// The body of a GetClass answer with an error that has an instance of CIM_Error.
std::string bodyWithError(const std::string& propertiesOfInstance) {
    const std::string error =
        "<ERROR CODE=\"6\">" + support::xml::Instance("CIM_Error", propertiesOfInstance) + "</ERROR>";
    return support::xml::BareMessage("1001", support::xml::Response("GetClass", error));
}

TEST(LenientTest, FindingsInTheInstanceOfAnErrorAreReported) {
    DecodedAnswer sink;
    cimxml::Findings findings;
    cimxml::ResponseDecoder decoder("1001", "GetClass", sink, nullptr, {}, nullptr, &findings);
    decoder.feed(bodyWithError(property("P", "uint8", "x") + property("Q", "uint8", "1")));
    try {
        decoder.finish();
        FAIL() << "the server reports an error";
    } catch (const CIMException& error) {
        EXPECT_EQ(error.getCode(), CIM_ERR_NOT_FOUND);
        ASSERT_EQ(error.getErrorCount(), 1U);
        EXPECT_EQ(error.getError(0).getPropertyCount(), 2U);
    }
    EXPECT_EQ(findings.take().counts[LenientFinding::UNREADABLE_VALUE], 1U);
}

TEST(LenientTest, AnErrorIsReadWithoutTheInstanceThatCannotBe) {
    for (const std::string& bad : {property("P", "uint8", "x"), std::string("<X><Y/></X>")}) {
        try {
            decode("GetClass", bodyWithError(bad));
            FAIL() << "the server reports an error";
        } catch (const CIMException& error) {
            EXPECT_EQ(error.getCode(), CIM_ERR_NOT_FOUND);
            EXPECT_EQ(error.getErrorCount(), 0U);
        }
    }
}

TEST(LenientTest, FindingsThatAreNotKeptAreCounted) {
    std::string objects;
    for (Uint32 i = 0; i < 10 + LenientFindings::kMaxKept; ++i) {
        objects += named(property("P", "uint8", "x"));
    }
    std::string items;
    for (Uint32 i = 0; i < 10 + LenientFindings::kMaxKept; ++i) {
        items += "<VALUE>x</VALUE>";
    }
    const std::string array =
        named("<PROPERTY.ARRAY NAME=\"P\" TYPE=\"uint8\"><VALUE.ARRAY>" + items + "</VALUE.ARRAY></PROPERTY.ARRAY>");
    for (const std::string& content : {objects, array}) {
        const LenientFindings findings = decodeLeniently(bodyWith(content)).findings;
        EXPECT_EQ(findings.total, 10U + LenientFindings::kMaxKept);
        EXPECT_EQ(findings.first.size(), LenientFindings::kMaxKept);
        EXPECT_EQ(findings.counts[LenientFinding::UNREADABLE_VALUE], findings.total);
    }
}

TEST(LenientTest, WhereAnAnswerIsCutMakesNoDifference) {
    std::string body = bodyWith(named(property("P", "uint8", "x") + property("P", "uint8", "\xE4")) +
                                named(property("Q", "boolean", "maybe")) + named(property("R", "string", "&#0;")));
    body.insert(body.find("><SIMPLERSP>"), " NOTE=\"\xE4\"");
    const LenientAnswer whole = decodeLeniently(body, body.size());
    ASSERT_EQ(whole.findings.total, 7U);
    for (std::size_t piece = 1; piece < body.size(); ++piece) {
        const LenientAnswer answer = decodeLeniently(body, piece);
        ASSERT_EQ(answer.findings.total, whole.findings.total) << piece;
        for (Uint32 i = 0; i < 7; ++i) {
            EXPECT_EQ(text(answer.findings.first[i].reason), text(whole.findings.first[i].reason)) << piece;
            EXPECT_EQ(text(answer.findings.first[i].text), text(whole.findings.first[i].text)) << piece;
        }
    }
}

TEST(LenientTest, MalformedXmlAndPassedLimitsAreRefusedHereToo) {
    for (const std::string& objects :
         {named("<PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE>&foo;</VALUE></PROPERTY>"), named("<X/>"),
          named("<PROPERTY NAME=\"no name\" TYPE=\"uint8\"/>"), std::string("<VALUE.NAMEDINSTANCE/>")}) {
        EXPECT_THROW(decodeLeniently(bodyWith(objects)), CIMClientXmlException) << objects;
    }
}

} // namespace
