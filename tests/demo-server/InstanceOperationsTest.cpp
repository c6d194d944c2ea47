#include "CimClient.h"
#include "ServerFixture.h"

#include <gmock/gmock.h>

#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using cim::Call;
using cim::Class;
using cim::Flag;
using cim::List;
using cim::Named;
using cim::Names;
using cim::NamesOf;
using cim::Parameter;
using cim::ValueOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class InstanceOperations : public ServerFixture {};

std::string Volume(const std::string& id, const std::string& className = "DEMO_StorageVolume") {
    cim::Answer system = Call("EnumerateInstanceNames", {Class("DEMO_ComputerSystem")});
    return cim::InstanceName(
        className,
        {{"SystemCreationClassName", "DEMO_ComputerSystem"},
         {"SystemName", system.First().find_child_by_attribute("NAME", "Name").child("KEYVALUE").text().get()},
         {"CreationClassName", "DEMO_StorageVolume"},
         {"DeviceID", id}});
}

std::string Instance(const std::string& name) { return Parameter("InstanceName", name); }

TEST_F(InstanceOperations, EnumerateInstancesReturnsThoseOfSubclassesWithTheirPropertiesByDefault) {
    const auto deep = Call("EnumerateInstances", {Class("cim_filesystem")});
    const auto first = deep.Returned().child("VALUE.NAMEDINSTANCE");
    EXPECT_STREQ(first.child("INSTANCENAME").attribute("CLASSNAME").value(), "DEMO_FileSystem");
    EXPECT_STREQ(first.child("INSTANCE").attribute("CLASSNAME").value(), "DEMO_FileSystem");
    EXPECT_TRUE(Named(first.child("INSTANCE"), "MountOptions"));
    EXPECT_TRUE(Named(first.child("INSTANCE"), "FileSystemSize"));
    EXPECT_TRUE(Named(first.child("INSTANCE"), "ElementName"));
    EXPECT_THAT(cim::AttributesAt(deep.Returned(), ".//PROPERTY", "CLASSORIGIN"), Each(""));
    EXPECT_TRUE(deep.Returned().select_nodes(".//QUALIFIER").empty());
}

TEST_F(InstanceOperations, DeepInheritanceDecidesAboutThePropertiesOfSubclasses) {
    const auto properties = [](const std::string& className, bool deep) {
        const auto answer = Call("EnumerateInstances", {Class(className), Flag("DeepInheritance", deep)});
        return NamesOf(answer.First().child("INSTANCE"), "PROPERTY");
    };
    const auto ofClass = [](const std::string& className) {
        return NamesOf(Call("GetClass", {Class(className), Flag("LocalOnly", false)}).First(), "PROPERTY");
    };
    EXPECT_EQ(properties("CIM_FileSystem", false), ofClass("CIM_FileSystem"));
    EXPECT_EQ(properties("CIM_FileSystem", true), ofClass("DEMO_FileSystem"));
    EXPECT_EQ(properties("DEMO_FileSystem", false), ofClass("DEMO_FileSystem"));
}

TEST_F(InstanceOperations, LocalOnlyTakesNothingAway) {
    const auto properties = [](const std::string& method, std::vector<std::string> parameters) {
        const auto answer = Call(method, parameters);
        return NamesOf(answer.Returned().select_node(".//INSTANCE").node(), "PROPERTY");
    };
    for (const auto& [method, target] : {std::pair("EnumerateInstances", Class("DEMO_StorageVolume")),
                                         std::pair("GetInstance", Instance(Volume("volume-0000000")))}) {
        const auto all = properties(method, {target});
        EXPECT_THAT(all, Contains("InstanceID"));
        EXPECT_EQ(properties(method, {target, Flag("LocalOnly", true)}), all);
        EXPECT_EQ(properties(method, {target, Flag("LocalOnly", false)}), all);
    }
    const auto qualified = Call(
        "GetInstance", {Instance(Volume("volume-0000000")), Flag("LocalOnly", true), Flag("IncludeQualifiers", true)});
    EXPECT_TRUE(qualified.First().select_node("PROPERTY[@NAME='DeviceID']/QUALIFIER[@NAME='Key']"));
}

