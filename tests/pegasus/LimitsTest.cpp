// Every limit of the decoder: what reaches it is read, what goes beyond it by one is refused with an error that says
// so.

#include "cimxml/Limits.h"

#include "AnswerBody.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace {

using namespace Pegasus;
using testing::HasSubstr;
using testing::SizeIs;

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

/// Decodes one object that consists of a begin, many times the same, and an end, without ever holding it as a whole.
/// Returns the error's message; empty when there is none.
std::string errorInLargeObject(std::string_view begin, std::string_view part, std::size_t count, std::string_view end) {
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer);
    const std::size_t perPiece = 65536 / part.size() + 1;
    const std::string piece = repeated(part, perPiece);
    try {
        decoder.feed(kBodyBegin);
        decoder.feed(begin);
        for (; count >= perPiece; count -= perPiece)
            decoder.feed(piece);
        decoder.feed(repeated(part, count));
        decoder.feed(end);
        decoder.feed(kBodyEnd);
        decoder.finish();
        return "";
    } catch (const CIMClientXmlException& error) {
        return std::string(error.getMessage().view());
    }
}

TEST(LimitsTest, AnObjectHas64MiBOfText) {
    const std::string_view begin = "<CLASS NAME=\"A\"><!--";
    const std::string_view end = "--></CLASS>";
    const std::size_t room = cimxml::kMaxObjectBytes - begin.size() - end.size();
    EXPECT_EQ(errorInLargeObject(begin, "x", room, end), "");
    EXPECT_THAT(errorInLargeObject(begin, "x", room + 1, end), HasSubstr("one object is larger than 64 MiB"));
}

using EndlessObjectTest = testing::TestWithParam<const char*>;

TEST_P(EndlessObjectTest, IsRefusedAtTheLimit) {
    EXPECT_THAT(errorInLargeObject(GetParam(), "                ", cimxml::kMaxObjectBytes / 16 + 1, ""),
                HasSubstr("larger than 64 MiB"));
}

INSTANTIATE_TEST_SUITE_P(WhereverItGrows, EndlessObjectTest,
                         testing::Values("<CLASS NAME=\"", "<CLASS NAME=\"A\"></CLASS", "<CLASS NAME=\"A\"><![CDATA[",
                                         "<!--"));

TEST(LimitsTest, ElementsAreNested256Deep) {
    // References in references, as far down as they go. So deep they are too long for other reasons, but not too deep.
    const auto nested = [](std::size_t depth) {
        const std::size_t levels = (depth - 4) / 2;
        const std::string extra = depth % 2 == 0 ? "" : "<KEYBINDING NAME=\"K\">";
        return "<INSTANCE CLASSNAME=\"A\"><PROPERTY.REFERENCE NAME=\"R\"><VALUE.REFERENCE><INSTANCENAME "
               "CLASSNAME=\"A\">" +
               extra + "<VALUE.REFERENCE>" + repeated("<INSTANCENAME CLASSNAME=\"A\"><VALUE.REFERENCE>", levels - 1) +
               "<CLASSNAME NAME=\"A\"></CLASSNAME>" + repeated("</VALUE.REFERENCE></INSTANCENAME>", levels - 1) +
               "</VALUE.REFERENCE>" + (extra.empty() ? "" : "</KEYBINDING>") +
               "</INSTANCENAME></VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>";
    };
    EXPECT_EQ(errorInBodyWith(nested(16)), "");
    EXPECT_EQ(errorInBodyWith(nested(17)), "");
    EXPECT_THAT(errorInBodyWith(nested(cimxml::kMaxNesting)), HasSubstr("the path of a reference is too long"));
    EXPECT_THAT(errorInBodyWith(nested(cimxml::kMaxNesting + 1)), HasSubstr("elements are nested deeper than 256"));
}

TEST(LimitsTest, AnObjectHasTwoMillionNodes) {
    // CLASS and its attribute are two of them.
    const std::size_t room = cimxml::kMaxNodes - 2;
    EXPECT_EQ(errorInLargeObject("<CLASS NAME=\"A\">", "<!---->", room, "</CLASS>"), "");
    EXPECT_THAT(errorInLargeObject("<CLASS NAME=\"A\">", "<!---->", room + 1, "</CLASS>"),
                HasSubstr("one object has more than 2097152 elements, attributes, comments and CDATA sections"));
}

TEST(LimitsTest, ElementsAndAttributesCountToTheSameLimit) {
    const std::string_view property = "<PROPERTY NAME=\"P\" TYPE=\"uint8\"/>"; // three nodes
    EXPECT_THAT(errorInLargeObject("<CLASS NAME=\"A\"><METHOD NAME=\"M\">", property, cimxml::kMaxNodes / 3 + 1, ""),
                testing::AnyOf(HasSubstr("more than 2097152"), HasSubstr("does not belong into METHOD")));
    const std::string_view value = "<VALUE/>";
    EXPECT_THAT(errorInLargeObject("<CLASS NAME=\"A\"><PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\"><VALUE.ARRAY>", value,
                                   cimxml::kMaxNodes, ""),
                HasSubstr("more than 2097152"));
}

TEST(LimitsTest, AnElementHas32Attributes) {
    const auto withAttributes = [](std::size_t count) {
        std::string tag = "<CLASS NAME=\"A\"";
        for (std::size_t i = 1; i < count; ++i)
            tag += " X" + std::to_string(i) + "=\"\"";
        return tag + "/>";
    };
    EXPECT_THAT(decodeBodyWith(withAttributes(cimxml::kMaxAttributes)).classes, SizeIs(1));
    EXPECT_THAT(errorInBodyWith(withAttributes(cimxml::kMaxAttributes + 1)),
                HasSubstr("the element CLASS has too many attributes"));
}

TEST(LimitsTest, NamesBeyondThoseThatAreSharedAreReadAll) {
    std::string names;
    const std::size_t count = 2 * cimxml::kMaxSharedNames + 1;
    for (std::size_t i = 0; i < count; ++i)
        names += "<CLASSNAME NAME=\"N" + std::to_string(i) + "\"/>";
    const auto answer = decodeBodyWith(names + names);
    ASSERT_THAT(answer.classNames, SizeIs(2 * count));
    for (std::size_t i = 0; i < count; ++i) {
        const CIMName expected(String("N" + std::to_string(i)));
        ASSERT_EQ(answer.classNames[i], expected);
        ASSERT_EQ(answer.classNames[count + i], expected);
    }
}

} // namespace
