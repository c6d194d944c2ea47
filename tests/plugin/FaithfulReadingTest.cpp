// What a namespace shows of its server when the host asks for the reading that loses nothing.

#include "PluginTest.h"
#include "cimhttp/ContextKeys.h"
#include "host/TRootObject.h"
#include "model/TCimHTTPProperty.h"
#include "model/TFaithfulInstance.h"

#include <algorithm>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Cause = ReadingIncident::Cause;
using Kind = RemoteFailure::Kind;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

std::string Attribute(const std::string& name, const std::string& value) {
    return value.empty() ? "" : " " + name + "=\"" + value + "\"";
}

std::string ArrayXml(const std::string& name, const std::string& type, const std::string& elements,
                     const std::string& more = "") {
    return "<PROPERTY.ARRAY NAME=\"" + name + "\" TYPE=\"" + type + "\"" + more + ">" +
           (elements.empty() ? "" : "<VALUE.ARRAY>" + elements + "</VALUE.ARRAY>") + "</PROPERTY.ARRAY>";
}

std::string ReferenceXml(const std::string& name, const std::string& content = "",
                         const std::string& referenceClass = "") {
    return "<PROPERTY.REFERENCE NAME=\"" + name + "\"" + Attribute("REFERENCECLASS", referenceClass) + ">" + content +
           "</PROPERTY.REFERENCE>";
}

std::string KeyPropertyXml(const std::string& name, const std::string& type = "string") {
    return PropertyXml(name, type, KeyXml());
}

/// Flavors that let a qualifier of a subclass differ.
std::string DeclarationXml(const std::string& name, const std::string& type) {
    return "<QUALIFIER.DECLARATION NAME=\"" + name + "\" TYPE=\"" + type +
           "\" OVERRIDABLE=\"true\" TOSUBCLASS=\"true\" TRANSLATABLE=\"true\"><SCOPE PROPERTY=\"true\" "
           "METHOD=\"true\"/></QUALIFIER.DECLARATION>";
}

/// A faithful namespace against a recording server with three classes: TEST_Device, and below it TEST_Disk and
/// TEST_Tape.
class FaithfulReadingTest : public PluginTest {
  protected:
    FaithfulReadingTest() {
        log_->ExpectWarnings();
        server_.Answer("EnumerateQualifiers", "",
                       DeclarationXml("Key", "boolean") + DeclarationXml("Description", "string") +
                           DeclarationXml("NullDisplay", "string"));
        ServeClass("TEST_Device", "", KeyPropertyXml("Name") + PropertyXml("State", "uint16"));
        ServeClass("TEST_Disk", "TEST_Device",
                   KeyPropertyXml("Name") + PropertyXml("State", "uint16") + PropertyXml("Size", "uint64"));
        ServeClass("TEST_Tape", "TEST_Device",
                   KeyPropertyXml("Name") + PropertyXml("State", "uint16") + PropertyXml("Label", "string"));
    }

    boost::shared_ptr<TCimHTTPNamespace> Faithful() {
        auto nameSpace = Allocated(TCIMValue(kFaithfulReading));
        nameSpace->connect(server_.Address(), "", "", kHttpPort);
        return nameSpace;
    }

    static boost::shared_ptr<TCimHTTPNamespace> Allocated(const TCIMValue& reading) {
        TCIMContext context = PluginContext();
        context[kReadingKey] = reading;
        return boost::dynamic_pointer_cast<TCimHTTPNamespace>(
            TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
    }

    static std::string DeviceXml(const std::string& className, const std::string& name,
                                 const std::string& properties = "") {
        return InstanceXml(className, "Name", name, PropertyXml("Name", "string", ValueXml(name)) + properties);
    }

    /// The answer for all devices, in which two classes follow each other twice.
    void ServeDevices() {
        server_.Answer("EnumerateInstances", "TEST_Device",
                       DeviceXml("TEST_Tape", "t1", PropertyXml("Label", "string", ValueXml("weekly"))) +
                           DeviceXml("TEST_Disk", "d2", PropertyXml("Size", "uint64", ValueXml("2"))) +
                           DeviceXml("TEST_Device", "v1") + DeviceXml("TEST_Disk", "d1"));
    }

    using TInstances = std::vector<boost::shared_ptr<ICIMInstance>>;

    static TInstances Instances(TCimHTTPNamespace& nameSpace, const std::string& className, bool deep = true,
                                const TCIMContext& context = TCIMContext()) {
        TInstances instances;
        nameSpace.GetClass(className, TCIMContext())
            ->EnumerateInstances(
                [&](const boost::shared_ptr<ICIMInstance>& instance) {
                    instances.push_back(instance);
                    return true;
                },
                deep, context);
        return instances;
    }

    static std::string PathText(const ICIMInstance& instance) { return instance.BuildPath(TCIMContext()).GetPath(); }

    static std::vector<std::string> Paths(const TInstances& instances) {
        std::vector<std::string> paths;
        for (const auto& instance : instances) {
            paths.push_back(PathText(*instance));
        }
        return paths;
    }

    static const TCIMValue& ValueOf(const ICIMInstance& instance, const std::string& property) {
        // The view that GetProperty makes shares the value with its instance.
        return instance.GetProperty(property, TCIMContext())->GetValue(TCIMContext());
    }

    static TCIMReference PathOf(const std::string& className, const std::string& key, const TCIMValue& value) {
        TCIMReference path({}, TCIMContext());
        path.SetClassName(className);
        path.AddKeyValue(key, value);
        return path;
    }

    std::vector<std::string> Methods() const {
        std::vector<std::string> methods;
        for (const auto& call : server_.Calls()) {
            methods.push_back(call.method);
        }
        return methods;
    }

    /// The one instance of a class TEST_Thing with these declarations, as it is sent.
    boost::shared_ptr<ICIMInstance> Thing(TCimHTTPNamespace& nameSpace, const std::string& declarations,
                                          const std::string& properties) {
        ServeClass("TEST_Thing", "", KeyPropertyXml("Name") + declarations);
        server_.Answer("EnumerateInstances", "TEST_Thing", DeviceXml("TEST_Thing", "a", properties));
        return Instances(nameSpace, "TEST_Thing").at(0);
    }

    static std::vector<Cause> Causes(const ReadingIncidents& incidents) {
        std::vector<Cause> causes;
        for (const ReadingIncident& incident : incidents.First()) {
            causes.push_back(incident.cause);
        }
        return causes;
    }
};

} // namespace

