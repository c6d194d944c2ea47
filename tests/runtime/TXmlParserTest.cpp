#include "host/TXmlParser.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace NQORVYX20 {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Keeps the events, each as `line:text`.
class TRecordingParser : public TXmlParser {
  public:
    void StartElement(const char* name, std::map<std::string, std::string>& attributes) override {
        if (name == throwAt) {
            throw std::runtime_error("no more");
        }
        std::string event = std::string("<") + name;
        for (const auto& [attribute, value] : attributes) {
            event.append(" ").append(attribute).append("=").append(value);
        }
        Record(event + ">");
    }
    void EndElement(const char* name) override { Record(std::string("</") + name + ">"); }
    void processingInstruction(const char* target, const char* data) override {
        Record(std::string("?") + target + "|" + data);
    }
    void characters(const char* piece, unsigned int length) override { text.append(piece, length); }
    void notationDecl(const char* name, const char* publicId, const char* systemId) override {
        Record(std::string("!") + name + "|" + publicId + "|" + systemId);
    }
    void FatalError(const char* message) override { errors.push_back(std::to_string(GetCurLine()) + ":" + message); }

    bool Parse(const std::string& document) {
        SetCharData(document);
        return ParseCharData();
    }

    std::string throwAt = "never";
    std::vector<std::string> events;
    std::vector<std::string> errors;
    std::string text;

  private:
    void Record(const std::string& event) { events.push_back(std::to_string(GetCurLine()) + ":" + event); }
};

std::string Nested(int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) {
        text += "<a>";
    }
    for (int i = 0; i < depth; ++i) {
        text += "</a>";
    }
    return text;
}

class TXmlParserTest : public testing::Test {
  protected:
    std::string WriteFile(const std::string& text) const { return directory_.WriteFile("document.xml", text); }

    support::TemporaryDirectory directory_;
    TRecordingParser parser_;
};

TEST_F(TXmlParserTest, ReportsElementsWithTheirAttributesAndLines) {
    EXPECT_TRUE(parser_.Parse("<a z='1'\n y='&lt;2'>\n<B/>\n</a>"));
    EXPECT_THAT(parser_.events, ElementsAre("1:<a y=<2 z=1>", "3:<B>", "3:</B>", "4:</a>"));
    EXPECT_THAT(parser_.errors, IsEmpty());
}

TEST_F(TXmlParserTest, ReportsCharactersInstructionsAndNotations) {
    EXPECT_TRUE(parser_.Parse("<!DOCTYPE a [<!NOTATION n PUBLIC 'p' 's'><!NOTATION m SYSTEM 't'>]>"
                              "<a>one<?target data?><![CDATA[<two>]]>&#x20AC;</a><?last?>"));
    EXPECT_THAT(parser_.events, ElementsAre("1:!n|p|s", "1:!m||t", "1:<a>", "1:?target|data", "1:</a>", "1:?last|"));
    EXPECT_EQ(parser_.text, "one<two>\xE2\x82\xAC");
}

TEST_F(TXmlParserTest, KnowsTheLineOnlyOnceItHasParsed) {
    EXPECT_EQ(parser_.GetCurLine(), 0U);
    EXPECT_TRUE(parser_.Parse("<a>\n\n</a>"));
    EXPECT_EQ(parser_.GetCurLine(), 3U);
}

TEST_F(TXmlParserTest, ReportsADocumentThatIsNotWellFormedOnce) {
    EXPECT_FALSE(parser_.Parse("<a>\n<b></c>\n</a><a/><"));
    EXPECT_THAT(parser_.errors, ElementsAre("2:mismatched tag"));
    EXPECT_THAT(parser_.events, ElementsAre("1:<a>", "2:<b>"));
}

TEST_F(TXmlParserTest, ReportsAnEmptyDocument) {
    EXPECT_FALSE(parser_.Parse(""));
    EXPECT_FALSE(parser_.Parse(" \n"));
    EXPECT_THAT(parser_.errors, ElementsAre("1:no element found", "2:no element found"));
}

TEST_F(TXmlParserTest, ReportsACutDocument) {
    EXPECT_FALSE(parser_.Parse("<a><b"));
    EXPECT_THAT(parser_.errors, ElementsAre("1:unclosed token"));
}

TEST_F(TXmlParserTest, ParsesOneDocumentAfterTheOther) {
    EXPECT_FALSE(parser_.Parse("<a>"));
    EXPECT_TRUE(parser_.Parse("<b/>"));
    EXPECT_TRUE(parser_.ParseCharData());
    EXPECT_THAT(parser_.events, ElementsAre("1:<a>", "1:<b>", "1:</b>", "1:<b>", "1:</b>"));
    EXPECT_EQ(parser_.errors.size(), 1U);
}

