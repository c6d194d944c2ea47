// What a host does with a namespace through the functions that the plug-in exports.

#include "cimhttp/Connect.h"

#include "PluginTest.h"
#include "cimhttp/ContextKeys.h"
#include "cimhttp/DisplayTexts.h"
#include "cimhttp/EmbeddedObject.h"
#include "host/INamespaceProviderManager.h"
#include "host/TRootObject.h"

#include <stdexcept>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = RemoteFailure::Kind;

namespace {

constexpr int kHttpPort = 5988;

/// A class with a value map, an array and an embedded object, and one instance of it.
class ConnectTest : public PluginTest {
  protected:
    ConnectTest() {
        log_->ExpectWarnings();
        server_.Answer("EnumerateQualifiers", "",
                       DeclarationXml("Key", "boolean", "") + DeclarationXml("Units", "string", "") +
                           DeclarationXml("Values", "string", " ISARRAY=\"true\"") +
                           DeclarationXml("ValueMap", "string", " ISARRAY=\"true\""));
        ServeQualifier("Units");
        for (const char* name : {"Values", "ValueMap"}) {
            ServeQualifier(name, "string", "ISARRAY=\"true\"");
        }
        ServeClass("TEST_Fan", "",
                   PropertyXml("Name", "string", KeyXml()) + PropertyXml("State", "uint16", MapXml()) +
                       "<PROPERTY.ARRAY NAME=\"States\" TYPE=\"uint16\">" + MapXml() + "</PROPERTY.ARRAY>" +
                       PropertyXml("Speed", "uint64", QualifierXml("Units", "string", "Hertz")) +
                       "<PROPERTY NAME=\"Part\" TYPE=\"string\" EmbeddedObject=\"instance\"/>");
        server_.Answer("EnumerateInstances", "TEST_Fan",
                       InstanceXml("TEST_Fan", "Name", "f1",
                                   PropertyXml("Name", "string", ValueXml("f1")) +
                                       PropertyXml("State", "uint16", ValueXml("2")) +
                                       "<PROPERTY.ARRAY NAME=\"States\" TYPE=\"uint16\"><VALUE.ARRAY>" + ValueXml("3") +
                                       ValueXml("7") + "</VALUE.ARRAY></PROPERTY.ARRAY>" +
                                       PropertyXml("Speed", "uint64", ValueXml("2300")) +
                                       PropertyXml("Unknown", "string", ValueXml("x")) +
                                       "<PROPERTY NAME=\"Part\" TYPE=\"string\" EmbeddedObject=\"instance\">" +
                                       ValueXml("<![CDATA[<INSTANCE CLASSNAME=\"TEST_Part\"/>]]>") + "</PROPERTY>"));
    }

    boost::shared_ptr<ICIMNamespace> Connected(const char* reading) {
        auto nameSpace = AllocateRemoteNamespace({{kReadingKey, TCIMValue(reading)}});
        ConnectNamespace(*nameSpace, server_.Address(), "", "", kHttpPort);
        return nameSpace;
    }

    static boost::shared_ptr<ICIMClass> FanClass(ICIMNamespace& nameSpace) {
        auto cls = nameSpace.GetClass("TEST_Fan", TCIMContext());
        if (!cls) {
            throw std::runtime_error("the class could not be fetched");
        }
        return cls;
    }

    static boost::shared_ptr<ICIMInstance> OnlyFan(ICIMNamespace& nameSpace) {
        boost::shared_ptr<ICIMInstance> found;
        const auto keep = [&](const boost::shared_ptr<ICIMInstance>& instance) {
            found = instance;
            return true;
        };
        FanClass(nameSpace)->EnumerateInstances(keep, true, TCIMContext());
        if (!found) {
            throw std::runtime_error("the instance could not be read");
        }
        return found;
    }

  private:
    static std::string DeclarationXml(const std::string& name, const std::string& type, const std::string& more) {
        return "<QUALIFIER.DECLARATION NAME=\"" + name + "\" TYPE=\"" + type + "\"" + more +
               "><SCOPE PROPERTY=\"true\"/></QUALIFIER.DECLARATION>";
    }

