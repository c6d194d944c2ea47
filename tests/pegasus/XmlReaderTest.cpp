#include "xml/XmlReader.h"

#include "xml/DecodingError.h"
#include "xml/XmlLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace Pegasus::xml;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

using Kind = DecodingError::Kind;

/// All that a text holds, on one line: elements with their attributes, and the texts within them in quotes.
std::string contentOf(XmlReader& reader) {
    std::string content;
    while (reader.nextElement()) {
        content.append(content.empty() ? "" : " ").append(reader.name());
        for (const auto& [name, value] : reader.attributes()) {
            content.append(" ").append(name).append("=").append(value);
        }
        const bool isText = reader.name() == "T";
        content += isText ? " '" + std::string(reader.text()) + "'" : "(" + contentOf(reader) + ")";
    }
    return content;
}

std::string contentOf(std::string_view children) {
    TagCache tags;
    const std::string text = "<A>" + std::string(children) + "</A>";
    XmlReader reader(tags, nullptr, text);
    reader.nextElement();
    return contentOf(reader);
}

/// Reads a text, or a part of it, which is to end in an error.
DecodingError errorOf(std::string_view text, const std::function<void(XmlReader&)>& read) {
    TagCache tags;
    XmlReader reader(tags, nullptr, text);
    try {
        read(reader);
    } catch (const DecodingError& error) {
        return error;
    }
    ADD_FAILURE() << "no error in " << text;
    return {Kind::Content, "", std::nullopt};
}

DecodingError errorOf(std::string_view text) {
    return errorOf(text, [](XmlReader& reader) { contentOf(reader); });
}

TEST(XmlReader, EntersAndLeavesElementsInTheirOrder) {
    EXPECT_EQ(contentOf("<B><C/><C></C></B>\r\n <B x='1' y = \"2\" />"), "B(C() C()) B x=1 y=2()");
}

TEST(XmlReader, ResolvesReferencesInTextsAndAttributes) {
    EXPECT_EQ(contentOf("<T x='&lt;&#65;&quot;'>&amp;&#x20AC;&apos;&gt;</T>"), "T x=<A\" '&\xE2\x82\xAC'>'");
}

TEST(XmlReader, TakesCDataAsTextAndLeavesCommentsOut) {
    EXPECT_EQ(contentOf("<T>a<![CDATA[<b>&amp;]]><!-- c --><?d?>e</T><!-- between -->"), "T 'a<b>&amp;e'");
}

TEST(XmlReader, MakesEveryLineEndALineFeedAndABlankWithinAnAttribute) {
    EXPECT_EQ(contentOf("<T x='a\r\nb\tc\nd'>1\r\n2\r3\n4<![CDATA[\r\n5]]></T>"), "T x=a b c d '1\n2\n3\n4\n5'");
}

TEST(XmlReader, SkipsAnElementWithAllThatItHolds) {
    TagCache tags;
    XmlReader reader(tags, nullptr, "<A><B>text<C/></B><D/></A>");
    reader.nextElement();
    reader.nextElement();
    EXPECT_EQ(reader.name(), "B");
    reader.skip();
    reader.nextElement();
    EXPECT_EQ(reader.name(), "D");
    EXPECT_EQ(reader.depth(), 2U);
}

TEST(XmlReader, SaysWhatComesNextWithoutTakingIt) {
    TagCache tags;
    XmlReader reader(tags, nullptr, " <!-- c --> <A>x</A> ");
    EXPECT_EQ(reader.ahead(), XmlReader::Ahead::Element);
    reader.nextElement();
    EXPECT_EQ(reader.ahead(), XmlReader::Ahead::Text);
    EXPECT_EQ(reader.text(), "x");
    EXPECT_EQ(reader.ahead(), XmlReader::Ahead::Nothing);
    reader.start("</A>", "A");
    EXPECT_EQ(reader.ahead(), XmlReader::Ahead::EndTag);
}

TEST(XmlReader, ThrowsEndOfTextWhereverATextIsCut) {
    const std::string text = "<A x='&lt;1'><!-- c --><T>&amp;a<![CDATA[b]]></T></A>";
    for (std::size_t length = 0; length < text.size(); ++length) {
        TagCache tags;
        XmlReader reader(tags, nullptr, std::string_view(text).substr(0, length));
        EXPECT_THROW(
            {
                reader.nextElement();
                contentOf(reader);
            },
            EndOfText)
            << text.substr(0, length);
    }
}

TEST(XmlReader, RefusesWhatIsNotWellFormed) {
    for (const char* text : {"<A></B>", "<A x=1/>", "<A x='1' x='2'/>", "<A x='<'/>", "<A x='1'y='2'/>", "<1/>",
                             "<A>&unknown;</A>", "<A>&#xZ;</A>", "<A>& more than ten</A>", "<A/ >", "</A>",
                             "<!DOCTYPE A [<!ENTITY e 'x'>]><A/>", "<A><!DOCTYPE B></A>"}) {
        EXPECT_EQ(errorOf(text,
                          [](XmlReader& reader) {
                              reader.ahead();
                              reader.nextElement();
                              reader.text();
                          })
                      .kind,
                  Kind::Malformed)
            << text;
    }
}

TEST(XmlReader, ReportsTextBetweenElementsAsIncomplete) {
    EXPECT_EQ(errorOf("<A>text<B/></A>").kind, Kind::Incomplete);
}

