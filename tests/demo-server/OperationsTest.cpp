#include "providers/LiveProviders.h"
#include "schema/SchemaReader.h"
#include "server/Answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pugixml.hpp>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

demo::RequestParameter ClassParameter(const std::string& name) {
    return {"ClassName", "CLASSNAME", demo::Value::Reference({name, {}})};
}

demo::RequestParameter Flag(const std::string& name, bool value) {
    return {name, "VALUE", demo::Value::Boolean(value)};
}

demo::RequestParameter PropertyList(demo::Value::Items names) {
    return {"PropertyList", "VALUE.ARRAY", demo::Value::Array(std::move(names))};
}

/// The service with this machine's instances, asked directly.
class Operations : public testing::Test {
  protected:
    static constexpr std::size_t kVolumes = 3;

    static demo::CimService MakeService() {
        auto schema = demo::BuiltInSchema();
        auto providers = demo::LiveProviders(schema, demo::SystemFiles("/"), kVolumes);
        return {std::move(schema), std::move(providers), "demo.example"};
    }

    static demo::CimRequest Request(const std::string& method, std::vector<demo::RequestParameter> parameters) {
        demo::CimRequest request;
        request.messageId = "42";
        request.method = method;
        request.nameSpace = "root/cimv2";
        request.parameters = std::move(parameters);
        return request;
    }

    /// The IMETHODRESPONSE of the answer, which lives until the next one.
    pugi::xml_node Ask(const demo::CimRequest& request) {
        const std::string text = *demo::Answer(service_, request);
        const auto result = answer_.load_string(text.c_str());
        EXPECT_TRUE(result) << result.description() << text;
        const auto message = answer_.child("CIM").child("MESSAGE");
        EXPECT_STREQ(message.attribute("ID").value(), "42");
        const auto response = message.child("SIMPLERSP").first_child();
        EXPECT_EQ(response.attribute("NAME").value(), request.method);
        return response;
    }

    pugi::xml_node Ask(const std::string& method, std::vector<demo::RequestParameter> parameters) {
        return Ask(Request(method, std::move(parameters))).child("IRETURNVALUE");
    }

    int ErrorCode(const demo::CimRequest& request) { return Ask(request).child("ERROR").attribute("CODE").as_int(); }

    int ErrorCode(const std::string& method, std::vector<demo::RequestParameter> parameters) {
        return ErrorCode(Request(method, std::move(parameters)));
    }

    static std::vector<std::string> Names(const pugi::xml_node& parent, const std::string& elementPrefix) {
        std::vector<std::string> names;
        for (const auto& child : parent.children())
            if (std::string(child.name()).rfind(elementPrefix, 0) == 0)
                names.emplace_back(child.attribute("NAME").value());
        return names;
    }

    static pugi::xml_node Named(const pugi::xml_node& parent, const char* name) {
        return parent.find_child_by_attribute("NAME", name);
    }

    demo::CimService service_ = MakeService();
    pugi::xml_document answer_;
};

TEST_F(Operations, GetClassReturnsLocalElementsWithQualifiersByDefault) {
    const auto found = Ask("GetClass", {ClassParameter("cim_computersystem")}).child("CLASS");
    EXPECT_STREQ(found.attribute("NAME").value(), "CIM_ComputerSystem");
    EXPECT_STREQ(found.attribute("SUPERCLASS").value(), "CIM_System");
    EXPECT_THAT(Names(found, "PROPERTY"),
                ElementsAre("NameFormat", "Dedicated", "OtherIdentifyingInfo", "IdentifyingDescriptions"));
    EXPECT_THAT(Names(found, "METHOD"), ElementsAre("SetPowerState"));
    EXPECT_THAT(Names(found, "QUALIFIER"), UnorderedElementsAre("Version", "Description"));
    // NameFormat inherits MaxLen, which is not local.
    EXPECT_THAT(Names(Named(found, "NameFormat"), "QUALIFIER"),
                UnorderedElementsAre("Description", "Override", "ValueMap"));
    EXPECT_FALSE(Named(found, "Dedicated").attribute("CLASSORIGIN"));
}

