// What each operation of the client sends, what it makes of the answer, and what it refuses.

#include "Texts.h"
#include "support/CimServer.h"

#include <Pegasus/Client/CIMClient.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using support::CimServer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const CIMNamespaceName kNamespace("root/cimv2");

constexpr char kDeskName[] = "<INSTANCENAME CLASSNAME=\"DEMO_Desk\"><KEYBINDING NAME=\"Id\">"
                             "<KEYVALUE VALUETYPE=\"numeric\">7</KEYVALUE></KEYBINDING></INSTANCENAME>";
constexpr char kDesk[] = "<INSTANCE CLASSNAME=\"DEMO_Desk\"><PROPERTY NAME=\"Id\" TYPE=\"uint32\"><VALUE>7</VALUE>"
                         "</PROPERTY></INSTANCE>";
constexpr char kDeskClass[] = "<CLASS NAME=\"DEMO_Desk\"><PROPERTY NAME=\"Id\" TYPE=\"uint32\"></PROPERTY></CLASS>";
constexpr char kDeskPath[] = "DEMO_Desk.Id=7";

std::vector<std::string> Texts(const Array<CIMObjectPath>& paths) {
    std::vector<std::string> texts;
    for (const CIMObjectPath& path : paths) {
        texts.push_back(Text(path.toString()));
    }
    return texts;
}

std::string Parameter(const std::string& name, const std::string& content) {
    return "<IPARAMVALUE NAME=\"" + name + "\">" + content + "</IPARAMVALUE>";
}
std::string ValueParameter(const std::string& name, const std::string& value) {
    return Parameter(name, "<VALUE>" + value + "</VALUE>");
}
std::string ClassParameter(const std::string& name, const std::string& className) {
    return Parameter(name, "<CLASSNAME NAME=\"" + className + "\"/>");
}

std::string LocalNamespace() {
    return "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";
}
/// An element such as INSTANCEPATH: a name behind the namespace of a host.
std::string WithHost(const std::string& element, const std::string& name) {
    return "<" + element + "><NAMESPACEPATH><HOST>far</HOST>" + LocalNamespace() + "</NAMESPACEPATH>" + name + "</" +
           element + ">";
}
std::string WithNamespace(const std::string& element, const std::string& name) {
    return "<" + element + ">" + LocalNamespace() + name + "</" + element + ">";
}
std::string In(const std::string& element, const std::string& content) {
    return "<" + element + ">" + content + "</" + element + ">\n";
}

CIMPropertyList List(std::initializer_list<const char*> names) {
    Array<CIMName> list;
    for (const char* name : names) {
        list.append(CIMName(name));
    }
    return CIMPropertyList(list);
}

class OperationsTest : public ::testing::Test {
  protected:
    void SetUp() override { client_.connect(String(server_.Address()), server_.Listen(5988), "", ""); }

    /// The parameters of the last request, as they were sent.
    std::string lastParameters() const {
        const CimServer::Call call = server_.Calls().back();
        EXPECT_EQ(call.nameSpace, "root/cimv2");
        const std::string before = "</LOCALNAMESPACEPATH>";
        const std::string& body = call.http.body;
        const std::size_t begin = body.find(before) + before.size(); // that of the call comes first
        return body.substr(begin, body.rfind("</IMETHODCALL>") - begin);
    }

    CimServer server_;
    CIMClient client_;
};

// ---- Instances

TEST_F(OperationsTest, GetInstanceAsksForOneByItsName) {
    server_.Answer("GetInstance", "", kDesk);
    const CIMInstance desk = client_.getInstance(kNamespace, kDeskPath);
    EXPECT_EQ(lastParameters(), Parameter("InstanceName", kDeskName) + ValueParameter("LocalOnly", "TRUE") +
                                    ValueParameter("IncludeQualifiers", "FALSE") +
                                    ValueParameter("IncludeClassOrigin", "FALSE"));
    EXPECT_EQ(desk.getClassName(), CIMName("DEMO_Desk"));
    EXPECT_EQ(CIMInstance(desk).getProperty(0).getValue(), CIMValue(Uint32(7)));

    client_.getInstance(kNamespace, kDeskPath, false, true, true, List({"Id", "Name"}));
    EXPECT_EQ(lastParameters(),
              Parameter("InstanceName", kDeskName) + ValueParameter("LocalOnly", "FALSE") +
                  ValueParameter("IncludeQualifiers", "TRUE") + ValueParameter("IncludeClassOrigin", "TRUE") +
                  Parameter("PropertyList", "<VALUE.ARRAY><VALUE>Id</VALUE><VALUE>Name</VALUE></VALUE.ARRAY>"));
}

