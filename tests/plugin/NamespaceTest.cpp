#include "PluginTest.h"
#include "host/TRootObject.h"
#include "support/ScriptedServer.h"

#include <array>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using NamespaceTest = PluginTest;

constexpr int kHttpPort = 5988;
constexpr int kHttpsPort = 5989;

std::vector<std::string> QualifierDeclNames(const TCimHTTPNamespace& nameSpace) {
    return VisitedNames([&](const auto& visit) { nameSpace.EnumerateQualifierDecls(visit, TCIMContext()); });
}

} // namespace

// --- Messages ----------------------------------------------------------------------------------------------------

TEST_F(NamespaceTest, MessagesGoToTheLoggerThatTheHostHasAtThatMoment) {
    const auto nameSpace = ConnectedNamespace();
    const auto say = [&] {
        nameSpace->GetClass("", TCIMContext());
        StatusOf([&] { nameSpace->GetClass("no name", TCIMContext()); });
    };
    const auto next = boost::make_shared<CapturingLogger>();
    log_->Forget();
    say();
    TRootObject::SetCoreLogger(next);
    say();
    for (const auto& log : {log_, next}) {
        EXPECT_THAT(log->Errors(), ElementsAre("CimHTTP: CIM name 'no name' is invalid"));
        EXPECT_THAT(log->Debug(), ElementsAre("TCimHTTPNamespace::GetClass  : return <root>"));
    }
    TRootObject::SetCoreLogger(log_);
    EXPECT_EQ(next.use_count(), 1) << "it is not kept";
}

// --- Connection --------------------------------------------------------------------------------------------------

TEST_F(NamespaceTest, ConnectOpensTheConnectionAtOnce) {
    const auto nameSpace = ConnectedNamespace();
    EXPECT_TRUE(nameSpace->isConnected());
    EXPECT_EQ(CountCalls("GetClass"), 0U);
    EXPECT_EQ(CountConnections({kHttpPort}), 1U);
}

TEST_F(NamespaceTest, ConnectRaisesTheTimeout) {
    const auto nameSpace = MakeNamespace();
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 10000U);
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 65535000U);
    const auto nowhere = MakeNamespace();
    nowhere->connect(server_.Address(), "", "", 8080);
    EXPECT_EQ(nowhere->getPegClient()->getTimeout(), 65535000U);
}

TEST_F(NamespaceTest, ConnectToAnotherPortCountsAsConnectedWithoutAnyTraffic) {
    server_.Listen(8080);
    const auto nameSpace = MakeNamespace();
    nameSpace->connect(server_.Address(), "user", "password", 8080);
    EXPECT_TRUE(nameSpace->isConnected());
    EXPECT_EQ(CountConnections({kHttpPort, 8080}), 0U);
    EXPECT_THAT(log_->Errors(), IsEmpty());
    EXPECT_THAT(log_->Debug(), IsEmpty());
}

TEST_F(NamespaceTest, OnAnotherPortLookupsFindNothing) {
    const auto nameSpace = MakeNamespace();
    nameSpace->connect(server_.Address(), "", "", 8080);
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
}

TEST_F(NamespaceTest, OnlyTheTwoPortsConnect) {
    constexpr int kPortsInAll = 0x10000;
    ServeClass("TEST_Disk", "", "");
    for (const int port : {-1, 0, 443, kHttpPort - 1, kHttpsPort + 1, kHttpPort + kPortsInAll}) {
        const auto nameSpace = MakeNamespace();
        nameSpace->connect(server_.Address(), "", "", port);
        EXPECT_TRUE(nameSpace->isConnected()) << port;
        EXPECT_THAT(log_->Debug(), IsEmpty()) << port;
        EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext())) << port;
        log_->Forget();
    }
}

