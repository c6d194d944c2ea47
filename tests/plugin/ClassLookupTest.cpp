#include "PluginTest.h"

#include <utility>

using namespace NQORVYX20;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using ClassLookupTest = PluginTest;

/// A namespace that notes the operations that are called on it, `with context` where the context is not empty.
class TNotingNamespace : public TCimHTTPNamespace {
  public:
    using TCimHTTPNamespace::TCimHTTPNamespace;

    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override {
        Note("GetClass '" + name + "'", context);
        return TCimHTTPNamespace::GetClass(name, context);
    }

    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass,
                                               TCIMContext context) override {
        Note("AllocateClass " + name + (superClass ? " below " + superClass->GetName(TCIMContext()) : ""), context);
        return TCimHTTPNamespace::AllocateClass(name, superClass, context);
    }

    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name, TCIMContext context) const override {
        Note("GetQualifierDecl " + name, context);
        return TCimHTTPNamespace::GetQualifierDecl(name, context);
    }

    std::vector<std::string> TakeNotes() { return std::exchange(notes_, {}); }

  private:
    void Note(const std::string& call, const TCIMContext& context) const {
        notes_.push_back(context.empty() ? call : call + " with context");
    }

    mutable std::vector<std::string> notes_;
};

TCIMValue QualifierValue(const ICIMClass& cls, const std::string& name) {
    const auto qualifier = cls.GetQualifier(name, TCIMContext());
    return qualifier ? qualifier->GetValue(TCIMContext()) : TCIMValue();
}

} // namespace

// --- Names -------------------------------------------------------------------------------------------------------

TEST_F(ClassLookupTest, NormalizeNameLowersTheCase) {
    EXPECT_EQ(TCimHTTPNamespace::NormalizeName("CIM_System2"), "cim_system2");
    EXPECT_EQ(TCimHTTPNamespace::NormalizeName("_X1"), "_x1");
}

TEST_F(ClassLookupTest, NormalizeNameAcceptsTheEmptyName) { EXPECT_EQ(TCimHTTPNamespace::NormalizeName(""), ""); }

TEST_F(ClassLookupTest, NormalizeNameRefusesWhatIsNoName) {
    for (const std::string name : {"2abc", "a b", "a.b", "<root>", "-", "Gr\xc3\xb6sse"}) {
        log_->Forget();
        EXPECT_EQ(StatusOf([&] { TCimHTTPNamespace::NormalizeName(name); }), TVYXStatusCode::eInvalidName) << name;
        EXPECT_THAT(log_->Errors(), ElementsAre("CimHTTP: CIM name '" + name + "' is invalid"));
    }
}

TEST_F(ClassLookupTest, AnInvalidNameLeavesGetClassAsAnException) {
    const auto nameSpace = ConnectedNamespace();
    EXPECT_EQ(StatusOf([&] { nameSpace->GetClass("2abc", TCIMContext()); }), TVYXStatusCode::eInvalidName);
    EXPECT_THAT(log_->Errors(), ElementsAre("CimHTTP: CIM name '2abc' is invalid"));
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

// --- The root class ----------------------------------------------------------------------------------------------

TEST_F(ClassLookupTest, TheEmptyNameAndRootMeanTheRootClass) {
    const auto nameSpace = ConnectedNamespace();
    EXPECT_EQ(nameSpace->GetClass("", TCIMContext()), nameSpace->GetRootClass());
    EXPECT_EQ(nameSpace->GetClass("<root>", TCIMContext()), nameSpace->GetRootClass());
    EXPECT_EQ(nameSpace->GetRootClass()->GetName(TCIMContext()), "<root>");
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace::GetClass  : return <root>",
                                           "TCimHTTPNamespace::GetClass <root> : return <root>"));
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(ClassLookupTest, TheRootClassNeverEntersTheCache) {
    const auto nameSpace = ConnectedNamespace(true);
    EXPECT_EQ(StatusOf([&] { nameSpace->GetRootClass()->AddToNamespace(TCIMContext()); }),
              TVYXStatusCode::eInvalidName);
    EXPECT_THAT(log_->Errors(), ElementsAre("CimHTTP: CIM name '<root>' is invalid"));
    EXPECT_THAT(VisitedNames([&](const auto& v) { nameSpace->EnumerateRootClasses(v, TCIMContext()); }), IsEmpty());
}