// --- The choice --------------------------------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, AnUnknownReadingIsRefusedAndSaidSo) {
    EXPECT_EQ(StatusOf([] { Allocated(TCIMValue("quick")); }), TVYXStatusCode::eTypeMismatch);
    ASSERT_EQ(log_->Errors().size(), 1U);
    EXPECT_THAT(log_->Errors()[0], HasSubstr("'cimhttp.reading' is 'quick'"));
    EXPECT_EQ(StatusOf([] { Allocated(TCIMValue(true)); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_EQ(StatusOf([] { Allocated(TCIMValue(TCIMValue::TCIMType::eCIMString, 0)); }),
              TVYXStatusCode::eTypeMismatch);
}

TEST_F(FaithfulReadingTest, TheCompatibleReadingCanBeNamed) {
    const auto nameSpace = Allocated(TCIMValue(kCompatibleReading));
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_FALSE(nameSpace->GetClass("TEST_None", TCIMContext()));
}

TEST_F(FaithfulReadingTest, AnotherRemoteNamespaceIsReadWhenItIsNamed) {
    TCIMContext context = PluginContext();
    context[kReadingKey] = TCIMValue(kFaithfulReading);
    context[kNamespaceKey] = TCIMValue("root/interop");
    const auto nameSpace = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    nameSpace->GetClass("TEST_Device", TCIMContext());
    EXPECT_EQ(server_.Calls().at(0).nameSpace, "root/interop");
    context[kNamespaceKey] = TCIMValue("no:name");
    EXPECT_EQ(StatusOf([&] { TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false); }),
              TVYXStatusCode::eTypeMismatch);
}

// --- Null --------------------------------------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, NullIsNullOfItsDeclaredType) {
    const auto nameSpace = Faithful();
    const char* const types[] = {"boolean", "uint8",  "sint8",  "uint16", "sint16", "uint32",   "sint32",
                                 "uint64",  "sint64", "real32", "real64", "string", "datetime", "char16"};
    std::string declarations;
    std::string sent;
    for (const std::string type : types) {
        declarations += PropertyXml("One_" + type, type) + ArrayXml("Many_" + type, type, "");
        sent += PropertyXml("One_" + type, type) + ArrayXml("Many_" + type, type, "");
    }
    const auto thing = Thing(*nameSpace, declarations, sent);
    for (const std::string type : types) {
        for (const std::string& name : {"One_" + type, "Many_" + type}) {
            EXPECT_TRUE(ValueOf(*thing, name).IsNull()) << name;
            EXPECT_EQ(ValueOf(*thing, name).GetType(),
                      thing->GetProperty(name, TCIMContext())->GetDeclaration(TCIMContext())->GetType(TCIMContext()));
        }
    }
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty());
}

TEST_F(FaithfulReadingTest, AnEmptyArrayIsNotNull) {
    const auto nameSpace = Faithful();
    const auto thing =
        Thing(*nameSpace, ArrayXml("Sizes", "uint32", ""),
              "<PROPERTY.ARRAY NAME=\"Sizes\" TYPE=\"uint32\"><VALUE.ARRAY></VALUE.ARRAY></PROPERTY.ARRAY>");
    EXPECT_EQ(ValueOf(*thing, "Sizes"), TCIMValue(ECIMType::eCIMUint32, 0, {}));
}

TEST_F(FaithfulReadingTest, ANullElementIsNull) {
    const auto nameSpace = Faithful();
    const auto thing = Thing(*nameSpace, ArrayXml("Sizes", "uint32", ""),
                             ArrayXml("Sizes", "uint32", ValueXml("7") + "<VALUE.NULL/>"));
    EXPECT_EQ(ValueOf(*thing, "Sizes"),
              TCIMValue(ECIMType::eCIMUint32, 0, {TCIMValue(7U), TCIMValue(ECIMType::eCIMUint32, 0)}));
}

TEST_F(FaithfulReadingTest, NullShowsTheTextThatItsQualifierGives) {
    const auto nameSpace = Faithful();
    const auto thing = Thing(*nameSpace, PropertyXml("Limit", "uint64", QualifierXml("NullDisplay", "string", "none")),
                             PropertyXml("Limit", "uint64"));
    const auto property = thing->GetProperty("Limit", TCIMContext());
    EXPECT_EQ(TCimHTTPProperty(property->GetDeclaration(TCIMContext()), property->GetValue(TCIMContext())).ToString(),
              "none");
}

// --- Instances are what the server says ----------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, ADeepEnumerationGivesEachInstanceOnceAsWhatItIs) {
    ServeDevices();
    const auto nameSpace = Faithful();
    const auto instances = Instances(*nameSpace, "TEST_Device");
    EXPECT_THAT(Paths(instances), ElementsAre("TEST_Device.Name=\"v1\"", "TEST_Disk.Name=\"d1\"",
                                              "TEST_Disk.Name=\"d2\"", "TEST_Tape.Name=\"t1\""));
    EXPECT_EQ(instances[2]->GetClass(TCIMContext())->GetName(TCIMContext()), "TEST_Disk");
    EXPECT_EQ(ValueOf(*instances[2], "Size"), TCIMValue(2ULL));
    EXPECT_EQ(ValueOf(*instances[3], "Label"), TCIMValue("weekly"));
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty());
    EXPECT_FALSE(nameSpace->LastFailure());
}

TEST_F(FaithfulReadingTest, AShallowEnumerationGivesThoseOfExactlyTheClass) {
    ServeDevices();
    const auto nameSpace = Faithful();
    EXPECT_THAT(Paths(Instances(*nameSpace, "test_device", false)), ElementsAre("TEST_Device.Name=\"v1\""));
}

TEST_F(FaithfulReadingTest, TheRequestIsDeepAndWhole) {
    ServeDevices();
    const auto nameSpace = Faithful();
    Instances(*nameSpace, "TEST_Device", false);
    const auto calls = server_.Calls();
    const auto call =
        std::find_if(calls.begin(), calls.end(), [](const auto& one) { return one.method == "EnumerateInstances"; });
    EXPECT_THAT(call->parameters.at("DeepInheritance"), testing::StrCaseEq("true"));
    EXPECT_THAT(call->parameters.at("LocalOnly"), testing::StrCaseEq("false"));
    EXPECT_EQ(call->parameters.count("PropertyList"), 0U);
}

TEST_F(FaithfulReadingTest, InstancesOfAClassWithoutKeysKeepTheServersPaths) {
    ServeClass("TEST_Any", "", PropertyXml("Caption", "string"));
    server_.Answer("EnumerateInstances", "TEST_Any", DeviceXml("TEST_Disk", "d1") + DeviceXml("TEST_Disk", "d2"));
    const auto nameSpace = Faithful();
    EXPECT_THAT(Paths(Instances(*nameSpace, "TEST_Any")),
                ElementsAre("TEST_Disk.Name=\"d1\"", "TEST_Disk.Name=\"d2\""));
}

TEST_F(FaithfulReadingTest, KeysHaveTheTypesOfTheirDeclarations) {
    ServeClass("TEST_Keyed", "",
               KeyPropertyXml("Flag", "boolean") + KeyPropertyXml("Level", "sint8") +
                   KeyPropertyXml("Since", "datetime"));
    const auto key = [](const std::string& name, const std::string& kind, const std::string& value) {
        return "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE VALUETYPE=\"" + kind + "\">" + value +
               "</KEYVALUE></KEYBINDING>";
    };
    server_.Answer("EnumerateInstances", "TEST_Keyed",
                   "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Keyed\">" + key("Flag", "boolean", "TRUE") +
                       key("Level", "numeric", "-0x10") + key("Since", "string", "20261122011000.000000+000") +
                       "</INSTANCENAME><INSTANCE CLASSNAME=\"TEST_Keyed\"/></VALUE.NAMEDINSTANCE>");
    const auto nameSpace = Faithful();
    const auto path = Instances(*nameSpace, "TEST_Keyed").at(0)->BuildPath(TCIMContext());
    EXPECT_EQ(path.GetKeyValue("Flag"), TCIMValue(true));
    EXPECT_EQ(path.GetKeyValue("Level"), TCIMValue(static_cast<signed char>(-16)));
    EXPECT_EQ(path.GetKeyValue("Since"), TCIMValue(TCIMDateTime("20261122011000.000000+000")));
    EXPECT_EQ(path.GetNamespace(), nameSpace);
}

