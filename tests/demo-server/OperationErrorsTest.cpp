#include "CimClient.h"
#include "HttpExchange.h"
#include "ServerFixture.h"

#include <gmock/gmock.h>

namespace {

using cim::Call;
using cim::Class;
using cim::Flag;
using cim::List;
using cim::Parameter;
using cim::Text;

class OperationErrors : public ServerFixture {};

const std::string kSystem = Class("CIM_System");

struct Case {
    std::string method;
    std::vector<std::string> parameters;
    int error;
};

void Check(const std::vector<Case>& cases) {
    for (const auto& [method, parameters, error] : cases) {
        const auto answer = Call(method, parameters);
        EXPECT_EQ(answer.error, error) << method << testing::PrintToString(parameters) << answer.description;
        EXPECT_EQ(answer.response.child("IRETURNVALUE").empty(), error != 0);
        EXPECT_EQ(answer.description.empty(), error == 0);
    }
}

TEST_F(OperationErrors, AnUnknownClassIsNotFoundByGetClassAndInvalidElsewhere) {
    const std::string nope = Class("Nope");
    Check({{"GetClass", {nope}, 6},
           {"EnumerateClasses", {nope}, 5},
           {"EnumerateClassNames", {nope}, 5},
           {"EnumerateInstances", {nope}, 5},
           {"EnumerateInstanceNames", {nope}, 5},
           {"GetQualifier", {Text("QualifierName", "Nope")}, 6}});
}

TEST_F(OperationErrors, AMissingParameterIsInvalid) {
    Check({{"GetClass", {}, 4},
           {"GetClass", {Parameter("ClassName", "")}, 4},
           {"GetClass", {Class("")}, 4},
           {"GetInstance", {}, 4},
           {"EnumerateInstances", {}, 4},
           {"EnumerateInstanceNames", {}, 4},
           {"Associators", {}, 4},
           {"AssociatorNames", {Class("ResultClass", "CIM_System")}, 4},
           {"References", {}, 4},
           {"ReferenceNames", {Parameter("ObjectName", "")}, 4},
           {"GetQualifier", {}, 4},
           {"GetProperty", {Parameter("InstanceName", cim::ComputerSystem())}, 4},
           {"GetProperty", {Text("PropertyName", "Name")}, 4}});
}

TEST_F(OperationErrors, AParameterThatTheOperationDoesNotHaveIsInvalid) {
    Check({{"GetClass", {kSystem, Flag("Bogus", true)}, 4},
           {"GetClass", {kSystem, Flag("DeepInheritance", true)}, 4},
           {"EnumerateClasses", {List({})}, 4},
           {"EnumerateClassNames", {Flag("LocalOnly", true)}, 4},
           {"EnumerateInstanceNames", {kSystem, Flag("DeepInheritance", true)}, 4},
           {"ReferenceNames", {Class("ObjectName", "CIM_System"), Text("ResultRole", "x")}, 4},
           {"AssociatorNames", {Class("ObjectName", "CIM_System"), List({})}, 4},
           {"EnumerateQualifiers", {kSystem}, 4}});
}

TEST_F(OperationErrors, AParameterThatAppearsTwiceIsInvalid) {
    Check({{"GetClass", {kSystem, kSystem}, 4},
           {"GetClass", {kSystem, Flag("LocalOnly", true), Flag("localonly", true)}, 4},
           {"EnumerateClassNames", {Class(""), Class("")}, 4}});
}

TEST_F(OperationErrors, AParameterOfAnotherTypeIsInvalid) {
    const std::string instance = cim::ComputerSystem();
    Check({{"GetClass", {Text("ClassName", "CIM_System")}, 4},
           {"GetClass", {Parameter("ClassName", instance)}, 4},
           {"GetClass", {kSystem, Text("LocalOnly", "1")}, 4},
           {"GetClass", {kSystem, Text("LocalOnly", "")}, 4},
           {"GetClass", {kSystem, Parameter("LocalOnly", "<VALUE.ARRAY/>")}, 4},
           {"GetClass", {kSystem, Text("PropertyList", "Name")}, 4},
           {"GetClass", {kSystem, Parameter("PropertyList", "<VALUE.ARRAY><VALUE.NULL/></VALUE.ARRAY>")}, 4},
           {"GetInstance", {Class("InstanceName", "CIM_System")}, 4},
           {"GetInstance", {Parameter("InstanceName", "<VALUE.REFERENCE>" + instance + "</VALUE.REFERENCE>")}, 4},
           {"References", {Text("ObjectName", "CIM_System")}, 4},
           {"References", {Class("ObjectName", "CIM_System"), Text("ResultClass", "CIM_System")}, 4},
           {"References", {Class("ObjectName", "CIM_System"), Class("Role", "CIM_System")}, 4},
           {"GetQualifier", {Class("QualifierName", "Key")}, 4}});
}

TEST_F(OperationErrors, NamesOfParametersAndMethodsAndFlagsMayHaveAnyCase) {
    Check({{"GetClass", {Class("CLASSNAME", "cim_SYSTEM"), Text("localONLY", "true")}, 0},
           {"getclass", {Class("classname", "CIM_System"), Text("LocalOnly", "False")}, 0}});
}

TEST_F(OperationErrors, WhatTheServerCannotDoIsNotSupported) {
    for (const char* const method :
         {"CreateClass", "ModifyClass", "DeleteClass", "CreateInstance", "ModifyInstance", "DeleteInstance",
          "SetProperty", "SetQualifier", "DeleteQualifier", "ExecQuery", "OpenQueryInstances", "NoSuchMethod"}) {
        Check({{method, {kSystem}, 7}});
    }
}

TEST_F(OperationErrors, AMethodOfAClassIsNotSupported) {
    auto headers = exchange::OperationHeaders("RequestStateChange");
    headers["CIMObject"] = "root%2Fcimv2%3ACIM_System";
    const auto answer = exchange::Send(exchange::Post(
        headers,
        "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"7\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>"
        "<METHODCALL NAME=\"RequestStateChange\"><LOCALCLASSPATH><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
        "</LOCALNAMESPACEPATH><CLASSNAME "
        "NAME=\"CIM_System\"/></LOCALCLASSPATH></METHODCALL></SIMPLEREQ></MESSAGE></CIM>"));
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(answer.body, testing::HasSubstr("<METHODRESPONSE NAME=\"RequestStateChange\">"));
    EXPECT_THAT(answer.body, testing::HasSubstr("<ERROR CODE=\"7\""));
}

TEST_F(OperationErrors, TheFirstStatusInTheOrderOfTheStandardWins) {
    // Not supported before namespace before parameters before classes before instances before properties.
    EXPECT_EQ(Call("DeleteClass", {}, "root/nowhere").error, 7);
    EXPECT_EQ(Call("GetClass", {}, "root/nowhere").error, 3);
    EXPECT_EQ(Call("GetClass", {Class("Nope"), Flag("Bogus", true)}).error, 4);
    EXPECT_EQ(Call("EnumerateInstances", {Class("Nope"), Text("LocalOnly", "x")}).error, 4);
    EXPECT_EQ(Call("GetProperty",
                   {Parameter("InstanceName", cim::InstanceName("Nope", {{"a", "b"}})), Text("PropertyName", "x")})
                  .error,
              5);
    EXPECT_EQ(Call("GetProperty", {Parameter("InstanceName", cim::Process(0)), Text("PropertyName", "x")}).error, 6);
}

TEST_F(OperationErrors, TheNamespaceIsOneAndItsNameMayHaveAnyCase) {
    EXPECT_EQ(Call("GetClass", {kSystem}, "ROOT/CimV2").error, 0);
    for (const char* const name : {"root", "root/cimv2/more", "cimv2"}) {
        const auto answer = Call("GetClass", {kSystem}, name);
        EXPECT_EQ(answer.error, 3) << name;
        EXPECT_THAT(answer.description, testing::StartsWith("CIM_ERR_INVALID_NAMESPACE: "));
    }
}

TEST_F(OperationErrors, AMalformedParameterMakesTheRequestInvalid) {
    constexpr int kLevels = 5000;
    std::string nested;
    for (int i = 0; i < kLevels; ++i) {
        nested += "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"k\"><VALUE.REFERENCE>";
    }
    nested += cim::ComputerSystem();
    for (int i = 0; i < kLevels; ++i) {
        nested += "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    }
    for (const std::string& parameters :
         {std::string("<IPARAMVALUE><CLASSNAME NAME=\"x\"/></IPARAMVALUE>"), Parameter("ClassName", "<CLASSNAME/>"),
          Parameter("ClassName", "<CLASSNAME NAME=\"x\"/><CLASSNAME NAME=\"y\"/>"),
          Parameter("InstanceName", "<INSTANCENAME/>"),
          Parameter("InstanceName",
                    "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING><KEYVALUE>x</KEYVALUE></KEYBINDING></INSTANCENAME>"),
          Parameter("InstanceName", "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"k\"/></INSTANCENAME>"),
          Parameter(
              "InstanceName",
              "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"k\"><VALUE>x</VALUE></KEYBINDING></INSTANCENAME>"),
          Parameter(
              "InstanceName",
              "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"k\"><VALUE.REFERENCE/></KEYBINDING></INSTANCENAME>"),
          Parameter("InstanceName",
                    "<INSTANCENAME CLASSNAME=\"A\"><VALUE.REFERENCE><INSTANCEPATH/></VALUE.REFERENCE></INSTANCENAME>"),
          Parameter("PropertyList", "<VALUE.ARRAY><CLASSNAME NAME=\"x\"/></VALUE.ARRAY>"),
          Parameter("InstanceName", nested)}) {
        const auto answer = exchange::Send(exchange::Post(exchange::OperationHeaders("GetInstance"),
                                                          exchange::OperationBody("GetInstance", parameters)));
        EXPECT_EQ(answer.status, 400) << parameters.substr(0, 200);
        EXPECT_EQ(answer.headers.count("cimerror") ? answer.headers.at("cimerror") : "", "request-not-valid");
    }
}

} // namespace