TEST_F(ClassLookupTest, WithoutAConnectionNothingIsFoundNotEvenTheRootClass) {
    const auto nameSpace = MakeNamespace();
    EXPECT_FALSE(nameSpace->GetClass("", TCIMContext()));
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_FALSE(nameSpace->GetClass("2abc", TCIMContext()));
    EXPECT_THAT(log_->Debug(), IsEmpty());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

// --- Fetching ----------------------------------------------------------------------------------------------------

TEST_F(ClassLookupTest, AMissCostsTwoRequestsForTheDefinition) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    ASSERT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    const auto calls = server_.Calls();
    ASSERT_EQ(calls.size(), 2U);
    for (const auto& call : calls) {
        EXPECT_EQ(call.method, "GetClass");
        EXPECT_EQ(call.nameSpace, "root/cimv2");
        EXPECT_EQ(call.parameters.at("ClassName"), "TEST_Disk");
        EXPECT_THAT(call.parameters.at("LocalOnly"), testing::StrCaseEq("false"));
        EXPECT_THAT(call.parameters.at("IncludeQualifiers"), testing::StrCaseEq("true"));
        EXPECT_EQ(call.parameters.count("PropertyList"), 0U);
    }
    EXPECT_THAT(calls[0].parameters.at("IncludeClassOrigin"), testing::StrCaseEq("true"));
    EXPECT_THAT(calls[1].parameters.at("IncludeClassOrigin"), testing::StrCaseEq("false"));
}

TEST_F(ClassLookupTest, GetClassServesTheSecondLookupFromTheCache) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto first = nameSpace->GetClass("TEST_Disk", TCIMContext());
    server_.ForgetCalls();
    log_->Forget();
    EXPECT_EQ(nameSpace->GetClass("test_DISK", TCIMContext()), first);
    EXPECT_THAT(server_.Calls(), IsEmpty());
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace::GetClass from Pegasus for: test_disk",
                                           "TCimHTTPNamespace::GetClass test_disk Found in TCimHTTPNamespace"));
}