TEST_F(FaithfulReadingTest, APathThatIsGivenTwiceIsReported) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   DeviceXml("TEST_Disk", "d1", PropertyXml("Size", "uint64", ValueXml("1"))) +
                       DeviceXml("TEST_Disk", "d1", PropertyXml("Size", "uint64", ValueXml("2"))));
    const auto nameSpace = Faithful();
    const auto instances = Instances(*nameSpace, "TEST_Disk");
    ASSERT_EQ(instances.size(), 1U);
    EXPECT_EQ(ValueOf(*instances[0], "Size"), TCIMValue(1ULL));
    ASSERT_THAT(Causes(nameSpace->Incidents()), ElementsAre(Cause::kDoubledPath));
    EXPECT_EQ(nameSpace->Incidents().First()[0].className, "TEST_Disk");
    EXPECT_EQ(nameSpace->Incidents().First()[0].path, "TEST_Disk.Name=\"d1\"");
}

TEST_F(FaithfulReadingTest, ACallbackThatHasSeenEnoughIsCalledNoMore) {
    ServeDevices();
    const auto nameSpace = Faithful();
    int calls = 0;
    nameSpace->GetClass("TEST_Device", TCIMContext())
        ->EnumerateInstances([&](const auto&) { return ++calls < 2; }, true, TCIMContext());
    EXPECT_EQ(calls, 2);
}

// --- The hierarchy -----------------------------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, TheSuperclassIsTheRealOneAndFetchedWhenAskedFor) {
    const auto nameSpace = Faithful();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_EQ(CountCalls("GetClass", "TEST_Device"), 0U);
    EXPECT_FALSE(disk->IsRootClass(TCIMContext()));
    const auto device = disk->GetSuperClass(TCIMContext());
    EXPECT_EQ(device->GetName(TCIMContext()), "TEST_Device");
    EXPECT_TRUE(device->IsRootClass(TCIMContext()));
    EXPECT_EQ(disk->GetSuperClass(TCIMContext()), device);
    EXPECT_EQ(device->GetSuperClass(TCIMContext()), nameSpace->GetRootClass());
    EXPECT_EQ(CountCalls("GetClass", "TEST_Device"), 1U);
}

TEST_F(FaithfulReadingTest, IsSubclassOfFollowsTheHierarchy) {
    const auto nameSpace = Faithful();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_TRUE(disk->IsSubclassOf(FetchClass(*nameSpace, "TEST_Device"), TCIMContext()));
    EXPECT_FALSE(disk->IsSubclassOf(FetchClass(*nameSpace, "TEST_Tape"), TCIMContext()));
}

TEST_F(FaithfulReadingTest, TheSubclassesAreThoseOfTheServerAskedForOnce) {
    const auto definition = [](const std::string& name, const std::string& superClass) {
        return ClassXml(name, superClass, KeyPropertyXml("Name"));
    };
    server_.Answer("EnumerateClasses", "TEST_Device",
                   definition("TEST_Disk", "TEST_Device") + definition("TEST_FastDisk", "TEST_Disk") +
                       definition("TEST_Tape", "TEST_Device"));
    const auto nameSpace = Faithful();
    const auto device = FetchClass(*nameSpace, "TEST_Device");
    const auto names = [&] {
        return VisitedNames([&](const auto& visit) { device->EnumerateSubClasses(visit, true, TCIMContext()); });
    };
    EXPECT_THAT(names(), ElementsAre("TEST_Disk", "TEST_FastDisk", "TEST_Tape"));
    EXPECT_THAT(names(), ElementsAre("TEST_Disk", "TEST_FastDisk", "TEST_Tape"));
    EXPECT_EQ(CountCalls("EnumerateClasses"), 1U);
    EXPECT_EQ(CountCalls("GetClass"), 1U) << "the definitions came with the list";
}

TEST_F(FaithfulReadingTest, AllClassesOfTheServerHangUnderTheRoot) {
    server_.Answer("EnumerateClasses", "",
                   ClassXml("TEST_Device", "", "") + ClassXml("TEST_Disk", "TEST_Device", "") +
                       ClassXml("TEST_Other", "", ""));
    const auto nameSpace = Faithful();
    EXPECT_THAT(VisitedNames([&](const auto& visit) { nameSpace->EnumerateRootClasses(visit, TCIMContext()); }),
                ElementsAre("TEST_Device", "TEST_Disk", "TEST_Other"));
}

