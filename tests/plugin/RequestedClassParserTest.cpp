#include "CapturingLogger.h"
#include "host/TRootObject.h"
#include "provider/TCimHTTPRequestedClassParser.h"
#include "support/TemporaryDirectory.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace NQORVYX20;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;

namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20U;

constexpr const char* kDocument = "<vyx version='1'>\n"
                                  "  <network address='server.example'/>\n"
                                  "  <network user='operator'/>\n"
                                  "  <network pass='&lt;secret&gt;'/>\n"
                                  "  <network ssl='true'/>\n"
                                  "  <class name='CIM_System'/>\n"
                                  "  <class name='CIM_Processor'>text is passed over</class>\n"
                                  "</vyx>";

std::string Error(unsigned line, const std::string& message) {
    return "Performance Data RDD Parser line " + std::to_string(line) + ":" + message;
}

std::string Repeat(const std::string& text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

class RequestedClassParserTest : public testing::Test {
  protected:
    RequestedClassParserTest() { TRootObject::SetCoreLogger(log_); }
    ~RequestedClassParserTest() override { TRootObject::SetCoreLogger(boost::shared_ptr<ILogger>()); }

    bool Parse(const std::string& text) {
        parser_.SetCharData(text);
        return parser_.ParseCharData();
    }

    bool ParseFile(const std::string& text) {
        parser_.SetFileName(directory_.WriteFile("classes.xml", text));
        return parser_.ParseJSSP();
    }

    /// Puts elements into a root that begins on line 1; they begin on line 2.
    bool ParseInRoot(const std::string& elements) { return Parse("<vyx version='1'>\n" + elements + "</vyx>"); }

    /// Parses a document that cannot be read to its end, and expects one error line that says so.
    void ExpectBroken(const std::string& text, const std::string& message) {
        log_->Forget();
        EXPECT_FALSE(Parse(text));
        EXPECT_THAT(log_->Errors(),
                    ElementsAre(AllOf(StartsWith("Performance Data RDD Parser line "), HasSubstr(message))));
    }

    void ExpectDocumentRead() {
        EXPECT_THAT(log_->Errors(), IsEmpty());
        EXPECT_THAT(parser_.GetRequestedNetworkData(),
                    ElementsAre(Pair("address", "server.example"), Pair("pass", "<secret>"), Pair("ssl", "true"),
                                Pair("user", "operator")));
        EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_System", "CIM_Processor"));
    }

    boost::shared_ptr<CapturingLogger> log_ = boost::make_shared<CapturingLogger>();
    support::TemporaryDirectory directory_;
    TCimHTTPRequestedClassParser parser_;
};

} // namespace

// --- Documents that are fine -------------------------------------------------------------------------------------

TEST_F(RequestedClassParserTest, ATextGivesSettingsAndClasses) {
    EXPECT_TRUE(Parse(kDocument));
    ExpectDocumentRead();
}

TEST_F(RequestedClassParserTest, AFileGivesSettingsAndClasses) {
    EXPECT_TRUE(ParseFile(kDocument));
    ExpectDocumentRead();
}