TEST_F(InstanceOperations, GetInstanceReturnsWhatEnumerateInstancesDoes) {
    for (const char* const className :
         {"DEMO_StorageVolume", "DEMO_AllTypes", "CIM_RunningOS", "DEMO_ComputerSystem"}) {
        for (unsigned bits = 0; bits < 4; ++bits) {
            for (const std::string& list :
                 {std::string(), List({"name", "DeviceID", "Antecedent", "ABoolean"}), List({})}) {
                const std::vector<std::string> flags{Flag("IncludeQualifiers", (bits & 1U) != 0),
                                                     Flag("IncludeClassOrigin", (bits & 2U) != 0), list};
                auto parameters = flags;
                parameters.push_back(Class(className));
                const auto all = Call("EnumerateInstances", parameters);
                for (const auto& named : all.Returned().children("VALUE.NAMEDINSTANCE")) {
                    auto single = flags;
                    single.push_back(Instance(cim::Raw(named.child("INSTANCENAME"))));
                    const auto answer = Call("GetInstance", single);
                    ASSERT_EQ(answer.error, 0) << answer.description;
                    EXPECT_EQ(cim::Raw(answer.First()), cim::Raw(named.child("INSTANCE")));
                }
            }
        }
    }
}

TEST_F(InstanceOperations, TheOptionsOfInstancesAreHonoured) {
    const auto answer =
        Call("EnumerateInstances", {Class("DEMO_StorageVolume"), Flag("IncludeQualifiers", true),
                                    Flag("IncludeClassOrigin", true), List({"blocksize", "BLOCKSIZE", "Nothing"})});
    const auto found = answer.First();
    EXPECT_THAT(NamesOf(found.child("INSTANCE"), "PROPERTY"), ElementsAre("BlockSize"));
    EXPECT_THAT(NamesOf(found.child("INSTANCE"), "QUALIFIER"), Contains("Version"));
    const auto property = Named(found.child("INSTANCE"), "BlockSize");
    EXPECT_STREQ(property.attribute("CLASSORIGIN").value(), "CIM_StorageExtent");
    EXPECT_STREQ(Named(property, "Units").child("VALUE").text().get(), "Bytes");
    // The keys are in the name, whatever the list says.
    EXPECT_THAT(NamesOf(found.child("INSTANCENAME"), "KEYBINDING"),
                ElementsAre("SystemCreationClassName", "SystemName", "CreationClassName", "DeviceID"));
    const auto none = Call("EnumerateInstances", {Class("DEMO_StorageVolume"), List({})});
    EXPECT_THAT(NamesOf(none.First().child("INSTANCE"), "PROPERTY"), IsEmpty());
    EXPECT_EQ(none.Returned().select_nodes("VALUE.NAMEDINSTANCE").size(), kVolumes);
    // The list does not bring back what DeepInheritance leaves out.
    const auto shallow = Call("EnumerateInstances", {Class("CIM_FileSystem"), Flag("DeepInheritance", false),
                                                     List({"MountOptions", "Name"})});
    EXPECT_THAT(NamesOf(shallow.First().child("INSTANCE"), "PROPERTY"), ElementsAre("Name"));
}

TEST_F(InstanceOperations, EnumerateInstanceNamesReturnsTheNamesOfEnumerateInstances) {
    for (const char* const className :
         {"CIM_StorageExtent", "CIM_FileSystem", "DEMO_AllTypes", "CIM_SystemDevice", "DEMO_Point"}) {
        const auto names = Call("EnumerateInstanceNames", {Class(className)});
        const auto instances = Call("EnumerateInstances", {Class(className)});
        Names expected;
        for (const auto& named : instances.Returned().children("VALUE.NAMEDINSTANCE")) {
            expected.push_back(cim::Raw(named.child("INSTANCENAME")));
        }
        EXPECT_EQ(cim::RawChildren(names.Returned()), expected) << className;
        EXPECT_EQ(expected.empty(), std::string(className) == "DEMO_Point");
    }
}