TEST_F(ClassLookupTest, AFirstLookupLogsItsSteps) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    EXPECT_THAT(log_->Debug(),
                ElementsAre("TCimHTTPNamespace::GetClass from Pegasus for: test_disk",
                            "TCimHTTPNamespace::GetClass  : return <root>",
                            "TCimHTTPNamespace::GetClass test_disk Now it is Found in TCimHTTPNamespace"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(ClassLookupTest, TheServerIsAskedForTheNameAsTheCallerWroteIt) {
    ServeClass("TEST_Disk", "", "");
    ConnectedNamespace()->GetClass("test_DISK", TCIMContext());
    EXPECT_EQ(server_.Calls().at(0).parameters.at("ClassName"), "test_DISK");
    EXPECT_EQ(server_.Calls().at(1).parameters.at("ClassName"), "TEST_Disk");
}

TEST_F(ClassLookupTest, SuperclassesAreFetchedFirstAndOnce) {
    ServeClass("TEST_Base", "", "");
    ServeClass("TEST_Disk", "TEST_Base", "");
    ServeClass("TEST_Tape", "TEST_Base", "");
    const auto nameSpace = ConnectedNamespace();
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    nameSpace->GetClass("TEST_Tape", TCIMContext());
    std::vector<std::string> asked;
    for (const auto& call : server_.Calls()) {
        asked.push_back(call.parameters.at("ClassName"));
    }
    EXPECT_THAT(asked, ElementsAre("TEST_Disk", "TEST_Base", "TEST_Base", "TEST_Disk", "TEST_Tape", "TEST_Tape"));
}

TEST_F(ClassLookupTest, ALookupGoesThroughTheNamespacesOwnOperations) {
    ServeClass("TEST_Base", "", "");
    ServeClass("TEST_Disk", "TEST_Base", "");
    const auto nameSpace = boost::make_shared<TNotingNamespace>(false);
    nameSpace->Initialize(PluginContext());
    EXPECT_THAT(nameSpace->TakeNotes(), ElementsAre("AllocateClass <root>"));
    nameSpace->connect(server_.Address(), "", "", 5988);
    EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", PluginContext()));
    EXPECT_THAT(nameSpace->TakeNotes(),
                ElementsAre("GetClass 'TEST_Disk' with context", "GetClass 'TEST_Base'", "GetClass ''",
                            "AllocateClass TEST_Base below <root>", "GetQualifierDecl PLUGINNAME",
                            "GetQualifierDecl PLUGINVERSION", "AllocateClass TEST_Disk below TEST_Base",
                            "GetQualifierDecl PLUGINNAME", "GetQualifierDecl PLUGINVERSION"));
    TCIMReference reference{nameSpace, TCIMContext()};
    reference.SetClassName("TEST_Disk");
    nameSpace->GetInstance(reference, PluginContext());
    EXPECT_THAT(nameSpace->TakeNotes(), ElementsAre("GetClass 'TEST_Disk'"));
}

TEST_F(ClassLookupTest, AFetchedClassCarriesThePluginsQualifiers) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    EXPECT_EQ(QualifierValue(*disk, "PLUGINNAME"), TCIMValue("test plug-in"));
    EXPECT_EQ(QualifierValue(*disk, "PLUGINVERSION"), TCIMValue("1.0"));
    for (const char* name : {"PLUGINNAME", "PLUGINVERSION"}) {
        EXPECT_EQ(disk->GetQualifier(name, TCIMContext())->GetDeclaration(TCIMContext()),
                  nameSpace->GetQualifierDecl(name, TCIMContext()));
    }
}

TEST_F(ClassLookupTest, ThePluginsQualifiersAreOfTheirPresentDeclaration) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace(true);
    const auto replacement =
        nameSpace->AllocateQualifierDecl("PluginName", TCIMValue(""), ICIMQualifierDecl::eScopeClass,
                                         ICIMQualifierDecl::eFlavorToSubclass, TCIMContext());
    replacement->AddToNamespace(TCIMContext());
    const auto qualifier = FetchClass(*nameSpace, "TEST_Disk")->GetQualifier("PLUGINNAME", TCIMContext());
    EXPECT_EQ(qualifier->GetDeclaration(TCIMContext()), replacement);
    EXPECT_EQ(qualifier->GetFlavor(TCIMContext()), ICIMQualifierDecl::eFlavorToSubclass);
}

TEST_F(ClassLookupTest, AnUnknownClassIsEmptyAndLogsTheServersWord) {
    server_.Fail("GetClass", "TEST_None", 6, "TEST_None");
    const auto nameSpace = ConnectedNamespace();
    EXPECT_FALSE(nameSpace->GetClass("TEST_None", TCIMContext()));
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace::GetClass from Pegasus for: test_none",
                                           "TCimHTTPNamespace::GetClass from Pegasus for: TEST_Nonereturned exception: "
                                           "CIM_ERR_NOT_FOUND: TEST_None"));
}

TEST_F(ClassLookupTest, AnUnknownClassIsAskedForAgain) {
    const auto nameSpace = ConnectedNamespace();
    nameSpace->GetClass("TEST_None", TCIMContext());
    nameSpace->GetClass("TEST_None", TCIMContext());
    EXPECT_EQ(CountCalls("GetClass", "TEST_None"), 2U);
}