TEST_F(FaithfulReadingTest, AHierarchyWithACycleEndsAsAFailure) {
    ServeClass("TEST_A", "TEST_B", "");
    ServeClass("TEST_B", "TEST_A", "");
    const auto nameSpace = Faithful();
    const auto other = FetchClass(*nameSpace, "TEST_Device");
    EXPECT_EQ(StatusOf([&] { FetchClass(*nameSpace, "TEST_A")->IsSubclassOf(other, TCIMContext()); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kMalformed);
    server_.Answer("EnumerateClasses", "", ClassXml("TEST_C", "TEST_D", "") + ClassXml("TEST_D", "TEST_C", ""));
    EXPECT_EQ(StatusOf([&] { nameSpace->EnumerateRootClasses([](const auto&) { return true; }, TCIMContext()); }),
              TVYXStatusCode::eRemoteConnectionFailed);
}

TEST_F(FaithfulReadingTest, AHierarchyWithoutEndEndsAsAFailure) {
    for (int level = 0; level < 300; ++level) {
        ServeClass("TEST_L" + std::to_string(level), "TEST_L" + std::to_string(level + 1), "");
    }
    const auto nameSpace = Faithful();
    const auto other = FetchClass(*nameSpace, "TEST_Device");
    EXPECT_EQ(StatusOf([&] { FetchClass(*nameSpace, "TEST_L0")->IsSubclassOf(other, TCIMContext()); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_LE(CountCalls("GetClass"), 260U);
}

TEST_F(FaithfulReadingTest, AClassHasWhatItsMethodsAndParametersSay) {
    ServeClass("TEST_Pump", "",
               "<METHOD NAME=\"Start\" TYPE=\"uint32\">" + QualifierXml("Description", "string", "Starts it.") +
                   "<PARAMETER.ARRAY NAME=\"Speeds\" TYPE=\"uint8\">" +
                   QualifierXml("Description", "string", "One for each stage.") + "</PARAMETER.ARRAY></METHOD>");
    const auto nameSpace = Faithful();
    const auto start = FetchClass(*nameSpace, "TEST_Pump")->GetMethodDecl("Start", TCIMContext());
    EXPECT_EQ(start->GetQualifier("Description", TCIMContext())->GetValue(TCIMContext()), TCIMValue("Starts it."));
    const auto speeds = start->GetParameterDecl("Speeds", TCIMContext());
    EXPECT_EQ(speeds->GetType(TCIMContext()), ECIMType::eCIMUint8Array);
    EXPECT_EQ(speeds->GetQualifier("Description", TCIMContext())->GetValue(TCIMContext()),
              TCIMValue("One for each stage."));
}

// --- Values keep their meaning -----------------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, AReferenceKeepsHostNamespaceClassAndKeys) {
    const std::string target =
        "<VALUE.REFERENCE><INSTANCEPATH><NAMESPACEPATH><HOST>srv:5988</HOST><LOCALNAMESPACEPATH><NAMESPACE "
        "NAME=\"root\"/><NAMESPACE NAME=\"interop\"/></LOCALNAMESPACEPATH></NAMESPACEPATH><INSTANCENAME "
        "CLASSNAME=\"TEST_Disk\"><KEYBINDING NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\">a\"b</KEYVALUE>"
        "</KEYBINDING><KEYBINDING NAME=\"Slot\"><KEYVALUE VALUETYPE=\"numeric\">3</KEYVALUE></KEYBINDING>"
        "</INSTANCENAME></INSTANCEPATH></VALUE.REFERENCE>";
    const auto nameSpace = Faithful();
    const auto thing = Thing(*nameSpace, ReferenceXml("Target", "", "TEST_Disk"), ReferenceXml("Target", target));
    const TCIMReference reference = ValueOf(*thing, "Target").GetReference();
    EXPECT_EQ(reference.GetHost(), "srv:5988");
    EXPECT_EQ(reference.GetNamespaceName(), "root/interop");
    EXPECT_EQ(reference.GetClassName(), "TEST_Disk");
    EXPECT_EQ(reference.GetKeyValue("Name"), TCIMValue("a\"b"));
    EXPECT_EQ(reference.GetKeyValue("Slot"), TCIMValue(3ULL));
    EXPECT_EQ(ValueOf(*thing, "Target").ToString(10), R"(//srv:5988/root/interop:TEST_Disk.Name="a\"b",Slot=3)");
}

TEST_F(FaithfulReadingTest, AnArrayOfReferencesIsConverted) {
    const std::string element = "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"TEST_Disk\"><KEYBINDING NAME=\"Name\">"
                                "<KEYVALUE>d1</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE>";
    const auto nameSpace = Faithful();
    const auto thing =
        Thing(*nameSpace, "<PROPERTY.REFARRAY NAME=\"Disks\" REFERENCECLASS=\"TEST_Disk\"/>",
              "<PROPERTY.REFARRAY NAME=\"Disks\"><VALUE.REFARRAY>" + element + "</VALUE.REFARRAY></PROPERTY.REFARRAY>");
    EXPECT_EQ(ValueOf(*thing, "Disks").ToString(10), "{TEST_Disk.Name=\"d1\"}");
}

TEST_F(FaithfulReadingTest, AChar16IsTheCharacter) {
    const auto nameSpace = Faithful();
    const auto thing =
        Thing(*nameSpace, PropertyXml("Letter", "char16"), PropertyXml("Letter", "char16", ValueXml("ß")));
    EXPECT_EQ(ValueOf(*thing, "Letter").ToString(10), "ß");
}

TEST_F(FaithfulReadingTest, AnEmbeddedInstanceIsItsMofAndKeepsItsParts) {
    const auto embedded = [](const std::string& value) {
        return "<PROPERTY NAME=\"Part\" TYPE=\"string\" EmbeddedObject=\"instance\">" + value + "</PROPERTY>";
    };
    const auto nameSpace = Faithful();
    const auto thing = Thing(*nameSpace, embedded(""),
                             embedded("<VALUE>&lt;INSTANCE CLASSNAME=\"TEST_Part\"&gt;&lt;PROPERTY NAME=\"Note\" "
                                      "TYPE=\"string\"&gt;&lt;VALUE&gt;say \"x\"&lt;/VALUE&gt;&lt;/PROPERTY&gt;"
                                      "&lt;PROPERTY NAME=\"Size\" TYPE=\"uint8\"/&gt;&lt;/INSTANCE&gt;</VALUE>"));
    EXPECT_EQ(ValueOf(*thing, "Part"), TCIMValue("instance of TEST_Part {\n"
                                                 "    Note = \"say \\\"x\\\"\";\n"
                                                 "    Size = NULL;\n"
                                                 "};\n"));
    const auto& objects = dynamic_cast<const TFaithfulInstance&>(*thing).Embedded("part");
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0].className, "TEST_Part");
    EXPECT_FALSE(objects[0].isClass);
    ASSERT_EQ(objects[0].properties.size(), 2U);
    EXPECT_EQ(objects[0].properties[1].value, TCIMValue(ECIMType::eCIMUint8, 0));
}

TEST_F(FaithfulReadingTest, AnEmbeddedClassIsItsMof) {
    const auto nameSpace = Faithful();
    const auto thing = Thing(
        *nameSpace, "<PROPERTY NAME=\"Part\" TYPE=\"string\" EmbeddedObject=\"object\"/>",
        "<PROPERTY NAME=\"Part\" TYPE=\"string\" EmbeddedObject=\"object\"><VALUE>&lt;CLASS NAME=\"TEST_Part\" "
        "SUPERCLASS=\"TEST_Base\"&gt;&lt;QUALIFIER NAME=\"Abstract\" TYPE=\"boolean\"&gt;&lt;VALUE&gt;TRUE"
        "&lt;/VALUE&gt;&lt;/QUALIFIER&gt;&lt;PROPERTY NAME=\"Size\" TYPE=\"uint8\"&gt;&lt;VALUE&gt;3&lt;/VALUE&gt;"
        "&lt;/PROPERTY&gt;&lt;/CLASS&gt;</VALUE></PROPERTY>");
    EXPECT_EQ(ValueOf(*thing, "Part"), TCIMValue("[Abstract]\n"
                                                 "class TEST_Part : TEST_Base {\n"
                                                 "    uint8 Size = 3;\n"
                                                 "};\n"));
    EXPECT_TRUE(dynamic_cast<const TFaithfulInstance&>(*thing).Embedded("part").at(0).isClass);
}

// --- Failures and incidents --------------------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, WhatTheServerDoesNotHaveIsNotFound) {
    const auto nameSpace = Faithful();
    EXPECT_EQ(StatusOf([&] { nameSpace->GetClass("TEST_None", TCIMContext()); }), TVYXStatusCode::eNotFound);
    ASSERT_TRUE(nameSpace->LastFailure());
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kCimStatus);
    EXPECT_EQ(nameSpace->LastFailure()->cimStatus, 6U);
    EXPECT_THAT(log_->Errors().back(), HasSubstr("TEST_None"));
    server_.Fail("GetInstance", "", 6, "gone");
    EXPECT_EQ(StatusOf([&] { nameSpace->GetInstance(PathOf("TEST_Disk", "Name", "x"), TCIMContext()); }),
              TVYXStatusCode::eNotFound);
    server_.Fail("EnumerateInstances", "TEST_Disk", 5, "no such class");
    EXPECT_EQ(StatusOf([&] { Instances(*nameSpace, "TEST_Disk"); }), TVYXStatusCode::eNotFound);
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    EXPECT_FALSE(nameSpace->LastFailure()) << "the newest operation succeeded";
}

