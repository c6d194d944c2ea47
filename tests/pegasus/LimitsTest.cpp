// Every limit of the decoder: what reaches it is read, what goes beyond it by one is refused with an error that says
// so.

#include "cimxml/Limits.h"

#include "AnswerBody.h"
#include "xml/Checkpoint.h"
#include "xml/XmlLimits.h"

#include <Pegasus/Client/FailureMarks.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

using namespace Pegasus;
using testing::HasSubstr;
using testing::SizeIs;

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
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
        for (; count >= perPiece; count -= perPiece) {
            decoder.feed(piece);
        }
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
                                         "<CLASS NAME=\"A\"><!--"));

/// Decodes a body that holds these objects, within the limits. Returns the error's message.
std::string errorWithin(const ClientLimits& limits, std::string_view objects) {
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer, nullptr, limits);
    try {
        const std::string body = bodyWith(objects);
        for (std::string_view rest = body; !rest.empty();
             rest.remove_prefix(std::min<std::size_t>(rest.size(), 1000))) {
            decoder.feed(rest.substr(0, 1000));
        }
        decoder.finish();
        return "";
    } catch (const CIMClientXmlException& error) {
        EXPECT_NE(dynamic_cast<const ExceedsLimit*>(&error), nullptr);
        return std::string(error.getMessage().view());
    }
}

TEST(LimitsTest, AnAnswerHasAsManyBytesAsTheCallerAllows) {
    const std::string names = repeated("<CLASSNAME NAME=\"A\"/>", 1000);
    ClientLimits limits;
    limits.answerBytes = bodyWith(names).size();
    EXPECT_EQ(errorWithin(limits, names), "");
    --limits.answerBytes;
    EXPECT_THAT(errorWithin(limits, names), HasSubstr("it has more than " + std::to_string(limits.answerBytes)));
}

TEST(LimitsTest, AnAnswerHasAsManyObjectsAsTheCallerAllows) {
    ClientLimits limits;
    limits.answerObjects = 100;
    EXPECT_EQ(errorWithin(limits, repeated("<CLASSNAME NAME=\"A\"/> ", 100)), "");
    EXPECT_THAT(errorWithin(limits, repeated("<CLASSNAME NAME=\"A\"/> ", 101)), HasSubstr("more than 100 objects"));
}

TEST(LimitsTest, WhatBelongsToNoObjectEndsAtALimitFromOneObjectToTheNext) {
    const std::string name = "<CLASSNAME NAME=\"A\"/>";
    const std::string comment = "<!-- " + std::string(900, 'x') + " -->";
    ClientLimits limits;
    limits.frameBytes = 2000;
    EXPECT_EQ(errorWithin(limits, repeated(comment + name, 10)), "");
    const auto isRefused = HasSubstr("more than 2000 bytes in a row belong to no object");
    EXPECT_THAT(errorWithin(limits, name + repeated(comment, 3) + name), isRefused);
    EXPECT_THAT(errorWithin(limits, name + repeated(" \n", 1001) + name), isRefused);
    EXPECT_THAT(errorWithin(limits, "<!--" + std::string(2001, 'x') + "-->"), isRefused);
    EXPECT_THAT(errorWithin(limits, name + "</IRETURNVALUE>" + repeated("<PARAMVALUE NAME=\"EndOfSequence\"/>", 60)),
                isRefused);
}

TEST(LimitsTest, ACommentWithoutEndIsNotKeptBeyondTheLimitOfWhatBelongsToNoObject) {
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer);
    decoder.feed(std::string(kBodyBegin) + "<!--");
    std::size_t fed = 0;
    try {
        for (const std::string piece(65536, 'x'); fed < cimxml::kMaxObjectBytes; fed += piece.size()) {
            decoder.feed(piece);
        }
    } catch (const CIMClientXmlException&) {
    }
    EXPECT_LE(fed, 2 * ClientLimits::kFrameBytes);
}

