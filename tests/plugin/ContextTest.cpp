// Which operations get the caller's context and which an empty one.

#include "PluginTest.h"
#include "model/TCimHTTPInstance.h"

#include <utility>

using namespace NQORVYX20;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// The operations that were called, in their order, `with context` where the context was not empty.
class Notes {
  public:
    void Add(const std::string& call, const TCIMContext& context) {
        calls_.push_back(context.empty() ? call : call + " with context");
    }

    std::vector<std::string> Take() { return std::exchange(calls_, {}); }

  private:
    std::vector<std::string> calls_;
};

class TNotingInstance : public TCimHTTPInstance {
  public:
    TNotingInstance(boost::shared_ptr<ICIMClass> cls, TCIMContext context, Notes& notes)
        : TCimHTTPInstance(cls, context), notes_(notes) {}

    void SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) override {
        notes_.Add("SetPropertyValue " + name, context);
        TCimHTTPInstance::SetPropertyValue(name, value, context);
    }

    TCIMReference BuildPath(TCIMContext context) const override {
        notes_.Add("BuildPath", context);
        return TCimHTTPInstance::BuildPath(context);
    }

  private:
    Notes& notes_;
};

class TNotingClass : public TCimHTTPClass {
  public:
    TNotingClass(boost::shared_ptr<TCimHTTPNamespace> nameSpace, const std::string& name, Notes& notes)
        : TCimHTTPClass(nameSpace, name, boost::shared_ptr<TCimHTTPClass>()), notes_(notes) {}

    void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext context) override {
        notes_.Add("AddQualifier " + qualifier->GetName(TCIMContext()), context);
        TCimHTTPClass::AddQualifier(qualifier, context);
    }

    using TCimHTTPClass::AllocateQualifier;
    boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                       const TCIMValue& value, TCIMContext context) const override {
        notes_.Add("AllocateQualifier " + declaration->GetName(TCIMContext()), context);
        return TCimHTTPClass::AllocateQualifier(declaration, value, context);
    }

    boost::shared_ptr<ICIMPropertyDecl> AllocatePropertyDecl(const std::string& name, const TCIMValue& defaultValue,
                                                             TCIMContext context) override {
        notes_.Add("AllocatePropertyDecl " + name, context);
        return TCimHTTPClass::AllocatePropertyDecl(name, defaultValue, context);
    }

    boost::shared_ptr<ICIMMethodDecl> AllocateMethodDecl(const std::string& name, TCIMValue::TCIMType returnType,
                                                         TCIMContext context) override {
        notes_.Add("AllocateMethodDecl " + name, context);
        return TCimHTTPClass::AllocateMethodDecl(name, returnType, context);
    }

    void AddToNamespace(TCIMContext context) override {
        notes_.Add("AddToNamespace", context);
        TCimHTTPClass::AddToNamespace(context);
    }

    void EnumerateSubClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback, bool deep,
                             TCIMContext context) override {
        notes_.Add("EnumerateSubClasses of " + GetName(TCIMContext()) + (deep ? " deep" : ""), context);
        TCimHTTPClass::EnumerateSubClasses(callback, deep, context);
    }

    boost::shared_ptr<ICIMInstance> AllocateInstance(TCIMContext context) override {
        notes_.Add("AllocateInstance", context);
        return boost::make_shared<TNotingInstance>(shared_from_this(), context, notes_);
    }

    void EnumerateInstances(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, bool deep,
                            TCIMContext context) override {
        notes_.Add("EnumerateInstances of " + GetName(TCIMContext()), context);
        TCimHTTPClass::EnumerateInstances(callback, deep, context);
    }

  private:
    Notes& notes_;
};

/// Makes classes that note what is called on them.
class TNotingNamespace : public TCimHTTPNamespace {
  public:
    explicit TNotingNamespace(Notes& notes) : TCimHTTPNamespace(false), notes_(notes) {}

    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override {
        notes_.Add("GetClass " + name, context);
        return TCimHTTPNamespace::GetClass(name, context);
    }

    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name, boost::shared_ptr<ICIMClass> /*superClass*/,
                                               TCIMContext context) override {
        notes_.Add("AllocateClass " + name, context);
        const auto cls = boost::make_shared<TNotingClass>(shared_from_this(), name, notes_);
        cls->Initialize();
        return cls;
    }

    boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& name, const TCIMValue& defaultValue,
                                                               ICIMQualifierDecl::EScope scope,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) override {
        notes_.Add("AllocateQualifierDecl " + name, context);
        return TCimHTTPNamespace::AllocateQualifierDecl(name, defaultValue, scope, flavor, context);
    }

    boost::shared_ptr<ICIMQualifierDecl> GetQualifierDecl(const std::string& name, TCIMContext context) const override {
        notes_.Add("GetQualifierDecl " + name, context);
        return TCimHTTPNamespace::GetQualifierDecl(name, context);
    }

  private:
    Notes& notes_;
};

class ContextTest : public PluginTest {
  protected:
    ContextTest() {
        ServeClass("TEST_Disk", "",
                   QualifierXml("Description", "string", "x") + PropertyXml("Name", "string", KeyXml()) +
                       "<METHOD NAME=\"Format\" TYPE=\"uint32\"/>");
        ServeClass("TEST_Part", "", PropertyXml("Name", "string", KeyXml()));
    }