TEST(XmlReader, ReportsAReferenceToNoCharacterAsBadContentAndGoesOnAfterIt) {
    const std::string text = "<A><B>&#0;and&#xFFFE;</B><C/></A>";
    TagCache tags;
    XmlReader reader(tags, nullptr, text);
    reader.nextElement();
    reader.nextElement();
    try {
        reader.text();
        FAIL() << "no error";
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind, Kind::Content);
        EXPECT_THAT(error.what, HasSubstr("U+0000"));
    }
    reader.skipBadTextTo(1);
    reader.nextElement();
    EXPECT_EQ(reader.name(), "C");
}

TEST(XmlReader, NamesAnElementThatMayNotStandThereAndItsParent) {
    const auto error = errorOf("<A><B/></A>", [](XmlReader& reader) {
        reader.nextElement();
        reader.nextElement();
        reader.throwUnexpected();
    });
    EXPECT_EQ(error.kind, Kind::Content);
    EXPECT_EQ(error.what, "the element B does not belong into A");
}

TEST(XmlReader, ReportsALimitThatIsPassed) {
    std::string nested;
    std::string attributes;
    for (std::size_t i = 0; i <= kMaxNesting; ++i) {
        nested += "<A>";
    }
    for (std::size_t i = 0; i <= kMaxAttributes; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    EXPECT_EQ(errorOf(nested).kind, Kind::Limit);
    EXPECT_EQ(errorOf("<A" + attributes + "/>").kind, Kind::Limit);
}

TEST(XmlReader, GivesTheSameForTagsThatAreCachedAsForThoseThatAreNot) {
    const std::string text = "<A><B x='1'/><B x='2'/><T>t</T><B x='1'/></A>";
    TagCache tags;
    std::vector<std::string> contents;
    for (int i = 0; i < 3; ++i) {
        XmlReader reader(tags, nullptr, text);
        reader.nextElement();
        contents.push_back(contentOf(reader));
    }
    EXPECT_THAT(contents, ElementsAre("B x=1() B x=2() T 't' B x=1()", contents[0], contents[0]));
}

TEST(XmlReader, GivesTagsOfEqualTextOneNumberAndOthersOthers) {
    TagCache tags;
    XmlReader reader(tags, nullptr, "<A><B x='1'/><B x='1' /><B x='1'/><B x='&lt;'/></A>");
    reader.nextElement();
    std::vector<std::size_t> numbers;
    while (reader.nextElement()) {
        numbers.push_back(reader.tag().number);
        reader.skip();
    }
    EXPECT_THAT(numbers, ElementsAre(2, 3, 2, 0)) << "a tag with references is not cached";
}

TEST(XmlReader, CountsASkippedElementWithTheNodesThatItIsKnownToHave) {
    const std::string text = "<A><B><C x='1'/></B></A>";
    TagCache tags;
    XmlReader whole(tags, nullptr, text);
    whole.nextElement();
    whole.nextElement();
    const std::string_view element = whole.elementUpTo("</B>", 100);
    EXPECT_EQ(element, "<B><C x='1'/></B>");
    const std::size_t before = whole.nodes();
    whole.skip();
    EXPECT_TRUE(whole.isBehind(element));

    XmlReader skipping(tags, nullptr, text);
    skipping.nextElement();
    skipping.nextElement();
    skipping.skipKnown(skipping.elementUpTo("</B>", 100), whole.nodes() - before);
    EXPECT_EQ(skipping.nodes(), whole.nodes());
    EXPECT_EQ(skipping.position(), whole.position());
    EXPECT_FALSE(skipping.nextElement()) << "the end of A";
}

TEST(XmlReader, FindsNoElementThatIsEmptyCutOrTooLong) {
    TagCache tags;
    XmlReader reader(tags, nullptr, "<A/>");
    reader.nextElement();
    EXPECT_EQ(reader.elementUpTo("</A>", 100), "");
    reader.start("<A>x</");
    reader.nextElement();
    EXPECT_EQ(reader.elementUpTo("</A>", 100), "");
    reader.start("<A>x</A>");
    reader.nextElement();
    EXPECT_EQ(reader.elementUpTo("</A>", 7), "");
    EXPECT_EQ(reader.elementUpTo("</A>", 8), "<A>x</A>");
}

class CountingCheckpoint : public Checkpoint {
  public:
    void pass() const override { ++passed_; }
    int passed() const { return passed_; }

  private:
    mutable int passed_ = 0;
};

TEST(XmlReader, PassesTheCheckpointOnceForSoManyBytes) {
    std::string text = "<A>";
    while (text.size() < 10 * kBytesBetweenCheckpoints) {
        text += "<T>text</T>";
    }
    text += "</A>";
    TagCache tags;
    const CountingCheckpoint checkpoint;
    XmlReader reader(tags, &checkpoint, text);
    reader.nextElement();
    reader.skip();
    EXPECT_GE(checkpoint.passed(), 9);
    EXPECT_LE(checkpoint.passed(), 10);
}

TEST(XmlReader, KnowsWhereTheTagBeginsThatItReadLast) {
    const std::string text = "<A> <B/>rest";
    TagCache tags;
    XmlReader reader(tags, nullptr, text);
    reader.nextElement();
    reader.nextElement();
    EXPECT_EQ(reader.tagPosition(), 4U);
    EXPECT_EQ(reader.textFrom(reader.tagPosition()), "<B/>rest");
}

} // namespace
