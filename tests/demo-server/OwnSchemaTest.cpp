// Schemas of one's own beside the built-in one: what is wrong with them, and that they are served.

#include "CimClient.h"
#include "providers/StaticProvider.h"
#include "schema/SchemaReader.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ProgramRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using cim::Call;
using cim::Class;
using cim::Parameter;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Problems = std::vector<std::string>;

/// A document whose first object stands on line 2.
std::string Document(const std::string& objects) {
    return "<CIM CIMVERSION='2.0' DTDVERSION='2.0'><DECLARATION><DECLGROUP>\n" + objects +
           "</DECLGROUP></DECLARATION></CIM>\n";
}

std::string Object(const std::string& object) { return "<VALUE.OBJECT>" + object + "</VALUE.OBJECT>\n"; }

/// What is wrong with a document beside the built-in schema.
Problems ProblemsOf(const std::string& text) {
    try {
        const demo::SchemaDocuments documents(demo::BuiltInSources({{"own.xml", text}}));
        const demo::Schema schema = demo::ReadSchema(documents);
        demo::DeclaredInstances(documents, schema, "root/cimv2");
        return {};
    } catch (const demo::SchemaError& error) {
        return error.Problems();
    }
}

TEST(OwnSchema, ListsAllProblemsWithTheirLines) {
    EXPECT_THAT(ProblemsOf(Document("<VALUE.OBJECT><CLASS NAME='MY_Disk' SUPERCLASS='CIM_Nothing'>\n"
                                    "<QUALIFIER NAME='Nonsense' TYPE='string'/>\n"
                                    "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER>\n"
                                    "<PROPERTY NAME='Size' TYPE='uint65'/>\n"
                                    "<PROPERTY NAME='Speed' TYPE='uint8'><VALUE>\n300</VALUE></PROPERTY>\n"
                                    "<PROPERTY NAME='Name' TYPE='string'/>\n"
                                    "<PROPERTY NAME='name' TYPE='string'>\n"
                                    "</PROPERTY></CLASS></VALUE.OBJECT>\n" +
                                    Object("<CLASS NAME='cim_system'/>") + Object("<CLASS NAME='MY_Disk'/>"))),
                ElementsAre(testing::MatchesRegex("own.xml:11: schema: class cim_system is declared twice, first at "
                                                  "cim-schema.xml:[0-9]+"),
                            "own.xml:12: schema: class MY_Disk is declared twice, first at own.xml:2",
                            "own.xml:2: class MY_Disk: superclass CIM_Nothing is not declared",
                            "own.xml:3: class MY_Disk: qualifier Nonsense has no declaration",
                            "own.xml:4: class MY_Disk: qualifier Key is not meant for this kind of element",
                            "own.xml:5: class MY_Disk, PROPERTY Size: \"uint65\" is no type",
                            "own.xml:6: class MY_Disk, PROPERTY Speed: \"\n300\" is no uint8",
                            "own.xml:9: class MY_Disk, PROPERTY name: declared twice"));
}

TEST(OwnSchema, OneProblemDoesNotMakeOthersInSubclasses) {
    EXPECT_THAT(
        ProblemsOf(Document(
            Object("<CLASS NAME='MY_A'><PROPERTY NAME='P' TYPE='nothing'/>"
                   "<PROPERTY.REFERENCE NAME='R' REFERENCECLASS='MY_None'/></CLASS>") +
            Object("<CLASS NAME='MY_B' SUPERCLASS='MY_A'><PROPERTY NAME='P' TYPE='string'>"
                   "<QUALIFIER NAME='Override' TYPE='string'><VALUE>P</VALUE></QUALIFIER></PROPERTY></CLASS>") +
            Object("<CLASS NAME='MY_C' SUPERCLASS='MY_B'><PROPERTY NAME='P' TYPE='string'>"
                   "<QUALIFIER NAME='Override' TYPE='string'><VALUE>P</VALUE></QUALIFIER></PROPERTY></CLASS>"))),
        ElementsAre("own.xml:2: class MY_A, PROPERTY P: \"nothing\" is no type",
                    "own.xml:2: class MY_A, R: refers to class MY_None, which is not declared"));
    EXPECT_THAT(ProblemsOf(Document(Object("<CLASS NAME='MY_A' SUPERCLASS='MY_B'/>") +
                                    Object("<CLASS NAME='MY_B' SUPERCLASS='MY_A'/>"))),
                ElementsAre("own.xml:3: class MY_B: class MY_A is its own superclass"));
}