TEST_F(NamespaceTest, ConnectWhereNothingListensThrowsAndLogsWhy) {
    const std::string address = server_.Address();
    server_.Stop();
    for (const int port : {kHttpPort, kHttpsPort}) {
        log_->Forget();
        const auto nameSpace = MakeNamespace();
        EXPECT_EQ(StatusOf([&] { nameSpace->connect(address, "", "", port); }),
                  TVYXStatusCode::eRemoteConnectionFailed);
        EXPECT_FALSE(nameSpace->isConnected());
        EXPECT_EQ(nameSpace->getPegClient()->getTimeout(), 65535000U) << "the time-out is raised first";
        EXPECT_THAT(log_->Errors(), IsEmpty());
        ASSERT_EQ(log_->Debug().size(), 1U);
        EXPECT_THAT(log_->Debug()[0], StartsWith("TCimHTTPNamespace::connect failed: "));
        EXPECT_THAT(log_->Debug()[0], HasSubstr(address + ":" + std::to_string(port)));
    }
}

TEST_F(NamespaceTest, ConnectOnPort5989WithoutTlsThereThrowsAndLogsWhy) {
    support::ScriptedServer plain([](support::Connection& connection) { connection.Close(); });
    plain.Listen(kHttpsPort);
    const auto nameSpace = MakeNamespace();
    EXPECT_EQ(StatusOf([&] { nameSpace->connect(plain.Address(), "", "", kHttpsPort); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_FALSE(nameSpace->isConnected());
    EXPECT_THAT(log_->Debug(), ElementsAre(StartsWith("TCimHTTPNamespace::connect failed: ")));
}

TEST_F(NamespaceTest, ConnectToAnUnknownHostThrowsAndLogsWhy) {
    const std::string host = "no-such..host"; // no host can have it, so that no name server is asked for it
    const auto nameSpace = MakeNamespace();
    EXPECT_EQ(StatusOf([&] { nameSpace->connect(host, "", "", kHttpPort); }), TVYXStatusCode::eRemoteConnectionFailed);
    ASSERT_EQ(log_->Debug().size(), 1U);
    EXPECT_THAT(log_->Debug()[0], StartsWith("TCimHTTPNamespace::connect failed: "));
    EXPECT_THAT(log_->Debug()[0], HasSubstr(host));
}

TEST_F(NamespaceTest, AFailedConnectLeavesAConnectedNamespaceConnected) {
    const auto nameSpace = ConnectedNamespace();
    EXPECT_EQ(StatusOf([&] { nameSpace->connect(server_.Address(), "", "", kHttpPort); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_TRUE(nameSpace->isConnected());
}

TEST_F(NamespaceTest, Port5989SpeaksTlsAndDoesNotVerifyTheServer) {
    support::TestCertificate::Options options;
    options.selfSigned = true;
    const support::TestCertificate certificate(options);
    server_.ListenTls(kHttpsPort, certificate);
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = MakeNamespace();
    nameSpace->connect(server_.Address(), "", "", kHttpsPort);
    EXPECT_TRUE(nameSpace->isConnected());
    EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
}

TEST_F(NamespaceTest, UserAndPasswordReachTheServerOnBothPorts) {
    const support::TestCertificate certificate(support::TestCertificate::Options{});
    server_.ListenTls(kHttpsPort, certificate);
    server_.RequireUser("reader", "s3cret");
    ServeClass("TEST_Disk", "", "");
    for (const int port : {kHttpPort, kHttpsPort}) {
        const auto nameSpace = MakeNamespace();
        nameSpace->connect(server_.Address(), "reader", "s3cret", port);
        EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext())) << port;
    }
}

TEST_F(NamespaceTest, AWrongPasswordEndsInAnEmptyResultAndALine) {
    server_.RequireUser("reader", "s3cret");
    const auto nameSpace = MakeNamespace();
    nameSpace->connect(server_.Address(), "reader", "guess", kHttpPort);
    EXPECT_FALSE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_THAT(log_->Debug(), testing::Contains(StartsWith(
                                   "TCimHTTPNamespace::GetClass from Pegasus for: TEST_Diskreturned exception: ")));
}

TEST_F(NamespaceTest, DisconnectAllowsAnotherConnect) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    nameSpace->disconnect();
    EXPECT_FALSE(nameSpace->isConnected());
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    EXPECT_TRUE(nameSpace->isConnected());
    EXPECT_TRUE(nameSpace->GetClass("TEST_Disk", TCIMContext()));
}

TEST_F(NamespaceTest, DisconnectAndTheNamespacesEndCloseTheConnection) {
    constexpr std::chrono::seconds kLimit{60}; // of a wait that fails the test
    server_.Stop();
    std::array<std::promise<void>, 2> closed;
    support::ScriptedServer server([&](support::Connection& connection) {
        connection.WaitForPeerClose();
        closed.at(connection.Index()).set_value();
    });
    server.Listen(kHttpPort);
    auto nameSpace = MakeNamespace();
    nameSpace->connect(server.Address(), "", "", kHttpPort);
    nameSpace->disconnect();
    EXPECT_EQ(closed[0].get_future().wait_for(kLimit), std::future_status::ready);
    nameSpace->disconnect();
    EXPECT_FALSE(nameSpace->isConnected()) << "again, and nothing changes";
    nameSpace->connect(server.Address(), "", "", kHttpPort);
    nameSpace.reset();
    EXPECT_EQ(closed[1].get_future().wait_for(kLimit), std::future_status::ready);
}

TEST_F(NamespaceTest, TheRemoteNamespaceIsAlwaysTheSame) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    EXPECT_EQ(nameSpace->getPegNSP()->getString(), Pegasus::String("root/cimv2"));
    nameSpace->GetClass("TEST_Disk", TCIMContext());
    EXPECT_EQ(server_.Calls().front().nameSpace, "root/cimv2");
}

TEST_F(NamespaceTest, TwoNamespacesWorkSideBySide) {
    ServeClass("TEST_Disk", "", "");
    const auto first = ConnectedNamespace();
    const auto second = ConnectedNamespace();
    const auto disk = first->GetClass("TEST_Disk", TCIMContext());
    ASSERT_TRUE(disk);
    first->disconnect();
    EXPECT_TRUE(second->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_NE(second->GetClass("TEST_Disk", TCIMContext()), disk);
}

TEST_F(NamespaceTest, TwoNamespacesMayBeUsedFromTwoThreadsAtOnce) {
    constexpr int kRounds = 10;
    const support::TestCertificate certificate(support::TestCertificate::Options{});
    server_.ListenTls(kHttpsPort, certificate);
    ServeQualifier("Units");
    ServeClass("TEST_Base", "", PropertyXml("Name", "string", KeyXml()));
    ServeClass("TEST_Disk", "TEST_Base",
               PropertyXml("Name", "string", KeyXml()) +
                   PropertyXml("Size", "uint64", QualifierXml("Units", "string", "Bytes")));
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "Name", "a", PropertyXml("Name", "string", ValueXml("a"))) +
                       InstanceXml("TEST_Disk", "Name", "b", PropertyXml("Name", "string", ValueXml("b"))));
    const auto work = [&](int port, int& seen) {
        for (int round = 0; round < kRounds; ++round) {
            const auto nameSpace = MakeNamespace();
            nameSpace->connect(server_.Address(), "", "", port);
            nameSpace->GetClass("TEST_None", TCIMContext());
            const auto disk = nameSpace->GetClass("TEST_Disk", TCIMContext());
            ASSERT_TRUE(disk);
            disk->EnumerateInstances(
                [&](const auto& instance) {
                    seen += instance->BuildPath(TCIMContext()).GetPath().empty() ? 0 : 1;
                    return true;
                },
                false, TCIMContext());
        }
    };
    int seenPlain = 0;
    int seenSecure = 0;
    std::thread plain(work, kHttpPort, std::ref(seenPlain));
    std::thread secure(work, kHttpsPort, std::ref(seenSecure));
    plain.join();
    secure.join();
    EXPECT_EQ(seenPlain, 2 * kRounds);
    EXPECT_EQ(seenSecure, 2 * kRounds);
}

// --- Qualifier declarations --------------------------------------------------------------------------------------

TEST_F(NamespaceTest, InitializeDeclaresExactlyThePluginsQualifiers) {
    const auto nameSpace = MakeNamespace();
    EXPECT_THAT(QualifierDeclNames(*nameSpace), ElementsAre("PLUGINNAME", "PLUGINVERSION"));
    const auto name = nameSpace->GetQualifierDecl("PLUGINNAME", TCIMContext());
    const auto version = nameSpace->GetQualifierDecl("PLUGINVERSION", TCIMContext());
    EXPECT_EQ(name->GetDefaultValue(TCIMContext()), TCIMValue("CIMXML"));
    EXPECT_EQ(version->GetDefaultValue(TCIMContext()), TCIMValue(""));
    for (const auto& declaration : {name, version}) {
        EXPECT_EQ(declaration->GetScope(TCIMContext()), ICIMQualifierDecl::eScopeNone);
        EXPECT_EQ(declaration->GetFlavor(TCIMContext()), ICIMQualifierDecl::eFlavorNone);
    }
}

TEST_F(NamespaceTest, ThePluginsNameMayBeAnyValueThatHasAText) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace =
        boost::dynamic_pointer_cast<TCimHTTPNamespace>(TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(
            {{"pluginNameQualDeclValue", TCIMValue(7)}}, false));
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    const auto name = FetchClass(*nameSpace, "TEST_Disk")->GetQualifier("PLUGINNAME", TCIMContext());
    EXPECT_EQ(name->GetValue(TCIMContext()), TCIMValue("7"));
}

