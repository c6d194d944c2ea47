// The client and the demo server, which share no code, understand each other in every operation. What one operation
// returns is held against what another does.

#include "Texts.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/TemporaryDirectory.h"

#include <Pegasus/Client/CIMClient.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using ::testing::ElementsAreArray;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

const CIMNamespaceName kNamespace("root/cimv2");
constexpr char kUser[] = "ada";
constexpr char kPassword[] = "secret";

demo::DemoServerOptions Options() {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.users.Add(kUser, kPassword);
    options.volumes = 3;
    return options;
}

std::vector<std::string> Texts(const Array<CIMName>& names) {
    std::vector<std::string> texts;
    for (const CIMName& name : names) {
        texts.push_back(Text(name.getString()));
    }
    return texts;
}

std::vector<std::string> Texts(const Array<CIMObjectPath>& paths) {
    std::vector<std::string> texts;
    for (const CIMObjectPath& path : paths) {
        texts.push_back(Text(path.toString()));
    }
    return texts;
}

/// The paths of instances or objects.
template <typename Object>
std::vector<std::string> PathsOf(const Array<Object>& objects) {
    std::vector<std::string> texts;
    for (const Object& object : objects) {
        texts.push_back(Text(object.getPath().toString()));
    }
    return texts;
}

/// Whether two instances of one class have the same values, wherever they are.
bool HaveSameValues(CIMInstance a, CIMInstance b) {
    bool same = a.getClassName() == b.getClassName() && a.getPropertyCount() == b.getPropertyCount();
    for (Uint32 i = 0; same && i < a.getPropertyCount(); ++i) {
        same = a.getProperty(i).getName() == b.getProperty(i).getName() &&
               a.getProperty(i).getValue() == b.getProperty(i).getValue();
    }
    return same;
}

class EndToEndTest : public ::testing::Test {
  protected:
    void SetUp() override { client_.connect(String(support::LoopbackAddress()), 5988, kUser, kPassword); }

    /// An instance of which this machine has exactly one.
    CIMInstance theOne(const char* className) {
        const Array<CIMInstance> instances = client_.enumerateInstances(kNamespace, className, true, false);
        EXPECT_EQ(instances.size(), 1U) << className;
        return instances[0];
    }

    demo::DemoServer server_{Options()};
    CIMClient client_;
};

TEST_F(EndToEndTest, TheClassesOfTheSchemaAreTheSameOneByOneAndAllAtOnce) {
    const Array<CIMClass> classes = client_.enumerateClasses(kNamespace, CIMName(), true, false, true, true);
    const Array<CIMName> names = client_.enumerateClassNames(kNamespace, CIMName(), true);
    ASSERT_EQ(classes.size(), names.size());
    EXPECT_THAT(Texts(names), IsSupersetOf({"CIM_ManagedElement", "DEMO_AllTypes", "DEMO_RunningOS"}));
    for (Uint32 i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(Text(names[i].getString()));
        EXPECT_EQ(classes[i].getClassName(), names[i]);
        EXPECT_GT(classes[i].getPropertyCount(), 0U);
        EXPECT_TRUE(client_.getClass(kNamespace, names[i], false, true, true).identical(classes[i]));
    }
}

TEST_F(EndToEndTest, TheTopClassesHaveNoSuperclassAndTheOthersHave) {
    std::set<std::string> top;
    for (const CIMClass& cimClass : client_.enumerateClasses(kNamespace)) {
        EXPECT_TRUE(cimClass.getSuperClassName().isNull());
        top.insert(Text(cimClass.getClassName().getString()));
    }
    EXPECT_FALSE(top.empty());
    for (const CIMClass& cimClass : client_.enumerateClasses(kNamespace, "CIM_ManagedElement", true)) {
        EXPECT_FALSE(cimClass.getSuperClassName().isNull());
        EXPECT_EQ(top.count(Text(cimClass.getClassName().getString())), 0U);
    }
}

