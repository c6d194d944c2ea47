// This program is not linked with the plug-in: it loads it as a host does.

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TCIMValue.h"
#include "host/TRootObject.h"

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