TEST(OwnSchema, MayRepeatTheDeclarationOfAQualifierButNotChangeIt) {
    const std::string same = "<QUALIFIER.DECLARATION NAME='MaxLen' TYPE='uint32'>"
                             "<SCOPE PROPERTY='true' METHOD='true' PARAMETER='true'/></QUALIFIER.DECLARATION>\n";
    EXPECT_THAT(ProblemsOf(Document(same)), IsEmpty());
    const auto changed = [&](const std::string& from, const std::string& to) {
        std::string other = same;
        other.replace(other.find(from), from.size(), to);
        return ProblemsOf(Document(other));
    };
    const auto isRefused =
        ElementsAre("own.xml:2: qualifier declaration MaxLen: declared twice, and not the same both times");
    EXPECT_THAT(changed("uint32", "uint16"), isRefused);
    EXPECT_THAT(changed("METHOD='true'", ""), isRefused);
    EXPECT_THAT(changed("TYPE", "ISARRAY='true' TYPE"), isRefused);
    for (const char* const flavor :
         {"OVERRIDABLE='false'", "TOSUBCLASS='false'", "TOINSTANCE='true'", "TRANSLATABLE='true'"}) {
        EXPECT_THAT(changed("TYPE", std::string(flavor) + " TYPE"), isRefused);
    }
    EXPECT_THAT(changed("</QUAL", "<VALUE>7</VALUE></QUAL"), isRefused);
    EXPECT_THAT(ProblemsOf(Document("<QUALIFIER.DECLARATION NAME='MY_Q' TYPE='uint8'><VALUE>x</VALUE>"
                                    "</QUALIFIER.DECLARATION>")),
                ElementsAre("own.xml:2: qualifier declaration MY_Q: \"x\" is no uint8"));
}

TEST(OwnSchema, SaysWhereADocumentIsNotWellFormed) {
    EXPECT_THAT(ProblemsOf("<CIM>\n<DECLARATION>\n</CIM>\n"), ElementsAre(HasSubstr("own.xml:3: not well-formed: ")));
    EXPECT_THAT(ProblemsOf("<html/>"), ElementsAre(HasSubstr("own.xml:1: not a CIM-XML declaration")));
    EXPECT_THAT(ProblemsOf(Document("<VALUE.OBJECT>\n<NONSENSE/></VALUE.OBJECT>")),
                ElementsAre("own.xml:3: schema: unexpected element NONSENSE"));
}