TEST_F(RequestedClassParserTest, ADocumentWithoutElementsGivesNothing) {
    EXPECT_TRUE(Parse("<vyx version='1'/>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), IsEmpty());
    EXPECT_THAT(parser_.GetRequestedClassData(), IsEmpty());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, ElementNamesAreTakenWithoutRegardToCase) {
    EXPECT_TRUE(Parse("<VYX version='1'><NETWORK user='u'/><Class name='CIM_System'/></VYX>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("user", "u")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_System"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, ElementsMayStandInsideEachOther) {
    EXPECT_TRUE(Parse("<class name='CIM_A'><vyx version='1'><network user='u'><class name='CIM_B'/></network></vyx>"
                      "</class>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("user", "u")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A", "CIM_B"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, TheFirstSettingOfANameIsKept) {
    EXPECT_TRUE(ParseInRoot("<network user='first'/><network user='second'/>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("user", "first")));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, AClassThatIsNamedTwiceIsListedTwice) {
    EXPECT_TRUE(ParseInRoot("<class name='CIM_B'/><class name='CIM_A'/><class name='CIM_B'/>"));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_B", "CIM_A", "CIM_B"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, ANetworkElementGivesItsAlphabeticallyFirstSetting) {
    EXPECT_TRUE(ParseInRoot("<network user='u' address='a'/><network port='1' pass='p'/>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("address", "a"), Pair("pass", "p")));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, FurtherAttributesOfAClassAreIgnored) {
    EXPECT_TRUE(ParseInRoot("<class zone='z' name='CIM_A'/>"));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, InstructionsTextAndNotationsMeanNothing) {
    EXPECT_TRUE(Parse("<!DOCTYPE vyx [<!NOTATION class SYSTEM 'name'>]><vyx version='1'>network<?class name='CIM_A'?>"
                      "<class name='CIM_B'>user</class></vyx>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), IsEmpty());
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_B"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
    EXPECT_THAT(log_->Debug(), IsEmpty());
}

TEST_F(RequestedClassParserTest, OtherAttributesOfTheRootArePassedOver) {
    EXPECT_TRUE(Parse("<vyx author='me' version='1' zone='z'/>"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, AnEmptySettingIsStoredAndDoesNotBlockTheNext) {
    EXPECT_TRUE(ParseInRoot("<network pass=''/><network address=''><network user='u'/></network>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("pass", ""), Pair("user", "u")));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(2, "Object Identifier Ended Unexpectedly.")));
}

TEST_F(RequestedClassParserTest, AnEmptyClassNameIsListedAndDoesNotBlockTheNext) {
    EXPECT_TRUE(ParseInRoot("<class name=''><class name='CIM_A'/></class>"));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("", "CIM_A"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, TheResultsOfDocumentsAddUp) {
    EXPECT_TRUE(ParseInRoot("<network user='first'/><class name='CIM_A'/>"));
    EXPECT_TRUE(ParseFile("<vyx version='1'><network user='second'/><network ssl='1'/><class name='CIM_A'/></vyx>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("ssl", "1"), Pair("user", "first")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A", "CIM_A"));
}

TEST_F(RequestedClassParserTest, TheRootForgetsWhatTheDocumentBeforeLeftOpen) {
    EXPECT_FALSE(Parse("<vyx version='1'><network user='cut'><class name='CIM_A'>"));
    log_->Forget();
    EXPECT_TRUE(ParseInRoot("<network ssl='1'/><class name='CIM_B'/>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("ssl", "1")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A", "CIM_B"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(RequestedClassParserTest, ARootInsideANetworkElementForgetsItsSetting) {
    EXPECT_TRUE(ParseInRoot("<network user='u'><vyx version='1'/></network>"));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), IsEmpty());
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(2, "Object Identifier Ended Unexpectedly.")));
}

TEST_F(RequestedClassParserTest, ARootWithoutVersionForgetsNothing) {
    EXPECT_FALSE(Parse("<vyx version='1'><class name='CIM_A'>"));
    log_->Forget();
    EXPECT_TRUE(Parse("<vyx>\n<class name='CIM_B'/></vyx>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(1, "No Version Specified for VYX identifier"),
                                            Error(2, "Expecting End of Counter Before Beginning New Counter."),
                                            Error(2, "No Name Specified for Counter identifier")));
}

TEST_F(RequestedClassParserTest, TheResultsAreCopies) {
    EXPECT_TRUE(Parse(kDocument));
    parser_.GetRequestedNetworkData().clear();
    parser_.GetRequestedClassData().clear();
    ExpectDocumentRead();
}

// --- Documents with a wrong structure ----------------------------------------------------------------------------

TEST_F(RequestedClassParserTest, AnUnknownElementIsReportedAtItsStartAndItsEnd) {
    EXPECT_TRUE(ParseInRoot("<server>\n<class name='CIM_A'/>\n</server>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(2, "Unrecognized identifier"), Error(4, "Unrecognized identifier")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A"));
}

TEST_F(RequestedClassParserTest, ARootWithoutVersionIsReported) {
    EXPECT_TRUE(Parse("\n<vyx Version='1'/>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(2, "No Version Specified for VYX identifier")));
}

TEST_F(RequestedClassParserTest, ANetworkElementWithoutASettingIsReported) {
    EXPECT_TRUE(ParseInRoot("<network/>\n<network port='1'/>\n<network Address='a' user='u'/>"));
    EXPECT_THAT(log_->Errors(),
                ElementsAre(Error(2, "No Name Specified for Object identifier"),
                            Error(2, "Object Identifier Ended Unexpectedly."), Error(3, "Unrecognized Attribute."),
                            Error(3, "No Name Specified for Object identifier"),
                            Error(3, "Object Identifier Ended Unexpectedly."), Error(4, "Unrecognized Attribute.")));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("user", "u")));
}

TEST_F(RequestedClassParserTest, ANetworkElementInsideAnotherIsReported) {
    EXPECT_TRUE(ParseInRoot("<network address='a'>\n<network ssl='1' user='u'/>\n</network>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(3, "Expecting End of Object before Beginning New Object."),
                                            Error(3, "Expecting End of Object before Beginning New Object."),
                                            Error(3, "No Name Specified for Object identifier"),
                                            Error(4, "Object Identifier Ended Unexpectedly.")));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), ElementsAre(Pair("address", "a")));
}

TEST_F(RequestedClassParserTest, AClassElementWithoutANameIsReported) {
    EXPECT_TRUE(ParseInRoot("<class/>\n<CLASS Name='CIM_A'/>\n<class name='CIM_B' label='x'/>"));
    EXPECT_THAT(log_->Errors(),
                ElementsAre(Error(2, "No Name Specified for Counter identifier"), Error(3, "Unrecognized Attribute."),
                            Error(3, "No Name Specified for Counter identifier"), Error(4, "Unrecognized Attribute.")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_B"));
}

TEST_F(RequestedClassParserTest, AClassElementInsideAnotherIsReported) {
    EXPECT_TRUE(ParseInRoot("<class name='CIM_A'>\n<class name='CIM_B' zone='z'/>\n<class name='CIM_C'/></class>"));
    EXPECT_THAT(log_->Errors(),
                ElementsAre(Error(3, "Expecting End of Counter Before Beginning New Counter."),
                            Error(3, "Unrecognized Attribute."), Error(3, "No Name Specified for Counter identifier")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A", "CIM_C"));
}

TEST_F(RequestedClassParserTest, DebugOutputLogsAtTheCallersSeverity) {
    EXPECT_TRUE(Parse(kDocument));
    parser_.DebugOutput(ILogger::eLogDebug, "done");
    parser_.DebugOutput(ILogger::eLogError, "not done");
    EXPECT_THAT(log_->Debug(), ElementsAre(Error(8, "done")));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(8, "not done")));
}

TEST_F(RequestedClassParserTest, ADerivedParserHearsOfEveryError) {
    struct TListener : TCimHTTPRequestedClassParser {
        void FatalError(const char* message) override { heard.emplace_back(message); }
        std::vector<std::string> heard;
    } listener;
    listener.SetCharData("<vyx><network/><class/><server/>");
    EXPECT_FALSE(listener.ParseCharData());
    EXPECT_THAT(listener.heard,
                ElementsAre("No Version Specified for VYX identifier", "No Name Specified for Object identifier",
                            "Object Identifier Ended Unexpectedly.", "No Name Specified for Counter identifier",
                            "Unrecognized identifier", "Unrecognized identifier", "no element found"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

// --- Lines -------------------------------------------------------------------------------------------------------

TEST_F(RequestedClassParserTest, LinesAreCountedWhateverEndsThem) {
    for (const char* end : {"\n", "\r\n", "\r"}) {
        log_->Forget();
        const std::string document = "<?xml version='1.0'?>\n<vyx version='1'>\n\n<class/>\n</vyx>";
        EXPECT_TRUE(Parse(boost::algorithm::replace_all_copy(document, "\n", end)));
        EXPECT_THAT(log_->Errors(), ElementsAre(Error(4, "No Name Specified for Counter identifier")));
    }
}

TEST_F(RequestedClassParserTest, LinesOfCommentsInstructionsAndTextAreCounted) {
    EXPECT_TRUE(ParseInRoot("<!-- a <class/>\n comment -->\n<?instruct\nme?>\n<![CDATA[<class/>\n]]>\n<class/>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(8, "No Name Specified for Counter identifier")));
}

TEST_F(RequestedClassParserTest, AnElementStandsOnTheLineWhereItsTagBegins) {
    EXPECT_TRUE(ParseInRoot("<class label='" + Repeat("a line\n", 1000) + "'\n/>\n<class/>"));
    EXPECT_THAT(log_->Errors(),
                ElementsAre(Error(2, "Unrecognized Attribute."), Error(2, "No Name Specified for Counter identifier"),
                            Error(1004, "No Name Specified for Counter identifier")));
}

TEST_F(RequestedClassParserTest, LinesAreCountedAcrossTheBlocksOfAFile) {
    EXPECT_TRUE(ParseFile("<vyx version='1'>" + Repeat("<class name='CIM_A'/>\r\n", 20000) + "<class/></vyx>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(20001, "No Name Specified for Counter identifier")));
    EXPECT_THAT(parser_.GetRequestedClassData(), SizeIs(20000));
}

// --- Documents that cannot be read -------------------------------------------------------------------------------

TEST_F(RequestedClassParserTest, AnEmptyTextIsReportedAndGivesNothing) {
    EXPECT_FALSE(Parse(""));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(1, "no element found")));
    EXPECT_THAT(parser_.GetRequestedNetworkData(), IsEmpty());
    EXPECT_THAT(parser_.GetRequestedClassData(), IsEmpty());
}

TEST_F(RequestedClassParserTest, AMissingFileIsReportedByName) {
    parser_.SetFileName("/no/such/classes.xml");
    EXPECT_FALSE(parser_.ParseJSSP());
    EXPECT_THAT(log_->Errors(), ElementsAre(HasSubstr("/no/such/classes.xml")));
}

TEST_F(RequestedClassParserTest, WhatWasReadBeforeTheDocumentBrokeIsKept) {
    EXPECT_FALSE(Parse("<vyx version='1'>\n<class name='CIM_A'/>\n<class name='CIM_B'></vyx>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(3, "mismatched tag")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A", "CIM_B"));
}

TEST_F(RequestedClassParserTest, ADocumentCutAtAnyByteIsReported) {
    const std::string document = kDocument;
    for (std::size_t size = 0; size < document.size(); ++size) {
        log_->Forget();
        EXPECT_FALSE(Parse(document.substr(0, size))) << size;
        EXPECT_THAT(log_->Errors(), SizeIs(1)) << size;
    }
}

TEST_F(RequestedClassParserTest, TextThatIsNotUtf8IsReported) {
    ExpectBroken("<vyx version='1'><class name='\xC3\x28'/></vyx>", "not well-formed");
    ExpectBroken("<vyx version='1'>\xFF</vyx>", "not well-formed");
    ExpectBroken("<vyx version='1'><class name='\xED\xA0\x80'/></vyx>", "not well-formed"); // a surrogate
    ExpectBroken("<vyx version='1'><class name='\xC0\xAE'/></vyx>", "not well-formed");     // longer than needed
    ExpectBroken(std::string("<vyx version='1'>\0</vyx>", 24), "not well-formed");
    EXPECT_THAT(parser_.GetRequestedClassData(), IsEmpty());
}

TEST_F(RequestedClassParserTest, EntitiesThatGrowWithoutBoundAreReported) {
    std::string entities = "<!ENTITY e0 'laugh'>";
    for (int i = 1; i <= 9; ++i) {
        entities += "<!ENTITY e" + std::to_string(i) + " '" + Repeat("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    }
    ExpectBroken("<!DOCTYPE vyx [" + entities + "]><vyx version='1'><class name='&e9;'/></vyx>", "amplification");
    ExpectBroken("<!DOCTYPE vyx [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><vyx version='&a;'/>", "recursive");
    EXPECT_THAT(parser_.GetRequestedClassData(), IsEmpty());
}

TEST_F(RequestedClassParserTest, ADocumentTypeBringsInNoOtherFile) {
    const std::string secret = directory_.WriteFile("secret", "CIM_Secret");
    ExpectBroken("<!DOCTYPE vyx [<!ENTITY e SYSTEM 'file://" + secret +
                     "'>]><vyx version='1'><class name='&e;'/></vyx>",
                 "external entity");
    log_->Forget();
    EXPECT_TRUE(Parse("<!DOCTYPE vyx SYSTEM 'file://" + secret + "'><vyx version='1'/>"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
    EXPECT_THAT(parser_.GetRequestedClassData(), IsEmpty());
}

TEST_F(RequestedClassParserTest, ElementsNestedTooDeepEndTheParse) {
    EXPECT_FALSE(Parse(Repeat("<vyx version='1'>", 100000)));
    EXPECT_THAT(log_->Errors(), ElementsAre(Error(1, "elements are nested deeper than 256")));
}

TEST_F(RequestedClassParserTest, AnOversizedTextIsRefused) {
    std::string text = "<vyx version='1'><class name='";
    text.resize(100 * kMebibyte, 'x');
    ExpectBroken(text + "'/></vyx>", "larger than 16 MiB");
}

TEST_F(RequestedClassParserTest, AnOversizedFileIsReadNoFurtherThanTheLimit) {
    std::string text = "<vyx version='1'>\n<class name='CIM_A'/><class name='";
    text.resize(20 * kMebibyte, 'x');
    EXPECT_FALSE(ParseFile(text + "'/></vyx>"));
    EXPECT_THAT(log_->Errors(), ElementsAre(EndsWith(":the document is larger than 16 MiB")));
    EXPECT_THAT(parser_.GetRequestedClassData(), ElementsAre("CIM_A"));
}
