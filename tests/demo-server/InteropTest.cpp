// What the server tells of itself in the Interop namespace.

#include "CimClient.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/SkipTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using cim::Call;
using cim::Class;
using cim::Names;
using cim::Parameter;
using cim::ValueOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr const char* kInterop = "interop";

demo::DemoServerOptions Options() {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    return options;
}

class Interop : public testing::Test {
  private:
    demo::DemoServer server_{Options()};
};

/// A property of all instances of a class.
Names ValuesOf(const char* className, const char* property, const std::string& nameSpace = kInterop) {
    Names values;
    const auto all = Call("EnumerateInstances", {Class(className)}, nameSpace);
    for (const auto& named : all.Returned().children()) {
        values.push_back(ValueOf(named.child("INSTANCE"), property));
    }
    return values;
}

/// The answer about a profile, which is named by the end of its InstanceID.
cim::Answer AskProfile(const std::string& method, const std::string& profile,
                       const std::vector<std::string>& filters = {}) {
    std::vector<std::string> parameters = filters;
    parameters.push_back(
        Parameter("ObjectName", cim::InstanceName("CIM_RegisteredProfile", {{"InstanceID", "cimhttp:" + profile}})));
    return Call(method, parameters, kInterop);
}

/// The INSTANCENAME elements of the paths of an answer to Associators or AssociatorNames, all in one namespace.
Names NamesIn(const cim::Answer& answer, const Names& nameSpace) {
    EXPECT_EQ(answer.error, 0) << answer.description;
    Names names;
    for (const auto& found : answer.Returned().select_nodes("*/INSTANCEPATH")) {
        EXPECT_EQ(cim::AttributesAt(found.node(), "NAMESPACEPATH/LOCALNAMESPACEPATH/NAMESPACE", "NAME"), nameSpace);
        names.push_back(cim::Raw(found.node().child("INSTANCENAME")));
    }
    return names;
}

TEST_F(Interop, ListsTheNamespaces) {
    EXPECT_THAT(ValuesOf("CIM_Namespace", "Name"), ElementsAre("root/cimv2", "interop"));
    for (const auto& name : ValuesOf("CIM_Namespace", "Name")) {
        EXPECT_EQ(Call("EnumerateClassNames", {}, name).error, 0) << name;
    }
}

TEST_F(Interop, NamespacesBelongToTheServer) {
    const auto servers = Call("EnumerateInstances", {Class("CIM_ObjectManager")}, kInterop);
    const auto server = servers.First().child("INSTANCE");
    const auto spaces = Call("EnumerateInstances", {Class("CIM_Namespace")}, kInterop);
    const auto space = spaces.First().child("INSTANCE");
    EXPECT_EQ(ValueOf(space, "ObjectManagerCreationClassName"), ValueOf(server, "CreationClassName"));
    EXPECT_EQ(ValueOf(space, "ObjectManagerName"), ValueOf(server, "Name"));
    EXPECT_EQ(ValueOf(space, "SystemName"), ValueOf(server, "SystemName"));
    EXPECT_EQ(ValueOf(space, "CreationClassName"), "CIM_Namespace");
}

TEST_F(Interop, SaysWhatServerItIs) {
    const auto all = Call("EnumerateInstances", {Class("CIM_ObjectManager")}, kInterop);
    ASSERT_THAT(cim::RawChildren(all.Returned()), SizeIs(1));
    const auto server = all.First().child("INSTANCE");
    EXPECT_EQ(ValueOf(server, "Version"), "cimhttp demo-server " CIMHTTP_VERSION);
    EXPECT_EQ(ValueOf(server, "Description"), ValueOf(server, "Version"));
    EXPECT_EQ(ValueOf(server, "ElementName"), "demo-server");
    EXPECT_EQ(ValueOf(server, "GatherStatisticalData"), "FALSE");
    EXPECT_EQ(ValueOf(server, "Started"), "TRUE");
    EXPECT_STREQ(cim::Named(server, "OperationalStatus").child("VALUE.ARRAY").child("VALUE").text().get(), "2");
}

TEST_F(Interop, RegistersTwoProfiles) {
    EXPECT_THAT(ValuesOf("CIM_RegisteredProfile", "RegisteredName"),
                ElementsAre("Base Server", "Host LAN Network Port"));
    EXPECT_THAT(ValuesOf("CIM_RegisteredProfile", "RegisteredVersion"), ElementsAre("1.0.1", "1.0.2"));
    EXPECT_THAT(ValuesOf("CIM_RegisteredProfile", "RegisteredOrganization"), ElementsAre("2", "2"));
    const auto declaration = Call("GetClass", {Class("CIM_RegisteredProfile")}, kInterop);
    const auto organization = cim::Named(declaration.First(), "RegisteredOrganization");
    const auto text = [&](const char* qualifier) {
        return std::string(cim::Named(organization, qualifier).select_node("VALUE.ARRAY/VALUE[2]").node().text().get());
    };
    EXPECT_EQ(text("ValueMap"), "2");
    EXPECT_EQ(text("Values"), "DMTF");
}