TEST(OwnInstances, MustBeSomeOfTheirClass) {
    const std::string types = Object("<CLASS NAME='MY_Thing'><PROPERTY NAME='Id' TYPE='uint8'>"
                                     "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>"
                                     "<PROPERTY.ARRAY NAME='List' TYPE='sint8'/>"
                                     "<PROPERTY.REFERENCE NAME='Other' REFERENCECLASS='MY_Thing'/></CLASS>") +
                              Object("<CLASS NAME='MY_Loose'/>");
    // The instances begin on line 4.
    const auto problems = [&](const std::string& instances) { return ProblemsOf(Document(types + instances)); };
    const auto thing = [](const std::string& content) {
        return Object("<INSTANCE CLASSNAME='my_thing'>\n" + content + "</INSTANCE>");
    };
    const std::string id = "<PROPERTY NAME='id' TYPE='uint8'><VALUE>7</VALUE></PROPERTY>\n";
    const auto reference = [&](const std::string& path) {
        return problems(thing(id + "<PROPERTY.REFERENCE NAME='Other'><VALUE.REFERENCE>" + path +
                              "</VALUE.REFERENCE></PROPERTY.REFERENCE>"));
    };
    EXPECT_THAT(problems(thing(id)), IsEmpty());
    EXPECT_THAT(problems(thing(id) + thing(id)),
                ElementsAre("own.xml:7: instance of my_thing: there is another instance with these keys"));
    EXPECT_THAT(problems(thing(id + id +
                               "<PROPERTY NAME='x' TYPE='string'/>\n<PROPERTY NAME='List' TYPE='sint8'/>\n"
                               "<PROPERTY.ARRAY NAME='List' TYPE='uint8'/>\n<PROPERTY.ARRAY NAME='List' TYPE='sint8'>"
                               "<VALUE.ARRAY><VALUE>-129</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>")),
                ElementsAre("own.xml:6: instance of my_thing: property id is there twice",
                            "own.xml:7: instance of my_thing: the class has no property \"x\"",
                            "own.xml:8: instance of my_thing: property List must be a PROPERTY.ARRAY",
                            "own.xml:9: instance of my_thing: property List is of type sint8",
                            "own.xml:10: instance of my_thing: \"-129\" is no sint8"));
    EXPECT_THAT(problems(thing("")), ElementsAre("own.xml:4: instance of my_thing: the key Id has no value"));
    EXPECT_THAT(problems(thing("<PROPERTY NAME='Id' TYPE='uint8'><VALUE>007</VALUE></PROPERTY>")),
                ElementsAre("own.xml:4: instance of my_thing: the keys are not in their shortest form"));
    EXPECT_THAT(problems(Object("<INSTANCE CLASSNAME='MY_Loose'/>")),
                ElementsAre("own.xml:4: instance of MY_Loose: the class has no keys"));
    EXPECT_THAT(problems(Object("<INSTANCE CLASSNAME='CIM_System'/>")),
                ElementsAre("own.xml:4: instance of CIM_System: the class is abstract"));
    EXPECT_THAT(problems(Object("<INSTANCE CLASSNAME='MY_None'/>")),
                ElementsAre("own.xml:4: instance of MY_None: there is no such class"));
    EXPECT_THAT(reference("<INSTANCENAME CLASSNAME='MY_Thing'><KEYVALUE>0x7</KEYVALUE></INSTANCENAME>"), IsEmpty());
    EXPECT_THAT(reference("<INSTANCENAME CLASSNAME='MY_Thing'><KEYVALUE>x</KEYVALUE></INSTANCENAME>"),
                ElementsAre("own.xml:6: instance of my_thing: the key Id must be of type uint8"));
    EXPECT_THAT(reference("<INSTANCENAME CLASSNAME='MY_None'/>"),
                ElementsAre("own.xml:6: instance of my_thing: refers to class MY_None, which is not declared"));
    EXPECT_THAT(reference("<VALUE/>"), ElementsAre(HasSubstr("own.xml:6: instance of my_thing: ")));
}

TEST(OwnSchema, OnlyAssociationsAreTraversedAlsoThoseThatReferToAnything) {
    const std::string key = "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER>";
    const auto reference = [](const std::string& role, const std::string& id) {
        return "<PROPERTY.REFERENCE NAME='" + role + "'><VALUE.REFERENCE><INSTANCENAME CLASSNAME='MY_Node'><KEYVALUE>" +
               id + "</KEYVALUE></INSTANCENAME></VALUE.REFERENCE></PROPERTY.REFERENCE>";
    };
    const auto node = [](const std::string& id, const std::string& more) {
        return Object("<INSTANCE CLASSNAME='MY_Node'><PROPERTY NAME='Id' TYPE='uint8'><VALUE>" + id +
                      "</VALUE></PROPERTY>" + more + "</INSTANCE>");
    };
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas.push_back(
        {"nodes.xml",
         Document(
             Object("<CLASS NAME='MY_Node'><PROPERTY NAME='Id' TYPE='uint8'>" + key +
                    "</PROPERTY><PROPERTY.REFERENCE NAME='Next' REFERENCECLASS='MY_Node'/></CLASS>") +
             Object("<CLASS NAME='MY_Link'><QUALIFIER NAME='Association' TYPE='boolean'><VALUE>TRUE</VALUE>"
                    "</QUALIFIER><PROPERTY.REFERENCE NAME='From'>" +
                    key + "</PROPERTY.REFERENCE><PROPERTY.REFERENCE NAME='To'>" + key +
                    "</PROPERTY.REFERENCE></CLASS>") +
             node("1", reference("Next", "3")) + node("2", "") + node("3", "") +
             Object("<INSTANCE CLASSNAME='MY_Link'>" + reference("From", "1") + reference("To", "2") + "</INSTANCE>") +
             Object("<INSTANCE CLASSNAME='MY_Link'>" + reference("From", "2") + reference("To", "1") +
                    "</INSTANCE>"))});
    const demo::DemoServer server(std::move(options));
    const auto found = [](const std::string& method, const std::string& id) {
        const auto answer = Call(method, {Parameter("ObjectName", cim::InstanceName("MY_Node", {{"Id", id}}))});
        return cim::AttributesAt(answer.Returned(), "OBJECTPATH/INSTANCEPATH/INSTANCENAME", "CLASSNAME");
    };
    // Two associations lead there, and it is one object all the same.
    EXPECT_THAT(found("AssociatorNames", "1"), ElementsAre("MY_Node"));
    EXPECT_THAT(found("AssociatorNames", "2"), ElementsAre("MY_Node"));
    EXPECT_THAT(found("AssociatorNames", "3"), IsEmpty());
    EXPECT_THAT(found("ReferenceNames", "1"), ElementsAre("MY_Link", "MY_Link"));
    EXPECT_THAT(found("ReferenceNames", "2"), ElementsAre("MY_Link", "MY_Link"));
    EXPECT_THAT(found("ReferenceNames", "3"), IsEmpty());
}