    static std::string MapXml() {
        const auto array = [](const std::string& name, const std::string& first, const std::string& second) {
            return "<QUALIFIER NAME=\"" + name + "\" TYPE=\"string\"><VALUE.ARRAY>" + ValueXml(first) +
                   ValueXml(second) + "</VALUE.ARRAY></QUALIFIER>";
        };
        return array("ValueMap", "2", "3") + array("Values", "OK", "Worn");
    }
};

/// A namespace that is not the plug-in's: it forwards nothing and has nothing.
class OtherNamespace : public ICIMNamespace {
  public:
    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext /*context*/) const override { return {}; }
    void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> /*nameSpace*/, TCIMContext /*context*/) override {}
    void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> /*nameSpace*/, TCIMContext /*context*/) override {}
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& /*name*/, boost::shared_ptr<ICIMClass> /*superClass*/,
                                               TCIMContext /*context*/) override {
        return {};
    }
    boost::shared_ptr<ICIMClass> GetClass(const std::string& /*name*/, TCIMContext /*context*/) override { return {}; }
    void EnumerateRootClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& /*callback*/,
                              TCIMContext /*context*/) override {}
    void EnumerateProviders(const boost::function<bool(boost::shared_ptr<IProvider>)>& /*callback*/,
                            TCIMContext /*context*/) override {}
    boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& /*name*/,
                                                               const TCIMValue& /*defaultValue*/,
                                                               ICIMQualifierDecl::EScope /*scope*/,
                                                               ICIMQualifierDecl::EFlavor /*flavor*/,
                                                               TCIMContext /*context*/) override {
        return {};
    }
    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& /*name*/,
                                                          TCIMContext /*context*/) const override {
        return {};
    }
    void EnumerateQualifierDecls(const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>& /*callback*/,
                                 TCIMContext /*context*/) const override {}
    void Subscribe(boost::shared_ptr<ICIMIndicationFilter> /*filter*/,
                   const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& /*callback*/,
                   TCIMContext /*context*/) override {}
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& /*reference*/,
                                                TCIMContext /*context*/) const override {
        return {};
    }
    void DeleteInstance(const TCIMReference& /*reference*/, TCIMContext /*context*/) override {}
    void ModifyInstance(const TCIMReference& /*reference*/, TCIMContext /*values*/, TCIMContext /*context*/) override {}
    void ExecuteQuery(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& /*callback*/,
                      std::string& /*query*/, std::string& /*language*/, TCIMContext /*context*/) override {}
    void ClearInstances() override {}
};

} // namespace

TEST_F(ConnectTest, ANamespaceHasThePluginsNameUnlessTheHostGivesAnother) {
    const auto nameIn = [&](TCIMContext options) {
        const auto nameSpace = AllocateRemoteNamespace(std::move(options));
        ConnectNamespace(*nameSpace, server_.Address(), "", "", kHttpPort);
        return FanClass(*nameSpace)->GetQualifier("PLUGINNAME", TCIMContext())->GetValue(TCIMContext()).ToString(10);
    };
    EXPECT_EQ(nameIn({}), "cimhttp");
    EXPECT_EQ(nameIn({{kPluginNameKey, TCIMValue("my host")}}), "my host");
}

TEST_F(ConnectTest, OptionsThatAreNotAllowedAreRefused) {
    EXPECT_EQ(StatusOf([] {
                  AllocateRemoteNamespace({{"cimhttp.redaing", TCIMValue("faithful")}});
              }),
              TVYXStatusCode::eTypeMismatch);
    EXPECT_THAT(log_->Errors(), ElementsAre(HasSubstr("cimhttp.redaing")));
}

TEST_F(ConnectTest, WithoutTheProviderThereIsNoNamespaceAndTheLogSaysSo) {
    TRootObject::GetNamespaceProviderManager()->UnregisterNamespaceProvider("cimhttp");
    EXPECT_EQ(StatusOf([] { AllocateRemoteNamespace({}); }), TVYXStatusCode::eNotFound);
    EXPECT_THAT(log_->Errors(), ElementsAre(HasSubstr("no provider 'cimhttp'")));
    TCimHTTPNamespaceProvider::Initialize();
}