TEST_F(InstanceOperations, GetInstanceFindsAnInstanceByItsKeysInAnyForm) {
    const auto handle = [](const std::string& name) {
        const auto answer = Call("GetInstance", {Instance(name), List({"Handle", "DeviceID"})});
        return answer.error == 0 ? answer.First().child("PROPERTY").child("VALUE").text().get()
                                 : std::to_string(answer.error);
    };
    EXPECT_EQ(handle(cim::Process()), std::to_string(::getpid()));
    std::string volume = Volume("volume-0000002");
    EXPECT_EQ(handle(volume), "volume-0000002");
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string changed = volume;
        EXPECT_NE(changed.find(from), std::string::npos);
        return changed.replace(changed.find(from), from.size(), to);
    };
    // Names differ in more than case, and the order of keys and the kind of a value say nothing.
    EXPECT_EQ(handle(with("CLASSNAME=\"DEMO_StorageVolume\"", "CLASSNAME=\"demo_STORAGEVOLUME\"")), "volume-0000002");
    EXPECT_EQ(handle(with("NAME=\"DeviceID\"", "NAME=\"deviceid\"")), "volume-0000002");
    EXPECT_EQ(handle(with(" VALUETYPE=\"string\"", "")), "volume-0000002");
    const std::string last =
        "<KEYBINDING NAME=\"DeviceID\"><KEYVALUE VALUETYPE=\"string\">volume-0000002</KEYVALUE></KEYBINDING>";
    std::string reordered = with(last, "");
    reordered.insert(reordered.find("<KEYBINDING"), last);
    EXPECT_EQ(handle(reordered), "volume-0000002");
    // An only key needs no name.
    EXPECT_EQ(Call("GetInstance",
                   {Instance("<INSTANCENAME CLASSNAME=\"DEMO_AllTypes\"><KEYVALUE>least</KEYVALUE></INSTANCENAME>")})
                  .error,
              0);
}

TEST_F(InstanceOperations, GetInstanceTellsWhatIsWrongWithAName) {
    const auto valued = [](const std::string& key, const std::string& value) {
        return cim::InstanceName("DEMO_AllTypes", {{key, value}});
    };
    const struct {
        std::string name;
        int error;
    } kCases[]{
        {valued("InstanceID", "least"), 0},
        {valued("InstanceID", "LEAST"), 6},
        {valued("InstanceID", "least "), 6},
        {valued("InstanceID", ""), 6},
        {valued("Name", "least"), 4},
        {cim::InstanceName("DEMO_AllTypes", {}), 4},
        {cim::InstanceName("DEMO_AllTypes", {{"InstanceID", "least"}, {"Name", "x"}}), 4},
        {cim::InstanceName("DEMO_AllTypes", {{"InstanceID", "least"}, {"InstanceID", "least"}}), 4},
        {"<INSTANCENAME CLASSNAME=\"DEMO_AllTypes\"><KEYBINDING NAME=\"InstanceID\"><VALUE.REFERENCE>" +
             valued("InstanceID", "least") + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>",
         4},
        {cim::InstanceName("Nope", {{"InstanceID", "least"}}), 5},
        {Volume("volume-0000003"), 6},
        {Volume("volume-1"), 6},
        {Volume("volume-0000001x"), 6},
        {Volume("volume-99999999999999999999"), 6},
        {Volume("volume-0000001", "CIM_StorageVolume"), 6},
        {Volume("volume-0000001", "DEMO_Memory"), 6},
        {cim::Process(0), 6},
    };
    for (const auto& [name, error] : kCases) {
        EXPECT_EQ(Call("GetInstance", {Instance(name)}).error, error) << name;
    }
    std::string elsewhere = cim::Process();
    elsewhere.replace(elsewhere.find(std::to_string(::getpid())), std::to_string(::getpid()).size(), "../version");
    EXPECT_EQ(Call("GetInstance", {Instance(elsewhere)}).error, 6);
}

