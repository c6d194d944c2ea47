#include "cimxml/RequestEncoder.h"

#include <gtest/gtest.h>

namespace {

using namespace Pegasus;
using Pegasus::cimxml::RequestEncoder;

const CIMNamespaceName kNamespace("root/cimv2");

constexpr const char* kOpening = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                 "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
                                 "<MESSAGE ID=\"17\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>"
                                 "<IMETHODCALL NAME=\"GetClass\"><LOCALNAMESPACEPATH>"
                                 "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";
constexpr const char* kEnding = "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>\n";

/// The parameters in the body of a request to which `add` adds them.
template <class Add>
std::string parametersOf(Add add) {
    RequestEncoder request("17", "GetClass", kNamespace);
    add(request);
    const std::string body = request.finish();
    const std::size_t opening = std::string(kOpening).size();
    return body.substr(opening, body.size() - opening - std::string(kEnding).size());
}

TEST(RequestEncoderTest, ARequestNamesItsMessageMethodAndNamespace) {
    EXPECT_EQ(RequestEncoder("17", "GetClass", kNamespace).finish(), std::string(kOpening) + kEnding);
}

TEST(RequestEncoderTest, BooleansAndStringsAreValues) {
    EXPECT_EQ(parametersOf([](RequestEncoder& request) {
                  request.addBoolean("LocalOnly", false);
                  request.addBoolean("DeepInheritance", true);
                  request.addString("QualifierName", "Key");
              }),
              "<IPARAMVALUE NAME=\"LocalOnly\"><VALUE>FALSE</VALUE></IPARAMVALUE>"
              "<IPARAMVALUE NAME=\"DeepInheritance\"><VALUE>TRUE</VALUE></IPARAMVALUE>"
              "<IPARAMVALUE NAME=\"QualifierName\"><VALUE>Key</VALUE></IPARAMVALUE>");
}

TEST(RequestEncoderTest, AClassNameIsAnElementAndTheNullNameIsLeftOut) {
    EXPECT_EQ(parametersOf([](RequestEncoder& request) { request.addClassName("ClassName", "CIM_Processor"); }),
              "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"CIM_Processor\"/></IPARAMVALUE>");
    EXPECT_EQ(parametersOf([](RequestEncoder& request) { request.addClassName("ClassName", CIMName()); }), "");
}

TEST(RequestEncoderTest, ANullPropertyListIsLeftOutAndAnEmptyOneIsSent) {
    Array<CIMName> names;
    EXPECT_EQ(parametersOf([](RequestEncoder& request) { request.addPropertyList("PropertyList", {}); }), "");
    EXPECT_EQ(parametersOf([&](RequestEncoder& request) { request.addPropertyList("PropertyList", names); }),
              "<IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY></VALUE.ARRAY></IPARAMVALUE>");
    names.append("Name");
    names.append("Status");
    EXPECT_EQ(parametersOf([&](RequestEncoder& request) { request.addPropertyList("PropertyList", names); }),
              "<IPARAMVALUE NAME=\"PropertyList\"><VALUE.ARRAY><VALUE>Name</VALUE><VALUE>Status</VALUE></VALUE.ARRAY>"
              "</IPARAMVALUE>");
}

TEST(RequestEncoderTest, TextThatXmlReservesIsEscaped) {
    EXPECT_EQ(
        parametersOf([](RequestEncoder& request) { request.addString("P", "<a> & \"b\"\r\n\t\xC3\xA9"); }),
        "<IPARAMVALUE NAME=\"P\"><VALUE>&lt;a&gt; &amp; &quot;b&quot;&#13;&#10;&#9;\xC3\xA9</VALUE></IPARAMVALUE>");
}

} // namespace