TEST_F(ClassLookupTest, AFailedFetchIsNotRepeatedInTheSameLookup) {
    ServeClass("TEST_Orphan", "TEST_None", "");
    ServeClass("TEST_Broken", "", QualifierXml("NoSuchQualifier", "string", "x"));
    const auto nameSpace = ConnectedNamespace();
    nameSpace->GetClass("TEST_None", TCIMContext());
    EXPECT_EQ(server_.Calls().size(), 1U);
    server_.ForgetCalls();
    nameSpace->GetClass("TEST_Orphan", TCIMContext());
    EXPECT_EQ(CountCalls("GetClass", "TEST_None"), 1U);
    server_.ForgetCalls();
    nameSpace->GetClass("TEST_Broken", TCIMContext());
    EXPECT_EQ(CountCalls("GetClass", "TEST_Broken"), 2U) << "the two of every lookup";
    EXPECT_EQ(CountCalls("GetQualifier", "NoSuchQualifier"), 1U);
}

TEST_F(ClassLookupTest, AClassWithAnUnknownSuperclassIsBuiltWithoutIt) {
    ServeClass("TEST_Orphan", "TEST_None", PropertyXml("Size", "uint32"));
    const auto nameSpace = ConnectedNamespace();
    const auto orphan = FetchClass(*nameSpace, "TEST_Orphan");
    EXPECT_TRUE(orphan->GetPropertyDecl("Size", TCIMContext()));
    EXPECT_EQ(orphan->GetSuperClass(TCIMContext()), nameSpace->GetRootClass());
}

TEST_F(ClassLookupTest, AClassWhoseSuperclassHasAnInvalidNameIsNotBuilt) {
    ServeClass("TEST_Odd", "Gr\xc3\xb6sse", "");
    EXPECT_FALSE(ConnectedNamespace()->GetClass("TEST_Odd", TCIMContext()));
}

TEST_F(ClassLookupTest, ACycleOfSuperclassesEnds) {
    ServeClass("TEST_A", "TEST_B", "");
    ServeClass("TEST_B", "TEST_A", "");
    const auto nameSpace = ConnectedNamespace();
    EXPECT_TRUE(nameSpace->GetClass("TEST_A", TCIMContext()));
    EXPECT_TRUE(nameSpace->GetClass("TEST_B", TCIMContext()));
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTPNamespace::GetClass test_a: the server's class hierarchy has a "
                                            "cycle or is too deep"));
}

TEST_F(ClassLookupTest, AHierarchyThatIsTooDeepEndsAtTheLimit) {
    constexpr int kDepth = 300;
    const auto name = [](int level) { return "TEST_Level" + std::to_string(level); };
    for (int level = 0; level < kDepth; ++level) {
        ServeClass(name(level), name(level + 1), "");
    }
    const auto nameSpace = ConnectedNamespace();
    EXPECT_TRUE(nameSpace->GetClass(name(0), TCIMContext()));
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTPNamespace::GetClass test_level256: the server's class hierarchy "
                                            "has a cycle or is too deep"));
    EXPECT_TRUE(nameSpace->GetClass(name(256), TCIMContext())) << "the next lookup starts afresh";
}

TEST_F(ClassLookupTest, AClassThatComesUnderAnotherNameIsReportedAsWrong) {
    server_.Answer("GetClass", "TEST_Alias", ClassXml("TEST_Disk", "", ""));
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    EXPECT_FALSE(nameSpace->GetClass("TEST_Alias", TCIMContext()));
    EXPECT_THAT(log_->Errors(), ElementsAre("TCimHTTPNamespace::GetClass test_alias Not Found - Something Wrong"));
}

TEST_F(ClassLookupTest, AnotherNameOfAClassThatIsAlreadyThereFindsNothing) {
    ServeClass("TEST_Disk", "", "");
    server_.Answer("GetClass", "TEST_Alias", ClassXml("TEST_Disk", "", ""));
    const auto nameSpace = ConnectedNamespace();
    const auto disk = nameSpace->GetClass("TEST_Disk", TCIMContext());
    EXPECT_FALSE(nameSpace->GetClass("TEST_Alias", TCIMContext()));
    EXPECT_THAT(log_->Debug(), Contains("TCimHTTPNamespace: class TEST_Disk already defined"));
    EXPECT_THAT(log_->Errors(), IsEmpty());
    EXPECT_EQ(nameSpace->GetClass("TEST_Disk", TCIMContext()), disk);
}