TEST_F(Operations, GetClassReturnsInheritedElementsWhenLocalOnlyIsFalse) {
    const auto found = Ask("GetClass", {ClassParameter("CIM_ComputerSystem"), Flag("LocalOnly", false),
                                        Flag("IncludeClassOrigin", true)})
                           .child("CLASS");
    EXPECT_THAT(Names(found, "PROPERTY"), IsSupersetOf({"InstanceID", "OperationalStatus", "EnabledState", "Name"}));
    EXPECT_THAT(Names(found, "METHOD"), ElementsAre("RequestStateChange", "SetPowerState"));
    EXPECT_STREQ(Named(found, "InstanceID").attribute("CLASSORIGIN").value(), "CIM_ManagedElement");
    EXPECT_STREQ(Named(found, "InstanceID").attribute("PROPAGATED").value(), "true");
    EXPECT_STREQ(Named(found, "NameFormat").attribute("CLASSORIGIN").value(), "CIM_System");
    EXPECT_FALSE(Named(found, "NameFormat").attribute("PROPAGATED"));
    EXPECT_STREQ(Named(Named(found, "NameFormat"), "MaxLen").attribute("PROPAGATED").value(), "true");
    EXPECT_STREQ(Named(found, "RequestStateChange").attribute("CLASSORIGIN").value(), "CIM_EnabledLogicalElement");
}

TEST_F(Operations, GetClassLeavesOutQualifiersWhenAskedTo) {
    const auto found = Ask(
        "GetClass", {ClassParameter("CIM_ComputerSystem"), Flag("LocalOnly", false), Flag("IncludeQualifiers", false)});
    EXPECT_TRUE(found.child("CLASS"));
    EXPECT_FALSE(found.find_node([](const pugi::xml_node& node) { return std::string(node.name()) == "QUALIFIER"; }));
}

TEST_F(Operations, GetClassKeepsToThePropertyListAndKeepsTheMethods) {
    const auto found = Ask("GetClass", {ClassParameter("CIM_ComputerSystem"), Flag("LocalOnly", false),
                                        PropertyList({"name", "Dedicated", "Nothing", "Name"})})
                           .child("CLASS");
    EXPECT_THAT(Names(found, "PROPERTY"), ElementsAre("Name", "Dedicated"));
    EXPECT_EQ(Names(found, "METHOD").size(), 2U);
    const auto none = Ask("GetClass", {ClassParameter("CIM_ComputerSystem"), PropertyList({})}).child("CLASS");
    EXPECT_TRUE(Names(none, "PROPERTY").empty());
}

TEST_F(Operations, GetClassWritesParametersOfEveryKind) {
    const auto found = Ask("GetClass", {ClassParameter("DEMO_AllTypes")}).child("CLASS");
    const auto method = Named(found, "Convert");
    EXPECT_STREQ(Named(method, "Numbers").name(), "PARAMETER.ARRAY");
    EXPECT_STREQ(Named(method, "Numbers").attribute("TYPE").value(), "sint64");
    EXPECT_STREQ(Named(method, "To").name(), "PARAMETER.REFERENCE");
    EXPECT_STREQ(Named(method, "To").attribute("REFERENCECLASS").value(), "DEMO_AllTypes");
    EXPECT_STREQ(Named(Named(method, "To"), "Out").child("VALUE").text().get(), "TRUE");
    EXPECT_STREQ(Named(found, "WithDefault").child("VALUE").text().get(), "a default");
    EXPECT_STREQ(Named(found, "APoint").attribute("EmbeddedObject").value(), "instance");
    EXPECT_STREQ(Named(found, "Points").name(), "PROPERTY.ARRAY");
}

TEST_F(Operations, ElementsStandInTheOrderThatTheStandardGives) {
    const auto found = Ask("GetClass", {ClassParameter("DEMO_AllTypes"), Flag("LocalOnly", false)}).child("CLASS");
    int last = 0;
    for (const auto& child : found.children()) {
        const std::string name = child.name();
        const int rank = name == "QUALIFIER" ? 1 : name.rfind("PROPERTY", 0) == 0 ? 2 : name == "METHOD" ? 3 : 4;
        EXPECT_LE(last, rank) << name;
        last = rank;
    }
    EXPECT_EQ(last, 3);
}

TEST_F(Operations, EnumerateClassNamesListsTheLevelOrAllLevelsBelow) {
    EXPECT_THAT(Names(Ask("EnumerateClassNames", {}), "CLASSNAME"),
                IsSupersetOf({"CIM_ManagedElement", "CIM_Dependency", "CIM_Component"}));
    EXPECT_THAT(Names(Ask("EnumerateClassNames", {}), "CLASSNAME"), Not(Contains("CIM_System")));
    EXPECT_THAT(Names(Ask("EnumerateClassNames", {ClassParameter("CIM_System")}), "CLASSNAME"),
                ElementsAre("CIM_ComputerSystem"));
    EXPECT_THAT(
        Names(Ask("EnumerateClassNames", {ClassParameter("CIM_System"), Flag("DeepInheritance", true)}), "CLASSNAME"),
        ElementsAre("CIM_ComputerSystem", "DEMO_ComputerSystem"));
    EXPECT_GE(Names(Ask("EnumerateClassNames", {Flag("DeepInheritance", true)}), "CLASSNAME").size(), 25U);
}

