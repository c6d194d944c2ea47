#include "PluginTest.h"
#include "host/INamespaceProviderManager.h"
#include "host/TRootObject.h"

using namespace NQORVYX20;

namespace {

/// Another provider of the plug-in's name.
class TNamesake : public INamespaceProvider {
  public:
    const std::string& GetName(TCIMContext /*context*/) const override { return name_; }
    boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext /*context*/, bool /*redefine*/) const override {
        return {};
    }
    int GetType(TCIMContext /*context*/) const override { return 0; }
    bool IsIndicationsSupported(TCIMContext /*context*/) const override { return false; }

  private:
    const std::string name_ = "cimhttp";
};

class ProviderTest : public PluginTest {
  protected:
    static std::vector<boost::shared_ptr<INamespaceProvider>> RegisteredProviders() {
        std::vector<boost::shared_ptr<INamespaceProvider>> providers;
        TRootObject::GetNamespaceProviderManager()->EnumerateNamespaceProviders([&](const auto& provider) {
            providers.push_back(provider);
            return true;
        });
        return providers;
    }
};

} // namespace

TEST_F(ProviderTest, LoadingTheLibraryRegistersExactlyOneProvider) {
    ASSERT_EQ(RegisteredProviders().size(), 1U);
    EXPECT_EQ(RegisteredProviders()[0], TCimHTTPNamespaceProvider::GetInstance());
}

TEST_F(ProviderTest, InitializeAgainRegistersTheSameProvider) {
    EXPECT_EQ(TCimHTTPNamespaceProvider::Initialize().GetCode(), 0U);
    ASSERT_EQ(RegisteredProviders().size(), 1U);
    EXPECT_EQ(RegisteredProviders()[0], TCimHTTPNamespaceProvider::GetInstance());
}

TEST_F(ProviderTest, InitializeRegistersHoweverOftenItWasCalledBefore) {
    TRootObject::GetNamespaceProviderManager()->UnregisterNamespaceProvider("cimhttp");
    ASSERT_THAT(RegisteredProviders(), testing::IsEmpty());
    EXPECT_EQ(TCimHTTPNamespaceProvider::Initialize().GetCode(), 0U);
    EXPECT_THAT(RegisteredProviders(), testing::ElementsAre(TCimHTTPNamespaceProvider::GetInstance()));
}

TEST_F(ProviderTest, InitializeIsASuccessEvenWhereTheManagerRefuses) {
    const auto manager = TRootObject::GetNamespaceProviderManager();
    manager->UnregisterNamespaceProvider("cimhttp");
    const auto namesake = boost::make_shared<TNamesake>();
    ASSERT_EQ(manager->RegisterNamespaceProvider(namesake).GetCode(), 0U);
    EXPECT_EQ(TCimHTTPNamespaceProvider::Initialize().GetCode(), 0U);
    EXPECT_THAT(RegisteredProviders(), testing::ElementsAre(namesake));
    manager->UnregisterNamespaceProvider("cimhttp");
    TCimHTTPNamespaceProvider::Initialize();
}

TEST_F(ProviderTest, GetInstanceAlwaysReturnsTheSameProvider) {
    EXPECT_EQ(TCimHTTPNamespaceProvider::GetInstance(), TCimHTTPNamespaceProvider::GetInstance());
}

TEST_F(ProviderTest, GetNameReturnsTheSameStringWhateverTheContextHolds) {
    const auto provider = TCimHTTPNamespaceProvider::GetInstance();
    EXPECT_EQ(provider->GetName(TCIMContext()), "cimhttp");
    EXPECT_EQ(&provider->GetName(TCIMContext()), &provider->GetName(PluginContext()));
}

TEST_F(ProviderTest, IsOfTheRemoteKindWithoutIndications) {
    const auto provider = TCimHTTPNamespaceProvider::GetInstance();
    EXPECT_EQ(provider->GetType(TCIMContext()), 2);
    EXPECT_EQ(provider->GetType(PluginContext()), 2);
    EXPECT_FALSE(provider->IsIndicationsSupported(TCIMContext()));
    EXPECT_FALSE(provider->IsIndicationsSupported(PluginContext()));
}

TEST_F(ProviderTest, AllocateNamespaceWithoutThePluginNameThrowsAndSaysSo) {
    const auto provider = TCimHTTPNamespaceProvider::GetInstance();
    EXPECT_EQ(StatusOf([&] { provider->AllocateNamespace(TCIMContext(), false); }),
              TVYXStatusCode::eContextValueMissing);
    EXPECT_THAT(log_->Errors(),
                testing::ElementsAre("TCIMHTTPNamespace: 'pluginNameQualDeclValue' not passed via context"));
}

TEST_F(ProviderTest, TwoNamespacesAreDistinctAndHaveTheirOwnClients) {
    const auto first = MakeNamespace();
    const auto second = MakeNamespace();
    EXPECT_NE(first, second);
    EXPECT_NE(first->getPegClient(), second->getPegClient());
}

TEST_F(ProviderTest, ANewNamespaceIsNotConnected) {
    const auto nameSpace = MakeNamespace();
    EXPECT_FALSE(nameSpace->isConnected());
    EXPECT_EQ(CountConnections({5988}), 0U);
}

TEST_F(ProviderTest, ANamespaceNamesItsProvider) {
    EXPECT_EQ(MakeNamespace()->GetNamespaceProvider(TCIMContext()), TCimHTTPNamespaceProvider::GetInstance());
}
