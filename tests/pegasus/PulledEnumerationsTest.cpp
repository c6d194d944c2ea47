// Enumerations in portions: what is sent to open, pull and close them, and what is made of the answers.

#include "Texts.h"
#include "support/CimServer.h"

#include <Pegasus/Client/CIMClient.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace Pegasus;
using support::CimServer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;

const CIMNamespaceName kNamespace("root/cimv2");
const CIMPropertyList kAll;

std::string Path(int id) {
    return "<INSTANCEPATH><NAMESPACEPATH><HOST>far</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
           "<NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH></NAMESPACEPATH><INSTANCENAME CLASSNAME=\"DEMO_Desk\">"
           "<KEYBINDING NAME=\"Id\"><KEYVALUE VALUETYPE=\"numeric\">" +
           std::to_string(id) + "</KEYVALUE></KEYBINDING></INSTANCENAME></INSTANCEPATH>\n";
}

std::string Instance(int id) {
    return "<INSTANCE CLASSNAME=\"DEMO_Desk\"><PROPERTY NAME=\"Id\" TYPE=\"uint32\"><VALUE>" + std::to_string(id) +
           "</VALUE></PROPERTY></INSTANCE>\n";
}

std::string WithPath(int id) {
    return "<VALUE.INSTANCEWITHPATH>" + Path(id) + Instance(id) + "</VALUE.INSTANCEWITHPATH>\n";
}

/// As the client gives it.
std::string PathText(int id) { return "//far/root/cimv2:DEMO_Desk.Id=" + std::to_string(id); }

std::vector<std::string> Texts(const Array<CIMObjectPath>& paths) {
    std::vector<std::string> texts;
    for (const CIMObjectPath& path : paths) {
        texts.push_back(Text(path.toString()));
    }
    return texts;
}

std::vector<std::string> Paths(const Array<CIMInstance>& instances) {
    std::vector<std::string> texts;
    for (const CIMInstance& instance : instances) {
        texts.push_back(Text(instance.getPath().toString()));
    }
    return texts;
}

CIMPropertyList List(std::initializer_list<const char*> names) {
    Array<CIMName> list;
    for (const char* name : names) {
        list.append(CIMName(name));
    }
    return CIMPropertyList(list);
}

class PulledEnumerationsTest : public ::testing::Test {
  protected:
    void SetUp() override { client_.connect(String(server_.Address()), server_.Listen(5988), "", ""); }

    std::map<std::string, std::string> LastParameters() const { return server_.Calls().back().parameters; }

    std::vector<std::string> Methods() const {
        std::vector<std::string> methods;
        for (const CimServer::Call& call : server_.Calls()) {
            methods.push_back(call.method);
        }
        return methods;
    }

    /// Opens an enumeration of three portions of a desk each.
    Array<CIMInstance> OpenDesks() {
        server_.AnswerPortion("OpenEnumerateInstances", "DEMO_Desk", WithPath(1), "a & b");
        server_.AnswerPortion("PullInstancesWithPath", "a & b", WithPath(2), "c");
        server_.AnswerPortion("PullInstancesWithPath", "c", WithPath(3), "");
        return client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk", true, false, kAll, "", "",
                                              Uint32Arg(), false, 1);
    }

    CIMStatusCode StatusOf(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const CIMException& error) {
            return error.getCode();
        }
        return CIM_ERR_SUCCESS;
    }

    CimServer server_;
    CIMClient client_;
    CIMEnumerationContext context_;
    Boolean end_ = false;
};

TEST_F(PulledEnumerationsTest, BringTheInstancesInPortionsUpToTheEnd) {
    EXPECT_THAT(Paths(OpenDesks()), ElementsAre(PathText(1)));
    EXPECT_FALSE(end_);
    EXPECT_THAT(LastParameters(),
                UnorderedElementsAre(Pair("ClassName", "DEMO_Desk"), Pair("DeepInheritance", "TRUE"),
                                     Pair("IncludeClassOrigin", "FALSE"), Pair("MaxObjectCount", "1")));

    auto desks = client_.pullInstancesWithPath(context_, end_, 17);
    EXPECT_THAT(Paths(desks), ElementsAre(PathText(2)));
    EXPECT_EQ(desks[0].getProperty(0).getValue(), CIMValue(Uint32(2)));
    EXPECT_FALSE(end_);
    EXPECT_THAT(LastParameters(), UnorderedElementsAre(Pair("EnumerationContext", "a & b"), //
                                                       Pair("MaxObjectCount", "17")));
    EXPECT_EQ(server_.Calls().back().nameSpace, "root/cimv2");

    EXPECT_THAT(Paths(client_.pullInstancesWithPath(context_, end_, 17)), ElementsAre(PathText(3)));
    EXPECT_TRUE(end_);
}