/// Two nodes, and a link from the first one to another server, to another namespace and to the second one.
std::string LinksThatLeadElsewhere() {
    const std::string key = "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER>";
    const auto node = [](const std::string& id) {
        return Object("<INSTANCE CLASSNAME='MY_Node'><PROPERTY NAME='Id' TYPE='uint8'><VALUE>" + id +
                      "</VALUE></PROPERTY></INSTANCE>");
    };
    const auto name = [](const std::string& id) {
        return "<INSTANCENAME CLASSNAME='MY_Node'><KEYBINDING NAME='Id'><KEYVALUE VALUETYPE='numeric'>" + id +
               "</KEYVALUE></KEYBINDING></INSTANCENAME>";
    };
    const auto reference = [](const std::string& role, const std::string& path) {
        return "<PROPERTY.REFERENCE NAME='" + role + "'><VALUE.REFERENCE>" + path +
               "</VALUE.REFERENCE></PROPERTY.REFERENCE>";
    };
    const std::string space =
        "<LOCALNAMESPACEPATH><NAMESPACE NAME='root'/><NAMESPACE NAME='far'/></LOCALNAMESPACEPATH>";
    return Document(
        Object("<CLASS NAME='MY_Node'><PROPERTY NAME='Id' TYPE='uint8'>" + key + "</PROPERTY></CLASS>") +
        Object("<CLASS NAME='MY_Link'><QUALIFIER NAME='Association' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER>"
               "<PROPERTY.REFERENCE NAME='From'>" +
               key +
               "</PROPERTY.REFERENCE><PROPERTY.REFERENCE NAME='Abroad'/><PROPERTY.REFERENCE NAME='NextDoor'/>"
               "<PROPERTY.REFERENCE NAME='To'/></CLASS>") +
        node("1") + node("2") +
        Object("<INSTANCE CLASSNAME='MY_Link'>" + reference("From", name("1")) +
               reference("Abroad", "<INSTANCEPATH><NAMESPACEPATH><HOST>other.example:5988</HOST>" + space +
                                       "</NAMESPACEPATH>" + name("7") + "</INSTANCEPATH>") +
               reference("NextDoor", "<LOCALINSTANCEPATH>" + space +
                                         "<INSTANCENAME CLASSNAME='THEIR_Node'><KEYBINDING NAME='On'>"
                                         "<KEYVALUE VALUETYPE='boolean'>TRUE</KEYVALUE></KEYBINDING></INSTANCENAME>"
                                         "</LOCALINSTANCEPATH>") +
               reference("To", name("2")) + "</INSTANCE>"));
}

TEST(OwnSchema, ReferencesThatLeadElsewhereAreServedAsTheyAreWritten) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas.push_back({"links.xml", LinksThatLeadElsewhere()});
    const demo::DemoServer server(std::move(options));
    const auto links = Call("EnumerateInstances", {Class("MY_Link")});
    const auto instance = links.First().child("INSTANCE");
    const std::string space =
        "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"far\"/></LOCALNAMESPACEPATH>";
    EXPECT_THAT(cim::RawChildren(cim::Named(instance, "Abroad")),
                ElementsAre("<VALUE.REFERENCE><INSTANCEPATH><NAMESPACEPATH><HOST>other.example:5988</HOST>" + space +
                            "</NAMESPACEPATH><INSTANCENAME CLASSNAME=\"MY_Node\"><KEYBINDING NAME=\"Id\">"
                            "<KEYVALUE VALUETYPE=\"numeric\">7</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH>"
                            "</VALUE.REFERENCE>"));
    EXPECT_THAT(cim::RawChildren(cim::Named(instance, "NextDoor")),
                ElementsAre("<VALUE.REFERENCE><LOCALINSTANCEPATH>" + space +
                            "<INSTANCENAME CLASSNAME=\"THEIR_Node\"><KEYBINDING NAME=\"On\"><KEYVALUE "
                            "VALUETYPE=\"boolean\">TRUE</KEYVALUE></KEYBINDING></INSTANCENAME></LOCALINSTANCEPATH>"
                            "</VALUE.REFERENCE>"));
}

