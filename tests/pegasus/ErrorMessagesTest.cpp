// What is said of an answer that is not a good one: which object and element, and where in the body.

#include "AnswerBody.h"

#include <Pegasus/Common/Exception.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace Pegasus;
using testing::EndsWith;
using testing::HasSubstr;

const std::string kKeys = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE>k</KEYVALUE></KEYBINDING>"
                          "</INSTANCENAME>";

std::string named(const std::string& content) {
    return "<VALUE.NAMEDINSTANCE>" + kKeys + "<INSTANCE CLASSNAME=\"A\">" + content +
           "</INSTANCE></VALUE.NAMEDINSTANCE>";
}

std::string property(const std::string& value) {
    return "<PROPERTY NAME=\"P\" TYPE=\"uint8\">" + value + "</PROPERTY>";
}

/// "at byte N", for the first place of a text in the answer that holds these objects.
std::string atByteOf(const std::string& text, const std::string& objects) {
    return ", at byte " + std::to_string(bodyWith(objects).find(text));
}

constexpr const char* kBegin = "the server's answer is not good CIM-XML: ";

TEST(ErrorMessageTest, AValueIsToldWithItsPropertyItsPathAndItsOffset) {
    const std::string objects = named(property("<VALUE>300</VALUE>"));
    EXPECT_EQ(errorInBodyWith(objects),
              kBegin + ("integer out of range: 300, in property P of A.K=\"k\"" + atByteOf("<VALUE>", objects)));
}

TEST(ErrorMessageTest, TheOffsetCountsFromTheBeginningOfTheBodyAlsoAfterOtherObjects) {
    const std::string bad = named(property("<VALUE>x</VALUE>"));
    const std::string good = named(property("<VALUE>1</VALUE>"));
    EXPECT_THAT(errorInBodyWith(good + good + bad),
                EndsWith(", at byte " + std::to_string(bodyWith(good + good + bad).find("<VALUE>x"))));
}

TEST(ErrorMessageTest, AnInstanceWithoutAPathIsToldByItsClass) {
    EXPECT_THAT(errorInBodyWith("<INSTANCE CLASSNAME=\"A\">" + property("<VALUE>x</VALUE>") + "</INSTANCE>"),
                HasSubstr(", in property P of an instance of A, at byte "));
}

TEST(ErrorMessageTest, ElementsOfAClassAreToldByWhatTheyAre) {
    const auto inClass = [](const std::string& content) {
        return errorInBodyWith("<CLASS NAME=\"A\">" + content + "</CLASS>");
    };
    const std::string qualifier = "<QUALIFIER NAME=\"Q\" TYPE=\"uint8\"><VALUE>x</VALUE></QUALIFIER>";
    EXPECT_THAT(inClass(qualifier), HasSubstr(", in qualifier Q of the class A, at byte "));
    EXPECT_THAT(inClass("<PROPERTY NAME=\"P\" TYPE=\"uint8\">" + qualifier + "</PROPERTY>"),
                HasSubstr(", in qualifier Q of property P of the class A, at byte "));
    EXPECT_THAT(inClass("<METHOD NAME=\"M\" TYPE=\"uint8\"><PARAMETER NAME=\"R\" TYPE=\"uint8\">" + qualifier +
                        "</PARAMETER></METHOD>"),
                HasSubstr(", in qualifier Q of parameter R of method M of the class A, at byte "));
    EXPECT_THAT(errorInBodyWith("<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\"><VALUE>x</VALUE>"
                                "</QUALIFIER.DECLARATION>"),
                HasSubstr(", in qualifier declaration Q, at byte "));
}

TEST(ErrorMessageTest, AKeyIsToldWithTheClassOfItsPath) {
    const std::string objects = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><KEYVALUE TYPE=\"x\">1</KEYVALUE>"
                                "</KEYBINDING></INSTANCENAME>";
    EXPECT_EQ(errorInBodyWith(objects),
              kBegin + ("unknown type: x, in key K of an instance of A" + atByteOf("<KEYVALUE", objects) +
                        ": <KEYVALUE TYPE=\"x\">1</KEYVALUE></KEYBINDING></INSTANCENAME><"));
}

TEST(ErrorMessageTest, ATextThatIsNotXmlIsShown) {
    const std::string objects = named("<PROPERTY NAME=\"P\" TYPE=\"uint8\"><VALUE>1</VALUE></PROPERTIES>");
    EXPECT_THAT(errorInBodyWith(objects), HasSubstr("the element PROPERTY ends with another tag: PROPERTIES, in "
                                                    "property P of A.K=\"k\", at byte "));
    EXPECT_THAT(errorInBodyWith(named("<PROPERTY NAME=P/>")),
                EndsWith(": P/></INSTANCE></VALUE.NAMEDINSTANCE></IRETURNVALUE></IMETHOD"))
        << "60 characters";
}