TEST_F(EndToEndTest, TheQualifierDeclarationsAreTheSameOneByOneAndAllAtOnce) {
    const Array<CIMQualifierDecl> declarations = client_.enumerateQualifiers(kNamespace);
    EXPECT_GT(declarations.size(), 10U);
    for (const CIMQualifierDecl& declaration : declarations) {
        const CIMQualifierDecl single = client_.getQualifier(kNamespace, declaration.getName());
        EXPECT_EQ(single.getName(), declaration.getName());
        EXPECT_EQ(single.getType(), declaration.getType());
        EXPECT_EQ(single.getValue(), declaration.getValue());
        EXPECT_EQ(single.getScope(), declaration.getScope());
        EXPECT_EQ(single.getFlavor(), declaration.getFlavor());
    }
}

TEST_F(EndToEndTest, TheInstancesOfAClassAreTheSameOneByOneAndAllAtOnce) {
    for (const char* className : {"DEMO_AllTypes", "DEMO_StorageVolume"}) {
        SCOPED_TRACE(className);
        const Array<CIMInstance> instances = client_.enumerateInstances(kNamespace, className, true, false);
        EXPECT_GT(instances.size(), 0U);
        EXPECT_THAT(PathsOf(instances), ElementsAreArray(Texts(client_.enumerateInstanceNames(kNamespace, className))));
        for (const CIMInstance& instance : instances) {
            EXPECT_GT(instance.getPropertyCount(), 0U);
            EXPECT_TRUE(client_.getInstance(kNamespace, instance.getPath(), false).identical(instance));
        }
    }
}

TEST_F(EndToEndTest, AnAssociationLeadsFromOneInstanceToTheOtherAndBack) {
    const CIMInstance system = theOne("DEMO_ComputerSystem");
    const CIMObjectPath osPath = theOne("DEMO_OperatingSystem").getPath();

    const Array<CIMObject> systems =
        client_.associators(kNamespace, osPath, "CIM_RunningOS", "CIM_ComputerSystem", "Antecedent", "Dependent");
    ASSERT_EQ(systems.size(), 1U);
    ASSERT_TRUE(systems[0].isInstance());
    EXPECT_TRUE(HaveSameValues(CIMInstance(systems[0]), system));
    EXPECT_THAT(PathsOf(systems),
                ElementsAreArray(Texts(client_.associatorNames(kNamespace, osPath, "CIM_RunningOS"))));
    EXPECT_NE(systems[0].getPath().getHost(), String::EMPTY);
    EXPECT_EQ(systems[0].getPath().getNameSpace(), kNamespace);

    // The received path, with host and namespace, asks for the same instance, and leads back.
    EXPECT_TRUE(HaveSameValues(client_.getInstance(kNamespace, systems[0].getPath(), false), system));
    const Array<CIMObjectPath> back =
        client_.associatorNames(kNamespace, systems[0].getPath(), "CIM_RunningOS", "DEMO_OperatingSystem");
    ASSERT_EQ(back.size(), 1U);
    EXPECT_EQ(back[0].getKeyBindings(), osPath.getKeyBindings());

    EXPECT_EQ(client_.associators(kNamespace, osPath, "CIM_SystemDevice").size(), 0U);
    EXPECT_EQ(client_.associators(kNamespace, osPath, "CIM_RunningOS", CIMName(), "Dependent").size(), 0U);
}

TEST_F(EndToEndTest, AnInstanceWhoseKeysAreReferencesIsFoundByItsPath) {
    const CIMObjectPath osPath = theOne("DEMO_OperatingSystem").getPath();
    Array<CIMName> ends; // and not the time since when, which the clock's adjustments can move
    ends.append("Antecedent");
    ends.append("Dependent");
    const Array<CIMObject> links = client_.references(kNamespace, osPath, "CIM_RunningOS", "", false, false, ends);
    ASSERT_EQ(links.size(), 1U);
    EXPECT_EQ(CIMInstance(links[0]).getPropertyCount(), 2U);
    EXPECT_THAT(PathsOf(links), ElementsAreArray(Texts(client_.referenceNames(kNamespace, osPath, "CIM_RunningOS"))));
    EXPECT_EQ(client_.references(kNamespace, osPath, "CIM_RunningOS", "Antecedent").size(), 1U);
    EXPECT_EQ(client_.referenceNames(kNamespace, osPath, "CIM_RunningOS", "Dependent").size(), 0U);

    const Array<CIMKeyBinding> keys = links[0].getPath().getKeyBindings();
    ASSERT_EQ(keys.size(), 2U);
    EXPECT_EQ(keys[0].getType(), CIMKeyBinding::REFERENCE);
    const CIMObjectPath& path = links[0].getPath();
    EXPECT_TRUE(
        HaveSameValues(client_.getInstance(kNamespace, path, false, false, false, ends), CIMInstance(links[0])));
}