TEST_F(Interop, ProfilesLeadToTheirCentralInstancesInTheOtherNamespace) {
    EXPECT_THAT(NamesIn(AskProfile("AssociatorNames", "BaseServer"), {"root", "cimv2"}),
                ElementsAre(testing::HasSubstr("CLASSNAME=\"DEMO_ComputerSystem\"")));
    support::SkipTestWithout("/sys/class/net");
    const Names ports = NamesIn(AskProfile("AssociatorNames", "HostLANNetworkPort"), {"root", "cimv2"});
    EXPECT_THAT(ports, Not(IsEmpty()));
    EXPECT_EQ(ports, cim::RawChildren(Call("EnumerateInstanceNames", {Class("CIM_NetworkPort")}).Returned()));
    EXPECT_EQ(NamesIn(AskProfile("Associators", "HostLANNetworkPort"), {"root", "cimv2"}), ports);
}

TEST_F(Interop, CentralInstancesAreThoseOfTheOtherNamespace) {
    const auto answer = AskProfile("Associators", "BaseServer", {Class("AssocClass", "CIM_ElementConformsToProfile")});
    const auto name = cim::Raw(answer.First().child("INSTANCEPATH").child("INSTANCENAME"));
    const auto there = Call("GetInstance", {Parameter("InstanceName", name)});
    EXPECT_EQ(cim::Raw(answer.First().child("INSTANCE")), cim::Raw(there.First()));
}

TEST_F(Interop, FiltersChooseAmongCentralInstances) {
    const auto count = [](const char* parameter, const std::string& value) {
        const bool isRole = std::string(parameter).find("Role") != std::string::npos;
        const auto filter = isRole ? cim::Text(parameter, value) : Class(parameter, value);
        return NamesIn(AskProfile("AssociatorNames", "BaseServer", {filter}), {"root", "cimv2"}).size();
    };
    EXPECT_EQ(count("ResultClass", "CIM_ComputerSystem"), 1U);
    EXPECT_EQ(count("ResultClass", "CIM_NetworkPort"), 0U);
    EXPECT_EQ(count("ResultRole", "ManagedElement"), 1U);
    EXPECT_EQ(count("ResultRole", "ConformantStandard"), 0U);
    EXPECT_EQ(count("Role", "ConformantStandard"), 1U);
    EXPECT_EQ(count("Role", "ManagedElement"), 0U);
}

TEST_F(Interop, EveryInstanceIsFoundByItsPath) {
    for (const char* const name :
         {"CIM_Namespace", "CIM_ObjectManager", "CIM_RegisteredProfile", "CIM_ElementConformsToProfile"}) {
        const auto all = Call("EnumerateInstances", {Class(name)}, kInterop);
        EXPECT_THAT(cim::RawChildren(all.Returned()), Not(IsEmpty())) << name;
        for (const auto& named : all.Returned().children()) {
            const std::string path = cim::Raw(named.child("INSTANCENAME"));
            const auto found = Call("GetInstance", {Parameter("InstanceName", path)}, kInterop);
            EXPECT_EQ(cim::Raw(found.First()), cim::Raw(named.child("INSTANCE"))) << path;
        }
    }
}

TEST_F(Interop, HasNothingOfTheMachineItself) {
    const auto names = Call("EnumerateInstanceNames", {Class("CIM_ManagedSystemElement")}, kInterop);
    EXPECT_THAT(cim::AttributesAt(names.Returned(), "INSTANCENAME", "CLASSNAME"), ElementsAre("DEMO_ObjectManager"));
    EXPECT_EQ(Call("GetClass", {Class("CIM_RegisteredProfile")}, "root/cimv2").error, 6);
}

TEST(InteropName, CanBeChosenAndListsTheOtherNamespaces) {
    demo::DemoServerOptions options = Options();
    options.interop = "root/PG_InterOp";
    options.namespaces["root/far"];
    const demo::DemoServer server(std::move(options));
    EXPECT_THAT(ValuesOf("CIM_Namespace", "Name", "root/PG_InterOp"),
                ElementsAre("root/cimv2", "root/PG_InterOp", "root/far"));
    EXPECT_THAT(ValuesOf("CIM_Namespace", "Name", "ROOT/pg_interop"), SizeIs(3));
    EXPECT_EQ(Call("EnumerateClassNames", {}, "interop").error, 3);
}

TEST(InteropName, IsRefusedWhereItIsTakenOrMalformed) {
    demo::DemoServerOptions options = Options();
    options.interop = "Root/CIMv2";
    EXPECT_THROW(demo::DemoServer(std::move(options)), std::invalid_argument);
    options = Options();
    options.interop = "/interop";
    EXPECT_THROW(demo::DemoServer(std::move(options)), std::invalid_argument);
}

} // namespace
