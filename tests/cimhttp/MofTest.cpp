#include "MofWriter.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "Plugin.h"
#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"
#include "support/CimServer.h"

using namespace NQORVYX20;

namespace {

/// A class that a server describes, read through the plug-in loaded at run time.
class MofTest : public testing::Test {
  protected:
    MofTest() {
        fServer.Listen(5988);
        for (const char* name : {"Description", "Values", "Count", "When", "Letter", "Flag"}) {
            fServer.Answer("GetQualifier", name,
                           std::string("<QUALIFIER.DECLARATION NAME=\"") + name +
                               "\" TYPE=\"string\"><SCOPE CLASS=\"true\"/></QUALIFIER.DECLARATION>");
        }
        fNamespace = fPlugin.AllocateNamespace();
        fPlugin.Access().Connect(*fNamespace, fServer.Address(), "", "", 5988);
    }

    std::string Mof(const std::string& content) {
        fServer.Answer("GetClass", "T", "<CLASS NAME=\"T\">" + content + "</CLASS>");
        return cimhttp::ClassMof(*fNamespace->GetClass("T", TCIMContext()));
    }

    support::CimServer fServer;
    cimhttp::Plugin fPlugin{CIMHTTP_PLUGIN};
    boost::shared_ptr<ICIMNamespace> fNamespace;
};

const std::string kStamp = "PLUGINNAME(\"cimhttp\"),\n PLUGINVERSION(\"1.0\")";

} // namespace

TEST_F(MofTest, AnEmptyClass) { EXPECT_EQ(Mof(""), "[" + kStamp + "]\nclass T\n{\n};\n"); }

TEST_F(MofTest, QualifierValuesOfEveryForm) {
    const auto qualifier = [](const std::string& name, const std::string& type, const std::string& value) {
        return "<QUALIFIER NAME=\"" + name + "\" TYPE=\"" + type + "\">" + value + "</QUALIFIER>";
    };
    EXPECT_EQ(Mof(qualifier("Flag", "boolean", "<VALUE>FALSE</VALUE>") +
                  qualifier("Count", "uint8", "<VALUE>3</VALUE>") + qualifier("Letter", "char16", "<VALUE>'</VALUE>") +
                  qualifier("When", "datetime", "<VALUE>00000001000000.000000:000</VALUE>") +
                  qualifier("Values", "string", "<VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>") +
                  qualifier("Description", "string", "<VALUE>say \"hi\" \\ &#10; &#9; end</VALUE>")),
              "[Count(3),\n"
              " Description(\"say \\\"hi\\\" \\\\ \\n \\t end\"),\n"
              " Flag(false),\n"
              " Letter('\\''),\n "
              "PLUGINNAME(\"cimhttp\"),\n PLUGINVERSION(\"1.0\"),\n"
              " Values {\"a\", \"b\"},\n"
              " When(\"00000001000000.000000:000\")]\n"
              "class T\n{\n};\n");
}

TEST_F(MofTest, LongTextsAreFoldedBetweenWordsAndLoseNothing) {
    std::string text;
    for (int i = 0; i < 60; ++i) {
        text += "word" + std::to_string(i) + ' ';
    }
    const std::string mof =
        Mof("<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>" + text + "</VALUE></QUALIFIER>");
    std::string joined;
    std::istringstream lines(mof);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 102U) << line;
        const auto first = line.find('"');
        if (line.find("word") != std::string::npos) {
            joined += line.substr(first + 1, line.rfind('"') - first - 1);
        }
    }
    EXPECT_EQ(joined, text);
}

TEST_F(MofTest, PropertiesMethodsArraysAndReferences) {
    EXPECT_EQ(Mof("<PROPERTY NAME=\"Size\" TYPE=\"uint64\"/><PROPERTY.ARRAY NAME=\"Tags\" TYPE=\"string\"/>"
                  "<PROPERTY.REFERENCE NAME=\"System\" REFERENCECLASS=\"CIM_System\"/>"
                  "<METHOD NAME=\"Go\" TYPE=\"uint32\"><PARAMETER NAME=\"Fast\" TYPE=\"boolean\"/>"
                  "<PARAMETER.REFERENCE NAME=\"To\" REFERENCECLASS=\"CIM_System\"/></METHOD>"
                  "<METHOD NAME=\"Stop\" TYPE=\"boolean\"/>"),
              "[" + kStamp +
                  "]\nclass T\n{\n"
                  "    uint64 Size;\n\n"
                  "    object REF System;\n\n"
                  "    string Tags[];\n\n"
                  "    uint32 Go(boolean Fast, object REF To);\n\n"
                  "    boolean Stop();\n"
                  "};\n");
}