TEST_F(Operations, EnumerateInstancesReturnsThoseOfSubclassesWithTheirPropertiesByDefault) {
    const auto deep = Ask("EnumerateInstances", {ClassParameter("CIM_FileSystem")}).child("VALUE.NAMEDINSTANCE");
    EXPECT_STREQ(deep.child("INSTANCENAME").attribute("CLASSNAME").value(), "DEMO_FileSystem");
    EXPECT_TRUE(Named(deep.child("INSTANCE"), "MountOptions"));
    const auto shallow = Ask("EnumerateInstances", {ClassParameter("CIM_FileSystem"), Flag("DeepInheritance", false)})
                             .child("VALUE.NAMEDINSTANCE");
    EXPECT_STREQ(shallow.child("INSTANCE").attribute("CLASSNAME").value(), "DEMO_FileSystem");
    EXPECT_TRUE(Named(shallow.child("INSTANCE"), "FileSystemSize"));
    EXPECT_TRUE(Named(shallow.child("INSTANCE"), "ElementName"));
    EXPECT_FALSE(Named(shallow.child("INSTANCE"), "MountOptions"));
}

TEST_F(Operations, EnumerateInstancesReturnsInheritedPropertiesAlsoWhenLocalOnly) {
    const auto found = Ask("EnumerateInstances", {ClassParameter("DEMO_FileSystem"), Flag("LocalOnly", true)});
    EXPECT_TRUE(Named(found.child("VALUE.NAMEDINSTANCE").child("INSTANCE"), "FileSystemSize"));
}

TEST_F(Operations, EnumerateInstancesHonoursItsOtherParameters) {
    const auto plain = Ask("EnumerateInstances", {ClassParameter("DEMO_RunningOS")});
    EXPECT_FALSE(plain.find_node([](const pugi::xml_node& node) { return std::string(node.name()) == "QUALIFIER"; }));
    const auto found = Ask("EnumerateInstances", {ClassParameter("DEMO_StorageVolume"), Flag("IncludeQualifiers", true),
                                                  Flag("IncludeClassOrigin", true), PropertyList({"blocksize"})})
                           .child("VALUE.NAMEDINSTANCE");
    EXPECT_THAT(Names(found.child("INSTANCE"), "PROPERTY"), ElementsAre("BlockSize"));
    const auto property = Named(found.child("INSTANCE"), "BlockSize");
    EXPECT_STREQ(property.attribute("CLASSORIGIN").value(), "CIM_StorageExtent");
    EXPECT_STREQ(Named(property, "Units").child("VALUE").text().get(), "Bytes");
    // The keys are in the name, whatever the list says.
    EXPECT_THAT(Names(found.child("INSTANCENAME"), "KEYBINDING"),
                ElementsAre("SystemCreationClassName", "SystemName", "CreationClassName", "DeviceID"));
}

TEST_F(Operations, AnAssociationHasReferencesAsKeysThatNameInstancesOfTheServer) {
    const auto link = Ask("EnumerateInstances", {ClassParameter("CIM_Dependency")}).child("VALUE.NAMEDINSTANCE");
    const auto key = Named(link.child("INSTANCENAME"), "Antecedent").child("VALUE.REFERENCE").child("INSTANCENAME");
    EXPECT_STREQ(key.attribute("CLASSNAME").value(), "DEMO_OperatingSystem");
    EXPECT_STREQ(Named(link.child("INSTANCE"), "Antecedent").name(), "PROPERTY.REFERENCE");
    const auto keys = [](const pugi::xml_node& name) {
        std::map<std::string, std::string> values;
        for (const auto& binding : name.children("KEYBINDING"))
            values[binding.attribute("NAME").value()] = binding.child("KEYVALUE").text().get();
        return values;
    };
    const auto named = keys(key);
    const auto system =
        Ask("EnumerateInstances", {ClassParameter("DEMO_OperatingSystem")}).child("VALUE.NAMEDINSTANCE");
    EXPECT_EQ(named, keys(system.child("INSTANCENAME")));
}

