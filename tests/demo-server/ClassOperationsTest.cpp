#include "CimClient.h"
#include "ServerFixture.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using cim::Call;
using cim::Class;
using cim::Flag;
using cim::List;
using cim::Named;
using cim::Names;
using cim::NamesOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

class ClassOperations : public ServerFixture {};
class QualifierOperations : public ServerFixture {};

/// Every combination of the flags that GetClass and EnumerateClasses share.
std::vector<std::vector<std::string>> FlagVariants() {
    std::vector<std::vector<std::string>> variants;
    for (unsigned bits = 0; bits < 8; ++bits) {
        variants.push_back({Flag("LocalOnly", (bits & 1U) != 0), Flag("IncludeQualifiers", (bits & 2U) != 0),
                            Flag("IncludeClassOrigin", (bits & 4U) != 0)});
    }
    return variants;
}

pugi::xml_node GetClass(cim::Answer& answer, std::vector<std::string> parameters) {
    answer = Call("GetClass", parameters);
    EXPECT_EQ(answer.error, 0) << answer.description;
    return answer.Returned().child("CLASS");
}

TEST_F(ClassOperations, GetClassReturnsLocalElementsWithQualifiersByDefault) {
    cim::Answer answer;
    const auto found = GetClass(answer, {Class("cim_computersystem")});
    EXPECT_STREQ(found.attribute("NAME").value(), "CIM_ComputerSystem");
    EXPECT_STREQ(found.attribute("SUPERCLASS").value(), "CIM_System");
    EXPECT_THAT(NamesOf(found, "PROPERTY"),
                ElementsAre("NameFormat", "Dedicated", "OtherIdentifyingInfo", "IdentifyingDescriptions"));
    EXPECT_THAT(NamesOf(found, "METHOD"), ElementsAre("SetPowerState"));
    EXPECT_THAT(NamesOf(found, "QUALIFIER"), UnorderedElementsAre("Version", "Description"));
    // NameFormat inherits MaxLen, which is not local.
    EXPECT_THAT(NamesOf(Named(found, "NameFormat"), "QUALIFIER"),
                UnorderedElementsAre("Description", "Override", "ValueMap"));
    EXPECT_THAT(cim::AttributesAt(found, "*", "CLASSORIGIN"), Each(""));
}

TEST_F(ClassOperations, GetClassReturnsInheritedElementsWhenLocalOnlyIsFalse) {
    cim::Answer answer;
    const auto found =
        GetClass(answer, {Class("CIM_ComputerSystem"), Flag("LocalOnly", false), Flag("IncludeClassOrigin", true)});
    EXPECT_THAT(NamesOf(found, "PROPERTY"), IsSupersetOf({"InstanceID", "OperationalStatus", "EnabledState", "Name"}));
    EXPECT_THAT(NamesOf(found, "METHOD"), ElementsAre("RequestStateChange", "SetPowerState"));
    EXPECT_STREQ(Named(found, "InstanceID").attribute("CLASSORIGIN").value(), "CIM_ManagedElement");
    EXPECT_STREQ(Named(found, "InstanceID").attribute("PROPAGATED").value(), "true");
    EXPECT_STREQ(Named(found, "NameFormat").attribute("CLASSORIGIN").value(), "CIM_System");
    EXPECT_FALSE(Named(found, "NameFormat").attribute("PROPAGATED"));
    EXPECT_STREQ(Named(Named(found, "NameFormat"), "MaxLen").attribute("PROPAGATED").value(), "true");
    EXPECT_STREQ(Named(found, "RequestStateChange").attribute("CLASSORIGIN").value(), "CIM_EnabledLogicalElement");
}

TEST_F(ClassOperations, GetClassHonoursEachFlagWhateverTheOthersAre) {
    for (const auto& flags : FlagVariants()) {
        auto parameters = flags;
        parameters.push_back(Class("DEMO_OSProcess"));
        cim::Answer answer;
        const auto found = GetClass(answer, parameters);
        const auto isSet = [&](std::size_t flag) { return flags[flag].find("TRUE") != std::string::npos; };
        const std::string context = flags[0] + flags[1] + flags[2];
        EXPECT_THAT(NamesOf(found, "PROPERTY"), ElementsAre("GroupComponent", "PartComponent")) << context;
        EXPECT_EQ(found.select_nodes(".//QUALIFIER").empty(), !isSet(1)) << context;
        EXPECT_EQ(found.select_nodes(".//QUALIFIER[@PROPAGATED]").empty(), isSet(0) || !isSet(1)) << context;
        EXPECT_THAT(cim::AttributesAt(found, "PROPERTY.REFERENCE", "CLASSORIGIN"),
                    Each(isSet(2) ? "CIM_Component" : ""))
            << context;
    }
}