TEST_F(OperationsTest, GetInstanceGivesTheInstanceThePathThatWasAskedFor) {
    server_.Answer("GetInstance", "", kDesk);
    for (const char* path : {kDeskPath, "//far:5988/root/cimv2:DEMO_Desk.Id=7"}) {
        EXPECT_EQ(Text(client_.getInstance(kNamespace, path).getPath().toString()), path);
        EXPECT_THAT(lastParameters(), HasSubstr(Parameter("InstanceName", kDeskName)));
    }
}

TEST_F(OperationsTest, GetInstanceRefusesAnAnswerWithoutOrWithMoreThanOneInstance) {
    server_.Answer("GetInstance", "", "");
    EXPECT_THROW(client_.getInstance(kNamespace, kDeskPath), CIMClientResponseException);
    server_.Answer("GetInstance", "", std::string(kDesk) + kDesk);
    EXPECT_THROW(client_.getInstance(kNamespace, kDeskPath), CIMClientResponseException);
}

TEST_F(OperationsTest, AKeyThatIsNoReferenceIsRefusedBeforeAnythingIsSent) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("R", "no path", CIMKeyBinding::REFERENCE));
    const CIMObjectPath path(String(), CIMNamespaceName(), "A", keys);
    EXPECT_THROW(client_.getInstance(kNamespace, path), MalformedObjectNameException);
    EXPECT_THROW(client_.associators(kNamespace, path), MalformedObjectNameException);
    EXPECT_THROW(client_.associatorNames(kNamespace, path), MalformedObjectNameException);
    EXPECT_THROW(client_.references(kNamespace, path), MalformedObjectNameException);
    EXPECT_THROW(client_.referenceNames(kNamespace, path), MalformedObjectNameException);
    EXPECT_THAT(server_.Calls(), IsEmpty());
    server_.Answer("GetInstance", "", kDesk);
    client_.getInstance(kNamespace, kDeskPath);
    EXPECT_EQ(server_.ConnectionCount(), 1U) << "the connection stays usable";
}

TEST_F(OperationsTest, EnumerateInstanceNamesGivesPaths) {
    server_.Answer("EnumerateInstanceNames", "DEMO_Desk",
                   std::string(kDeskName) + "\n<INSTANCENAME CLASSNAME=\"DEMO_DeskLamp\"/>\n");
    const Array<CIMObjectPath> names = client_.enumerateInstanceNames(kNamespace, "DEMO_Desk");
    EXPECT_EQ(lastParameters(), ClassParameter("ClassName", "DEMO_Desk"));
    EXPECT_THAT(Texts(names), ElementsAre(kDeskPath, "DEMO_DeskLamp"));
}

// ---- Classes and qualifiers

TEST_F(OperationsTest, EnumerateClassesGivesDefinitions) {
    server_.Answer("EnumerateClasses", "", std::string(kDeskClass) + "<CLASS NAME=\"DEMO_Lamp\"></CLASS>");
    Array<CIMClass> classes = client_.enumerateClasses(kNamespace);
    EXPECT_EQ(lastParameters(), ValueParameter("DeepInheritance", "FALSE") + ValueParameter("LocalOnly", "TRUE") +
                                    ValueParameter("IncludeQualifiers", "TRUE") +
                                    ValueParameter("IncludeClassOrigin", "FALSE"));
    ASSERT_EQ(classes.size(), 2U);
    EXPECT_EQ(classes[0].getProperty(0).getName(), CIMName("Id"));
    EXPECT_EQ(classes[1].getClassName(), CIMName("DEMO_Lamp"));

    server_.Answer("EnumerateClasses", "DEMO_Lamp", "");
    EXPECT_EQ(client_.enumerateClasses(kNamespace, "DEMO_Lamp", true, false, false, true).size(), 0U);
    EXPECT_EQ(lastParameters(), ClassParameter("ClassName", "DEMO_Lamp") + ValueParameter("DeepInheritance", "TRUE") +
                                    ValueParameter("LocalOnly", "FALSE") +
                                    ValueParameter("IncludeQualifiers", "FALSE") +
                                    ValueParameter("IncludeClassOrigin", "TRUE"));
}