TEST_F(Operations, EveryTypeArrivesWithItsExtremesNullsAndMarkup) {
    const auto all = Ask("EnumerateInstances", {ClassParameter("DEMO_AllTypes")});
    const auto least = all.child("VALUE.NAMEDINSTANCE").child("INSTANCE");
    const auto greatest = all.child("VALUE.NAMEDINSTANCE").next_sibling().child("INSTANCE");
    const auto null = all.last_child().child("INSTANCE");
    EXPECT_STREQ(Named(least, "ASint64").child("VALUE").text().get(), "-9223372036854775808");
    EXPECT_STREQ(Named(greatest, "AUint64").child("VALUE").text().get(), "18446744073709551615");
    EXPECT_STREQ(Named(greatest, "AString").child("VALUE").text().get(),
                 "Gr\xC3\xB6\xC3\x9F"
                 "e: <5 & >3, \"10 \xE2\x82\xAC\", it's \xF0\x9F\x98\x80\n\tnext line");
    EXPECT_STREQ(Named(greatest, "Sint8s").child("VALUE.ARRAY").first_child().next_sibling().name(), "VALUE.NULL");
    EXPECT_TRUE(Named(least, "Sint8s").child("VALUE.ARRAY"));
    EXPECT_FALSE(Named(null, "Sint8s").child("VALUE.ARRAY"));
    EXPECT_FALSE(Named(null, "AString").first_child());
    EXPECT_TRUE(Named(least, "AString").child("VALUE"));
    EXPECT_STREQ(Named(null, "WithDefault").child("VALUE").text().get(), "a default");

    pugi::xml_document embedded;
    ASSERT_TRUE(embedded.load_string(Named(greatest, "APoint").child("VALUE").text().get()));
    EXPECT_STREQ(embedded.child("INSTANCE").attribute("CLASSNAME").value(), "DEMO_Point");
    EXPECT_STREQ(Named(embedded.child("INSTANCE"), "Label").child("VALUE").text().get(), "<a> & \"b\"");
}

TEST_F(Operations, EveryInstanceHasOnlyDeclaredPropertiesWithValuesOfTheirTypesAndNoKeyIsNull) {
    const auto& schema = service_.GetSchema();
    std::size_t instances = 0;
    for (const auto& provider : demo::LiveProviders(schema, demo::SystemFiles("/"), kVolumes)) {
        const auto* const declaration = schema.FindClass(provider->ClassName());
        ASSERT_TRUE(declaration) << provider->ClassName();
        EXPECT_FALSE(declaration->Is("Abstract"));
        provider->Enumerate([&](const demo::Instance& instance) {
            ++instances;
            for (const auto& [name, value] : instance.values) {
                const auto* const property = declaration->FindProperty(name);
                ASSERT_TRUE(property) << declaration->name << '.' << name;
                ASSERT_TRUE(value.IsNull() || (value.AsArray() != nullptr) == property->isArray) << name;
                if (value.AsText()) {
                    EXPECT_TRUE(demo::IsValueOf(property->type, *value.AsText())) << name << ": " << *value.AsText();
                }
                for (const auto& item : value.AsArray() ? *value.AsArray() : demo::Value::Items()) {
                    EXPECT_TRUE(!item || demo::IsValueOf(property->type, *item)) << name << ": " << *item;
                }
            }
            for (const auto& key : demo::PathOf(*declaration, instance).keys)
                EXPECT_FALSE(key.value.IsNull()) << declaration->name << '.' << key.name;
        });
    }
    EXPECT_GE(instances, 10U);
}

TEST_F(Operations, GetQualifierReturnsTheDeclaration) {
    const auto key =
        Ask("GetQualifier", {{"QualifierName", "VALUE", demo::Value::Text("key")}}).child("QUALIFIER.DECLARATION");
    EXPECT_STREQ(key.attribute("NAME").value(), "Key");
    EXPECT_STREQ(key.attribute("TYPE").value(), "boolean");
    EXPECT_STREQ(key.attribute("OVERRIDABLE").value(), "false");
    EXPECT_STREQ(key.child("SCOPE").attribute("REFERENCE").value(), "true");
    EXPECT_FALSE(key.child("SCOPE").attribute("METHOD"));
    EXPECT_STREQ(key.child("VALUE").text().get(), "FALSE");
    const auto map =
        Ask("GetQualifier", {{"QualifierName", "VALUE", demo::Value::Text("ValueMap")}}).child("QUALIFIER.DECLARATION");
    EXPECT_STREQ(map.attribute("ISARRAY").value(), "true");
}

TEST_F(Operations, NamesThatNobodyKnowsAreErrorsOfTheirOperation) {
    EXPECT_EQ(ErrorCode("GetClass", {ClassParameter("Nope")}), 6);
    EXPECT_EQ(ErrorCode("EnumerateClassNames", {ClassParameter("Nope")}), 5);
    EXPECT_EQ(ErrorCode("EnumerateInstances", {ClassParameter("Nope")}), 5);
    EXPECT_EQ(ErrorCode("GetQualifier", {{"QualifierName", "VALUE", demo::Value::Text("Nope")}}), 6);
    auto elsewhere = Request("GetClass", {ClassParameter("CIM_System")});
    elsewhere.nameSpace = "root/nowhere";
    EXPECT_EQ(ErrorCode(elsewhere), 3);
    EXPECT_THAT(Ask(elsewhere).child("ERROR").attribute("DESCRIPTION").value(),
                StartsWith("CIM_ERR_INVALID_NAMESPACE"));
}