    void Connect() {
        namespace_->Initialize(PluginContext());
        namespace_->connect(server_.Address(), "", "", 5988);
    }

    /// The disk, with the part as its subclass.
    boost::shared_ptr<TCimHTTPClass> DiskWithPart() {
        Connect();
        auto disk = FetchClass(*namespace_, "TEST_Disk");
        disk->AddChildClass(FetchClass(*namespace_, "TEST_Part"));
        notes_.Take();
        return disk;
    }

    static bool GoOn(const boost::shared_ptr<void>& /*element*/) { return true; }

    Notes notes_;
    boost::shared_ptr<TNotingNamespace> namespace_ = boost::make_shared<TNotingNamespace>(notes_);
};

} // namespace

TEST_F(ContextTest, InitialisingANamespaceHandsItsContextToNothing) {
    namespace_->Initialize(PluginContext());
    EXPECT_THAT(notes_.Take(), ElementsAre("AllocateClass <root>", "AllocateQualifierDecl PLUGINNAME",
                                           "AllocateQualifierDecl PLUGINVERSION"));
}

TEST_F(ContextTest, ALookupHandsItsContextToThePluginQualifiersAndTheFilingOfTheClassAlone) {
    Connect();
    notes_.Take();
    namespace_->GetClass("TEST_Disk", PluginContext());
    EXPECT_THAT(notes_.Take(),
                ElementsAre("GetClass TEST_Disk with context", "GetClass ", "AllocateClass TEST_Disk",
                            "GetQualifierDecl Description", "AllocateQualifierDecl Description",
                            "AllocateQualifier Description", "AddQualifier Description", "AllocatePropertyDecl Name",
                            "GetQualifierDecl Key", "AllocateQualifierDecl Key", "AllocateMethodDecl Format",
                            "GetQualifierDecl PLUGINNAME", "AllocateQualifier PLUGINNAME with context",
                            "AddQualifier PLUGINNAME with context", "GetQualifierDecl PLUGINVERSION",
                            "AllocateQualifier PLUGINVERSION with context", "AddQualifier PLUGINVERSION with context",
                            "AddToNamespace with context"));
}

TEST_F(ContextTest, AnEnumerationOfClassesHandsItsContextToTheTopOnly) {
    const auto disk = DiskWithPart();
    namespace_->EnumerateRootClasses(&GoOn, PluginContext());
    EXPECT_THAT(notes_.Take(),
                ElementsAre("EnumerateSubClasses of <root> deep with context", "EnumerateSubClasses of TEST_Disk deep",
                            "EnumerateSubClasses of TEST_Part deep", "EnumerateSubClasses of TEST_Part deep"));
    disk->EnumerateSubClasses(&GoOn, true, PluginContext());
    EXPECT_THAT(notes_.Take(), ElementsAre("EnumerateSubClasses of TEST_Disk deep with context",
                                           "EnumerateSubClasses of TEST_Part deep"));
}

TEST_F(ContextTest, AnEnumerationOfInstancesHandsItsContextToNothing) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "Name", "sda", PropertyXml("Name", "string", ValueXml("sda"))));
    const auto disk = DiskWithPart();
    disk->EnumerateInstances(&GoOn, true, PluginContext());
    EXPECT_THAT(notes_.Take(), ElementsAre("EnumerateInstances of TEST_Disk with context", "AllocateInstance",
                                           "SetPropertyValue name", "BuildPath", "EnumerateInstances of TEST_Part"));
}

TEST_F(ContextTest, AnInstanceIsFiledAndRemovedByAPathOfAnEmptyContext) {
    const auto disk = DiskWithPart();
    const auto instance = disk->AllocateInstance(PluginContext());
    instance->SetPropertyValue("Name", TCIMValue("sda"), PluginContext());
    notes_.Take();
    instance->AddToNamespace(PluginContext());
    EXPECT_THAT(notes_.Take(), ElementsAre("BuildPath"));
    disk->RemoveInstance(instance);
    EXPECT_THAT(notes_.Take(), ElementsAre("BuildPath"));
}

TEST_F(ContextTest, GetInstanceHandsItsContextNotToTheLookupOfTheClass) {
    Connect();
    notes_.Take();
    TCIMReference reference{namespace_, TCIMContext()};
    reference.SetClassName("<root>");
    namespace_->GetInstance(reference, PluginContext());
    EXPECT_THAT(notes_.Take(), ElementsAre("GetClass <root>"));
}

TEST_F(ContextTest, AnEnumerationOfAssociationsHandsItsContextToTheLookupsOfItsFilters) {
    const auto disk = DiskWithPart();
    disk->EnumerateAssociationClasses(&GoOn, "TEST_Part", "", PluginContext());
    EXPECT_THAT(notes_.Take(), ElementsAre("GetClass TEST_Part with context"));
    disk->EnumerateAssociatedClasses(&GoOn, "TEST_Part", "TEST_Disk", "", "", PluginContext());
    EXPECT_THAT(notes_.Take(),
                UnorderedElementsAre("GetClass TEST_Part with context", "GetClass TEST_Disk with context"));
}