TEST_F(FaithfulReadingTest, OtherFailuresSayTheirKind) {
    const auto nameSpace = Faithful();
    server_.Fail("EnumerateInstances", "TEST_Disk", 1, "it broke");
    EXPECT_EQ(StatusOf([&] { Instances(*nameSpace, "TEST_Disk"); }), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kCimStatus);
    EXPECT_THAT(nameSpace->LastFailure()->text, HasSubstr("it broke"));

    const std::pair<std::string, Kind> answers[] = {
        {"HTTP/1.1 401 Unauthorized\r\nContent-Length: 0\r\n\r\n", Kind::kLogin},
        {"HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n", Kind::kLogin},
        {"HTTP/1.1 503 Busy 401\r\nContent-Length: 0\r\n\r\n", Kind::kHttp},
        {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello", Kind::kNotCim},
        {"HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nContent-Length: 5\r\n\r\nhello", Kind::kMalformed},
        {"HTTP/1.1 200 OK\r\nX-Long: " + std::string(100000, 'x') + "\r\n\r\n", Kind::kLimit},
        {"", Kind::kClosed},
        {"\x15\x03\x03\x01\x02\x02\x46", Kind::kTls},
    };
    for (const auto& [answer, kind] : answers) {
        server_.AnswerNextWith(answer);
        EXPECT_EQ(StatusOf([&] { Instances(*nameSpace, "TEST_Disk"); }), TVYXStatusCode::eRemoteConnectionFailed)
            << answer.substr(0, 30);
        ASSERT_TRUE(nameSpace->LastFailure());
        EXPECT_EQ(static_cast<int>(nameSpace->LastFailure()->kind), static_cast<int>(kind)) << answer.substr(0, 30);
    }
}

TEST_F(FaithfulReadingTest, TheHttpStatusIsKept) {
    const auto nameSpace = Faithful();
    FetchClass(*nameSpace, "TEST_Disk");
    server_.AnswerNextWith("HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(StatusOf([&] { Instances(*nameSpace, "TEST_Disk"); }), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->httpStatus, 503U);
}

TEST_F(FaithfulReadingTest, AFailedConnectionSaysItsKind) {
    const auto nameSpace = Allocated(TCIMValue(kFaithfulReading));
    EXPECT_EQ(StatusOf([&] { nameSpace->GetClass("TEST_Disk", TCIMContext()); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kNotConnected);
    server_.Stop();
    EXPECT_EQ(StatusOf([&] { nameSpace->connect(server_.Address(), "", "", kHttpPort); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kRefused);
}

TEST_F(FaithfulReadingTest, ATimeoutIsReportedAsOne) {
    const auto nameSpace = Faithful();
    FetchClass(*nameSpace, "TEST_Disk");
    nameSpace->getPegClient()->setTimeout(0);
    EXPECT_EQ(StatusOf([&] { Instances(*nameSpace, "TEST_Disk"); }), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kTimeOut);
}

TEST_F(FaithfulReadingTest, WhatCannotBeTakenOverIsReportedAndTheRestIsThere) {
    const auto nameSpace = Faithful();
    const auto thing = Thing(
        *nameSpace, PropertyXml("Size", "uint64") + PropertyXml("State", "uint16") + PropertyXml("Since", "datetime"),
        PropertyXml("Size", "string", ValueXml("big")) + PropertyXml("Colour", "string", ValueXml("red")) +
            ArrayXml("Since", "datetime", "") + PropertyXml("State", "uint16", ValueXml("5")) +
            PropertyXml("\xc3\xb6", "string", ValueXml("x")));
    EXPECT_EQ(ValueOf(*thing, "State"), TCIMValue(static_cast<unsigned short>(5)));
    EXPECT_TRUE(ValueOf(*thing, "Size").IsNull());
    const auto incidents = nameSpace->TakeIncidents();
    ASSERT_THAT(Causes(incidents),
                ElementsAre(Cause::kOtherType, Cause::kUndeclaredProperty, Cause::kUndeclaredProperty));
    EXPECT_EQ(incidents.First()[0].className, "TEST_Thing");
    EXPECT_EQ(incidents.First()[0].path, "TEST_Thing.Name=\"a\"");
    EXPECT_EQ(incidents.First()[0].property, "Size");
    EXPECT_EQ(incidents.First()[0].reason, "the class declares uint64, and the value is a string");
    EXPECT_EQ(incidents.First()[1].property, "Colour");
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty()) << "they were taken";
}

TEST_F(FaithfulReadingTest, ALenientNamespaceReportsWhatItCannotReadAndHasTheRest) {
    ServeClass("TEST_Thing", "",
               KeyPropertyXml("Name") + PropertyXml("Size", "uint8") + PropertyXml("State", "uint16") +
                   PropertyXml("Label", "string"));
    server_.Answer("EnumerateInstances", "TEST_Thing",
                   DeviceXml("TEST_Thing", "a",
                             PropertyXml("Size", "uint8", ValueXml("300")) +
                                 PropertyXml("State", "uint16", ValueXml("5")) +
                                 PropertyXml("Label", "string", ValueXml("gr\xfcn")) +
                                 PropertyXml("state", "uint16", ValueXml("6"))) +
                       DeviceXml("TEST_Thing", "b", PropertyXml("Size", "uint8", ValueXml("7"))));
    TCIMContext context = PluginContext();
    context[kReadingKey] = TCIMValue(kFaithfulReading);
    context[kLenientKey] = TCIMValue(true);
    const auto nameSpace = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    const auto things = Instances(*nameSpace, "TEST_Thing");
    ASSERT_EQ(things.size(), 2U);
    EXPECT_TRUE(ValueOf(*things[0], "Size").IsNull());
    EXPECT_EQ(ValueOf(*things[0], "State"), TCIMValue(static_cast<unsigned short>(6)));
    EXPECT_EQ(ValueOf(*things[0], "Label"), TCIMValue("gr\xc3\xbcn"));
    EXPECT_EQ(ValueOf(*things[1], "Size"), TCIMValue(static_cast<unsigned char>(7)));
    EXPECT_EQ(nameSpace->Incidents().Total(), 3U);
    const auto incidents = nameSpace->TakeIncidents();
    ASSERT_THAT(Causes(incidents),
                UnorderedElementsAre(Cause::kUnreadableValue, Cause::kForeignBytes, Cause::kDoubledProperty));
    EXPECT_EQ(incidents.First()[0].className, "TEST_Thing");
    EXPECT_EQ(incidents.First()[0].path, "TEST_Thing.Name=\"a\"");
    EXPECT_EQ(incidents.First()[0].property, "Size");
    EXPECT_THAT(incidents.First()[0].reason, HasSubstr("integer out of range: 300, at byte "));
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty()) << "they were taken";
    EXPECT_EQ(log_->Warnings().size(), 3U);
}

TEST_F(FaithfulReadingTest, WhatALenientNamespaceCannotReadIsInTheLogOfAHostThatAsksForNoReport) {
    ServeClass("TEST_Thing", "", KeyPropertyXml("Name") + PropertyXml("Size", "uint8"));
    server_.Answer("EnumerateInstances", "TEST_Thing",
                   DeviceXml("TEST_Thing", "a", PropertyXml("Size", "uint8", ValueXml("300"))));
    server_.Answer("GetInstance", "",
                   "<INSTANCE CLASSNAME=\"TEST_Thing\">" + PropertyXml("Size", "uint8", ValueXml("-1")) +
                       "</INSTANCE>");
    TCIMContext context = PluginContext();
    context[kReadingKey] = TCIMValue(kFaithfulReading);
    context[kLenientKey] = TCIMValue(true);
    const auto nameSpace = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    Instances(*nameSpace, "TEST_Thing");
    ASSERT_EQ(log_->Warnings().size(), 1U);
    EXPECT_THAT(log_->Warnings()[0], HasSubstr("property Size: integer out of range: 300"));
    TCIMReference path({}, TCIMContext());
    path.SetClassName("TEST_Thing");
    path.AddKeyValue("Name", TCIMValue("b"));
    nameSpace->GetInstance(path, TCIMContext());
    EXPECT_EQ(log_->Warnings().size(), 2U);
    EXPECT_EQ(nameSpace->TakeIncidents().Total(), 2U);
    EXPECT_EQ(log_->Warnings().size(), 2U) << "each once";
}

TEST_F(FaithfulReadingTest, OfAPropertyThatComesTwiceTheLastCountsAndItIsReported) {
    ServeClass("TEST_Thing", "", KeyPropertyXml("Name") + PropertyXml("Size", "uint8"));
    server_.Answer(
        "EnumerateInstances", "TEST_Thing",
        DeviceXml("TEST_Thing", "a",
                  PropertyXml("Size", "uint8", ValueXml("1")) + PropertyXml("SIZE", "uint8", ValueXml("2"))));
    const auto nameSpace = Faithful();
    const auto things = Instances(*nameSpace, "TEST_Thing");
    ASSERT_EQ(things.size(), 1U);
    EXPECT_EQ(ValueOf(*things[0], "Size"), TCIMValue(static_cast<unsigned char>(2)));
    const auto incidents = nameSpace->TakeIncidents();
    ASSERT_THAT(Causes(incidents), ElementsAre(Cause::kDoubledProperty));
    EXPECT_EQ(incidents.First()[0].property, "Size") << "the one whose value does not count";
}

TEST_F(FaithfulReadingTest, ANamespaceIsNotLenientUnlessTheHostSaysSo) {
    const auto nameSpace = Faithful();
    server_.Answer("EnumerateInstances", "TEST_Device",
                   DeviceXml("TEST_Disk", "d1", PropertyXml("Size", "uint64", ValueXml("many"))));
    EXPECT_EQ(StatusOf([&] { Instances(*nameSpace, "TEST_Device"); }), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kMalformed);
    EXPECT_THAT(nameSpace->LastFailure()->text, HasSubstr("not an integer: many, in property Size of TEST_Disk.Name"));
}

TEST_F(FaithfulReadingTest, OnlyABooleanMakesANamespaceLenientAndOnlyAFaithfulOne) {
    const auto statusWith = [](const TCIMValue& lenient, const char* reading) {
        return StatusOf([&] {
            TCIMContext context = PluginContext();
            context[kReadingKey] = TCIMValue(reading);
            context[kLenientKey] = lenient;
            TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false);
        });
    };
    EXPECT_EQ(statusWith(TCIMValue("true"), kFaithfulReading), TVYXStatusCode::eTypeMismatch);
    EXPECT_EQ(statusWith(TCIMValue(true), kCompatibleReading), TVYXStatusCode::eTypeMismatch);
    EXPECT_EQ(statusWith(TCIMValue(false), kCompatibleReading), TVYXStatusCode::eSuccess);
    EXPECT_EQ(statusWith(TCIMValue(true), kFaithfulReading), TVYXStatusCode::eSuccess);
    EXPECT_EQ(log_->Errors().size(), 2U);
}

TEST_F(FaithfulReadingTest, ANullAmongNumbersStaysANull) {
    const auto nameSpace = Faithful();
    const auto thing = Thing(*nameSpace, ArrayXml("Sizes", "uint8", ""),
                             ArrayXml("Sizes", "uint8", "<VALUE>0</VALUE><VALUE.NULL/><VALUE>2</VALUE>"));
    TCIMValue sizes = ValueOf(*thing, "Sizes");
    const auto& elements = static_cast<std::vector<TCIMValue>&>(sizes);
    ASSERT_EQ(elements.size(), 3U);
    EXPECT_FALSE(elements[0].IsNull());
    EXPECT_TRUE(elements[1].IsNull());
    EXPECT_FALSE(elements[2].IsNull());
}

TEST_F(FaithfulReadingTest, EveryIncidentIsAWarningInTheLog) {
    const auto nameSpace = Faithful();
    Thing(*nameSpace, "", PropertyXml("Colour", "string", ValueXml("red")));
    ASSERT_EQ(log_->Warnings().size(), 1U);
    EXPECT_EQ(log_->Warnings()[0], "TCimHTTPNamespace: TEST_Thing.Name=\"a\", property Colour: the class does not "
                                   "declare the property");
}

TEST_F(FaithfulReadingTest, ManyIncidentsAreCountedAndTheFirstOnesKept) {
    ReadingIncidents incidents;
    for (std::size_t i = 0; i < ReadingIncidents::kMaxKept + 5; ++i) {
        incidents.Add({i % 2 == 0 ? Cause::kOtherType : Cause::kBadValue, "C", "", std::to_string(i), ""});
    }
    EXPECT_EQ(incidents.Total(), ReadingIncidents::kMaxKept + 5);
    EXPECT_EQ(incidents.First().size(), ReadingIncidents::kMaxKept);
    EXPECT_EQ(incidents.First()[1].property, "1");
    EXPECT_EQ(incidents.Counts().at(Cause::kOtherType), ReadingIncidents::kMaxKept / 2 + 3);
}

TEST_F(FaithfulReadingTest, AnElementThatTheHostCannotKeepDoesNotTakeTheClassAlong) {
    ServeClass("TEST_Odd", "",
               PropertyXml("\xc3\xb6", "string") + PropertyXml("Good", "string") + PropertyXml("Good", "uint8"));
    const auto nameSpace = Faithful();
    const auto cls = FetchClass(*nameSpace, "TEST_Odd");
    EXPECT_EQ(cls->GetPropertyDecl("Good", TCIMContext())->GetType(TCIMContext()), ECIMType::eCIMString);
    ASSERT_THAT(Causes(nameSpace->Incidents()), ElementsAre(Cause::kBadName));
    EXPECT_EQ(nameSpace->Incidents().First()[0].property, "Good");
}

TEST_F(FaithfulReadingTest, NamesBeyondAsciiAreNamesLikeAllOthers) {
    ServeQualifier("Gr\xc3\xb6\xc3\x9f"
                   "e");
    ServeClass("TEST_Ger\xc3\xa4t", "TEST_Device",
               KeyPropertyXml("Name") +
                   PropertyXml("H\xc3\xb6he", "uint16",
                               QualifierXml("Gr\xc3\xb6\xc3\x9f"
                                            "e",
                                            "string", "viel")) +
                   "<METHOD NAME=\"R\xc3\xbc"
                   "ck\" TYPE=\"uint32\"><PARAMETER NAME=\"\xc3\xa4\" TYPE=\"string\"/></METHOD>");
    server_.Answer("EnumerateInstances", "TEST_Ger\xc3\xa4t",
                   DeviceXml("TEST_Ger\xc3\xa4t", "a", PropertyXml("h\xc3\xb6HE", "uint16", ValueXml("7"))));
    const auto nameSpace = Faithful();
    const auto instances = Instances(*nameSpace, "test_ger\xc3\xa4t");
    ASSERT_EQ(instances.size(), 1U);
    EXPECT_EQ(ValueOf(*instances[0], "H\xc3\xb6he"), TCIMValue(static_cast<unsigned short>(7)));
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty());
    EXPECT_EQ(nameSpace->GetInstance(instances[0]->GetReference(TCIMContext()), TCIMContext()), instances[0]);
    const auto cls = FetchClass(*nameSpace, "TEST_Ger\xc3\xa4t");
    const auto declaration = cls->GetPropertyDecl("h\xc3\xb6he", TCIMContext());
    EXPECT_EQ(declaration
                  ->GetQualifier("gR\xc3\xb6\xc3\x9f"
                                 "E",
                                 TCIMContext())
                  ->GetValue(TCIMContext()),
              TCIMValue("viel"));
    EXPECT_TRUE(cls->GetMethodDecl("r\xc3\xbc"
                                   "ck",
                                   TCIMContext())
                    ->GetParameterDecl("\xc3\xa4", TCIMContext()));
    EXPECT_EQ(cls->GetSuperClass(TCIMContext())->GetName(TCIMContext()), "TEST_Device");
}

TEST_F(FaithfulReadingTest, AnUndeclaredPropertyWithANameBeyondAsciiIsAnIncidentOfItsInstance) {
    ServeDevices();
    server_.Answer("EnumerateInstances", "TEST_Device",
                   DeviceXml("TEST_Disk", "d1",
                             PropertyXml("Fl\xc3\xa4"
                                         "che",
                                         "uint16", ValueXml("7"))) +
                       DeviceXml("TEST_Tape", "t1"));
    const auto nameSpace = Faithful();
    EXPECT_THAT(Paths(Instances(*nameSpace, "TEST_Device")),
                ElementsAre("TEST_Disk.Name=\"d1\"", "TEST_Tape.Name=\"t1\""));
    ASSERT_THAT(Causes(nameSpace->Incidents()), ElementsAre(Cause::kUndeclaredProperty));
    EXPECT_EQ(nameSpace->Incidents().First()[0].property, "Fl\xc3\xa4"
                                                          "che");
}

TEST_F(FaithfulReadingTest, AFailedReadingLeavesTheOneBefore) {
    ServeDevices();
    const auto nameSpace = Faithful();
    Instances(*nameSpace, "TEST_Device");
    server_.Fail("EnumerateInstances", "TEST_Device", 1, "it broke");
    EXPECT_EQ(StatusOf([&] { Instances(*nameSpace, "TEST_Device"); }), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_TRUE(nameSpace->GetInstance(PathOf("TEST_Disk", "Name", "d1"), TCIMContext()));
    EXPECT_EQ(CountCalls("GetInstance"), 0U);
}

// --- Fresh -------------------------------------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, EachEnumerationAsksAgainAndOldInstancesStayValid) {
    ServeDevices();
    const auto nameSpace = Faithful();
    const auto before = Instances(*nameSpace, "TEST_Device");
    server_.Answer("EnumerateInstances", "TEST_Device", DeviceXml("TEST_Disk", "d9"));
    EXPECT_THAT(Paths(Instances(*nameSpace, "TEST_Device")), ElementsAre("TEST_Disk.Name=\"d9\""));
    EXPECT_EQ(PathText(*before[3]), "TEST_Tape.Name=\"t1\"");
    EXPECT_EQ(ValueOf(*before[3], "Label"), TCIMValue("weekly"));
}

TEST_F(FaithfulReadingTest, GetInstanceAnswersFromTheLastReading) {
    ServeDevices();
    const auto nameSpace = Faithful();
    const auto instances = Instances(*nameSpace, "TEST_Device");
    server_.ForgetCalls();
    EXPECT_EQ(nameSpace->GetInstance(PathOf("test_disk", "NAME", "d2"), TCIMContext()), instances[2]);
    EXPECT_THAT(Methods(), IsEmpty());
}

TEST_F(FaithfulReadingTest, GetInstanceAsksForWhatItDoesNotHave) {
    server_.Answer("GetInstance", "",
                   "<INSTANCE CLASSNAME=\"TEST_Disk\">" + PropertyXml("Name", "string", ValueXml("d7")) +
                       PropertyXml("Size", "uint64", ValueXml("77")) + "</INSTANCE>");
    const auto nameSpace = Faithful();
    const auto disk = nameSpace->GetInstance(PathOf("TEST_Disk", "Name", "d7"), TCIMContext());
    ASSERT_TRUE(disk);
    EXPECT_EQ(PathText(*disk), "TEST_Disk.Name=\"d7\"");
    EXPECT_EQ(ValueOf(*disk, "Size"), TCIMValue(77ULL));
    EXPECT_THAT(Methods(), ElementsAre("GetClass", "EnumerateQualifiers", "GetInstance"));
}

TEST_F(FaithfulReadingTest, GetInstanceKnowsWhatHasGoneSince) {
    ServeDevices();
    const auto nameSpace = Faithful();
    Instances(*nameSpace, "TEST_Device");
    server_.Answer("EnumerateInstances", "TEST_Disk", DeviceXml("TEST_Disk", "d1"));
    Instances(*nameSpace, "TEST_Disk");
    server_.Fail("GetInstance", "", 6, "gone");
    EXPECT_EQ(StatusOf([&] { nameSpace->GetInstance(PathOf("TEST_Disk", "Name", "d2"), TCIMContext()); }),
              TVYXStatusCode::eNotFound);
    EXPECT_TRUE(nameSpace->GetInstance(PathOf("TEST_Tape", "Name", "t1"), TCIMContext()));
}

TEST_F(FaithfulReadingTest, AKeyThatReadsLikeAPathIsATextWhereTheClassSaysSo) {
    server_.Answer("GetInstance", "", "<INSTANCE CLASSNAME=\"TEST_Disk\"/>");
    const auto nameSpace = Faithful();
    nameSpace->GetInstance(PathOf("TEST_Disk", "Name", "A.B=\"c\""), TCIMContext());
    EXPECT_THAT(server_.Calls().back().http.body, testing::Not(HasSubstr("VALUE.REFERENCE")));
    EXPECT_THAT(server_.Calls().back().http.body, HasSubstr("VALUETYPE=\"string\""));
}

// --- Few requests ------------------------------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, AFirstEnumerationTakesThreeRequestsAndTheNextTakesOne) {
    server_.AnswerPortion("OpenEnumerateInstances", "TEST_Disk", "", "");
    const auto nameSpace = Faithful();
    Instances(*nameSpace, "TEST_Disk");
    EXPECT_THAT(Methods(), UnorderedElementsAre("GetClass", "EnumerateQualifiers", "OpenEnumerateInstances"));
    server_.ForgetCalls();
    Instances(*nameSpace, "TEST_Disk");
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances"));
}

TEST_F(FaithfulReadingTest, WithoutPulledEnumerationsAFirstEnumerationTakesFourRequests) {
    server_.Answer("EnumerateInstances", "TEST_Disk", DeviceXml("TEST_Disk", "d1") + DeviceXml("TEST_Disk", "d2"));
    const auto nameSpace = Faithful();
    Instances(*nameSpace, "TEST_Disk");
    EXPECT_THAT(Methods(), UnorderedElementsAre("GetClass", "EnumerateQualifiers", "OpenEnumerateInstances",
                                                "EnumerateInstances"));
    server_.ForgetCalls();
    Instances(*nameSpace, "TEST_Disk");
    EXPECT_THAT(Methods(), ElementsAre("EnumerateInstances"));
}

TEST_F(FaithfulReadingTest, EachFurtherClassTakesOneRequestMore) {
    ServeDevices();
    const auto nameSpace = Faithful();
    Instances(*nameSpace, "TEST_Device");
    EXPECT_THAT(Methods(), UnorderedElementsAre("GetClass", "EnumerateQualifiers", "OpenEnumerateInstances",
                                                "EnumerateInstances", "GetClass", "GetClass"));
}

TEST_F(FaithfulReadingTest, ThePropertyListGoesToTheServer) {
    server_.Answer("EnumerateInstances", "TEST_Disk", DeviceXml("TEST_Disk", "d1"));
    const auto nameSpace = Faithful();
    const TCIMValue names(ECIMType::eCIMString, 0, {TCIMValue("Name"), TCIMValue("Size")});
    EXPECT_EQ(Instances(*nameSpace, "TEST_Disk", true, {{kPropertiesKey, names}}).size(), 1U);
    EXPECT_EQ(server_.Calls().back().parameters.at("PropertyList"), "Name,Size");
    server_.Answer("GetInstance", "",
                   "<INSTANCE CLASSNAME=\"TEST_Disk\">" + PropertyXml("State", "uint16", ValueXml("2")) +
                       "</INSTANCE>");
    EXPECT_EQ(ValueOf(*nameSpace->GetInstance(PathOf("TEST_Disk", "Name", "d1"), TCIMContext()), "State"),
              TCIMValue(static_cast<unsigned short>(2)))
        << "a reading of some properties does not answer for the others";
}

TEST_F(FaithfulReadingTest, APropertyListOfAnotherTypeIsRefused) {
    const auto nameSpace = Faithful();
    EXPECT_EQ(StatusOf([&] {
                  Instances(*nameSpace, "TEST_Disk", true, {{kPropertiesKey, TCIMValue("Name")}});
              }),
              TVYXStatusCode::eTypeMismatch);
    const TCIMValue wrong(ECIMType::eCIMString, 0, {TCIMValue("no name")});
    EXPECT_EQ(StatusOf([&] {
                  Instances(*nameSpace, "TEST_Disk", true, {{kPropertiesKey, wrong}});
              }),
              TVYXStatusCode::eInvalidName);
    EXPECT_EQ(CountCalls("EnumerateInstances"), 0U);
}

// --- Servers that do not have all operations ---------------------------------------------------------------------

TEST_F(FaithfulReadingTest, QualifiersComeOneByOneFromAServerThatDoesNotListThem) {
    server_.Fail("EnumerateQualifiers", "", 7, "not supported");
    ServeClass("TEST_Noted", "", QualifierXml("Description", "string", "x") + KeyPropertyXml("Name"));
    const auto nameSpace = Faithful();
    FetchClass(*nameSpace, "TEST_Noted");
    FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_EQ(CountCalls("EnumerateQualifiers"), 1U);
    EXPECT_EQ(CountCalls("GetQualifier"), 2U) << "one for Description, one for Key";
}

TEST_F(FaithfulReadingTest, AServerWithoutQualifierOperationsShowsItsClassesAllTheSame) {
    server_.Fail("EnumerateQualifiers", "", 7, "not supported");
    server_.Fail("GetQualifier", "Key", 7, "not supported");
    ServeClass("TEST_Noted", "",
               KeyPropertyXml("Name") + PropertyXml("A", "string", QualifierXml("Own", "uint8", "3")));
    const auto nameSpace = Faithful();
    const auto cls = FetchClass(*nameSpace, "TEST_Noted");
    const auto own = cls->GetPropertyDecl("A", TCIMContext())->GetQualifier("Own", TCIMContext());
    EXPECT_EQ(own->GetValue(TCIMContext()), TCIMValue(static_cast<unsigned char>(3)));
    EXPECT_EQ(CountCalls("GetQualifier"), 1U) << "one refusal is enough";
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty());
}