TEST_F(InstanceOperations, GetInstanceFindsAnAssociationByReferencesInAnyForm) {
    const auto link = [](const std::string& antecedent) {
        return Call("GetInstance",
                    {Instance(
                        "<INSTANCENAME CLASSNAME=\"DEMO_RunningOS\"><KEYBINDING NAME=\"Antecedent\"><VALUE.REFERENCE>" +
                        antecedent + "</VALUE.REFERENCE></KEYBINDING><KEYBINDING NAME=\"Dependent\"><VALUE.REFERENCE>" +
                        cim::ComputerSystem() + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>")})
            .error;
    };
    const auto local = [](const std::string& second) {
        return "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"" + second +
               "\"/></LOCALNAMESPACEPATH>";
    };
    const std::string name = cim::OperatingSystem();
    EXPECT_EQ(link(name), 0);
    EXPECT_EQ(link("<LOCALINSTANCEPATH>" + local("CIMV2") + name + "</LOCALINSTANCEPATH>"), 0);
    EXPECT_EQ(link("<INSTANCEPATH><NAMESPACEPATH><HOST>any</HOST>" + local("cimv2") + "</NAMESPACEPATH>" + name +
                   "</INSTANCEPATH>"),
              0);
    EXPECT_EQ(link("<LOCALINSTANCEPATH>" + local("other") + name + "</LOCALINSTANCEPATH>"), 6);
    EXPECT_EQ(link(cim::ComputerSystem()), 6);
    EXPECT_EQ(link(cim::InstanceName("Nope", {{"a", "b"}})), 4);
    EXPECT_EQ(link(cim::InstanceName("DEMO_OperatingSystem", {{"a", "b"}})), 4);
}

TEST_F(InstanceOperations, GetPropertyReturnsOneValueOfAnyKind) {
    const auto value = [](const std::string& name, const std::string& property) {
        const auto answer = Call("GetProperty", {Instance(name), cim::Text("PropertyName", property)});
        return answer.error == 0 ? testing::PrintToString(cim::RawChildren(answer.Returned()))
                                 : std::to_string(answer.error);
    };
    const auto of = [&](const std::string& which, const std::string& property) {
        return value(cim::InstanceName("DEMO_AllTypes", {{"InstanceID", which}}), property);
    };
    EXPECT_EQ(of("least", "auint8"), "{ \"<VALUE>0</VALUE>\" }");
    EXPECT_EQ(of("null", "AUint8"), "{}");
    EXPECT_EQ(of("null", "WithDefault"), "{ \"<VALUE>a default</VALUE>\" }");
    EXPECT_EQ(of("greatest", "Uint8s"),
              "{ \"<VALUE.ARRAY><VALUE>0</VALUE><VALUE.NULL/><VALUE>255</VALUE></VALUE.ARRAY>\" }");
    EXPECT_EQ(of("least", "Nope"), "12");
    EXPECT_EQ(of("nobody", "Nope"), "6");
    EXPECT_EQ(value(cim::InstanceName("Nope", {}), "Nope"), "5");
    const auto link = Call("EnumerateInstanceNames", {Class("DEMO_RunningOS")});
    EXPECT_THAT(value(cim::Raw(link.First()), "Antecedent"),
                testing::HasSubstr("<VALUE.REFERENCE><INSTANCENAME CLASSNAME="));
}

TEST_F(InstanceOperations, EveryTypeArrivesWithItsExtremesNullsAndMarkup) {
    const auto all = Call("EnumerateInstances", {Class("DEMO_AllTypes")});
    const auto least = all.First().child("INSTANCE");
    const auto greatest = all.First().next_sibling().child("INSTANCE");
    const auto null = all.Returned().last_child().child("INSTANCE");
    EXPECT_EQ(ValueOf(least, "ASint64"), "-9223372036854775808");
    EXPECT_EQ(ValueOf(greatest, "AUint64"), "18446744073709551615");
    EXPECT_EQ(ValueOf(greatest, "AString"), "Gr\xC3\xB6\xC3\x9F"
                                            "e: <5 & >3, \"10 \xE2\x82\xAC\", it's \xF0\x9F\x98\x80\n\tnext line");
    EXPECT_STREQ(Named(greatest, "Sint8s").child("VALUE.ARRAY").first_child().next_sibling().name(), "VALUE.NULL");
    EXPECT_TRUE(Named(least, "Sint8s").child("VALUE.ARRAY"));
    EXPECT_FALSE(Named(null, "Sint8s").child("VALUE.ARRAY"));
    EXPECT_EQ(ValueOf(null, "AString"), "null");
    EXPECT_EQ(ValueOf(least, "AString"), "");
    EXPECT_EQ(ValueOf(null, "WithDefault"), "a default");

    pugi::xml_document embedded;
    ASSERT_TRUE(embedded.load_string(ValueOf(greatest, "APoint").c_str()));
    EXPECT_STREQ(embedded.child("INSTANCE").attribute("CLASSNAME").value(), "DEMO_Point");
    EXPECT_EQ(ValueOf(embedded.child("INSTANCE"), "Label"), "<a> & \"b\"");
}

} // namespace