TEST_F(OperationsTest, EnumerateQualifiersGivesDeclarations) {
    server_.Answer("EnumerateQualifiers", "",
                   "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" TOSUBCLASS=\"true\"><SCOPE PROPERTY=\"true\"/>"
                   "<VALUE>false</VALUE></QUALIFIER.DECLARATION>\n"
                   "<QUALIFIER.DECLARATION NAME=\"MaxLen\" TYPE=\"uint32\"/>\n");
    const Array<CIMQualifierDecl> declarations = client_.enumerateQualifiers(kNamespace);
    EXPECT_EQ(lastParameters(), "");
    ASSERT_EQ(declarations.size(), 2U);
    EXPECT_EQ(declarations[0].getValue(), CIMValue(false));
    EXPECT_EQ(declarations[1].getName(), CIMName("MaxLen"));
}

// ---- Values and queries

TEST_F(OperationsTest, GetPropertyGivesAValueAsTextsOrReferences) {
    server_.Answer("GetProperty", "", "<VALUE>7</VALUE>");
    EXPECT_EQ(client_.getProperty(kNamespace, kDeskPath, CIMName("Id")), CIMValue(String("7")));
    EXPECT_EQ(lastParameters(), Parameter("InstanceName", kDeskName) + ValueParameter("PropertyName", "Id"));

    server_.Answer("GetProperty", "", "<VALUE.ARRAY><VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY>");
    EXPECT_EQ(client_.getProperty(kNamespace, kDeskPath, CIMName("Id")).getArraySize(), 2U);

    server_.Answer("GetProperty", "", In("VALUE.REFERENCE", kDeskName));
    EXPECT_EQ(client_.getProperty(kNamespace, kDeskPath, CIMName("Id")), CIMValue(CIMObjectPath(kDeskPath)));

    server_.Answer("GetProperty", "", "");
    EXPECT_EQ(client_.getProperty(kNamespace, kDeskPath, CIMName("Id")), CIMValue(CIMTYPE_STRING, false));
}

TEST_F(OperationsTest, ExecQueryGivesObjects) {
    server_.Answer("ExecQuery", "", In("VALUE.OBJECT", kDesk) + In("VALUE.OBJECT", kDesk));
    const auto desks = client_.execQuery(kNamespace, "DMTF:CQL", "SELECT * FROM DEMO_Desk WHERE Id < 8");
    ASSERT_EQ(desks.size(), 2U);
    EXPECT_EQ(CIMInstance(desks[0]).getProperty(0).getValue(), CIMValue(Uint32(7)));
    EXPECT_EQ(lastParameters(), ValueParameter("QueryLanguage", "DMTF:CQL") +
                                    ValueParameter("Query", "SELECT * FROM DEMO_Desk WHERE Id &lt; 8"));
}

// ---- Associations

TEST_F(OperationsTest, AssociatorsOfAnInstanceAreInstancesWithTheirWholePaths) {
    server_.Answer("Associators", "",
                   In("VALUE.OBJECTWITHPATH", WithHost("INSTANCEPATH", kDeskName) + kDesk) +
                       In("VALUE.OBJECTWITHLOCALPATH", WithNamespace("LOCALINSTANCEPATH", kDeskName) + kDesk) +
                       In("VALUE.OBJECT", kDesk));
    Array<CIMObject> desks = client_.associators(kNamespace, "DEMO_Room.Name=\"a\"");
    EXPECT_EQ(lastParameters(),
              Parameter("ObjectName", "<INSTANCENAME CLASSNAME=\"DEMO_Room\"><KEYBINDING NAME=\"Name\">"
                                      "<KEYVALUE VALUETYPE=\"string\">a</KEYVALUE></KEYBINDING></INSTANCENAME>") +
                  ValueParameter("IncludeQualifiers", "FALSE") + ValueParameter("IncludeClassOrigin", "FALSE"));
    ASSERT_EQ(desks.size(), 3U);
    for (const CIMObject& desk : desks) {
        ASSERT_TRUE(desk.isInstance());
        EXPECT_EQ(CIMInstance(desk).getProperty(0).getValue(), CIMValue(Uint32(7)));
    }
    EXPECT_EQ(Text(desks[0].getPath().toString()), "//far/root/cimv2:DEMO_Desk.Id=7");
    EXPECT_EQ(Text(desks[1].getPath().toString()), "root/cimv2:DEMO_Desk.Id=7");
    EXPECT_EQ(Text(desks[2].getPath().toString()), "DEMO_Desk");
}