TEST_F(ClassLookupTest, ADefinitionThatCannotBeBuiltIsNotCached) {
    ServeClass("TEST_Disk", "", QualifierXml("NoSuchQualifier", "string", "x"));
    const auto nameSpace = ConnectedNamespace();
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_THAT(log_->Debug(), Contains(StartsWith("TCimHTTPNamespace::GetClass from Pegasus for: TEST_Diskreturned "
                                                   "exception: CIM_ERR_NOT_FOUND: ")));
    ServeClass("TEST_Disk", "", "");
    EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
}

TEST_F(ClassLookupTest, AClassThatClaimsAnotherPluginIsNotServed) {
    ServeClass("TEST_Claim", "", QualifierXml("PluginName", "string", "another plug-in"));
    ServeClass("TEST_Same", "", QualifierXml("PluginName", "string", "test plug-in"));
    const auto nameSpace = ConnectedNamespace();
    EXPECT_FALSE(nameSpace->GetClass("TEST_Claim", TCIMContext()));
    EXPECT_TRUE(nameSpace->GetClass("TEST_Same", TCIMContext()));
    EXPECT_EQ(CountCalls("GetQualifier"), 0U);
}

TEST_F(ClassLookupTest, ADefinitionUnderANameThatIsNoneIsNotServed) {
    for (const char* name : {"<root>", "2abc", "a b", ""}) {
        std::string escaped = name;
        if (escaped == "<root>") {
            escaped = "&lt;root>";
        }
        server_.Answer("GetClass", "TEST_Disk", ClassXml(escaped, "", ""));
        const auto nameSpace = ConnectedNamespace();
        EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext())) << name;
        EXPECT_THAT(VisitedNames([&](const auto& v) { nameSpace->EnumerateRootClasses(v, TCIMContext()); }), IsEmpty());
    }
}

TEST_F(ClassLookupTest, DisconnectHidesTheCacheAndReconnectShowsItAgain) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto disk = nameSpace->GetClass("TEST_Disk", TCIMContext());
    nameSpace->disconnect();
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    nameSpace->connect(server_.Address(), "", "", 5988);
    EXPECT_EQ(nameSpace->GetClass("TEST_Disk", TCIMContext()), disk);
    EXPECT_EQ(CountCalls("GetClass"), 2U);
}

TEST_F(ClassLookupTest, AnAnswerThatIsNotXmlIsAnEmptyResultAndTheNextLookupWorks) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    server_.AnswerNextWith("HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\n"
                           "Content-Length: 5\r\n\r\nhello");
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_THAT(log_->Debug(),
                Contains(StartsWith("TCimHTTPNamespace::GetClass from Pegasus for: TEST_Diskreturned exception: ")));
    EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
}

TEST_F(ClassLookupTest, AServerThatClosesInTheMiddleOfAnAnswerIsAnEmptyResult) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    server_.AnswerNextWith("HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\n"
                           "Content-Length: 5000\r\n\r\n<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\"");
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
}

// --- The cache ---------------------------------------------------------------------------------------------------

TEST_F(ClassLookupTest, AllocateClassDoesNotEnterTheCache) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto allocated = nameSpace->AllocateClass("TEST_Disk", nullptr, TCIMContext());
    EXPECT_NE(nameSpace->GetClass("TEST_Disk", TCIMContext()), allocated);
}