/// Passed so often, and no more.
class CountingCheckpoint : public cimxml::Checkpoint {
  public:
    struct TimeIsOver {};

    explicit CountingCheckpoint(std::size_t last) : last_(last) {}
    void pass() const override {
        if (++passed_ == last_) {
            throw TimeIsOver();
        }
    }
    std::size_t passed() const { return passed_; }

  private:
    const std::size_t last_;
    mutable std::size_t passed_ = 0;
};

/// So many properties, each with a name of its own.
std::string properties(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "<PROPERTY NAME=\"P" + std::to_string(i) + "\" TYPE=\"uint8\"/>";
    }
    return text;
}

TEST(LimitsTest, DecodingPassesACheckpointAtLeastEvery64KiBOfElements) {
    const std::string body = bodyWith("<CLASS NAME=\"A\">" + properties(20000) + "</CLASS>");
    for (const std::size_t last : {std::size_t{0}, std::size_t{3}}) {
        const CountingCheckpoint checkpoint(last);
        DecodedAnswer answer;
        cimxml::ResponseDecoder decoder("1001", "GetClass", answer, nullptr, {}, &checkpoint);
        if (last == 0) {
            decoder.feed(body);
            decoder.finish();
            EXPECT_GE(checkpoint.passed(), body.size() / xml::kBytesBetweenCheckpoints - 1);
        } else {
            EXPECT_THROW(decoder.feed(body), CountingCheckpoint::TimeIsOver);
        }
    }
}

TEST(LimitsTest, DecodingAnEmbeddedObjectPassesTheCheckpoint) {
    const CountingCheckpoint checkpoint(0);
    DecodedAnswer answer;
    cimxml::ResponseDecoder decoder("1001", "GetClass", answer, nullptr, {}, &checkpoint);
    decoder.feed(bodyWith("<INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"E\" TYPE=\"string\" EmbeddedObject=\"instance\">"
                          "<VALUE><![CDATA[<INSTANCE CLASSNAME=\"B\">" +
                          properties(20000) + "</INSTANCE>]]></VALUE></PROPERTY></INSTANCE>"));
    decoder.finish();
    EXPECT_GE(checkpoint.passed(), 10U);
}

// With a search of the rest of the object at each tag, these would take hours.
TEST(LimitsTest, ALongObjectOfQualifiersIsReadInOneGo) {
    const std::size_t count = xml::kMaxNodes / 8;
    EXPECT_EQ(errorInLargeObject("<CLASS NAME=\"A\">", "<QUALIFIER NAME=\"Q\" TYPE=\"string\"/>", count, "</CLASS>"),
              "");
    EXPECT_EQ(errorInLargeObject("<CLASS NAME=\"A\">", "<QUALIFIER NAME=\"Q\" TYPE=\"string\"></QUALIFIER >", count,
                                 "</CLASS>"),
              "");
}

TEST(LimitsTest, ElementsAreNested256Deep) {
    // What a qualifier of an instance holds is not looked at.
    const auto nested = [](std::size_t depth) {
        const std::size_t levels = depth - 2;
        return "<INSTANCE CLASSNAME=\"A\"><QUALIFIER>" + repeated("<X>", levels) + repeated("</X>", levels) +
               "</QUALIFIER></INSTANCE>";
    };
    EXPECT_EQ(errorInBodyWith(nested(xml::kMaxNesting)), "");
    EXPECT_THAT(errorInBodyWith(nested(xml::kMaxNesting + 1)), HasSubstr("elements are nested deeper than 256"));
}

/// An instance with a reference property whose path has a reference as its key, and so on.
std::string nestedReferences(std::size_t levels, const std::string& innermost) {
    return "<INSTANCE CLASSNAME=\"A\"><PROPERTY.REFERENCE NAME=\"R\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"A\">" +
           repeated("<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"A\">", levels) + innermost +
           repeated("</INSTANCENAME></VALUE.REFERENCE>", levels) +
           "</INSTANCENAME></VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>";
}