TEST_F(OperationsTest, AssociatorsOfAClassAreClassesWithTheirWholePaths) {
    constexpr char kName[] = "<CLASSNAME NAME=\"DEMO_Desk\"/>";
    server_.Answer("Associators", "",
                   In("VALUE.OBJECTWITHPATH", WithHost("CLASSPATH", kName) + kDeskClass) +
                       In("VALUE.OBJECTWITHLOCALPATH", WithNamespace("LOCALCLASSPATH", kName) + kDeskClass));
    const Array<CIMObject> classes = client_.associators(kNamespace, "DEMO_Room", "DEMO_InRoom", "DEMO_Desk", "Room",
                                                         "Thing", true, true, List({"Id"}));
    EXPECT_EQ(lastParameters(),
              ClassParameter("ObjectName", "DEMO_Room") + ClassParameter("AssocClass", "DEMO_InRoom") +
                  ClassParameter("ResultClass", "DEMO_Desk") + ValueParameter("Role", "Room") +
                  ValueParameter("ResultRole", "Thing") + ValueParameter("IncludeQualifiers", "TRUE") +
                  ValueParameter("IncludeClassOrigin", "TRUE") +
                  Parameter("PropertyList", "<VALUE.ARRAY><VALUE>Id</VALUE></VALUE.ARRAY>"));
    ASSERT_EQ(classes.size(), 2U);
    ASSERT_TRUE(classes[0].isClass());
    EXPECT_EQ(CIMClass(classes[0]).getProperty(0).getName(), CIMName("Id"));
    EXPECT_EQ(Text(classes[0].getPath().toString()), "//far/root/cimv2:DEMO_Desk");
    EXPECT_EQ(Text(CIMClass(classes[1]).getPath().toString()), "root/cimv2:DEMO_Desk");
}

TEST_F(OperationsTest, AssociatorNamesGivesPathsOfInstancesAndClasses) {
    server_.Answer("AssociatorNames", "",
                   In("OBJECTPATH", WithHost("INSTANCEPATH", kDeskName)) +
                       In("OBJECTPATH", WithHost("CLASSPATH", "<CLASSNAME NAME=\"DEMO_Desk\"/>")));
    const Array<CIMObjectPath> paths = client_.associatorNames(kNamespace, kDeskPath);
    EXPECT_EQ(lastParameters(), Parameter("ObjectName", kDeskName));
    EXPECT_THAT(Texts(paths), ElementsAre("//far/root/cimv2:DEMO_Desk.Id=7", "//far/root/cimv2:DEMO_Desk"));

    client_.associatorNames(kNamespace, "DEMO_Room", "DEMO_InRoom", "DEMO_Desk", "Room", "Thing");
    EXPECT_EQ(lastParameters(), ClassParameter("ObjectName", "DEMO_Room") +
                                    ClassParameter("AssocClass", "DEMO_InRoom") +
                                    ClassParameter("ResultClass", "DEMO_Desk") + ValueParameter("Role", "Room") +
                                    ValueParameter("ResultRole", "Thing"));
}

