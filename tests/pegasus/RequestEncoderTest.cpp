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

/// The element that stands for an object path.
std::string elementOf(const CIMObjectPath& path) {
    const std::string opening = "<IPARAMVALUE NAME=\"P\">";
    const std::string parameter =
        parametersOf([&](RequestEncoder& request) { request.addObjectName("P", path); }).substr(opening.size());
    return parameter.substr(0, parameter.size() - std::string("</IPARAMVALUE>").size());
}

/// The element that stands for an object path in a key.
std::string referenceOf(const CIMObjectPath& path) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("R", path.toString(), CIMKeyBinding::REFERENCE));
    const std::string opening = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"R\"><VALUE.REFERENCE>";
    const std::string ending = "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    const std::string element = elementOf(CIMObjectPath(String(), CIMNamespaceName(), "A", keys));
    EXPECT_EQ(element.substr(0, opening.size()), opening);
    return element.substr(opening.size(), element.size() - opening.size() - ending.size());
}

TEST(RequestEncoderTest, AnInstanceNameIsAnElementAndTheEmptyPathIsLeftOut) {
    EXPECT_EQ(parametersOf([](RequestEncoder& request) { request.addInstanceName("InstanceName", "CIM_A.K=1"); }),
              "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"CIM_A\"><KEYBINDING NAME=\"K\">"
              "<KEYVALUE VALUETYPE=\"numeric\">1</KEYVALUE></KEYBINDING></INSTANCENAME></IPARAMVALUE>");
    EXPECT_EQ(parametersOf([](RequestEncoder& request) { request.addInstanceName("InstanceName", "CIM_A"); }),
              "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"CIM_A\"></INSTANCENAME></IPARAMVALUE>");
    EXPECT_EQ(parametersOf([](RequestEncoder& request) {
                  request.addInstanceName("InstanceName", CIMObjectPath());
                  request.addObjectName("ObjectName", CIMObjectPath());
              }),
              "");
}

TEST(RequestEncoderTest, AnObjectNameIsAClassOrAnInstanceWithinTheNamespace) {
    EXPECT_EQ(elementOf("CIM_A"), "<CLASSNAME NAME=\"CIM_A\"/>");
    EXPECT_EQ(elementOf("//host/root/other:CIM_A"), "<CLASSNAME NAME=\"CIM_A\"/>");
    EXPECT_EQ(elementOf("//host/root/other:CIM_A.K=1"), elementOf("CIM_A.K=1"));
}

TEST(RequestEncoderTest, KeysOfEveryTypeAreEncoded) {
    EXPECT_EQ(elementOf("A.B=TRUE,N=-1.5,R=\"C.K=2\",T=\" <x> \""),
              "<INSTANCENAME CLASSNAME=\"A\">"
              "<KEYBINDING NAME=\"B\"><KEYVALUE VALUETYPE=\"boolean\">TRUE</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"N\"><KEYVALUE VALUETYPE=\"numeric\">-1.5</KEYVALUE></KEYBINDING>"
              "<KEYBINDING NAME=\"R\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"C\"><KEYBINDING NAME=\"K\">"
              "<KEYVALUE VALUETYPE=\"numeric\">2</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE></KEYBINDING>"
              "<KEYBINDING NAME=\"T\"><KEYVALUE VALUETYPE=\"string\"> &lt;x&gt; </KEYVALUE></KEYBINDING>"
              "</INSTANCENAME>");
}

TEST(RequestEncoderTest, AKeyWithoutANameStandsAlone) {
    EXPECT_EQ(elementOf("A=5"),
              "<INSTANCENAME CLASSNAME=\"A\"><KEYVALUE VALUETYPE=\"numeric\">5</KEYVALUE></INSTANCENAME>");
    EXPECT_EQ(elementOf("A=\"B.K=1\""), "<INSTANCENAME CLASSNAME=\"A\"><VALUE.REFERENCE>" + elementOf("B.K=1") +
                                            "</VALUE.REFERENCE></INSTANCENAME>");
}

TEST(RequestEncoderTest, AReferenceSaysAsMuchAsItsPathDoes) {
    const std::string nameSpace = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/>"
                                  "</LOCALNAMESPACEPATH>";
    const std::string place = "<NAMESPACEPATH><HOST>h&amp;h</HOST>" + nameSpace + "</NAMESPACEPATH>";
    const std::string instance = elementOf("B.K=1");
    const std::string aClass = elementOf("B");
    EXPECT_EQ(referenceOf("B.K=1"), instance);
    EXPECT_EQ(referenceOf("root/cimv2:B.K=1"), "<LOCALINSTANCEPATH>" + nameSpace + instance + "</LOCALINSTANCEPATH>");
    EXPECT_EQ(referenceOf("//h&h/root/cimv2:B.K=1"), "<INSTANCEPATH>" + place + instance + "</INSTANCEPATH>");
    EXPECT_EQ(referenceOf("B"), aClass);
    EXPECT_EQ(referenceOf("root/cimv2:B"), "<LOCALCLASSPATH>" + nameSpace + aClass + "</LOCALCLASSPATH>");
    EXPECT_EQ(referenceOf("//h&h/root/cimv2:B"), "<CLASSPATH>" + place + aClass + "</CLASSPATH>");
    EXPECT_EQ(referenceOf("//h&h/B.K=1"), instance) << "there is no form for a host without a namespace";
}

TEST(RequestEncoderTest, ReferencesNest) {
    EXPECT_EQ(referenceOf("B.R=\"C.R=\\\"D.K=1\\\"\""),
              "<INSTANCENAME CLASSNAME=\"B\"><KEYBINDING NAME=\"R\"><VALUE.REFERENCE>" + elementOf("C.R=\"D.K=1\"") +
                  "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>");
}

TEST(RequestEncoderTest, AReferenceThatIsNoPathIsRefused) {
    for (const char* text : {"", "no path", "A.K=", "A.K=\"x"}) {
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding("R", text, CIMKeyBinding::REFERENCE));
        const CIMObjectPath path(String(), CIMNamespaceName(), "A", keys);
        RequestEncoder request("17", "GetInstance", kNamespace);
        EXPECT_THROW(request.addInstanceName("InstanceName", path), MalformedObjectNameException) << text;
        EXPECT_THROW(request.addObjectName("ObjectName", path), MalformedObjectNameException) << text;
    }
}

} // namespace