TEST_F(ClassLookupTest, ANamespaceThatNoSharedPointerOwnsAllocatesNothing) {
    TCimHTTPNamespace nameSpace(false);
    EXPECT_THROW(nameSpace.AllocateClass("TEST_Disk", nullptr, TCIMContext()), boost::bad_weak_ptr);
    EXPECT_THROW(nameSpace.AllocateQualifierDecl("Colour", TCIMValue(), ICIMQualifierDecl::eScopeNone,
                                                 ICIMQualifierDecl::eFlavorNone, TCIMContext()),
                 boost::bad_weak_ptr);
}

TEST_F(ClassLookupTest, ASecondClassOfANameIsRefused) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto disk = nameSpace->GetClass("TEST_Disk", TCIMContext());
    const auto second = nameSpace->AllocateClass("TEST_Disk", nullptr, TCIMContext());
    log_->Forget();
    EXPECT_EQ(StatusOf([&] { second->AddToNamespace(TCIMContext()); }), TVYXStatusCode::eAlreadyExists);
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace: class TEST_Disk already defined"));
    EXPECT_EQ(nameSpace->GetClass("TEST_Disk", TCIMContext()), disk);
    nameSpace->EnumerateRootClasses(
        [&](const auto& cls) {
            EXPECT_EQ(cls, disk) << "a class that is refused is not linked under its superclass";
            return true;
        },
        TCIMContext());
}

TEST_F(ClassLookupTest, ARedefiningNamespaceReplacesTheClassAndKeepsItsSubclasses) {
    ServeClass("TEST_Disk", "", "");
    ServeClass("TEST_Part", "", "");
    ServeClass("TEST_Tape", "", "");
    const auto nameSpace = ConnectedNamespace(true);
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    disk->AddChildClass(FetchClass(*nameSpace, "TEST_Part"));
    const auto second = nameSpace->AllocateClass("TEST_Disk", nullptr, TCIMContext());
    second->AddChildClass(FetchClass(*nameSpace, "TEST_Tape"));
    second->AddToNamespace(TCIMContext());
    EXPECT_EQ(nameSpace->GetClass("TEST_Disk", TCIMContext()), second);
    const auto subClasses = [](ICIMClass& cls) {
        return VisitedNames([&](const auto& visit) { cls.EnumerateSubClasses(visit, false, TCIMContext()); });
    };
    EXPECT_THAT(subClasses(*second), ElementsAre("TEST_Part")) << "in the place of its own";
    EXPECT_THAT(subClasses(*disk), ElementsAre("TEST_Part")) << "the replaced class keeps them too";
}

TEST_F(ClassLookupTest, EnumerateRootClassesVisitsWhatWasFetchedWhileConnected) {
    ServeClass("TEST_Base", "", "");
    ServeClass("TEST_Disk", "TEST_Base", "");
    const auto nameSpace = ConnectedNamespace();
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    const auto visited = [&] {
        return VisitedNames([&](const auto& visit) { nameSpace->EnumerateRootClasses(visit, TCIMContext()); });
    };
    EXPECT_THAT(visited(), ElementsAre("TEST_Base", "TEST_Disk"));
    FetchClass(*nameSpace, "TEST_Base")->AddChildClass(FetchClass(*nameSpace, "TEST_Disk"));
    EXPECT_THAT(visited(), ElementsAre("TEST_Base", "TEST_Disk", "TEST_Disk")) << "with the whole subtree of each";
    nameSpace->disconnect();
    EXPECT_THAT(visited(), IsEmpty());
}

TEST_F(ClassLookupTest, ACallbackMayFetchClassesWhileClassesAreEnumerated) {
    ServeClass("TEST_Disk", "", "");
    for (int i = 0; i < 20; ++i) {
        ServeClass("TEST_More" + std::to_string(i), "", "");
    }
    const auto nameSpace = ConnectedNamespace();
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    nameSpace->EnumerateRootClasses(
        [&](const auto&) {
            for (int i = 0; i < 20; ++i) {
                EXPECT_TRUE(nameSpace->GetClass("TEST_More" + std::to_string(i), TCIMContext()));
            }
            return true;
        },
        TCIMContext());
}