TEST_F(EndToEndTest, TheAssociationsOfAClassAreClasses) {
    const Array<CIMObject> classes = client_.associators(kNamespace, "DEMO_OperatingSystem", "DEMO_RunningOS");
    ASSERT_GT(classes.size(), 0U);
    for (const CIMObject& object : classes) {
        ASSERT_TRUE(object.isClass());
        EXPECT_EQ(object.getPath().getClassName(), CIMClass(object).getClassName());
    }
    EXPECT_THAT(PathsOf(classes),
                ElementsAreArray(Texts(client_.associatorNames(kNamespace, "DEMO_OperatingSystem", "DEMO_RunningOS"))));
    const Array<CIMObject> links = client_.references(kNamespace, "DEMO_OperatingSystem", "DEMO_RunningOS");
    ASSERT_EQ(links.size(), 1U);
    EXPECT_EQ(CIMClass(links[0]).getClassName(), CIMName("DEMO_RunningOS"));
    EXPECT_THAT(PathsOf(links),
                ElementsAreArray(Texts(client_.referenceNames(kNamespace, "DEMO_OperatingSystem", "DEMO_RunningOS"))));
}

TEST_F(EndToEndTest, ErrorsOfTheServerArriveWithTheirCodes) {
    const auto codeOf = [](auto action) {
        try {
            action();
        } catch (const CIMException& error) {
            EXPECT_THAT(Text(error.getMessage()), StartsWith("CIM_ERR_"));
            return error.getCode();
        }
        return CIM_ERR_SUCCESS;
    };
    EXPECT_EQ(codeOf([&] { client_.getClass(kNamespace, "DEMO_Nothing"); }), CIM_ERR_NOT_FOUND);
    const CIMObjectPath nobody("DEMO_ComputerSystem.CreationClassName=\"DEMO_ComputerSystem\",Name=\"nobody\"");
    EXPECT_EQ(codeOf([&] { client_.getInstance(kNamespace, nobody); }), CIM_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] { client_.getInstance(kNamespace, "DEMO_ComputerSystem.Id=1"); }), CIM_ERR_INVALID_PARAMETER);
    EXPECT_EQ(codeOf([&] { client_.enumerateInstances(kNamespace, "DEMO_Nothing"); }), CIM_ERR_INVALID_CLASS);
    EXPECT_EQ(codeOf([&] { client_.getQualifier(kNamespace, "Nothing"); }), CIM_ERR_NOT_FOUND);
    EXPECT_EQ(codeOf([&] { client_.enumerateClasses("root/nowhere"); }), CIM_ERR_INVALID_NAMESPACE);
}

TEST_F(EndToEndTest, NothingChangesOverTls) {
    const support::TemporaryDirectory directory;
    const std::string trustStore = directory.WriteFile("server.pem", server_.CertificatePem());
    CIMClient secure;
    secure.connect(String(support::LoopbackAddress()), 5989, SSLContext(String(trustStore), nullptr), kUser, kPassword);
    EXPECT_THAT(Texts(secure.enumerateInstanceNames(kNamespace, "DEMO_AllTypes")),
                ElementsAreArray(Texts(client_.enumerateInstanceNames(kNamespace, "DEMO_AllTypes"))));
}

/// What a program writes to its standard output.
std::string OutputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), &::pclose);
    std::string output;
    char buffer[4096];
    while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, pipe.get())) {
        output.append(buffer, size);
    }
    return output;
}

TEST(DocumentedExample, ListsTheFileSystemsOfAServer) {
    demo::DemoServerOptions options = Options();
    options.users = {};
    const demo::DemoServer server(options);
    CIMClient client;
    client.connect(String(options.address), 5988, "", "");
    std::string expected;
    for (const std::string& path : Texts(client.enumerateInstanceNames(kNamespace, "CIM_FileSystem"))) {
        expected += path + '\n';
    }
    EXPECT_NE(expected, "");
    EXPECT_EQ(OutputOf(DOCUMENTED_EXAMPLE " " + options.address), expected);
}

} // namespace