TEST_F(OperationsTest, ReferencesGivesTheAssociationsThemselves) {
    server_.Answer(
        "References", "",
        In("VALUE.OBJECTWITHPATH",
           WithHost("INSTANCEPATH", "<INSTANCENAME CLASSNAME=\"DEMO_InRoom\"><KEYBINDING NAME=\"Thing\">"
                                    "<VALUE.REFERENCE>" +
                                        std::string(kDeskName) + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>") +
               "<INSTANCE CLASSNAME=\"DEMO_InRoom\"><PROPERTY.REFERENCE NAME=\"Thing\"><VALUE.REFERENCE>" + kDeskName +
               "</VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>"));
    const Array<CIMObject> links = client_.references(kNamespace, kDeskPath);
    EXPECT_EQ(lastParameters(), Parameter("ObjectName", kDeskName) + ValueParameter("IncludeQualifiers", "FALSE") +
                                    ValueParameter("IncludeClassOrigin", "FALSE"));
    ASSERT_EQ(links.size(), 1U);
    EXPECT_EQ(Text(links[0].getPath().toString()), "//far/root/cimv2:DEMO_InRoom.Thing=\"DEMO_Desk.Id=7\"");
    EXPECT_EQ(CIMInstance(links[0]).getProperty(0).getValue(), CIMValue(CIMObjectPath(kDeskPath)));

    client_.references(kNamespace, "DEMO_Desk", "DEMO_InRoom", "Thing", true, true, List({}));
    EXPECT_EQ(lastParameters(), ClassParameter("ObjectName", "DEMO_Desk") +
                                    ClassParameter("ResultClass", "DEMO_InRoom") + ValueParameter("Role", "Thing") +
                                    ValueParameter("IncludeQualifiers", "TRUE") +
                                    ValueParameter("IncludeClassOrigin", "TRUE") +
                                    Parameter("PropertyList", "<VALUE.ARRAY></VALUE.ARRAY>"));
}

TEST_F(OperationsTest, ReferenceNamesGivesThePathsOfTheAssociations) {
    server_.Answer("ReferenceNames", "", In("OBJECTPATH", WithHost("INSTANCEPATH", kDeskName)));
    EXPECT_THAT(Texts(client_.referenceNames(kNamespace, kDeskPath)), ElementsAre("//far/root/cimv2:DEMO_Desk.Id=7"));
    EXPECT_EQ(lastParameters(), Parameter("ObjectName", kDeskName));

    client_.referenceNames(kNamespace, "DEMO_Desk", "DEMO_InRoom", "Thing");
    EXPECT_EQ(lastParameters(), ClassParameter("ObjectName", "DEMO_Desk") +
                                    ClassParameter("ResultClass", "DEMO_InRoom") + ValueParameter("Role", "Thing"));
}

TEST_F(OperationsTest, APathThatAsksForAnInstanceCanBeOneThatWasReceived) {
    const std::string name = "<INSTANCENAME CLASSNAME=\"DEMO_InRoom\">"
                             "<KEYBINDING NAME=\"Nth\"><KEYVALUE VALUETYPE=\"numeric\">0x1F</KEYVALUE></KEYBINDING>"
                             "<KEYBINDING NAME=\"On\"><KEYVALUE VALUETYPE=\"boolean\">TRUE</KEYVALUE></KEYBINDING>"
                             "<KEYBINDING NAME=\"Thing\"><VALUE.REFERENCE>" +
                             WithHost("INSTANCEPATH", kDeskName) +
                             "</VALUE.REFERENCE></KEYBINDING>"
                             "<KEYBINDING NAME=\"What\"><KEYVALUE VALUETYPE=\"string\"> &quot;\\&amp; \xC3\xA9"
                             "</KEYVALUE></KEYBINDING></INSTANCENAME>";
    server_.Answer("EnumerateInstanceNames", "DEMO_InRoom", name);
    server_.Answer("GetInstance", "", kDesk);
    client_.getInstance(kNamespace, client_.enumerateInstanceNames(kNamespace, "DEMO_InRoom")[0]);
    EXPECT_THAT(lastParameters(), HasSubstr(Parameter("InstanceName", name)));
}

// ---- All operations

struct Operation {
    const char* name;
    const char* object; ///< under which the server's table has its answer
    std::function<void(CIMClient&)> call;
    std::set<std::string> returns; ///< the elements that it takes
};

class EveryOperationTest : public OperationsTest, public ::testing::WithParamInterface<Operation> {};

TEST_F(OperationsTest, PulledEnumerationsAreToldByTheErrorAboutAClassThatThereIsNot) {
    const auto hasPulls = [this](unsigned code) {
        server_.Fail("OpenEnumerateInstancePaths", "CIMHTTP_NoSuchClass", code, "no");
        return client_.hasPulledEnumerations(kNamespace);
    };
    EXPECT_TRUE(hasPulls(5));
    EXPECT_TRUE(hasPulls(6));
    EXPECT_FALSE(hasPulls(7));
    EXPECT_FALSE(hasPulls(1)) << "as older servers refuse what they do not know";
    EXPECT_THROW(hasPulls(2), CIMException);
    EXPECT_EQ(server_.Calls().size(), 5U);
}

TEST_P(EveryOperationTest, ReportsTheServersError) {
    for (const auto place : {CimServer::ErrorPlace::kBody, CimServer::ErrorPlace::kTrailers}) {
        server_.Fail(GetParam().name, GetParam().object, 7, "not today", place);
        try {
            GetParam().call(client_);
            FAIL() << "no exception";
        } catch (const CIMException& error) {
            EXPECT_EQ(error.getCode(), CIM_ERR_NOT_SUPPORTED);
            EXPECT_EQ(Text(error.getMessage()), std::string("CIM_ERR_NOT_SUPPORTED: not today (") + server_.Address() +
                                                    ":5988: " + GetParam().name + ")");
        }
        EXPECT_EQ(server_.Calls().back().method, GetParam().name);
    }
}

TEST_P(EveryOperationTest, NeedsAConnection) {
    client_.disconnect();
    EXPECT_THROW(GetParam().call(client_), NotConnectedException);
}

TEST_P(EveryOperationTest, TakesItsOwnKindOfObjectAndRefusesAllOthers) {
    const std::pair<const char*, std::string> kinds[] = {
        {"CLASS", kDeskClass},
        {"CLASSNAME", "<CLASSNAME NAME=\"DEMO_Desk\"/>"},
        {"INSTANCE", kDesk},
        {"INSTANCENAME", kDeskName},
        {"INSTANCEPATH", WithHost("INSTANCEPATH", kDeskName)},
        {"OBJECTPATH", In("OBJECTPATH", WithHost("INSTANCEPATH", kDeskName))},
        {"QUALIFIER.DECLARATION", "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\"/>"},
        {"VALUE", "<VALUE>7</VALUE>"},
        {"VALUE.NAMEDINSTANCE", In("VALUE.NAMEDINSTANCE", std::string(kDeskName) + kDesk)},
        {"VALUE.NAMEDOBJECT", In("VALUE.NAMEDOBJECT", std::string(kDeskName) + kDesk)},
        {"VALUE.OBJECT", In("VALUE.OBJECT", kDesk)},
        {"VALUE.OBJECTWITHPATH", In("VALUE.OBJECTWITHPATH", WithHost("INSTANCEPATH", kDeskName) + kDesk)}};
    for (const auto& [element, xml] : kinds) {
        server_.Answer(GetParam().name, GetParam().object, xml);
        if (GetParam().returns.count(element) != 0) {
            EXPECT_NO_THROW(GetParam().call(client_)) << element;
        } else {
            EXPECT_THROW(GetParam().call(client_), CIMClientResponseException) << element;
        }
    }
}

const Operation kOperations[] = {
    {"GetClass", "A", [](CIMClient& client) { client.getClass(kNamespace, "A"); }, {"CLASS"}},
    {"EnumerateClasses", "A", [](CIMClient& client) { client.enumerateClasses(kNamespace, "A"); }, {"CLASS"}},
    {"EnumerateClassNames", "A", [](CIMClient& client) { client.enumerateClassNames(kNamespace, "A"); }, {"CLASSNAME"}},
    {"GetInstance",
     "",
     [](CIMClient& client) { client.getInstance(kNamespace, "A.K=1"); },
     {"INSTANCE", "VALUE.NAMEDINSTANCE"}},
    {"EnumerateInstances",
     "A",
     [](CIMClient& client) { client.enumerateInstances(kNamespace, "A"); },
     {"VALUE.NAMEDINSTANCE"}},
    {"EnumerateInstanceNames",
     "A",
     [](CIMClient& client) { client.enumerateInstanceNames(kNamespace, "A"); },
     {"INSTANCENAME"}},
    {"Associators",
     "",
     [](CIMClient& client) { client.associators(kNamespace, "A.K=1"); },
     {"VALUE.OBJECT", "VALUE.OBJECTWITHPATH"}},
    {"AssociatorNames", "", [](CIMClient& client) { client.associatorNames(kNamespace, "A.K=1"); }, {"OBJECTPATH"}},
    {"References",
     "",
     [](CIMClient& client) { client.references(kNamespace, "A.K=1"); },
     {"VALUE.OBJECT", "VALUE.OBJECTWITHPATH"}},
    {"ReferenceNames", "", [](CIMClient& client) { client.referenceNames(kNamespace, "A.K=1"); }, {"OBJECTPATH"}},
    {"GetProperty", "", [](CIMClient& client) { client.getProperty(kNamespace, "A.K=1", "P"); }, {"VALUE"}},
    {"ExecQuery",
     "",
     [](CIMClient& client) { client.execQuery(kNamespace, "WQL", "Q"); },
     {"VALUE.OBJECT", "VALUE.OBJECTWITHPATH"}},
    {"GetQualifier", "Q", [](CIMClient& client) { client.getQualifier(kNamespace, "Q"); }, {"QUALIFIER.DECLARATION"}},
    {"EnumerateQualifiers",
     "",
     [](CIMClient& client) { client.enumerateQualifiers(kNamespace); },
     {"QUALIFIER.DECLARATION"}}};

INSTANTIATE_TEST_SUITE_P(CIMClient, EveryOperationTest, ::testing::ValuesIn(kOperations),
                         [](const auto& instance) { return instance.param.name; });

} // namespace