TEST_F(PulledEnumerationsTest, AreOpenNoLongerAtTheirEnd) {
    OpenDesks();
    client_.pullInstancesWithPath(context_, end_, 1);
    client_.pullInstancesWithPath(context_, end_, 1);
    server_.ForgetCalls();
    const std::function<void()> operations[] = {
        [&] { client_.pullInstancesWithPath(context_, end_, 1); },
        [&] { client_.pullInstancePaths(context_, end_, 1); }, [&] { client_.pullInstances(context_, end_, 1); },
        [&] { client_.closeEnumeration(context_); }, [&] { client_.enumerationCount(context_); }};
    for (const auto& operation : operations) {
        EXPECT_EQ(StatusOf(operation), CIM_ERR_INVALID_ENUMERATION_CONTEXT);
        EXPECT_EQ(StatusOf([&] {
                      context_ = CIMEnumerationContext();
                      operation();
                  }),
                  CIM_ERR_INVALID_ENUMERATION_CONTEXT);
    }
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(PulledEnumerationsTest, AreClosedBeforeTheirEnd) {
    OpenDesks();
    server_.Answer("CloseEnumeration", "a & b", "");
    client_.closeEnumeration(context_);
    EXPECT_THAT(LastParameters(), UnorderedElementsAre(Pair("EnumerationContext", "a & b")));
    EXPECT_EQ(StatusOf([&] { client_.pullInstancesWithPath(context_, end_, 1); }), CIM_ERR_INVALID_ENUMERATION_CONTEXT);
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "CloseEnumeration"));
}

TEST_F(PulledEnumerationsTest, ForgottenOnesAreNotOpen) {
    OpenDesks();
    context_.clear();
    EXPECT_EQ(StatusOf([&] { client_.closeEnumeration(context_); }), CIM_ERR_INVALID_ENUMERATION_CONTEXT);
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances"));
}

TEST_F(PulledEnumerationsTest, StayAsTheyAreWhenAPullFails) {
    OpenDesks();
    server_.Fail("PullInstancesWithPath", "a & b", 27, "too much");
    EXPECT_EQ(StatusOf([&] { client_.pullInstancesWithPath(context_, end_, 1); }), CIM_ERR_SERVER_LIMITS_EXCEEDED);
    server_.Fail("PullInstancesWithPath", "a & b", 21, "gone");
    EXPECT_EQ(StatusOf([&] { client_.pullInstancesWithPath(context_, end_, 1); }), CIM_ERR_INVALID_ENUMERATION_CONTEXT);
    EXPECT_EQ(Methods().size(), 3U);
}

TEST_F(PulledEnumerationsTest, MayEndWithTheFirstPortion) {
    server_.AnswerPortion("OpenEnumerateInstances", "DEMO_Desk", WithPath(1) + WithPath(2), "");
    const auto desks = client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk");
    EXPECT_THAT(Paths(desks), ElementsAre(PathText(1), PathText(2)));
    EXPECT_TRUE(end_);
    EXPECT_EQ(LastParameters().at("MaxObjectCount"), "0");
}

TEST_F(PulledEnumerationsTest, TellHowManyObjectsAreLeftIfTheServerKnows) {
    OpenDesks();
    server_.Answer("EnumerationCount", "a & b", "<VALUE>18446744073709551615</VALUE>");
    EXPECT_EQ(client_.enumerationCount(context_), Uint64Arg(18446744073709551615ULL));
    server_.Answer("EnumerationCount", "a & b", "");
    EXPECT_TRUE(client_.enumerationCount(context_).isNull());
    server_.Answer("EnumerationCount", "a & b", "<VALUE>some</VALUE>");
    EXPECT_THROW(client_.enumerationCount(context_), CIMClientXmlException);
}

TEST_F(PulledEnumerationsTest, TellHowLongTheirAnswersWere) {
    EXPECT_EQ(context_.getAnswerBytes(), 0U);
    OpenDesks();
    const Uint64 first = context_.getAnswerBytes();
    EXPECT_GT(first, WithPath(1).size());
    client_.pullInstancesWithPath(context_, end_, 1);
    EXPECT_GT(context_.getAnswerBytes(), first + WithPath(2).size());
}