TEST_F(ClassOperations, GetClassKeepsToThePropertyListAndKeepsTheMethods) {
    const struct {
        std::string list;
        Names properties;
    } kCases[]{
        {List({"name", "Dedicated", "Nothing", "Name"}), {"Name", "Dedicated"}},
        {List({"Nothing"}), {}},
        {List({}), {}},
    };
    for (const auto& [list, properties] : kCases) {
        cim::Answer answer;
        const auto found = GetClass(answer, {Class("CIM_ComputerSystem"), Flag("LocalOnly", false), list});
        EXPECT_EQ(NamesOf(found, "PROPERTY"), properties) << list;
        EXPECT_EQ(NamesOf(found, "METHOD").size(), 2U) << list;
    }
    cim::Answer answer;
    const auto local = GetClass(answer, {Class("CIM_ComputerSystem"), List({"Name", "Dedicated"})});
    EXPECT_THAT(NamesOf(local, "PROPERTY"), ElementsAre("Dedicated"));
    cim::Answer all;
    EXPECT_EQ(NamesOf(GetClass(all, {Class("CIM_System"), cim::Parameter("PropertyList", "")}), "PROPERTY"),
              NamesOf(GetClass(answer, {Class("CIM_System")}), "PROPERTY"));
}

TEST_F(ClassOperations, GetClassWritesParametersOfEveryKind) {
    cim::Answer answer;
    const auto found = GetClass(answer, {Class("DEMO_AllTypes")});
    const auto method = Named(found, "Convert");
    EXPECT_STREQ(Named(method, "Numbers").name(), "PARAMETER.ARRAY");
    EXPECT_STREQ(Named(method, "Numbers").attribute("TYPE").value(), "sint64");
    EXPECT_STREQ(Named(method, "To").name(), "PARAMETER.REFERENCE");
    EXPECT_STREQ(Named(method, "To").attribute("REFERENCECLASS").value(), "DEMO_AllTypes");
    EXPECT_STREQ(Named(method, "Others").name(), "PARAMETER.REFARRAY");
    EXPECT_STREQ(Named(method, "Others").attribute("REFERENCECLASS").value(), "DEMO_AllTypes");
    EXPECT_STREQ(Named(Named(method, "To"), "Out").child("VALUE").text().get(), "TRUE");
    EXPECT_EQ(cim::ValueOf(found, "WithDefault"), "a default");
    EXPECT_STREQ(Named(found, "APoint").attribute("EmbeddedObject").value(), "instance");
}

TEST_F(ClassOperations, QualifiersComeBeforePropertiesBeforeMethods) {
    cim::Answer answer;
    const auto found = GetClass(answer, {Class("CIM_ComputerSystem"), Flag("LocalOnly", false)});
    int last = 0;
    for (const auto& child : found.children()) {
        const std::string name = child.name();
        const int rank = name == "QUALIFIER" ? 1 : name.rfind("PROPERTY", 0) == 0 ? 2 : name == "METHOD" ? 3 : 4;
        EXPECT_LE(last, rank) << name;
        last = rank;
    }
    EXPECT_EQ(last, 3);
}

