// What a server may take of its host: time, memory and stack have bounds, which the host chooses, and whatever passes
// one is told.

#include "PluginTest.h"
#include "ScopedPolicy.h"
#include "cimhttp/ContextKeys.h"
#include "host/TRootObject.h"
#include "model/TCimHTTPProperty.h"
#include "support/ScriptedServer.h"
#include "support/TestCertificate.h"

#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <memory>

using namespace NQORVYX20;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;
using Kind = RemoteFailure::Kind;

namespace {

constexpr int kHttpPort = 5988;
constexpr int kHttpsPort = 5989;

std::string Numbered(const std::string& text, std::size_t number) { return text + std::to_string(number); }

/// Tests of both readings, by the name of each.
class LimitsTest : public PluginTest, public testing::WithParamInterface<const char*> {
  protected:
    LimitsTest() { log_->ExpectWarnings(); }

    bool IsFaithful() const { return GetParam() == std::string(kFaithfulReading); }

    boost::shared_ptr<TCimHTTPNamespace> Allocated(TCIMContext options = {}) const {
        TCIMContext context = PluginContext();
        context[kReadingKey] = TCIMValue(GetParam());
        context.insert(options.begin(), options.end());
        return boost::dynamic_pointer_cast<TCimHTTPNamespace>(
            TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
    }

    boost::shared_ptr<TCimHTTPNamespace> Connected(TCIMContext options = {}) const {
        auto nameSpace = Allocated(std::move(options));
        nameSpace->connect(server_.Address(), "", "", kHttpPort);
        return nameSpace;
    }

    static TCIMContext Option(const char* key, unsigned int number) { return {{key, TCIMValue(number)}}; }

    /// The kind of failure that a look-up of a class ends in; fails the test when there is a class.
    static Kind FailureOfLookup(TCimHTTPNamespace& nameSpace, const std::string& name) {
        StatusOf([&] { EXPECT_EQ(nameSpace.GetClass(name, TCIMContext()), nullptr); });
        return nameSpace.LastFailure() ? nameSpace.LastFailure()->kind : Kind::kOther;
    }

    /// Expects that of an enumeration, and that it gave no instance.
    static Kind FailureOfEnumeration(TCimHTTPNamespace& nameSpace, const std::string& className) {
        const auto cls = nameSpace.GetClass(className, TCIMContext());
        StatusOf([&] {
            cls->EnumerateInstances(
                [](const auto& instance) {
                    ADD_FAILURE() << instance->BuildPath(TCIMContext()).GetPath();
                    return true;
                },
                false, TCIMContext());
        });
        return nameSpace.LastFailure() ? nameSpace.LastFailure()->kind : Kind::kOther;
    }

    /// A hierarchy of so many levels, TEST_0 at its top.
    void ServeHierarchy(std::size_t levels, const std::string& content = "") {
        for (std::size_t i = 0; i < levels; ++i) {
            ServeClass(Numbered("TEST_", i), i == 0 ? "" : Numbered("TEST_", i - 1), content);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(InEachReading, LimitsTest, testing::Values(kCompatibleReading, kFaithfulReading),
                         [](const auto& reading) { return std::string(reading.param); });

// --- Time --------------------------------------------------------------------------------------------------------

TEST_P(LimitsTest, ASilentServerEndsARequestAtTheTimeOutOfTheHost) {
    support::ScriptedServer server([](support::Connection& client) { client.WaitForPeerClose(); },
                                   support::SecondLoopbackAddress());
    server.Listen(kHttpPort);
    const auto nameSpace = Allocated(Option(kTimeoutKey, 50));
    nameSpace->connect(server.Address(), "", "", kHttpPort);
    EXPECT_EQ(FailureOfLookup(*nameSpace, "TEST_Disk"), Kind::kTimeOut);
}

// --- Memory ------------------------------------------------------------------------------------------------------

TEST_P(LimitsTest, AnAnswerHasAsManyObjectsAsTheHostAllows) {
    std::string instances;
    for (const char* name : {"a", "b", "c"}) {
        instances += InstanceXml("TEST_Disk", "Name", name, PropertyXml("Name", "string", ValueXml(name)));
    }
    ServeClass("TEST_Disk", "", PropertyXml("Name", "string", KeyXml()));
    server_.Answer("EnumerateInstances", "TEST_Disk", instances);
    EXPECT_EQ(FailureOfEnumeration(*Connected(Option(kLimitObjectsKey, 2)), "TEST_Disk"), Kind::kLimit);
    const auto nameSpace = Connected(Option(kLimitObjectsKey, 3));
    std::size_t count = 0;
    FetchClass(*nameSpace, "TEST_Disk")->EnumerateInstances([&](const auto&) { return ++count > 0; }, false, {});
    EXPECT_EQ(count, 3U);
}

TEST_P(LimitsTest, AnAnswerHasAsManyBytesAsTheHostAllows) {
    ServeClass("TEST_Disk", "", PropertyXml("Name", "string", KeyXml()));
    EXPECT_EQ(FailureOfLookup(*Connected(Option(kLimitBytesKey, 100)), "TEST_Disk"), Kind::kLimit);
}

TEST_P(LimitsTest, TheClassesOfANamespaceHaveAsManyElementsAsTheHostAllows) {
    ServeHierarchy(2, PropertyXml("A", "string") + PropertyXml("B", "string"));
    const auto nameSpace = Connected(Option(kLimitElementsKey, 3));
    EXPECT_TRUE(nameSpace->GetClass("TEST_0", TCIMContext()));
    EXPECT_EQ(FailureOfLookup(*nameSpace, "TEST_1"), Kind::kLimit);
    server_.ForgetCalls();
    EXPECT_EQ(FailureOfLookup(*nameSpace, "TEST_1"), Kind::kLimit);
    EXPECT_THAT(server_.Calls(), IsEmpty()) << "what cannot be kept is not fetched again";
}

TEST_P(LimitsTest, MethodsParametersAndTheirQualifiersAreElements) {
    const std::string text = QualifierXml("Description", "string", "a text");
    ServeQualifier("Description");
    ServeClass("TEST_Disk", "",
               "<METHOD NAME=\"M\" TYPE=\"uint32\">" + text + "<PARAMETER NAME=\"P\" TYPE=\"string\">" + text +
                   "</PARAMETER></METHOD>");
    EXPECT_TRUE(Connected(Option(kLimitElementsKey, 4))->GetClass("TEST_Disk", TCIMContext()));
    EXPECT_EQ(FailureOfLookup(*Connected(Option(kLimitElementsKey, 3)), "TEST_Disk"), Kind::kLimit);
}

TEST_P(LimitsTest, AnEndlessHierarchyIsClimbedByNamesAlone) {
    ServeHierarchy(300, PropertyXml("A", "string") + PropertyXml("B", "string") + PropertyXml("C", "string"));
    const auto nameSpace = Connected(Option(kLimitElementsKey, 30));
    StatusOf([&] {
        auto cls = nameSpace->GetClass("TEST_299", TCIMContext());
        while (cls && !cls->IsRootClass(TCIMContext())) {
            cls = cls->GetSuperClass(TCIMContext());
        }
    });
    ASSERT_TRUE(nameSpace->LastFailure());
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kLimit);
    EXPECT_THAT(server_.Calls(), SizeIs(Le(2U * 256U)));
}

TEST_P(LimitsTest, NumbersOfEveryUnsignedTypeAreTakenAndAllElseIsRefused) {
    for (const char* key : {kConnectTimeoutKey, kTimeoutKey, kLimitBytesKey, kLimitObjectsKey, kLimitElementsKey}) {
        for (const TCIMValue& value :
             {TCIMValue(static_cast<unsigned char>(200)), TCIMValue(static_cast<unsigned short>(20000)),
              TCIMValue(20000U), TCIMValue(20000ULL)}) {
            EXPECT_TRUE(Allocated({{key, value}})) << key;
        }
        log_->Forget();
        for (const TCIMValue& value :
             {TCIMValue("20000"), TCIMValue(20000), TCIMValue(true), TCIMValue(0U), TCIMValue()}) {
            EXPECT_EQ(StatusOf([&] { Allocated({{key, value}}); }), TVYXStatusCode::eTypeMismatch) << key;
        }
        EXPECT_THAT(log_->Errors(), SizeIs(5));
        EXPECT_THAT(log_->Errors(), Each(HasSubstr(key)));
        log_->Forget();
    }
    EXPECT_EQ(StatusOf([&] { Allocated({{kTimeoutKey, TCIMValue(1ULL << 32U)}}); }), TVYXStatusCode::eTypeMismatch);
    log_->Forget();
}

// --- Processes ---------------------------------------------------------------------------------------------------

TEST_P(LimitsTest, AForkedChildLeavesTheConnectionToItsParent) {
    const support::TestCertificate certificate(support::TestCertificate::For(server_.Address()));
    server_.ListenTls(kHttpsPort, certificate);
    ServeHierarchy(2);
    for (const int port : {kHttpPort, kHttpsPort}) {
        auto nameSpace = Allocated(Option(kTimeoutKey, 60000));
        nameSpace->connect(server_.Address(), "", "", port);
        EXPECT_TRUE(nameSpace->GetClass("TEST_0", TCIMContext()));
        const std::size_t connections = server_.ConnectionCount();
        const pid_t child = fork();
        if (child == 0) {
            nameSpace.reset();
            _exit(0);
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
        EXPECT_TRUE(nameSpace->GetClass("TEST_1", TCIMContext()));
        EXPECT_EQ(server_.ConnectionCount(), connections) << "the connection is the same";
    }
}

// --- Stack -------------------------------------------------------------------------------------------------------

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kStackFactor = 6; // the sanitizer keeps a distance between the variables of each function
#else
constexpr std::size_t kStackFactor = 1;
#endif

/// Runs on a thread that has no more stack than that, and a guard page after it.
void RunOnStackOf(std::size_t bytes, std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

std::string Escaped(const std::string& xml) {
    std::string escaped;
    for (const char c : xml) {
        escaped += c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '&' ? "&amp;" : std::string(1, c);
    }
    return escaped;
}

/// An instance within an instance, and so on.
std::string Embedded(std::size_t levels, const std::string& innermost) {
    std::string xml = "<INSTANCE CLASSNAME=\"TEST_Inner\">" + innermost + "</INSTANCE>";
    for (std::size_t i = 1; i < levels; ++i) {
        xml = "<INSTANCE CLASSNAME=\"TEST_Inner\"><PROPERTY NAME=\"E\" TYPE=\"string\" "
              "EmbeddedObject=\"instance\"><VALUE>" +
              Escaped(xml) + "</VALUE></PROPERTY></INSTANCE>";
    }
    return xml;
}

TEST_P(LimitsTest, APolicyNeedsNoMoreStackThanAServer) {
    ScopedPolicy policy(R"({"servers": [{"match": ["x", "*"], "force": {"tls": true}}]})");
    log_->ExpectInfos();
    const support::TestCertificate certificate(support::TestCertificate::For(server_.Address()));
    server_.ListenTls(kHttpsPort, certificate);
    RunOnStackOf(2 * kStackFactor << 16U, [&] { Allocated()->connect(server_.Address(), "", "", kHttpsPort); });
    policy.Write(std::string(std::size_t{1} << 20U, '['));
    RunOnStackOf(kStackFactor << 16U, [&] {
        const auto nameSpace = Allocated();
        EXPECT_EQ(StatusOf([&] { nameSpace->connect(server_.Address(), "", "", kHttpPort); }),
                  TVYXStatusCode::eRemoteConnectionFailed);
    });
}

std::string NestedReference(std::size_t levels) {
    return "<VALUE.REFERENCE>" + Repeated("<INSTANCENAME CLASSNAME=\"A\"><VALUE.REFERENCE>", levels) +
           "<INSTANCENAME CLASSNAME=\"A\"><KEYVALUE VALUETYPE=\"numeric\">1</KEYVALUE></INSTANCENAME>" +
           Repeated("</VALUE.REFERENCE></INSTANCENAME>", levels) + "</VALUE.REFERENCE>";
}

TEST_P(LimitsTest, AHostThreadNeedsNoMoreThan64KiBOfStackWhateverTheServerSends) {
    const std::string reference = "<PROPERTY.REFERENCE NAME=\"R\">" + NestedReference(9) + "</PROPERTY.REFERENCE>";
    const std::string embedded = "<PROPERTY NAME=\"E\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>" +
                                 Escaped(Embedded(8, reference)) + "</VALUE></PROPERTY>";
    const std::string maps = "<QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY>" +
                             Repeated("<VALUE>7</VALUE>", 1000) + "</VALUE.ARRAY></QUALIFIER>";
    ServeQualifier("ValueMap", "string", "ISARRAY=\"true\"");
    ServeHierarchy(255, PropertyXml("Name", "string", KeyXml()) + PropertyXml("E", "string") +
                            PropertyXml("N", "uint32", maps) + "<PROPERTY.REFERENCE NAME=\"R\"/>");
    std::string classXml;
    for (std::size_t i = 0; i < 255; ++i) {
        classXml += ClassXml(Numbered("TEST_", i), i == 0 ? "" : Numbered("TEST_", i - 1), "");
    }
    server_.Answer("EnumerateClasses", "", classXml);
    server_.Answer(
        "EnumerateInstances", "TEST_254",
        InstanceXml("TEST_254", "Name", "a", PropertyXml("Name", "string", ValueXml("a")) + embedded + reference));
    std::size_t instances = 0;
    std::size_t classes = 0;
    RunOnStackOf(kStackFactor << 16U, [&] {
        const auto nameSpace = Connected();
        const auto cls = nameSpace->GetClass("TEST_254", TCIMContext());
        ASSERT_TRUE(cls);
        boost::shared_ptr<ICIMClass> top = cls;
        while (!top->IsRootClass(TCIMContext())) {
            top = top->GetSuperClass(TCIMContext());
        }
        cls->EnumerateInstances(
            [&](const boost::shared_ptr<ICIMInstance>& instance) {
                instance->EnumerateProperties(
                    [&](const boost::shared_ptr<ICIMProperty>& property) {
                        // A compatible namespace refuses the embedded object, which its class declares as a text.
                        StatusOf([&] {
                            TCimHTTPProperty(property->GetDeclaration(TCIMContext()), property->GetValue(TCIMContext()))
                                .ToString();
                        });
                        return true;
                    },
                    TCIMContext());
                return ++instances > 0;
            },
            true, TCIMContext());
        nameSpace->EnumerateRootClasses([&](const auto&) { return ++classes > 0; }, TCIMContext());
        boost::dynamic_pointer_cast<TCimHTTPClass>(cls)->ClearInstances();
    });
    EXPECT_EQ(instances, 1U);
    EXPECT_EQ(classes, 255U);
}

} // namespace
