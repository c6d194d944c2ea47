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
        namespace_ = ConnectedNamespace();
        disk_ = FetchClass(*namespace_, "TEST_Disk");
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_;
    boost::shared_ptr<TCimHTTPClass> disk_;
};

} // namespace

TEST_F(AssertionsDeathTest, AddChildClassInsistsOnAClass) {
#ifdef NDEBUG
    EXPECT_EQ(StatusOf([&] { disk_->AddChildClass(nullptr); }), TVYXStatusCode::eTypeMismatch);
#else
    EXPECT_DEATH(disk_->AddChildClass(nullptr), "px != 0");
#endif
}

TEST_F(AssertionsDeathTest, GetInstanceInsistsOnAKnownClass) {
    TCIMReference reference{namespace_, TCIMContext()};
    reference.SetClassName("TEST_None");
#ifdef NDEBUG
    server_.ForgetCalls();
    EXPECT_EQ(StatusOf([&] { namespace_->GetInstance(reference, TCIMContext()); }), TVYXStatusCode::eNotFound);
    EXPECT_EQ(server_.Calls().size(), 1U) << "a fetch that failed is not repeated";
#else
    const auto offline = MakeNamespace(); // without a connection every class is unknown
    EXPECT_DEATH(offline->GetInstance(reference, TCIMContext()), "px != 0");
#endif
}

TEST_F(AssertionsDeathTest, OnlyAClassOfThisPluginFilesItsInstances) {
    const auto foreign = boost::make_shared<ForeignInstance>(disk_, TCIMContext());
#ifdef NDEBUG
    EXPECT_EQ(StatusOf([&] { foreign->AddToNamespace(TCIMContext()); }), TVYXStatusCode::eTypeMismatch);
    EXPECT_EQ(StatusOf([&] { disk_->AddInstance(nullptr); }), TVYXStatusCode::eTypeMismatch);
#else
    EXPECT_DEATH(foreign->AddToNamespace(TCIMContext()), "px != 0");
    EXPECT_DEATH(disk_->AddInstance(nullptr), "px != 0");
#endif
}
