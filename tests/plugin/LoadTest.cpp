// This program is not linked with the plug-in: it loads it as a host does.

#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TCIMValue.h"
#include "host/TRootObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <string>
#include <vector>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> ProviderNames() {
    std::vector<std::string> names;
    TRootObject::GetNamespaceProviderManager()->EnumerateNamespaceProviders([&](const auto& provider) {
        names.push_back(provider->GetName(TCIMContext()));
        return true;
    });
    return names;
}

void* Load() { return ::dlopen(CIMHTTP_PLUGIN, RTLD_NOW | RTLD_LOCAL); }

} // namespace

TEST(Load, RegistersOneProviderThatWorksOnAfterTheLibraryIsClosed) {
    ASSERT_THAT(ProviderNames(), IsEmpty());
    void* const library = Load();
    ASSERT_NE(library, nullptr) << ::dlerror();
    EXPECT_THAT(ProviderNames(), ElementsAre("cimhttp"));
    EXPECT_EQ(Load(), library);
    EXPECT_THAT(ProviderNames(), ElementsAre("cimhttp"));

    EXPECT_EQ(::dlclose(library), 0);
    EXPECT_EQ(::dlclose(library), 0);
    const auto provider = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("cimhttp");
    ASSERT_TRUE(provider);
    const auto nameSpace = provider->AllocateNamespace({{"pluginNameQualDeclValue", TCIMValue("test plug-in")}}, false);
    EXPECT_EQ(nameSpace->GetNamespaceProvider(TCIMContext()), provider);
    EXPECT_TRUE(nameSpace->GetQualifierDecl("PLUGINNAME", TCIMContext()));

    ASSERT_EQ(Load(), library);
    EXPECT_THAT(ProviderNames(), ElementsAre("cimhttp"));
    EXPECT_EQ(TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("cimhttp"), provider);
}

// They are not virtual, so that a host which was built on its own finds them by their mangled names, in which "K"
// would stand for const.
TEST(Load, OffersTheOperationsThatAHostLinksByTheirSignatures) {
    void* const library = Load();
    ASSERT_NE(library, nullptr) << ::dlerror();
    const char* const kDebugOutput =
        "_ZN28TCimHTTPRequestedClassParser11DebugOutputEN9NQORVYX207ILogger15EVYXLogSeverityE"
        "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";
    const char* const kLookupInTable =
        "_ZNK9NQORVYX2016TCimHTTPProperty13LookupInTableERKNS_9TCIMValueERSt6vectorINS0_14TValueMapEntryESaIS5_EE"
        "RNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";
    for (const char* symbol : {
             "_ZN9NQORVYX2017TCimHTTPNamespace7connectENSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES6_S6_i",
             "_ZN9NQORVYX2017TCimHTTPNamespace10disconnectEv",
             "_ZN9NQORVYX2017TCimHTTPNamespace11isConnectedEv",
             "_ZN9NQORVYX2017TCimHTTPNamespace9getPegNSPEv",
             "_ZN9NQORVYX2017TCimHTTPNamespace12getPegClientEv",
             "_ZN9NQORVYX2017TCimHTTPNamespace18GetUpcallNamespaceEv",
             "_ZN9NQORVYX2017TCimHTTPNamespace13NormalizeNameERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE",
             kLookupInTable,
             "_ZN28TCimHTTPRequestedClassParserC1Ev",
             "_ZN28TCimHTTPRequestedClassParserD1Ev",
             "_ZN28TCimHTTPRequestedClassParser23GetRequestedNetworkDataB5cxx11Ev",
             "_ZN28TCimHTTPRequestedClassParser21GetRequestedClassDataB5cxx11Ev",
             kDebugOutput,
         }) {
        EXPECT_NE(::dlsym(library, symbol), nullptr) << symbol;
        EXPECT_NE(::dlvsym(library, symbol, "CIMHTTP_0"), nullptr) << symbol;
    }
}

TEST(Load, OffersWhatIsNotForHostsUnderAVersionThatSaysSo) {
    void* const library = Load();
    ASSERT_NE(library, nullptr) << ::dlerror();
    for (const char* symbol : {
             "_ZN9NQORVYX2012RemoteServer19EnumerateClassHeadsEv", // the plug-in's own
             "_ZN9NQORVYX2017TCimHTTPNamespace13ChosenReadingEv",  // of a class that has operations for hosts, too
             "_ZTIN9NQORVYX2017TCimHTTPNamespaceE",
         }) {
        EXPECT_NE(::dlvsym(library, symbol, "CIMHTTP_PRIVATE"), nullptr) << symbol;
        EXPECT_EQ(::dlvsym(library, symbol, "CIMHTTP_0"), nullptr) << symbol;
    }
}