TEST_F(NamespaceTest, GetQualifierDeclFindsTheNameInAnyCase) {
    const auto nameSpace = MakeNamespace();
    EXPECT_EQ(nameSpace->GetQualifierDecl("PluginName", TCIMContext())->GetName(TCIMContext()), "PLUGINNAME");
}

TEST_F(NamespaceTest, GetQualifierDeclOfAnUnknownNameIsEmptyAndAsksNobody) {
    const auto nameSpace = ConnectedNamespace();
    EXPECT_FALSE(nameSpace->GetQualifierDecl("Units", TCIMContext()));
    EXPECT_THAT(server_.Calls(), IsEmpty());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(NamespaceTest, GetQualifierDeclRefusesWhatIsNoNameAndKnowsNoEmptyOne) {
    const auto nameSpace = MakeNamespace();
    EXPECT_FALSE(nameSpace->GetQualifierDecl("", TCIMContext()));
    EXPECT_THAT(log_->Errors(), IsEmpty());
    EXPECT_EQ(StatusOf([&] { nameSpace->GetQualifierDecl("2nd", TCIMContext()); }), TVYXStatusCode::eInvalidName);
    EXPECT_THAT(log_->Errors(), ElementsAre("CimHTTP: CIM name '2nd' is invalid"));
}

TEST_F(NamespaceTest, QualifierDeclsAreVisitedInTheOrderOfTheirLowerCaseNames) {
    const auto nameSpace = MakeNamespace();
    for (const char* name : {"units", "Version", "Abstract", "_own", "key"}) {
        nameSpace
            ->AllocateQualifierDecl(name, TCIMValue(""), ICIMQualifierDecl::eScopeNone, ICIMQualifierDecl::eFlavorNone,
                                    TCIMContext())
            ->AddToNamespace(TCIMContext());
    }
    EXPECT_THAT(QualifierDeclNames(*nameSpace),
                ElementsAre("_own", "Abstract", "key", "PLUGINNAME", "PLUGINVERSION", "units", "Version"));
}

TEST_F(NamespaceTest, AnAllocatedQualifierDeclIsNotRegisteredUntilItIsAdded) {
    const auto nameSpace = MakeNamespace();
    const auto declaration = nameSpace->AllocateQualifierDecl(
        "Colour", TCIMValue("red"), ICIMQualifierDecl::eScopeClass, ICIMQualifierDecl::eFlavorDefaults, TCIMContext());
    EXPECT_FALSE(nameSpace->GetQualifierDecl("Colour", TCIMContext()));
    declaration->AddToNamespace(TCIMContext());
    EXPECT_EQ(nameSpace->GetQualifierDecl("colour", TCIMContext()), declaration);
    EXPECT_EQ(declaration->GetNamespace(TCIMContext()), nameSpace);
}

TEST_F(NamespaceTest, ASecondQualifierDeclOfANameIsRefused) {
    const auto nameSpace = MakeNamespace();
    const auto second = nameSpace->AllocateQualifierDecl("PluginName", TCIMValue(""), ICIMQualifierDecl::eScopeNone,
                                                         ICIMQualifierDecl::eFlavorNone, TCIMContext());
    EXPECT_EQ(StatusOf([&] { second->AddToNamespace(TCIMContext()); }), TVYXStatusCode::eAlreadyExists);
    EXPECT_THAT(log_->Debug(), ElementsAre("CimHTTP: TCimHTTPNamespace: qualifier PluginName already defined"));
    EXPECT_NE(nameSpace->GetQualifierDecl("PLUGINNAME", TCIMContext()), second);
}

TEST_F(NamespaceTest, ARedefiningNamespaceReplacesAQualifierDecl) {
    const auto nameSpace = MakeNamespace(true);
    const auto second = nameSpace->AllocateQualifierDecl("PluginName", TCIMValue(""), ICIMQualifierDecl::eScopeNone,
                                                         ICIMQualifierDecl::eFlavorNone, TCIMContext());
    second->AddToNamespace(TCIMContext());
    EXPECT_EQ(nameSpace->GetQualifierDecl("PLUGINNAME", TCIMContext()), second);
    EXPECT_THAT(QualifierDeclNames(*nameSpace), ElementsAre("PluginName", "PLUGINVERSION"));
}

TEST_F(NamespaceTest, AQualifierDeclWithAnInvalidNameIsRefused) {
    const auto nameSpace = MakeNamespace();
    const auto declaration = nameSpace->AllocateQualifierDecl("no way", TCIMValue(""), ICIMQualifierDecl::eScopeNone,
                                                              ICIMQualifierDecl::eFlavorNone, TCIMContext());
    EXPECT_EQ(StatusOf([&] { declaration->AddToNamespace(TCIMContext()); }), TVYXStatusCode::eInvalidName);
}

TEST_F(NamespaceTest, ACallbackThatReturnsFalseEndsTheEnumerationOfQualifierDecls) {
    int calls = 0;
    MakeNamespace()->EnumerateQualifierDecls(
        [&](const auto&) {
            ++calls;
            return false;
        },
        TCIMContext());
    EXPECT_EQ(calls, 1);
}

TEST_F(NamespaceTest, AnEmptyCallbackIsABadFunctionCall) {
    const auto nameSpace = MakeNamespace();
    EXPECT_THROW(nameSpace->EnumerateQualifierDecls(boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>(),
                                                    TCIMContext()),
                 boost::bad_function_call);
}

// --- The log -----------------------------------------------------------------------------------------------------

TEST_F(NamespaceTest, EachMessageGoesToTheLoggerOfThatMoment) {
    const auto nameSpace = ConnectedNamespace();
    nameSpace->GetClass("", TCIMContext());
    const auto later = boost::make_shared<CapturingLogger>();
    TRootObject::SetCoreLogger(later);
    nameSpace->GetClass("<root>", TCIMContext());
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace::GetClass  : return <root>"));
    EXPECT_THAT(later->Debug(), ElementsAre("TCimHTTPNamespace::GetClass <root> : return <root>"));
}

// --- Refused and empty operations --------------------------------------------------------------------------------

TEST_F(NamespaceTest, WritesQueriesAndSubscriptionsAreRefusedSilently) {
    const auto nameSpace = ConnectedNamespace();
    const TCIMReference reference{boost::shared_ptr<ICIMNamespace>(), TCIMContext()};
    const auto callback = [](const auto&) { return true; };
    std::string query = "select * from TEST_Disk";
    std::string language = "DMTF:CQL";
    EXPECT_EQ(StatusOf([&] { nameSpace->Subscribe({}, callback, TCIMContext()); }), TVYXStatusCode::eNotSupported);
    EXPECT_EQ(StatusOf([&] { nameSpace->DeleteInstance(reference, TCIMContext()); }), TVYXStatusCode::eNotSupported);
    EXPECT_EQ(StatusOf([&] { nameSpace->ModifyInstance(reference, TCIMContext(), TCIMContext()); }),
              TVYXStatusCode::eNotSupported);
    EXPECT_EQ(StatusOf([&] { nameSpace->ExecuteQuery(callback, query, language, TCIMContext()); }),
              TVYXStatusCode::eNotSupported);
    EXPECT_EQ(StatusOf([&] { nameSpace->AddUnderlyingNamespace({}, TCIMContext()); }), TVYXStatusCode::eReadOnly);
    EXPECT_THAT(log_->Errors(), IsEmpty());
    EXPECT_THAT(log_->Debug(), IsEmpty());
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(NamespaceTest, SetUpcallNamespaceIsDropped) {
    const auto nameSpace = MakeNamespace();
    const auto upcall = MakeNamespace();
    nameSpace->SetUpcallNamespace(upcall, TCIMContext());
    EXPECT_FALSE(nameSpace->GetUpcallNamespace());
}

TEST_F(NamespaceTest, EnumerateProvidersCallsNobody) {
    MakeNamespace()->EnumerateProviders(
        [](const auto&) {
            ADD_FAILURE() << "called back";
            return true;
        },
        TCIMContext());
}

TEST_F(NamespaceTest, ClearInstancesRemoveClassAndAssignmentChangeNothing) {
    ServeClass("TEST_Disk", "", "");
    const auto nameSpace = ConnectedNamespace();
    const auto disk = FetchClass(*nameSpace, "TEST_Disk");
    nameSpace->ClearInstances();
    nameSpace->RemoveClass(disk);
    const auto other = MakeNamespace(true);
    EXPECT_EQ(&(*nameSpace = static_cast<ICIMNamespace&>(*other)), nameSpace.get());
    EXPECT_EQ(FetchClass(*nameSpace, "TEST_Disk"), disk);
}

// --- Names and instances straight from the server ----------------------------------------------------------------

TEST_F(NamespaceTest, EnumerateClassNamesAsksForTheWholeSubtree) {
    server_.Answer("EnumerateClassNames", "TEST_Base",
                   "<CLASSNAME NAME=\"TEST_Disk\"/><CLASSNAME NAME=\"TEST_Tape\"/>");
    const auto nameSpace = ConnectedNamespace();
    Pegasus::Array<Pegasus::CIMName> names;
    names.append(Pegasus::CIMName("Before"));
    nameSpace->EnumerateClassNames("root/interop", "TEST_Base", names);
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names[0], Pegasus::CIMName("TEST_Disk"));
    EXPECT_EQ(names[1], Pegasus::CIMName("TEST_Tape"));
    ASSERT_EQ(server_.Calls().size(), 1U);
    const auto call = server_.Calls().at(0);
    EXPECT_EQ(call.nameSpace, "root/interop");
    EXPECT_EQ(call.parameters.at("ClassName"), "TEST_Base");
    EXPECT_THAT(call.parameters.at("DeepInheritance"), testing::StrCaseEq("true"));
    EXPECT_THAT(VisitedNames([&](const auto& visit) { nameSpace->EnumerateRootClasses(visit, TCIMContext()); }),
                IsEmpty());
    EXPECT_THAT(log_->Debug(), IsEmpty());
}

TEST_F(NamespaceTest, EnumerateClassNamesFromTheTopNamesNoClass) {
    server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
    const auto nameSpace = ConnectedNamespace();
    Pegasus::Array<Pegasus::CIMName> names;
    nameSpace->EnumerateClassNames("root/cimv2", "", names);
    EXPECT_EQ(names.size(), 1U);
    EXPECT_EQ(server_.Calls().at(0).parameters.count("ClassName"), 0U);
}

TEST_F(NamespaceTest, AFailedEnumerateClassNamesLeavesTheNamesAndLogsOneLine) {
    server_.Fail("EnumerateClassNames", "TEST_None", 5, "no such class");
    const auto nameSpace = ConnectedNamespace();
    Pegasus::Array<Pegasus::CIMName> names;
    names.append(Pegasus::CIMName("Before"));
    nameSpace->EnumerateClassNames("root/cimv2", "TEST_None", names);
    ASSERT_EQ(names.size(), 1U);
    EXPECT_EQ(names[0], Pegasus::CIMName("Before"));
    EXPECT_THAT(log_->Debug(), ElementsAre("TCimHTTPNamespace::EnumerateClassNames: root/cimv2:TEST_None: "
                                           "CIM_ERR_INVALID_CLASS: no such class\n"));
}

TEST_F(NamespaceTest, EnumerateClassNamesWithoutAConnectionLogsThat) {
    Pegasus::Array<Pegasus::CIMName> names;
    MakeNamespace()->EnumerateClassNames("root/cimv2", "TEST_Base", names);
    EXPECT_EQ(names.size(), 0U);
    EXPECT_THAT(log_->Debug(),
                ElementsAre(StartsWith("TCimHTTPNamespace::EnumerateClassNames: root/cimv2:TEST_Base: ")));
}

TEST_F(NamespaceTest, EnumerateClassNamesLogsNamesThatNoServerCouldHave) {
    const auto nameSpace = ConnectedNamespace();
    Pegasus::Array<Pegasus::CIMName> names;
    nameSpace->EnumerateClassNames("root/2nd", "TEST_Disk", names);
    nameSpace->EnumerateClassNames("root/cimv2", "2abc", names);
    EXPECT_THAT(log_->Debug(), ElementsAre(StartsWith("TCimHTTPNamespace::EnumerateClassNames: root/2nd:TEST_Disk: "),
                                           StartsWith("TCimHTTPNamespace::EnumerateClassNames: root/cimv2:2abc: ")));
    EXPECT_THAT(server_.Calls(), IsEmpty());
}

TEST_F(NamespaceTest, TheDiagnosticWalkAsksOnceAndChangesNothing) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "Name", "a", PropertyXml("Name", "string", ValueXml("a"))));
    const auto nameSpace = ConnectedNamespace();
    nameSpace->EnumerateInstances(Pegasus::CIMNamespaceName("root/interop"), Pegasus::CIMName("TEST_Disk"));
    ASSERT_EQ(server_.Calls().size(), 1U);
    ASSERT_EQ(CountCalls("EnumerateInstances", "TEST_Disk"), 1U);
    EXPECT_EQ(server_.Calls().at(0).nameSpace, "root/interop");
    const auto parameters = server_.Calls().at(0).parameters;
    for (const char* flag : {"DeepInheritance", "LocalOnly", "IncludeQualifiers", "IncludeClassOrigin"}) {
        EXPECT_THAT(parameters.at(flag), testing::StrCaseEq("false")) << flag;
    }
    EXPECT_EQ(parameters.count("PropertyList"), 0U);
    EXPECT_THAT(log_->Debug(), IsEmpty());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}

TEST_F(NamespaceTest, TheDiagnosticWalkSwallowsFailures) {
    const auto nameSpace = ConnectedNamespace();
    nameSpace->EnumerateInstances(Pegasus::CIMNamespaceName("root/cimv2"), Pegasus::CIMName("TEST_None"));
    EXPECT_EQ(CountCalls("EnumerateInstances", "TEST_None"), 1U);
    MakeNamespace()->EnumerateInstances(Pegasus::CIMNamespaceName("root/cimv2"), Pegasus::CIMName("TEST_None"));
    EXPECT_THAT(log_->Debug(), IsEmpty());
    EXPECT_THAT(log_->Errors(), IsEmpty());
}