TEST_F(PulledEnumerationsTest, SendEveryParameter) {
    server_.AnswerPortion("OpenEnumerateInstances", "DEMO_Desk", "", "");
    client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk", false, true, List({"Id", "Name"}),
                                   "DMTF:FQL", "Id < 3", Uint32Arg(0), true, 4294967295U);
    EXPECT_THAT(LastParameters(),
                UnorderedElementsAre(Pair("ClassName", "DEMO_Desk"), Pair("DeepInheritance", "FALSE"),
                                     Pair("IncludeClassOrigin", "TRUE"), Pair("PropertyList", "Id,Name"),
                                     Pair("FilterQueryLanguage", "DMTF:FQL"), Pair("FilterQuery", "Id < 3"),
                                     Pair("OperationTimeout", "0"), Pair("ContinueOnError", "TRUE"),
                                     Pair("MaxObjectCount", "4294967295")));
}

TEST_F(PulledEnumerationsTest, BringPathsAlone) {
    server_.AnswerPortion("OpenEnumerateInstancePaths", "DEMO_Desk", Path(1), "next");
    server_.AnswerPortion("PullInstancePaths", "next", Path(2) + Path(3), "");
    EXPECT_THAT(Texts(client_.openEnumerateInstancePaths(context_, end_, kNamespace, "DEMO_Desk", "L", "Q",
                                                         Uint32Arg(9), false, 1)),
                ElementsAre(PathText(1)));
    EXPECT_THAT(LastParameters(), UnorderedElementsAre(Pair("ClassName", "DEMO_Desk"), Pair("FilterQueryLanguage", "L"),
                                                       Pair("FilterQuery", "Q"), Pair("OperationTimeout", "9"),
                                                       Pair("MaxObjectCount", "1")));
    EXPECT_THAT(Texts(client_.pullInstancePaths(context_, end_, 5)), ElementsAre(PathText(2), PathText(3)));
    EXPECT_TRUE(end_);
}

TEST_F(PulledEnumerationsTest, FollowAssociationsFromAnInstance) {
    for (const char* method : {"OpenAssociatorInstances", "OpenReferenceInstances"}) {
        server_.AnswerPortion(method, "", WithPath(1), "");
    }
    for (const char* method : {"OpenAssociatorInstancePaths", "OpenReferenceInstancePaths"}) {
        server_.AnswerPortion(method, "", Path(1), "");
    }
    const CIMObjectPath desk("//near/root/other:DEMO_Desk.Id=7");
    const std::string name = "<IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME CLASSNAME=\"DEMO_Desk\">"
                             "<KEYBINDING NAME=\"Id\"><KEYVALUE VALUETYPE=\"numeric\">7</KEYVALUE></KEYBINDING>"
                             "</INSTANCENAME></IPARAMVALUE>";

    EXPECT_THAT(Paths(client_.openAssociatorInstances(context_, end_, kNamespace, desk, "A", "B", "r", "s", true,
                                                      List({"Id"}), "L", "Q", Uint32Arg(), false, 5)),
                ElementsAre(PathText(1)));
    EXPECT_THAT(server_.Calls().back().http.body, HasSubstr(name));
    EXPECT_THAT(LastParameters(), UnorderedElementsAre(Pair("InstanceName", ::testing::_), Pair("AssocClass", "A"),
                                                       Pair("ResultClass", "B"), Pair("Role", "r"),
                                                       Pair("ResultRole", "s"), Pair("IncludeClassOrigin", "TRUE"),
                                                       Pair("PropertyList", "Id"), Pair("FilterQueryLanguage", "L"),
                                                       Pair("FilterQuery", "Q"), Pair("MaxObjectCount", "5")));

    EXPECT_THAT(Texts(client_.openAssociatorInstancePaths(context_, end_, kNamespace, desk, "A", "B", "r", "s")),
                ElementsAre(PathText(1)));
    EXPECT_THAT(LastParameters(), UnorderedElementsAre(Pair("InstanceName", ::testing::_), Pair("AssocClass", "A"),
                                                       Pair("ResultClass", "B"), Pair("Role", "r"),
                                                       Pair("ResultRole", "s"), Pair("MaxObjectCount", "0")));

    EXPECT_THAT(Paths(client_.openReferenceInstances(context_, end_, kNamespace, desk, "A", "r")),
                ElementsAre(PathText(1)));
    EXPECT_THAT(LastParameters(),
                UnorderedElementsAre(Pair("InstanceName", ::testing::_), Pair("ResultClass", "A"), Pair("Role", "r"),
                                     Pair("IncludeClassOrigin", "FALSE"), Pair("MaxObjectCount", "0")));

    EXPECT_THAT(Texts(client_.openReferenceInstancePaths(context_, end_, kNamespace, desk, "A", "r")),
                ElementsAre(PathText(1)));
    EXPECT_THAT(LastParameters(), UnorderedElementsAre(Pair("InstanceName", ::testing::_), Pair("ResultClass", "A"),
                                                       Pair("Role", "r"), Pair("MaxObjectCount", "0")));
}