TEST(LimitsTest, ReferencesWithinKeysAreNested16DeepUnlessTheirTextIsTooLong) {
    EXPECT_EQ(errorInBodyWith(nestedReferences(10, "")), "");
    EXPECT_THAT(errorInBodyWith(nestedReferences(cimxml::kMaxReferenceNesting, "")),
                HasSubstr("the path of a reference is too long for its element"));
    EXPECT_THAT(errorInBodyWith(nestedReferences(cimxml::kMaxReferenceNesting + 1, "")),
                HasSubstr("references are nested deeper than 16"));
}

TEST(LimitsTest, AReferenceHas16MiBOfText) {
    const auto withKey = [](std::size_t size) {
        return nestedReferences(1, "<KEYVALUE>" + std::string(size, '\\') + "</KEYVALUE>");
    };
    EXPECT_EQ(errorInBodyWith(withKey(cimxml::kMaxReferenceBytes / 2 - 100)), "");
    EXPECT_THAT(errorInBodyWith(withKey(cimxml::kMaxReferenceBytes / 2)), HasSubstr("longer than 16 MiB"));
}

TEST(LimitsTest, AnObjectHasTwoMillionNodes) {
    // CLASS and its attribute are two of them.
    const std::size_t room = xml::kMaxNodes - 2;
    EXPECT_EQ(errorInLargeObject("<CLASS NAME=\"A\">", "<!---->", room, "</CLASS>"), "");
    EXPECT_THAT(errorInLargeObject("<CLASS NAME=\"A\">", "<!---->", room + 1, "</CLASS>"),
                HasSubstr("one object has more than 2097152 elements, attributes, comments and CDATA sections"));
}

TEST(LimitsTest, ElementsAndAttributesCountToTheSameLimit) {
    const std::string_view property = "<PROPERTY NAME=\"P\" TYPE=\"uint8\"/>"; // three nodes
    EXPECT_THAT(errorInLargeObject("<CLASS NAME=\"A\"><METHOD NAME=\"M\">", property, xml::kMaxNodes / 3 + 1, ""),
                testing::AnyOf(HasSubstr("more than 2097152"), HasSubstr("does not belong into METHOD")));
    const std::string_view value = "<VALUE/>";
    EXPECT_THAT(errorInLargeObject("<CLASS NAME=\"A\"><PROPERTY.ARRAY NAME=\"P\" TYPE=\"string\"><VALUE.ARRAY>", value,
                                   xml::kMaxNodes, ""),
                HasSubstr("more than 2097152"));
}

TEST(LimitsTest, AnElementHas32Attributes) {
    const auto withAttributes = [](std::size_t count) {
        std::string tag = "<CLASS NAME=\"A\"";
        for (std::size_t i = 1; i < count; ++i) {
            tag += " X" + std::to_string(i) + "=\"\"";
        }
        return tag + "/>";
    };
    EXPECT_THAT(decodeBodyWith(withAttributes(xml::kMaxAttributes)).classes, SizeIs(1));
    EXPECT_THAT(errorInBodyWith(withAttributes(xml::kMaxAttributes + 1)),
                HasSubstr("the element CLASS has too many attributes"));
}

TEST(LimitsTest, NamesBeyondThoseThatAreSharedAreReadAll) {
    std::string names;
    const std::size_t count = 2 * cimxml::kMaxCachedNames + 1;
    for (std::size_t i = 0; i < count; ++i) {
        names += "<CLASSNAME NAME=\"N" + std::to_string(i) + "\"/>";
    }
    const auto answer = decodeBodyWith(names + names);
    ASSERT_THAT(answer.classNames, SizeIs(2 * count));
    for (std::size_t i = 0; i < count; ++i) {
        const CIMName expected(String("N" + std::to_string(i)));
        ASSERT_EQ(answer.classNames[i], expected);
        ASSERT_EQ(answer.classNames[count + i], expected);
    }
}

} // namespace