TEST_F(FaithfulReadingTest, AServerWithoutClassOperationsShowsItsInstancesAsSent) {
    server_.Fail("GetClass", "TEST_Plain", 7, "not supported");
    server_.Answer("EnumerateInstances", "TEST_Plain",
                   DeviceXml("TEST_Plain", "p1", PropertyXml("Size", "uint64", ValueXml("5"))) +
                       DeviceXml("TEST_Plain", "p2", PropertyXml("Colour", "string", ValueXml("red"))));
    const auto nameSpace = Faithful();
    const auto instances = Instances(*nameSpace, "TEST_Plain");
    EXPECT_THAT(Paths(instances), ElementsAre("TEST_Plain.Name=\"p1\"", "TEST_Plain.Name=\"p2\""));
    EXPECT_EQ(ValueOf(*instances[0], "Size"), TCIMValue(5ULL));
    EXPECT_TRUE(ValueOf(*instances[0], "Colour").IsNull());
    EXPECT_EQ(ValueOf(*instances[1], "Colour"), TCIMValue("red"));
    const auto cls = nameSpace->GetClass("test_plain", TCIMContext());
    std::vector<std::string> keys;
    cls->EnumerateKeyNames(
        [&](const std::string* name) {
            keys.push_back(*name);
            return true;
        },
        TCIMContext());
    EXPECT_THAT(keys, ElementsAre("Name"));
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty());
}