TEST_F(ConnectTest, ANamespaceIsConnectedUntilItIsDisconnected) {
    const auto nameSpace = AllocateRemoteNamespace({{kReadingKey, TCIMValue(kFaithfulReading)}});
    EXPECT_FALSE(IsConnected(*nameSpace));
    EXPECT_EQ(StatusOf([&] { nameSpace->GetClass("TEST_Fan", TCIMContext()); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(LastFailure(*nameSpace)->kind, Kind::kNotConnected);

    ConnectNamespace(*nameSpace, server_.Address(), "", "", kHttpPort);
    EXPECT_TRUE(IsConnected(*nameSpace));
    EXPECT_FALSE(LastFailure(*nameSpace));
    EXPECT_TRUE(nameSpace->GetClass("TEST_Fan", TCIMContext()));

    DisconnectNamespace(*nameSpace);
    EXPECT_FALSE(IsConnected(*nameSpace));
}

TEST_F(ConnectTest, ASecondConnectionIsRefusedUntilTheFirstHasEnded) {
    const auto nameSpace = Connected(kFaithfulReading);
    const auto connect = [&] { ConnectNamespace(*nameSpace, server_.Address(), "", "", kHttpPort); };
    EXPECT_EQ(StatusOf(connect), TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_TRUE(LastFailure(*nameSpace));
    EXPECT_TRUE(nameSpace->GetClass("TEST_Fan", TCIMContext()));
    DisconnectNamespace(*nameSpace);
    EXPECT_EQ(StatusOf(connect), TVYXStatusCode::eSuccess);
}

TEST_F(ConnectTest, AFailureOutlivesItsNamespace) {
    auto nameSpace = AllocateRemoteNamespace({});
    server_.Stop();
    EXPECT_EQ(StatusOf([&] { ConnectNamespace(*nameSpace, server_.Address(), "", "", kHttpPort); }),
              TVYXStatusCode::eRemoteConnectionFailed);
    const auto failure = LastFailure(*nameSpace);
    nameSpace.reset();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind, Kind::kRefused);
    EXPECT_THAT(failure->text, HasSubstr(server_.Address()));
}

TEST_F(ConnectTest, AHostLearnsWhetherItsServerWouldBeVerified) {
    EXPECT_FALSE(WouldVerifyServer(*AllocateRemoteNamespace({}), server_.Address(), 5989));
    EXPECT_TRUE(WouldVerifyServer(*AllocateRemoteNamespace({{kTrustKey, TCIMValue("authority.pem")}}),
                                  server_.Address(), 5989));
}

TEST_F(ConnectTest, IncidentsAreTakenOnce) {
    const auto nameSpace = Connected(kFaithfulReading);
    ASSERT_TRUE(OnlyFan(*nameSpace));
    const auto incidents = TakeIncidents(*nameSpace);
    ASSERT_THAT(incidents.First(), SizeIs(1));
    EXPECT_EQ(incidents.First()[0].property, "Unknown");
    EXPECT_TRUE(TakeIncidents(*nameSpace).IsEmpty());
}

TEST_F(ConnectTest, ALoopOverIncidentsThatWereJustTakenSeesThem) {
    const auto nameSpace = Connected(kFaithfulReading);
    OnlyFan(*nameSpace);
    std::vector<std::string> properties;
    for (const ReadingIncident& incident : TakeIncidents(*nameSpace).First()) {
        properties.push_back(incident.property);
    }
    EXPECT_THAT(properties, ElementsAre("Unknown"));
    OnlyFan(*nameSpace);
    std::size_t count = 0;
    for (const auto& entry : TakeIncidents(*nameSpace).Counts()) {
        count += entry.second;
    }
    EXPECT_EQ(count, 1U);
}

TEST_F(ConnectTest, TextsForPeopleAreThoseOfTheReading) {
    const auto faithful = Connected(kFaithfulReading);
    const auto fan = OnlyFan(*faithful);
    EXPECT_THAT(DisplayTexts(*fan, "State"), ElementsAre("OK"));
    EXPECT_THAT(DisplayTexts(*fan, "states"), ElementsAre("Worn", "7"));
    EXPECT_THAT(DisplayTexts(*fan, "States", {false, true}), ElementsAre("Worn", "7 (not in the map)"));
    EXPECT_THAT(DisplayTexts(*fan, "Speed"), ElementsAre("2.3 kHz"));
    EXPECT_THAT(DisplayTexts(*fan, "Speed", {true, false}), ElementsAre("2300 Hz"));

    const auto compatible = Connected(kCompatibleReading);
    const auto same = OnlyFan(*compatible);
    EXPECT_THAT(DisplayTexts(*same, "State"), ElementsAre("OK"));
    EXPECT_THAT(DisplayTexts(*same, "States"), ElementsAre("Worn", "7"));
    EXPECT_THAT(DisplayTexts(*same, "Speed"), ElementsAre("2300"));
}

TEST_F(ConnectTest, AValueThatIsNotTheInstancesOwnHasItsTextsToo) {
    const auto nameSpace = Connected(kFaithfulReading);
    const auto cls = FanClass(*nameSpace);
    const auto state = cls->GetPropertyDecl("State", TCIMContext());
    EXPECT_THAT(DisplayTexts(state, TCIMValue(static_cast<unsigned short>(3))), ElementsAre("Worn"));
    EXPECT_THAT(DisplayTexts(state, TCIMValue(TCIMValue::TCIMType::eCIMUint16, 0)), ElementsAre(""));
    const auto states = cls->GetPropertyDecl("States", TCIMContext());
    EXPECT_THAT(DisplayTexts(states, TCIMValue(TCIMValue::TCIMType::eCIMUint16, 0, std::vector<TCIMValue>())),
                IsEmpty());
}

TEST_F(ConnectTest, TextsInTheSameMemoryAreThoseThatAreReturned) {
    TextMemory memory;
    std::size_t count = 0;
    for (const char* const reading : {kFaithfulReading, kCompatibleReading}) {
        const auto nameSpace = Connected(reading);
        const auto fan = OnlyFan(*nameSpace);
        const auto compare = [&](const boost::shared_ptr<ICIMProperty>& property) {
            const auto declaration = property->GetDeclaration(TCIMContext());
            for (const bool isUnscaled : {false, true}) {
                const DisplayForm form{isUnscaled, true};
                const TCIMValue& value = property->GetValue(TCIMContext());
                MakeDisplayTexts(memory, declaration, value, form, fan.get());
                const auto expected = DisplayTexts(declaration, value, form, fan.get());
                EXPECT_EQ(std::vector<std::string>(memory.texts.begin(), memory.texts.end()), expected);
                count += expected.size();
            }
            return true;
        };
        fan->EnumerateProperties(compare, TCIMContext());
    }
    EXPECT_GT(count, 10U);
}

TEST_F(ConnectTest, AChangedQualifierChangesTheTexts) {
    const auto nameSpace = Connected(kFaithfulReading);
    const auto fan = OnlyFan(*nameSpace);
    ASSERT_THAT(DisplayTexts(*fan, "Speed"), ElementsAre("2.3 kHz"));
    const auto speed = FanClass(*nameSpace)->GetPropertyDecl("Speed", TCIMContext());
    speed->GetQualifier("Units", TCIMContext())->SetValue(TCIMValue("Bytes"), TCIMContext());
    TextMemory memory;
    MakeDisplayTexts(memory, speed, TCIMValue(2300ULL));
    EXPECT_THAT(memory.texts, ElementsAre("2300 B"));
    EXPECT_THAT(DisplayTexts(*fan, "Speed"), ElementsAre("2300 B"));
}

TEST_F(ConnectTest, TextsOfWhatIsNotDeclaredAreRefused) {
    const auto nameSpace = Connected(kFaithfulReading);
    const auto fan = OnlyFan(*nameSpace);
    EXPECT_EQ(StatusOf([&] { DisplayTexts(*fan, "Missing"); }), TVYXStatusCode::eNotFound);
    EXPECT_EQ(StatusOf([] { DisplayTexts(boost::shared_ptr<ICIMPropertyDecl const>(), TCIMValue("x")); }),
              TVYXStatusCode::eTypeMismatch);
}

TEST_F(ConnectTest, AnEmbeddedObjectHasItsPartsInTheFaithfulReadingAlone) {
    const auto faithful = Connected(kFaithfulReading);
    const auto objects = EmbeddedObjectsOf(*OnlyFan(*faithful), "PART");
    ASSERT_THAT(objects, SizeIs(1));
    EXPECT_EQ(objects[0].className, "TEST_Part");
    EXPECT_THAT(EmbeddedObjectsOf(*OnlyFan(*faithful), "Name"), IsEmpty());
    const auto compatible = Connected(kCompatibleReading);
    EXPECT_THAT(EmbeddedObjectsOf(*OnlyFan(*compatible), "Part"), IsEmpty());
}

TEST_F(ConnectTest, ANamespaceOfAnotherProviderIsRefused) {
    OtherNamespace other;
    const std::vector<boost::function<void()>> operations{
        [&] { ConnectNamespace(other, server_.Address(), "", "", kHttpPort); },
        [&] { DisconnectNamespace(other); },
        [&] { IsConnected(other); },
        [&] { WouldVerifyServer(other, server_.Address(), kHttpPort); },
        [&] { LastFailure(other); },
        [&] { TakeIncidents(other); },
    };
    for (const auto& operation : operations) {
        EXPECT_EQ(StatusOf(operation), TVYXStatusCode::eTypeMismatch);
    }
    EXPECT_THAT(log_->Errors(), SizeIs(operations.size()));
}
