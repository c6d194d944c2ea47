// Several namespaces of one server: what each of them holds, and associations that lead from one to another.

#include "CimClient.h"
#include "schema/Names.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using cim::Call;
using cim::Class;
using cim::Names;
using cim::NamesOf;
using cim::Parameter;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

constexpr int kInvalidNamespace = 3;
constexpr int kInvalidParameter = 4;

std::string Document(const std::string& objects) {
    return "<CIM CIMVERSION='2.0' DTDVERSION='2.0'><DECLARATION><DECLGROUP><VALUE.OBJECT>" + objects +
           "</VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>";
}

const std::string kKey = "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER>";

std::string NodeClass(const std::string& name, const std::string& superclass = "CIM_ManagedElement") {
    return "<CLASS NAME='" + name + "' SUPERCLASS='" + superclass + "'><PROPERTY NAME='Id' TYPE='uint8'>" + kKey +
           "</PROPERTY></CLASS>";
}

std::string Node(const std::string& className, const std::string& id) {
    return "<INSTANCE CLASSNAME='" + className + "'><PROPERTY NAME='Id' TYPE='uint8'><VALUE>" + id +
           "</VALUE></PROPERTY></INSTANCE>";
}

std::string NodePath(const std::string& className, const std::string& id) {
    return "<INSTANCENAME CLASSNAME='" + className + "'><KEYBINDING NAME='Id'><KEYVALUE VALUETYPE='numeric'>" + id +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}

std::string LocalSpace(const std::string& second) {
    return "<LOCALNAMESPACEPATH><NAMESPACE NAME='root'/><NAMESPACE NAME='" + second + "'/></LOCALNAMESPACEPATH>";
}

std::string PathIn(const std::string& space, const std::string& path) {
    return "<LOCALINSTANCEPATH>" + LocalSpace(space) + path + "</LOCALINSTANCEPATH>";
}

const std::string kLinkClass =
    "<CLASS NAME='MY_Link'><QUALIFIER NAME='Association' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER>"
    "<PROPERTY.REFERENCE NAME='From' REFERENCECLASS='MY_Node'>" +
    kKey + "</PROPERTY.REFERENCE><PROPERTY.REFERENCE NAME='To'>" + kKey + "</PROPERTY.REFERENCE></CLASS>";

/// A link from the node 1 to the object of a path.
std::string LinkTo(const std::string& path) {
    const auto reference = [](const std::string& role, const std::string& value) {
        return "<PROPERTY.REFERENCE NAME='" + role + "'><VALUE.REFERENCE>" + value +
               "</VALUE.REFERENCE></PROPERTY.REFERENCE>";
    };
    return "<INSTANCE CLASSNAME='MY_Link'>" + reference("From", NodePath("MY_Node", "1")) + reference("To", path) +
           "</INSTANCE>";
}

/// root/near with a node and links from it, and root/far with nodes of a class of the same name and of one more.
demo::DemoServerOptions TwoNamespaces(const std::string& links) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.namespaces["root/near"].push_back(
        {"near.xml", Document(NodeClass("MY_Node") + kLinkClass + Node("MY_Node", "1") + links)});
    options.namespaces["root/far"].push_back(
        {"far.xml", Document(NodeClass("MY_Node") + NodeClass("FAR_Node", "CIM_LogicalElement") + Node("MY_Node", "1") +
                             Node("MY_Node", "7") + Node("FAR_Node", "7"))});
    return options;
}

std::string FirstNode() { return Parameter("ObjectName", NodePath("MY_Node", "1")); }

/// Where the objects of an answer are, as in "root/far:MY_Node 7".
Names Found(const cim::Answer& answer) {
    Names found;
    for (const auto& node : answer.Returned().select_nodes("*/INSTANCEPATH")) {
        const auto path = node.node();
        std::string text;
        for (const auto& part : path.child("NAMESPACEPATH").child("LOCALNAMESPACEPATH").children()) {
            (text += text.empty() ? "" : "/") += part.attribute("NAME").value();
        }
        EXPECT_STRNE(path.child("NAMESPACEPATH").child("HOST").text().get(), "");
        const auto name = path.child("INSTANCENAME");
        found.push_back(text + ':' + name.attribute("CLASSNAME").value() + ' ' +
                        name.select_node(".//KEYVALUE").node().text().get());
    }
    return found;
}

Names ClassesOf(const std::string& nameSpace) {
    return NamesOf(Call("EnumerateClassNames", {cim::Flag("DeepInheritance", true)}, nameSpace).Returned(),
                   "CLASSNAME");
}