TEST_F(FaithfulReadingTest, AnInstanceWhoseDefinitionCannotBeReadIsKeptAsSentAndReported) {
    server_.Fail("GetClass", "TEST_Disk", 1, "it broke");
    ServeDevices();
    const auto nameSpace = Faithful();
    const auto instances = Instances(*nameSpace, "TEST_Device");
    ASSERT_EQ(instances.size(), 4U);
    EXPECT_EQ(ValueOf(*instances[2], "Size"), TCIMValue(2ULL));
    ASSERT_THAT(Causes(nameSpace->Incidents()), ElementsAre(Cause::kNoDefinition)) << "once for both disks";
    EXPECT_THAT(nameSpace->Incidents().First()[0].reason, HasSubstr("it broke"));
}

// --- What compatible namespaces tell, too ------------------------------------------------------------------------

TEST_F(FaithfulReadingTest, ACompatibleNamespaceTellsItsFailuresAndIncidents) {
    const auto nameSpace = ConnectedNamespace();
    EXPECT_FALSE(nameSpace->GetClass("TEST_None", TCIMContext()));
    EXPECT_EQ(nameSpace->LastFailure()->cimStatus, 6U);
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   DeviceXml("TEST_Disk", "d1", PropertyXml("Colour", "string", ValueXml("red"))) +
                       DeviceXml("TEST_Disk", "d1"));
    Instances(*nameSpace, "TEST_Disk", false);
    EXPECT_FALSE(nameSpace->LastFailure());
    EXPECT_THAT(Causes(nameSpace->TakeIncidents()), ElementsAre(Cause::kBadValue, Cause::kDoubledPath));
    const std::string embedded = "<PROPERTY NAME=\"Part\" TYPE=\"string\" EmbeddedObject=\"instance\">";
    Thing(*nameSpace, embedded + "</PROPERTY>",
          embedded + "<VALUE>&lt;INSTANCE CLASSNAME=\"TEST_Part\"/&gt;</VALUE></PROPERTY>");
    ASSERT_THAT(Causes(nameSpace->Incidents()), ElementsAre(Cause::kBadValue));
    EXPECT_EQ(nameSpace->Incidents().First()[0].property, "Part");
    server_.Fail("EnumerateInstances", "TEST_Tape", 1, "it broke");
    EXPECT_THAT(Instances(*nameSpace, "TEST_Tape", false), IsEmpty());
    EXPECT_EQ(nameSpace->LastFailure()->cimStatus, 1U);
}

TEST_F(FaithfulReadingTest, AllocateClassThrowsTheHostsExceptionInBothReadings) {
    for (const auto& nameSpace : {ConnectedNamespace(), Faithful()}) {
        log_->Forget();
        EXPECT_EQ(StatusOf([&] { nameSpace->AllocateClass("TEST_None", {}, TCIMContext()); }),
                  TVYXStatusCode::eNotFound);
        ASSERT_EQ(log_->Errors().size(), 1U);
        EXPECT_THAT(log_->Errors()[0], HasSubstr("TCimHTTPNamespace::AllocateClass TEST_None: "));
        server_.Fail("GetClass", "TEST_Sick", 1, "it broke");
        EXPECT_EQ(StatusOf([&] { nameSpace->AllocateClass("TEST_Sick", {}, TCIMContext()); }),
                  TVYXStatusCode::eRemoteConnectionFailed);
        EXPECT_TRUE(nameSpace->AllocateClass("TEST_Disk", {}, TCIMContext()));
    }
}