TEST_F(Operations, ParametersThatTheOperationDoesNotTakeAreInvalid) {
    EXPECT_EQ(ErrorCode("GetClass", {}), 4);
    EXPECT_EQ(ErrorCode("GetClass", {{"ClassName", "", {}}}), 4);
    EXPECT_EQ(ErrorCode("GetClass", {{"ClassName", "VALUE", demo::Value::Text("CIM_System")}}), 4);
    EXPECT_EQ(ErrorCode("GetClass", {ClassParameter("CIM_System"), Flag("Bogus", true)}), 4);
    EXPECT_EQ(ErrorCode("GetClass", {ClassParameter("CIM_System"), Flag("DeepInheritance", true)}), 4);
    EXPECT_EQ(ErrorCode("GetClass", {ClassParameter("CIM_System"), ClassParameter("CIM_System")}), 4);
    EXPECT_EQ(ErrorCode("GetClass", {ClassParameter("CIM_System"), {"LocalOnly", "VALUE", demo::Value::Text("1")}}), 4);
    EXPECT_EQ(ErrorCode("GetClass", {ClassParameter("CIM_System"), PropertyList({std::nullopt})}), 4);
    EXPECT_EQ(ErrorCode("EnumerateInstances", {}), 4);
    EXPECT_EQ(ErrorCode("GetQualifier", {}), 4);
}

TEST_F(Operations, WhatTheServerCannotDoIsNotSupported) {
    EXPECT_EQ(ErrorCode("DeleteClass", {ClassParameter("CIM_System")}), 7);
    EXPECT_EQ(ErrorCode("NoSuchMethod", {}), 7);
    auto extrinsic = Request("Reboot", {});
    extrinsic.kind = demo::CimRequest::Kind::kExtrinsic;
    EXPECT_EQ(ErrorCode(extrinsic), 7);
    EXPECT_STREQ(Ask(extrinsic).name(), "METHODRESPONSE");
}

/// Fails behind its first instance.
class BrokenProvider : public demo::InstanceProvider {
  public:
    std::string_view ClassName() const override { return "DEMO_AllTypes"; }
    void Enumerate(const Visitor& visit) const override {
        visit({"DEMO_AllTypes", {{"InstanceID", demo::Value::Text("only")}}});
        throw std::runtime_error("the disk is on fire");
    }
};

TEST(Answers, AFailureInTheMiddleLeavesAStreamedAnswerWellFormed) {
    demo::InstanceProviders providers;
    providers.push_back(std::make_unique<BrokenProvider>());
    const demo::CimService service(demo::BuiltInSchema(), std::move(providers), "demo.example");
    demo::CimRequest request;
    request.method = "EnumerateInstances";
    request.nameSpace = "root/cimv2";
    request.parameters = {ClassParameter("DEMO_AllTypes")};

    std::string text;
    const auto error = demo::StreamAnswer(service, request, [&](std::string_view portion) { text += portion; });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Code(), "1");
    EXPECT_STREQ(error->what(), "CIM_ERR_FAILED: the disk is on fire");
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(text.c_str()));
    EXPECT_NE(text.find("VALUE.NAMEDINSTANCE"), std::string::npos);

    const std::string whole = *demo::Answer(service, request);
    EXPECT_EQ(whole.find("VALUE.NAMEDINSTANCE"), std::string::npos);
    EXPECT_NE(whole.find("ERROR CODE=\"1\""), std::string::npos);
}

TEST(Answers, AClosedOutputEndsTheOperation) {
    auto schema = demo::BuiltInSchema();
    auto providers = demo::LiveProviders(schema, demo::SystemFiles("/"), 1'000'000);
    const demo::CimService service(std::move(schema), std::move(providers), "demo.example");
    demo::CimRequest request;
    request.method = "EnumerateInstances";
    request.nameSpace = "root/cimv2";
    request.parameters = {ClassParameter("DEMO_StorageVolume")};
    int portions = 0;
    EXPECT_THROW(demo::StreamAnswer(service, request,
                                    [&](std::string_view) {
                                        if (++portions == 3)
                                            throw demo::OutputClosed();
                                    }),
                 demo::OutputClosed);
    EXPECT_EQ(portions, 3);
}

} // namespace