TEST(Namespaces, HoldTheBaseClassesAndTheirOwnSchema) {
    const demo::DemoServer server(TwoNamespaces(""));
    EXPECT_THAT(ClassesOf("root/far"), testing::IsSupersetOf({"CIM_System", "MY_Node", "FAR_Node"}));
    EXPECT_THAT(ClassesOf("root/far"), Not(Contains("DEMO_ComputerSystem")));
    EXPECT_THAT(ClassesOf("root/near"), Not(Contains("FAR_Node")));
    EXPECT_THAT(ClassesOf("root/cimv2"), Not(Contains("MY_Node")));
    EXPECT_THAT(ClassesOf("root/cimv2"), Contains("DEMO_ComputerSystem"));
    EXPECT_EQ(Call("GetQualifier", {cim::Text("QualifierName", "Key")}, "root/far").error, 0);
}

TEST(Namespaces, HoldNoInstancesButTheirOwn) {
    const demo::DemoServer server(TwoNamespaces(""));
    const auto names = [](const std::string& nameSpace) {
        return cim::AttributesAt(Call("EnumerateInstanceNames", {Class("CIM_ManagedElement")}, nameSpace).Returned(),
                                 "INSTANCENAME", "CLASSNAME");
    };
    EXPECT_THAT(names("root/far"), UnorderedElementsAre("MY_Node", "MY_Node", "FAR_Node"));
    EXPECT_THAT(names("root/near"), ElementsAre("MY_Node"));
    const auto seventh = Parameter("InstanceName", NodePath("MY_Node", "7"));
    EXPECT_EQ(Call("GetInstance", {seventh}, "root/far").error, 0);
    EXPECT_NE(Call("GetInstance", {seventh}, "root/near").error, 0);
}

TEST(Namespaces, AreFoundWhateverTheCaseOfTheirNames) {
    const demo::DemoServer server(TwoNamespaces(""));
    EXPECT_THAT(ClassesOf("ROOT/Far"), Contains("FAR_Node"));
    EXPECT_THAT(ClassesOf("Root/CIMV2"), Contains("DEMO_ComputerSystem"));
}

TEST(Namespaces, TakeSeveralSchemasThatBuildOnEachOther) {
    demo::DemoServerOptions options = TwoNamespaces("");
    options.namespaces["Root/FAR"].push_back(
        {"more.xml", Document("<CLASS NAME='MORE_Node' SUPERCLASS='FAR_Node'/>" + Node("MORE_Node", "9"))});
    options.namespaces["root/cimv2"].push_back(
        {"machine.xml", Document("<CLASS NAME='MORE_System' SUPERCLASS='DEMO_ComputerSystem'/>")});
    options.namespaces["interop"].push_back(
        {"profile.xml", Document("<CLASS NAME='MORE_Profile' SUPERCLASS='CIM_RegisteredProfile'/>")});
    const demo::DemoServer server(std::move(options));
    EXPECT_THAT(ClassesOf("root/far"), Contains("MORE_Node"));
    EXPECT_EQ(Call("EnumerateInstanceNames", {Class("MORE_Node")}, "root/far").First().name(),
              std::string("INSTANCENAME"));
    EXPECT_THAT(ClassesOf("root/cimv2"), Contains("MORE_System"));
    EXPECT_THAT(ClassesOf("interop"), Contains("MORE_Profile"));
}

TEST(Namespaces, ThatAreNotThereAreRefused) {
    const demo::DemoServer server(TwoNamespaces(""));
    for (const char* const name : {"root/none", "root", "far", "root/far/away", "root/interop"}) {
        const auto answer = Call("EnumerateClassNames", {}, name);
        EXPECT_EQ(answer.error, kInvalidNamespace) << name;
        EXPECT_EQ(answer.description, std::string("CIM_ERR_INVALID_NAMESPACE: there is no namespace ") + name);
    }
}

TEST(Namespaces, WithNamesThatRequestsCannotHaveAreRefusedAtTheStart) {
    for (const char* const name : {"", "/root", "root/", "root//far", "root/a b", "root\\far", "root/1", "root/a=b"}) {
        EXPECT_FALSE(demo::IsNamespaceName(name)) << name;
        demo::DemoServerOptions options = TwoNamespaces("");
        options.namespaces[name];
        try {
            const demo::DemoServer server(std::move(options));
            ADD_FAILURE() << "serves " << name;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(),
                      '"' + std::string(name) + "\" cannot be the name of a namespace; names look like root/example");
        }
    }
    for (const char* const name : {"interop", "root/cimv2", "root/PG_InterOp", "a/b/c"}) {
        EXPECT_TRUE(demo::IsNamespaceName(name)) << name;
    }
}