TEST_F(PulledEnumerationsTest, BringWhatAQuerySelectsWithTheClassOfIt) {
    server_.Answer("OpenQueryInstances", "", Instance(1),
                   "<PARAMVALUE NAME=\"QueryResultClass\"><CLASS NAME=\"Result\"/></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"EnumerationContext\"><VALUE>q</VALUE></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"EndOfSequence\"><VALUE>false</VALUE></PARAMVALUE>");
    server_.AnswerPortion("PullInstances", "q", Instance(2), "");
    CIMClass result("Unset");
    const auto first =
        client_.openQueryInstances(context_, end_, kNamespace, "WQL", "SELECT *", result, true, Uint32Arg(), false, 1);
    EXPECT_EQ(first.size(), 1U);
    EXPECT_EQ(result.getClassName(), CIMName("Result"));
    EXPECT_THAT(LastParameters(),
                UnorderedElementsAre(Pair("FilterQueryLanguage", "WQL"), Pair("FilterQuery", "SELECT *"),
                                     Pair("ReturnQueryResultClass", "TRUE"), Pair("MaxObjectCount", "1")));
    EXPECT_EQ(client_.pullInstances(context_, end_, 1).size(), 1U);
    EXPECT_TRUE(end_);

    CIMClass untouched("Unset");
    client_.openQueryInstances(context_, end_, kNamespace, "WQL", "SELECT *", untouched);
    EXPECT_EQ(untouched.getClassName(), CIMName("Unset"));
}

TEST_F(PulledEnumerationsTest, TakeOutputParametersInEveryForm) {
    const std::string forms[] = {
        R"(<PARAMVALUE NAME="EndOfSequence" PARAMTYPE="boolean"><VALUE>TRUE</VALUE></PARAMVALUE>)",
        R"(<PARAMVALUE NAME="endofsequence" TYPE="boolean"> <VALUE> true </VALUE> </PARAMVALUE>)",
        R"(<PARAMVALUE NAME="Other"/><PARAMVALUE NAME="EnumerationContext" PARAMTYPE="string"/>)"
        R"(<PARAMVALUE NAME="More"><VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY></PARAMVALUE>)"
        R"(<PARAMVALUE NAME="EndOfSequence"><VALUE>True</VALUE></PARAMVALUE>)"};
    for (const std::string& form : forms) {
        server_.Answer("OpenEnumerateInstances", "DEMO_Desk", WithPath(1), form);
        end_ = false;
        EXPECT_EQ(client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk").size(), 1U);
        EXPECT_TRUE(end_) << form;
    }
}

TEST_F(PulledEnumerationsTest, RefuseAnAnswerThatDoesNotSayHowItGoesOn) {
    const std::string forms[] = {"", "<PARAMVALUE NAME=\"EnumerationContext\"><VALUE>c</VALUE></PARAMVALUE>",
                                 "<PARAMVALUE NAME=\"EndOfSequence\"/>",
                                 "<PARAMVALUE NAME=\"EndOfSequence\"><VALUE>false</VALUE></PARAMVALUE>"};
    for (const std::string& form : forms) {
        server_.Answer("OpenEnumerateInstances", "DEMO_Desk", WithPath(1), form);
        EXPECT_THROW(client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk"),
                     CIMClientResponseException)
            << form;
    }
    server_.Answer("OpenEnumerateInstances", "DEMO_Desk", "",
                   "<PARAMVALUE NAME=\"EndOfSequence\"><VALUE>perhaps</VALUE></PARAMVALUE>");
    try {
        client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk");
        FAIL() << "no error";
    } catch (const CIMClientXmlException& error) {
        EXPECT_THAT(Text(error.getMessage()), HasSubstr("not a boolean: perhaps, in output parameter EndOfSequence"));
    }
}

TEST_F(PulledEnumerationsTest, RefuseObjectsOfAnotherKind) {
    server_.AnswerPortion("OpenEnumerateInstances", "DEMO_Desk", Path(1), "");
    EXPECT_THROW(client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk"), CIMClientResponseException);
    server_.AnswerPortion("OpenEnumerateInstancePaths", "DEMO_Desk", WithPath(1), "");
    EXPECT_THROW(client_.openEnumerateInstancePaths(context_, end_, kNamespace, "DEMO_Desk"),
                 CIMClientResponseException);
}

TEST_F(PulledEnumerationsTest, NeedAServerThatHasThem) {
    EXPECT_EQ(StatusOf([&] { client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk"); }),
              CIM_ERR_NOT_SUPPORTED);
    client_.disconnect();
    EXPECT_THROW(client_.openEnumerateInstances(context_, end_, kNamespace, "DEMO_Desk"), NotConnectedException);
}

} // namespace