TEST_F(ClassOperations, EnumerateClassNamesListsTheLevelOrAllLevelsBelow) {
    const auto names = [](std::vector<std::string> parameters) {
        return NamesOf(Call("EnumerateClassNames", parameters).Returned(), "CLASSNAME");
    };
    const Names roots{"CIM_Component", "CIM_Dependency", "CIM_ManagedElement", "DEMO_AllTypes", "DEMO_Point"};
    EXPECT_THAT(names({}), testing::UnorderedElementsAreArray(roots));
    EXPECT_THAT(names({cim::Parameter("ClassName", "")}), testing::UnorderedElementsAreArray(roots));
    EXPECT_THAT(names({Class("")}), testing::UnorderedElementsAreArray(roots));
    EXPECT_THAT(names({Class("cim_system")}), ElementsAre("CIM_ComputerSystem"));
    EXPECT_THAT(names({Class("CIM_System"), Flag("DeepInheritance", true)}),
                ElementsAre("CIM_ComputerSystem", "DEMO_ComputerSystem"));
    EXPECT_THAT(names({Class("DEMO_ComputerSystem"), Flag("DeepInheritance", true)}), IsEmpty());
    const auto all = names({Flag("DeepInheritance", true)});
    EXPECT_GE(all.size(), 25U);
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
}

TEST_F(ClassOperations, EnumerateClassesReturnsWhatGetClassDoesForEachOfTheNames) {
    auto variants = FlagVariants();
    // The defaults are the same, too.
    variants.emplace_back();
    for (const auto& scope : {std::vector<std::string>{},
                              {Class("CIM_LogicalDevice")},
                              {Class("CIM_Component"), Flag("DeepInheritance", true)}}) {
        const auto names = NamesOf(Call("EnumerateClassNames", scope).Returned(), "CLASSNAME");
        for (const auto& flags : variants) {
            auto parameters = scope;
            parameters.insert(parameters.end(), flags.begin(), flags.end());
            const auto classes = Call("EnumerateClasses", parameters);
            ASSERT_EQ(NamesOf(classes.Returned(), "CLASS"), names);
            for (const auto& found : classes.Returned().children()) {
                auto single = flags;
                single.push_back(Class(found.attribute("NAME").value()));
                cim::Answer answer;
                EXPECT_EQ(cim::Raw(found), cim::Raw(GetClass(answer, single)));
            }
        }
    }
}

TEST_F(QualifierOperations, GetQualifierReturnsTheDeclaration) {
    const auto key = Call("GetQualifier", {cim::Text("QualifierName", "key")});
    const auto found = key.Returned().child("QUALIFIER.DECLARATION");
    EXPECT_STREQ(found.attribute("NAME").value(), "Key");
    EXPECT_STREQ(found.attribute("TYPE").value(), "boolean");
    EXPECT_STREQ(found.attribute("OVERRIDABLE").value(), "false");
    EXPECT_STREQ(found.child("SCOPE").attribute("REFERENCE").value(), "true");
    EXPECT_FALSE(found.child("SCOPE").attribute("METHOD"));
    EXPECT_STREQ(found.child("VALUE").text().get(), "FALSE");
    const auto map = Call("GetQualifier", {cim::Text("QualifierName", "ValueMap")});
    EXPECT_STREQ(map.First().attribute("ISARRAY").value(), "true");
    const auto flavor = [](const char* qualifier, const char* attribute) {
        return std::string(
            Call("GetQualifier", {cim::Text("QualifierName", qualifier)}).First().attribute(attribute).value());
    };
    EXPECT_EQ(flavor("NullDisplay", "TOINSTANCE"), "true");
    EXPECT_EQ(flavor("NullDisplay", "TRANSLATABLE"), "true");
    EXPECT_EQ(flavor("Version", "TOSUBCLASS"), "false");
    EXPECT_EQ(flavor("Version", "TOINSTANCE"), "");
}

TEST_F(QualifierOperations, EnumerateQualifiersReturnsEveryDeclarationThatAClassUses) {
    const auto all = Call("EnumerateQualifiers");
    std::set<std::string> declared;
    for (const auto& declaration : all.Returned().children()) {
        const std::string name = declaration.attribute("NAME").value();
        EXPECT_TRUE(declared.insert(name).second) << name;
        const auto single = Call("GetQualifier", {cim::Text("QualifierName", name)});
        EXPECT_EQ(cim::Raw(declaration), cim::Raw(single.First()));
    }
    const auto classes = Call("EnumerateClasses", {Flag("DeepInheritance", true)});
    for (const auto& name : cim::AttributesAt(classes.Returned(), ".//QUALIFIER", "NAME")) {
        EXPECT_THAT(declared, Contains(name));
    }
}

} // namespace