TEST(Namespaces, AreLinkedByAssociationsThatLeadFromOneToTheOther) {
    const demo::DemoServer server(TwoNamespaces(LinkTo(PathIn("Far", NodePath("far_node", "0x7")))));
    const auto names = Call("AssociatorNames", {FirstNode()}, "root/near");
    EXPECT_THAT(Found(names), ElementsAre("root/far:FAR_Node 7"));
    const auto objects = Call("Associators", {FirstNode()}, "root/near");
    EXPECT_THAT(Found(objects), ElementsAre("root/far:FAR_Node 7"));
    EXPECT_STREQ(objects.First().child("INSTANCE").attribute("CLASSNAME").value(), "FAR_Node");
    EXPECT_EQ(cim::ValueOf(objects.First().child("INSTANCE"), "Id"), "7");
}

TEST(Namespaces, KeepObjectsOfTheSameNameApart) {
    const demo::DemoServer server(TwoNamespaces(LinkTo(PathIn("far", NodePath("MY_Node", "1"))) +
                                                LinkTo(PathIn("far", NodePath("MY_Node", "01"))) +
                                                LinkTo(NodePath("MY_Node", "1"))));
    EXPECT_THAT(Found(Call("AssociatorNames", {FirstNode()}, "root/near")),
                UnorderedElementsAre("root/far:MY_Node 1", "root/near:MY_Node 1"));
}

TEST(Namespaces, AssociationsDoNotLeadWhereTheServerHasNothing) {
    const std::string node = NodePath("MY_Node", "7");
    const demo::DemoServer server(
        TwoNamespaces(LinkTo(PathIn("none", node)) + LinkTo(PathIn("far", NodePath("NO_Node", "7"))) +
                      LinkTo(PathIn("far", NodePath("MY_Node", "x"))) +
                      LinkTo("<INSTANCEPATH><NAMESPACEPATH><HOST>other.example</HOST>" + LocalSpace("far") +
                             "</NAMESPACEPATH>" + NodePath("FAR_Node", "7") + "</INSTANCEPATH>")));
    EXPECT_THAT(Found(Call("AssociatorNames", {FirstNode()}, "root/near")), IsEmpty());
    EXPECT_EQ(Found(Call("ReferenceNames", {FirstNode()}, "root/near")).size(), 4U);
}

TEST(Namespaces, AnObjectThatHasGoneFromAnotherOneIsNotFound) {
    const demo::DemoServer server(TwoNamespaces(LinkTo(PathIn("far", NodePath("MY_Node", "200")))));
    EXPECT_THAT(Found(Call("Associators", {FirstNode()}, "root/near")), IsEmpty());
}

TEST(Namespaces, FiltersOfResultsAskTheNamespaceOfTheResult) {
    const demo::DemoServer server(TwoNamespaces(LinkTo(PathIn("far", NodePath("FAR_Node", "7"))) +
                                                LinkTo(PathIn("far", NodePath("MY_Node", "7")))));
    const auto found = [](const std::string& parameter, const std::string& className) {
        return Found(Call("AssociatorNames", {FirstNode(), Class(parameter, className)}, "root/near"));
    };
    EXPECT_THAT(found("ResultClass", "CIM_LogicalElement"), ElementsAre("root/far:FAR_Node 7"));
    EXPECT_THAT(found("ResultClass", "MY_Node"), ElementsAre("root/far:MY_Node 7"));
    EXPECT_THAT(found("ResultClass", "CIM_System"), IsEmpty());
    // The names in a request are those of its own namespace.
    EXPECT_EQ(Call("AssociatorNames", {FirstNode(), Class("ResultClass", "FAR_Node")}, "root/near").error,
              kInvalidParameter);
}

TEST(Namespaces, AnAssociationIsFoundByAKeyThatLeadsToAnotherOne) {
    const demo::DemoServer server(TwoNamespaces(LinkTo(PathIn("far", NodePath("FAR_Node", "7")))));
    const auto names = Call("EnumerateInstanceNames", {Class("MY_Link")}, "root/near");
    const std::string path = cim::Raw(names.First());
    EXPECT_THAT(path, testing::HasSubstr("<LOCALINSTANCEPATH>"));
    EXPECT_EQ(Call("GetInstance", {Parameter("InstanceName", path)}, "root/near").error, 0);
    const auto references = Call("References", {FirstNode()}, "root/near");
    EXPECT_EQ(cim::Raw(references.Returned().select_node("*/INSTANCEPATH/INSTANCENAME").node()), path);
}

} // namespace
