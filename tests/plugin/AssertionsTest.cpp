// What must not be left empty ends in an assertion, and in an exception in builds without assertions. These tests run
// in a build of each kind.

#include "PluginTest.h"
#include "model/TCimHTTPInstance.h"

using namespace NQORVYX20;

namespace {

/// An instance whose class is none of the plug-in's.
class ForeignInstance : public TCimHTTPInstance {
  public:
    using TCimHTTPInstance::TCimHTTPInstance;
    boost::shared_ptr<ICIMClass> GetClass(TCIMContext /*context*/) const override { return {}; }
};

class AssertionsDeathTest : public PluginTest {
  protected:
    AssertionsDeathTest() {
        ServeClass("TEST_Disk", "", PropertyXml("Name", "string", KeyXml()));
        fNamespace = ConnectedNamespace();
        fDisk = FetchClass(*fNamespace, "TEST_Disk");
    }

    boost::shared_ptr<TCimHTTPNamespace> fNamespace;
    boost::shared_ptr<TCimHTTPClass> fDisk;
};

} // namespace

TEST_F(AssertionsDeathTest, AddChildClassInsistsOnAClass) {
#ifdef NDEBUG
    EXPECT_EQ(StatusOf([&] { fDisk->AddChildClass(nullptr); }), 14U);
#else
    EXPECT_DEATH(fDisk->AddChildClass(nullptr), "px != 0");
#endif
}

TEST_F(AssertionsDeathTest, GetInstanceInsistsOnAKnownClass) {
    TCIMReference reference{fNamespace, TCIMContext()};
    reference.SetClassName("TEST_None");
#ifdef NDEBUG
    fServer.ForgetCalls();
    EXPECT_EQ(StatusOf([&] { fNamespace->GetInstance(reference, TCIMContext()); }), 15U);
    EXPECT_EQ(fServer.Calls().size(), 1U) << "a fetch that failed is not repeated";
#else
    const auto offline = MakeNamespace(); // without a connection every class is unknown
    EXPECT_DEATH(offline->GetInstance(reference, TCIMContext()), "px != 0");
#endif
}

TEST_F(AssertionsDeathTest, OnlyAClassOfThisPluginFilesItsInstances) {
    const auto foreign = boost::make_shared<ForeignInstance>(fDisk, TCIMContext());
#ifdef NDEBUG
    EXPECT_EQ(StatusOf([&] { foreign->AddToNamespace(TCIMContext()); }), 14U);
    EXPECT_EQ(StatusOf([&] { fDisk->AddInstance(nullptr); }), 14U);
#else
    EXPECT_DEATH(foreign->AddToNamespace(TCIMContext()), "px != 0");
    EXPECT_DEATH(fDisk->AddInstance(nullptr), "px != 0");
#endif
}