TEST_F(TXmlParserTest, LetsTheExceptionOfACallbackOut) {
    parser_.throwAt = "b";
    EXPECT_THROW(parser_.Parse("<a>\n<b/><c/></a>"), std::runtime_error);
    EXPECT_THAT(parser_.events, ElementsAre("1:<a>"));
    EXPECT_THAT(parser_.errors, IsEmpty());
    EXPECT_EQ(parser_.GetCurLine(), 2U);
    EXPECT_TRUE(parser_.Parse("<a/>"));
}

TEST_F(TXmlParserTest, ReadsAFileInBlocks) {
    std::string text = "<a>\n";
    while (text.size() < 200000) {
        text += "<b c='some text'/>\n";
    }
    parser_.SetFileName(WriteFile(text + "</a>"));
    EXPECT_TRUE(parser_.ParseJSSP());
    EXPECT_EQ(parser_.events.size(), 2 + 2 * ((text.size() - 4) / 19));
    EXPECT_EQ(parser_.events.back(), std::to_string(parser_.GetCurLine()) + ":</a>");
}

TEST_F(TXmlParserTest, ReadsAFileWhoseSizeIsThatOfABlock) {
    std::string text(std::size_t{64} << 10U, ' ');
    text.replace(0, 4, "<a/>");
    parser_.SetFileName(WriteFile(text));
    EXPECT_TRUE(parser_.ParseJSSP());
}

TEST_F(TXmlParserTest, ReportsAnEmptyFile) {
    parser_.SetFileName(WriteFile(""));
    EXPECT_FALSE(parser_.ParseJSSP());
    EXPECT_THAT(parser_.errors, ElementsAre("1:no element found"));
}

TEST_F(TXmlParserTest, NamesAFileThatIsMissing) {
    parser_.SetFileName("/no/such/file.xml");
    EXPECT_FALSE(parser_.ParseJSSP());
    EXPECT_THAT(parser_.errors, ElementsAre(HasSubstr("cannot open the file /no/such/file.xml: No such file")));
}

TEST_F(TXmlParserTest, NamesAFileThatCannotBeRead) {
    parser_.SetFileName(directory_.Path());
    EXPECT_FALSE(parser_.ParseJSSP());
    EXPECT_THAT(parser_.errors,
                ElementsAre(HasSubstr("cannot read the file " + directory_.Path().string() + ": Is a directory")));
}

TEST_F(TXmlParserTest, StopsAtAFileWithoutEnd) {
    parser_.SetFileName("/dev/zero");
    EXPECT_FALSE(parser_.ParseJSSP());
    EXPECT_EQ(parser_.errors.size(), 1U);
}

TEST_F(TXmlParserTest, LimitsTheSizeOfADocument) {
    std::string text = "<a/>";
    text.resize(std::size_t{16} << 20U, '\n');
    EXPECT_TRUE(parser_.Parse(text));
    EXPECT_FALSE(parser_.Parse(text + '\n'));
    EXPECT_THAT(parser_.errors, ElementsAre("1:the document is larger than 16 MiB"));
}

TEST_F(TXmlParserTest, LimitsTheDepthOfADocument) {
    EXPECT_TRUE(parser_.Parse(Nested(256)));
    EXPECT_FALSE(parser_.Parse(Nested(257)));
    EXPECT_THAT(parser_.errors, ElementsAre("1:elements are nested deeper than 256"));
}

TEST_F(TXmlParserTest, LimitsTheExpansionOfEntities) {
    std::string text = "<!DOCTYPE a [<!ENTITY e0 'laugh'>";
    for (int i = 1; i <= 9; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        text += "<!ENTITY e" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j) {
            text += inner;
        }
        text += "'>";
    }
    EXPECT_FALSE(parser_.Parse(text + "]><a>&e9;</a>"));
    EXPECT_EQ(parser_.errors.size(), 1U);
    EXPECT_THAT(parser_.errors, Contains(HasSubstr("amplification")));
}

TEST_F(TXmlParserTest, ReadsNoExternalEntity) {
    const std::string secret = WriteFile("secret");
    EXPECT_TRUE(parser_.Parse("<!DOCTYPE a [<!ENTITY e SYSTEM 'file://" + secret + "'>]><a>&e;</a>"));
    EXPECT_EQ(parser_.text, "");
}

} // namespace
} // namespace NQORVYX20