TEST(OwnSchema, AssociationsDoNotLeadElsewhere) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas.push_back({"links.xml", LinksThatLeadElsewhere()});
    const demo::DemoServer server(std::move(options));
    const auto found = Call("AssociatorNames", {Parameter("ObjectName", cim::InstanceName("MY_Node", {{"Id", "1"}}))});
    EXPECT_THAT(cim::AttributesAt(found.Returned(), ".//INSTANCENAME", "CLASSNAME"), ElementsAre("MY_Node"));
    EXPECT_STREQ(found.Returned().select_node(".//KEYVALUE").node().text().get(), "2");
}

TEST(OwnSchema, PropertiesCanHoldClassesAndInstances) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas.push_back(
        {"holder.xml",
         Document("<QUALIFIER.DECLARATION NAME='EmbeddedObject' TYPE='boolean'><SCOPE PROPERTY='true'/>"
                  "</QUALIFIER.DECLARATION>" +
                  Object("<CLASS NAME='MY_Holder'><PROPERTY NAME='Id' TYPE='uint8'>"
                         "<QUALIFIER NAME='Key' TYPE='boolean'><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>"
                         "<PROPERTY NAME='Held' TYPE='string'><QUALIFIER NAME='EmbeddedObject' TYPE='boolean'>"
                         "<VALUE>TRUE</VALUE></QUALIFIER></PROPERTY><PROPERTY NAME='Text' TYPE='string'/></CLASS>") +
                  Object("<INSTANCE CLASSNAME='MY_Holder'><PROPERTY NAME='Id' TYPE='uint8'><VALUE>1</VALUE></PROPERTY>"
                         "<PROPERTY NAME='Held' TYPE='string'><VALUE><![CDATA[<CLASS NAME=\"A\"/>]]></VALUE></PROPERTY>"
                         "</INSTANCE>"))});
    const demo::DemoServer server(std::move(options));
    for (const char* const method : {"EnumerateInstances", "GetClass"}) {
        const auto answer = Call(method, {Class("MY_Holder")});
        const auto object = answer.First().child("INSTANCE") ? answer.First().child("INSTANCE") : answer.First();
        EXPECT_STREQ(cim::Named(object, "Held").attribute("EmbeddedObject").value(), "object") << method;
        EXPECT_FALSE(cim::Named(object, "Text").attribute("EmbeddedObject")) << method;
    }
    EXPECT_EQ(cim::ValueOf(Call("EnumerateInstances", {Class("MY_Holder")}).First().child("INSTANCE"), "Held"),
              "<CLASS NAME=\"A\"/>");
}

TEST(OwnSchema, IsServedWithItsInstancesBesideTheBuiltInOne) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas.push_back({"library.xml", support::ReadFile(EXAMPLE_SCHEMA)});
    const demo::DemoServer server(std::move(options));

    EXPECT_THAT(cim::NamesOf(Call("EnumerateClassNames", {Class("CIM_LogicalDevice")}).Returned(), "CLASSNAME"),
                Contains("EXAMPLE_TapeLibrary"));
    EXPECT_EQ(Call("GetQualifier", {cim::Text("QualifierName", "Colour")}).error, 0);
    const auto devices = Call("EnumerateInstances", {Class("CIM_LogicalDevice")});
    const auto library = devices.Returned().select_node(".//INSTANCE[@CLASSNAME='EXAMPLE_TapeLibrary']").node();
    EXPECT_EQ(cim::ValueOf(library, "DeviceID"), "library-1");
    EXPECT_EQ(cim::ValueOf(library, "Slots"), "24");
    EXPECT_STREQ(cim::Named(library, "Barcodes").child("VALUE.ARRAY").last_child().text().get(), "A00002L8");

    const std::string path = cim::Raw(library.parent().child("INSTANCENAME"));
    const auto found = Call("GetInstance", {Parameter("InstanceName", path)});
    EXPECT_EQ(cim::ValueOf(found.First(), "SystemName"), "backup");
    const auto names = Call("AssociatorNames", {Parameter("ObjectName", path)});
    EXPECT_STREQ(names.Returned().select_node(".//INSTANCENAME").node().attribute("CLASSNAME").value(),
                 "DEMO_ComputerSystem");
}

} // namespace
