#include "CimClient.h"
#include "ServerFixture.h"

#include <gmock/gmock.h>

#include <unistd.h>

#include <algorithm>
#include <set>

namespace {

using cim::Call;
using cim::Class;
using cim::Flag;
using cim::List;
using cim::Names;
using cim::NamesOf;
using cim::Parameter;
using cim::Text;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

using ClassNames = std::set<std::string>;
using Filters = std::vector<std::string>;

class AssociationOperations : public ServerFixture {};

std::string Object(const std::string& name) { return Parameter("ObjectName", name); }
std::string ObjectClass(const std::string& name) { return Class("ObjectName", name); }

cim::Answer Ask(const std::string& method, const std::string& object, Filters filters = {}) {
    filters.push_back(object);
    auto answer = Call(method, filters);
    EXPECT_EQ(answer.error, 0) << answer.description;
    return answer;
}

/// The names of the classes that instances or classes in an answer have, whatever its form is.
ClassNames Found(const cim::Answer& answer) {
    const auto instances = cim::AttributesAt(answer.Returned(), "*/INSTANCEPATH/INSTANCENAME", "CLASSNAME");
    const auto classes = cim::AttributesAt(answer.Returned(), "*/CLASSPATH/CLASSNAME", "NAME");
    ClassNames found(instances.begin(), instances.end());
    found.insert(classes.begin(), classes.end());
    return found;
}

/// The paths of an answer, as text.
std::vector<std::string> Paths(const cim::Answer& answer) {
    std::vector<std::string> paths;
    for (const auto& child : answer.Returned().children()) {
        paths.push_back(cim::Raw(child.first_child()));
    }
    return paths;
}

TEST_F(AssociationOperations, AssociatorsOfAnInstanceAreWhatPassesTheFilters) {
    const std::string computer = Object(cim::ComputerSystem());
    const std::string system = Object(cim::OperatingSystem());
    const ClassNames everything{"DEMO_OperatingSystem", "DEMO_FileSystem", "DEMO_Memory", "DEMO_StorageVolume"};
    const struct {
        std::string object;
        Filters filters;
        ClassNames found;
    } kCases[]{
        {computer, {Class("AssocClass", "CIM_RunningOS")}, {"DEMO_OperatingSystem"}},
        {computer, {Class("AssocClass", "demo_runningos")}, {"DEMO_OperatingSystem"}},
        {computer, {Class("AssocClass", "CIM_Dependency")}, {"DEMO_OperatingSystem"}},
        {computer, {Class("AssocClass", "CIM_HostedFileSystem")}, {"DEMO_FileSystem"}},
        {computer, {Class("AssocClass", "DEMO_OSProcess")}, {}},
        {computer, {Class("AssocClass", "CIM_OperatingSystem")}, {}},
        {computer, {Class("ResultClass", "CIM_Memory")}, {"DEMO_Memory"}},
        {computer, {Class("ResultClass", "CIM_StorageExtent")}, {"DEMO_Memory", "DEMO_StorageVolume"}},
        {computer, {Class("ResultClass", "CIM_ComputerSystem")}, {}},
        {computer, {Text("Role", "dependent")}, {"DEMO_OperatingSystem"}},
        {computer, {Text("Role", "Antecedent")}, {}},
        {computer, {Text("Role", "Nothing")}, {}},
        {computer, {Text("ResultRole", "antecedent")}, {"DEMO_OperatingSystem"}},
        {computer, {Text("ResultRole", "Dependent")}, {}},
        {computer,
         {Class("AssocClass", "CIM_SystemDevice"), Class("ResultClass", "DEMO_Memory"), Text("Role", "GroupComponent"),
          Text("ResultRole", "PartComponent")},
         {"DEMO_Memory"}},
        {computer, {Class("AssocClass", "CIM_SystemDevice"), Class("ResultClass", "CIM_FileSystem")}, {}},
        {system, {Class("ResultClass", "CIM_System")}, {"DEMO_ComputerSystem"}},
        {system, {Text("Role", "GroupComponent")}, {"DEMO_Process"}},
        {system, {}, {"DEMO_ComputerSystem", "DEMO_Process"}},
        // Null is no restriction, in either of the ways to write it.
        {system,
         {Class("AssocClass", ""), Parameter("ResultClass", ""), Parameter("Role", ""), Text("ResultRole", "")},
         {"DEMO_ComputerSystem", "DEMO_Process"}},
    };
    for (const auto& [object, filters, found] : kCases) {
        for (const char* const method : {"Associators", "AssociatorNames"}) {
            EXPECT_EQ(Found(Ask(method, object, filters)), found) << method << testing::PrintToString(filters);
        }
    }
    EXPECT_THAT(Found(Ask("AssociatorNames", computer)), IsSupersetOf(everything));
}

TEST_F(AssociationOperations, ReferencesOfAnInstanceAreWhatPassesTheFilters) {
    const std::string computer = Object(cim::ComputerSystem());
    const struct {
        Filters filters;
        ClassNames found;
    } kCases[]{
        {{}, {"DEMO_RunningOS", "DEMO_SystemDevice", "DEMO_HostedFileSystem"}},
        {{Class("ResultClass", "CIM_Dependency")}, {"DEMO_RunningOS"}},
        {{Class("ResultClass", "CIM_Component")}, {"DEMO_SystemDevice", "DEMO_HostedFileSystem"}},
        {{Class("ResultClass", "DEMO_SystemDevice")}, {"DEMO_SystemDevice"}},
        {{Class("ResultClass", "DEMO_OSProcess")}, {}},
        {{Class("ResultClass", "DEMO_Memory")}, {}},
        {{Text("Role", "GROUPCOMPONENT")}, {"DEMO_SystemDevice", "DEMO_HostedFileSystem"}},
        {{Text("Role", "PartComponent")}, {}},
        {{Class("ResultClass", "CIM_Component"), Text("Role", "Dependent")}, {}},
    };
    for (const auto& [filters, found] : kCases) {
        for (const char* const method : {"References", "ReferenceNames"}) {
            EXPECT_EQ(Found(Ask(method, computer, filters)), found) << method << testing::PrintToString(filters);
        }
    }
}

TEST_F(AssociationOperations, RolesTellTheParentOfAProcessFromItsChildren) {
    const auto neighbours = [](int process, const std::string& role, const std::string& resultRole) {
        const auto answer =
            Ask("AssociatorNames", Object(cim::Process(process)),
                {Class("AssocClass", "DEMO_ParentProcess"), Text("Role", role), Text("ResultRole", resultRole)});
        std::set<std::string> numbers;
        for (const auto& key : answer.Returned().select_nodes(".//KEYBINDING[@NAME='Handle']/KEYVALUE")) {
            numbers.insert(key.node().text().get());
        }
        return numbers;
    };
    const std::string self = std::to_string(::getpid());
    const std::string parent = std::to_string(::getppid());
    EXPECT_THAT(neighbours(::getpid(), "Dependent", ""), ElementsAre(parent));
    EXPECT_THAT(neighbours(::getpid(), "", "Antecedent"), ElementsAre(parent));
    EXPECT_THAT(neighbours(::getpid(), "", ""), Contains(parent));
    EXPECT_THAT(neighbours(::getpid(), "Antecedent", ""), Not(Contains(parent)));
    EXPECT_THAT(neighbours(::getpid(), "Dependent", "Dependent"), IsEmpty());
    EXPECT_THAT(neighbours(::getppid(), "Antecedent", "Dependent"), Contains(self));
}

TEST_F(AssociationOperations, EveryAssociationLeadsFromEachOfItsEndsToTheOther) {
    ClassNames served;
    for (const char* const top : {"CIM_Dependency", "CIM_Component"}) {
        const auto links = Call("EnumerateInstances", {Class(top)});
        for (const auto& link : links.Returned().children()) {
            const auto instance = link.child("INSTANCE");
            const std::string className = instance.attribute("CLASSNAME").value();
            const auto ends = instance.select_nodes("PROPERTY.REFERENCE/VALUE.REFERENCE/INSTANCENAME");
            ASSERT_EQ(ends.size(), 2U);
            const auto isOther = [](const pugi::xml_node& end) {
                return std::string(end.attribute("CLASSNAME").value()) == "DEMO_Process" &&
                       end.find_child_by_attribute("NAME", "Handle").child("KEYVALUE").text().as_int() != ::getpid();
            };
            // Other processes come and go.
            if (isOther(ends[0].node()) || isOther(ends[1].node())) {
                continue;
            }
            served.insert(className);
            for (const auto& [from, to] : {std::pair(ends[0], ends[1]), std::pair(ends[1], ends[0])}) {
                const Filters filters{Class("AssocClass", className),
                                      Text("Role", from.node().parent().parent().attribute("NAME").value()),
                                      Text("ResultRole", to.node().parent().parent().attribute("NAME").value())};
                const auto answer = Ask("AssociatorNames", Object(cim::Raw(from.node())), filters);
                std::vector<std::string> names;
                for (const auto& name : answer.Returned().select_nodes("OBJECTPATH/INSTANCEPATH/INSTANCENAME")) {
                    names.push_back(cim::Raw(name.node()));
                }
                EXPECT_THAT(names, Contains(cim::Raw(to.node())));
                EXPECT_EQ(Call("GetInstance", {Parameter("InstanceName", cim::Raw(to.node()))}).error, 0);
            }
            EXPECT_EQ(Call("GetInstance", {Parameter("InstanceName", cim::Raw(link.child("INSTANCENAME")))}).error, 0);
        }
    }
    EXPECT_THAT(served,
                IsSupersetOf({"DEMO_RunningOS", "DEMO_SystemDevice", "DEMO_HostedFileSystem", "DEMO_OSProcess"}));
}

TEST_F(AssociationOperations, NoObjectIsAssociatedTwice) {
    const auto names = Paths(Ask("AssociatorNames", Object(cim::ComputerSystem())));
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST_F(AssociationOperations, NamesAreThoseOfTheObjects) {
    const std::string computer = Object(cim::ComputerSystem());
    EXPECT_EQ(Paths(Ask("Associators", computer)), Paths(Ask("AssociatorNames", computer)));
    EXPECT_EQ(Paths(Ask("References", computer)), Paths(Ask("ReferenceNames", computer)));
    const std::string type = ObjectClass("CIM_ComputerSystem");
    EXPECT_EQ(Paths(Ask("Associators", type)), Paths(Ask("AssociatorNames", type)));
    EXPECT_EQ(Paths(Ask("References", type)), Paths(Ask("ReferenceNames", type)));
}

TEST_F(AssociationOperations, PathsAreWholeAndLeadBackToTheInstance) {
    for (const char* const method : {"Associators", "References"}) {
        const auto all = Ask(method, Object(cim::ComputerSystem()));
        ASSERT_TRUE(all.First());
        for (const auto& object : all.Returned().children()) {
            EXPECT_STREQ(object.name(), "VALUE.OBJECTWITHPATH");
            const auto path = object.child("INSTANCEPATH");
            EXPECT_STRNE(path.child("NAMESPACEPATH").child("HOST").text().get(), "");
            EXPECT_THAT(NamesOf(path.child("NAMESPACEPATH").child("LOCALNAMESPACEPATH"), "NAMESPACE"),
                        ElementsAre("root", "cimv2"));
            const auto single = Call("GetInstance", {Parameter("InstanceName", cim::Raw(path.child("INSTANCENAME")))});
            EXPECT_EQ(single.error, 0);
            EXPECT_EQ(NamesOf(object.child("INSTANCE"), "PROPERTY"), NamesOf(single.First(), "PROPERTY"));
        }
    }
}

TEST_F(AssociationOperations, TheOptionsOfInstancesAreHonoured) {
    for (const char* const method : {"Associators", "References"}) {
        const Filters filters{
            Class("ResultClass", method == std::string("Associators") ? "CIM_OperatingSystem" : "CIM_RunningOS")};
        const auto ask = [&](Filters options) {
            options.insert(options.end(), filters.begin(), filters.end());
            return Ask(method, Object(cim::ComputerSystem()), options);
        };
        const auto plain = ask({});
        EXPECT_TRUE(plain.Returned().select_nodes(".//QUALIFIER").empty());
        EXPECT_TRUE(plain.Returned().select_nodes(".//*[@CLASSORIGIN]").empty());
        EXPECT_EQ(ask({Flag("IncludeQualifiers", false), Flag("IncludeClassOrigin", false)})
                      .Returned()
                      .select_nodes(".//QUALIFIER")
                      .size(),
                  0U);
        EXPECT_FALSE(ask({Flag("IncludeQualifiers", true)}).Returned().select_nodes(".//INSTANCE/*/QUALIFIER").empty());
        EXPECT_FALSE(
            ask({Flag("IncludeClassOrigin", true)}).Returned().select_nodes(".//INSTANCE/*[@CLASSORIGIN]").empty());
        const auto listed = ask({List({"since", "OSTYPE", "Nothing"})});
        EXPECT_THAT(NamesOf(listed.First().child("INSTANCE"), "PROPERTY"),
                    ElementsAre(method == std::string("Associators") ? "OSType" : "Since"));
        EXPECT_THAT(NamesOf(ask({List({})}).First().child("INSTANCE"), "PROPERTY"), IsEmpty());
    }
}

TEST_F(AssociationOperations, OfAClassTheyFollowTheDeclarations) {
    const struct {
        const char* method;
        const char* className;
        Filters filters;
        ClassNames found;
    } kCases[]{
        {"Reference",
         "CIM_ComputerSystem",
         {},
         {"CIM_Component", "CIM_SystemDevice", "CIM_HostedFileSystem", "CIM_Dependency", "CIM_RunningOS"}},
        {"Reference", "CIM_ManagedElement", {}, {"CIM_Component", "CIM_Dependency"}},
        {"Reference",
         "demo_process",
         {Class("ResultClass", "CIM_Dependency")},
         {"CIM_Dependency", "DEMO_ParentProcess"}},
        {"Reference", "CIM_Process", {Text("Role", "PartComponent")}, {"CIM_Component", "CIM_OSProcess"}},
        {"Reference", "CIM_Process", {Text("Role", "Nothing")}, {}},
        {"Reference", "DEMO_Point", {}, {}},
        {"Associator", "CIM_FileSystem", {Class("AssocClass", "CIM_HostedFileSystem")}, {"CIM_System"}},
        {"Associator",
         "DEMO_FileSystem",
         {Class("AssocClass", "CIM_HostedFileSystem")},
         {"CIM_System", "DEMO_ComputerSystem"}},
        {"Associator", "DEMO_FileSystem", {}, {"CIM_ManagedElement", "CIM_System", "DEMO_ComputerSystem"}},
        {"Associator", "DEMO_FileSystem", {Class("ResultClass", "CIM_System")}, {"CIM_System", "DEMO_ComputerSystem"}},
        {"Associator",
         "DEMO_Process",
         {Class("AssocClass", "DEMO_ParentProcess"), Text("Role", "Dependent"), Text("ResultRole", "Antecedent")},
         {"DEMO_Process"}},
        {"Associator",
         "DEMO_Process",
         {Class("AssocClass", "DEMO_ParentProcess"), Text("Role", "Dependent"), Text("ResultRole", "Dependent")},
         {}},
        {"Associator", "CIM_Process", {Class("AssocClass", "DEMO_ParentProcess")}, {}},
    };
    for (const auto& [method, className, filters, found] : kCases) {
        for (const std::string form : {"s", "Names"}) {
            EXPECT_EQ(Found(Ask(method + form, ObjectClass(className), filters)), found)
                << method << className << testing::PrintToString(filters);
        }
    }
}

TEST_F(AssociationOperations, ClassesComeWithTheirPathsAndAsTheOptionsSay) {
    const Filters filter{Class("ResultClass", "CIM_RunningOS")};
    const auto ask = [&](Filters options) {
        options.insert(options.end(), filter.begin(), filter.end());
        return Ask("References", ObjectClass("CIM_OperatingSystem"), options);
    };
    const auto plain = ask({});
    EXPECT_STREQ(plain.First().name(), "VALUE.OBJECTWITHPATH");
    EXPECT_THAT(
        NamesOf(plain.First().child("CLASSPATH").child("NAMESPACEPATH").child("LOCALNAMESPACEPATH"), "NAMESPACE"),
        ElementsAre("root", "cimv2"));
    const auto compare = [&](const Filters& options, Filters same) {
        same.push_back(Class("CIM_RunningOS"));
        same.push_back(Flag("LocalOnly", false));
        const auto answer = ask(options);
        const auto single = Call("GetClass", same);
        EXPECT_EQ(cim::Raw(answer.First().child("CLASS")), cim::Raw(single.First())) << testing::PrintToString(options);
    };
    compare({}, {Flag("IncludeQualifiers", false)});
    for (const Filters& options : {Filters{Flag("IncludeQualifiers", true)},
                                   Filters{Flag("IncludeQualifiers", true), Flag("IncludeClassOrigin", true)},
                                   Filters{Flag("IncludeQualifiers", false), List({"dependent"})},
                                   Filters{Flag("IncludeQualifiers", true), List({})}}) {
        compare(options, options);
    }
}

TEST_F(AssociationOperations, UnknownObjectsAndClassesAreErrors) {
    const struct {
        std::string object;
        Filters filters;
        int error;
    } kCases[]{
        {ObjectClass("Nope"), {}, 4},
        {Object(cim::InstanceName("Nope", {{"a", "b"}})), {}, 4},
        {Object(cim::InstanceName("DEMO_ComputerSystem", {{"Name", "x"}})), {}, 4},
        {Object(cim::InstanceName("DEMO_ComputerSystem", {})), {}, 4},
        {Object(cim::Process(0)), {}, 6},
        {Object(cim::ComputerSystem()), {Class("ResultClass", "Nope")}, 4},
        {ObjectClass("CIM_System"), {Class("ResultClass", "Nope")}, 4},
    };
    for (auto [object, filters, error] : kCases) {
        for (const char* const method : {"Associators", "AssociatorNames", "References", "ReferenceNames"}) {
            auto parameters = filters;
            parameters.push_back(object);
            EXPECT_EQ(Call(method, parameters).error, error) << method << testing::PrintToString(parameters);
        }
    }
    EXPECT_EQ(Call("AssociatorNames", {ObjectClass("CIM_System"), Class("AssocClass", "Nope")}).error, 4);
}

} // namespace