TEST(ErrorMessageTest, ACharacterIsToldByItsCodePointAndAByteByItsNumber) {
    const std::string fffe = named(property("<VALUE>1\xEF\xBF\xBE</VALUE>"));
    EXPECT_EQ(errorInBodyWith(fffe), kBegin + ("the character U+FFFE is not one of XML, in property P of A.K=\"k\"" +
                                               atByteOf("\xEF\xBF\xBE", fffe)));
    const std::string byte = named(property("<VALUE>1\xE4</VALUE>"));
    EXPECT_EQ(errorInBodyWith(byte),
              kBegin + ("the byte 0xE4 is not UTF-8, in property P of A.K=\"k\"" + atByteOf("\xE4", byte)));
    const std::string null = named(property(std::string("<VALUE>1\0</VALUE>", 17)));
    EXPECT_THAT(errorInBodyWith(null), HasSubstr("the character U+0000 is not one of XML, in property P of A.K"));
    EXPECT_THAT(errorInBodyWith(named(property("<VALUE>&#0;</VALUE>"))),
                HasSubstr("a reference stands for U+0000, which XML does not allow, in property P of A.K"));
    EXPECT_THAT(errorInBodyWith(named(property("<VALUE>&#x1FFFFF;</VALUE>"))), HasSubstr("U+1FFFFF"));
}

TEST(ErrorMessageTest, AnEmbeddedObjectIsToldWithTheOneAroundIt) {
    EXPECT_THAT(errorInBodyWith(named("<PROPERTY NAME=\"P\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>"
                                      "<![CDATA[<INSTANCE CLASSNAME=\"B\"><PROPERTY NAME=\"Q\" TYPE=\"uint8\">"
                                      "<VALUE>x</VALUE></PROPERTY></INSTANCE>]]></VALUE></PROPERTY>")),
                HasSubstr("not an integer: x, in property Q of an instance of B, which is embedded, in property P of "
                          "A.K=\"k\", at byte "));
}

TEST(ErrorMessageTest, AnAnswerThatEndsEarlySaysWhere) {
    const std::string body = bodyWith(named(property("<VALUE>1")));
    const std::string cut = body.substr(0, body.find("</PROPERTY>"));
    try {
        decode("GetClass", cut);
        FAIL() << "no error";
    } catch (const CIMClientXmlException& error) {
        EXPECT_EQ(std::string(error.getMessage().view()),
                  kBegin + ("it ends in the middle of the document, in property P "
                            "of A.K=\"k\", at byte " +
                            std::to_string(cut.size())));
    }
}

TEST(ErrorMessageTest, ABodyThatIsNotXmlIsDescribed) {
    const auto errorOf = [](std::string_view body) {
        try {
            decode("GetClass", body);
            return std::string();
        } catch (const CIMClientXmlException& error) {
            return std::string(error.getMessage().view());
        }
    };
    EXPECT_EQ(errorOf(""), kBegin + std::string("its body is empty"));
    EXPECT_EQ(errorOf("Not found\n"), kBegin + std::string("it is a text and not XML, at byte 0: Not found\n"));
    EXPECT_EQ(errorOf("[]"), kBegin + std::string("it is JSON, or another text, and not XML, at byte 0: []"));
    EXPECT_EQ(errorOf(bodyWith("") + " x"), kBegin + ("there is text between the elements, behind the end of the "
                                                      "document, at byte " +
                                                      std::to_string(bodyWith("").size() + 1) + ": x"));
}

TEST(ErrorMessageTest, ALongValueIsCutBetweenCharacters) {
    std::string text;
    for (int i = 0; i < 300; ++i) {
        text += "\xE2\x82\xAC";
    }
    const std::string error = errorInBodyWith(named(property("<VALUE>" + text + "</VALUE>")));
    EXPECT_THAT(error, HasSubstr("not an integer: " + text.substr(0, 198) + "..., in property P"));
}

TEST(ErrorMessageTest, AnErrorOfTheServerWithoutATextSaysSo) {
    const std::string name = "CIM_ERR_INVALID_PARAMETER";
    for (const std::string& attribute :
         {std::string(), std::string("DESCRIPTION=\"\""), std::string("DESCRIPTION=\" \""),
          "DESCRIPTION=\"" + name + '"', "DESCRIPTION=\"" + name + ": \""}) {
        std::string body = bodyWith("");
        body.insert(body.find("<IRETURNVALUE>"), "<ERROR CODE=\"4\" " + attribute + "/>");
        try {
            decode("GetClass", body);
            FAIL() << "no error";
        } catch (const CIMException& error) {
            EXPECT_EQ(std::string(error.getMessage().view()), name + ": the server says no more than this")
                << attribute;
        }
    }
}

} // namespace
