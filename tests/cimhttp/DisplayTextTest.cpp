#include "access/PluginAccess.h"
#include "connection/Plugin.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMProperty.h"
#include "host/TVYXException.h"
#include "output/ValueTexts.h"
#include "support/CimServer.h"

#include <gtest/gtest.h>

using cimhttp::DisplayText;
using namespace NQORVYX20;

namespace {

/// Access to a plug-in that makes no texts.
class TextlessAccess : public cimhttp::PluginAccess {
  public:
    void Connect(ICIMNamespace&, const std::string&, const std::string&, const std::string&, int) const override {}
    std::unique_ptr<cimhttp::InstanceSequence> OpenInstances(ICIMNamespace&, ICIMClass&, bool,
                                                             const TCIMContext&) const override {
        return {};
    }
    bool HasPulledEnumerations(ICIMNamespace&) const override { return false; }
    bool WouldVerify(ICIMNamespace&, const std::string&, int) const override { return false; }
    boost::shared_ptr<ICIMNamespace> Supervised(const boost::shared_ptr<ICIMNamespace>& nameSpace,
                                                const std::shared_ptr<cimhttp::MeasurementSink>&,
                                                std::optional<std::chrono::steady_clock::time_point>) const override {
        return nameSpace;
    }
    void SetTimeLeft(ICIMNamespace&, std::chrono::milliseconds) const override {}
    void RenewTime(ICIMNamespace&, std::chrono::milliseconds) const override {}
    std::optional<RemoteFailure> LastFailure(ICIMNamespace&) const override { return std::nullopt; }
    ReadingIncidents TakeIncidents(ICIMNamespace&) const override { return {}; }
    std::vector<EmbeddedObject> EmbeddedObjects(const ICIMInstance&, const std::string&) const override { return {}; }
    std::vector<std::string> ClassNames(ICIMNamespace&) const override { return {}; }
    std::vector<TCIMReference> InstancePaths(ICIMNamespace&, const std::string&) const override { return {}; }
    std::string NamespaceOf(const std::string&) const override { return {}; }
    cimhttp::RemoteClass ReadClass(ICIMNamespace&, const std::string&) const override { return {}; }
    std::vector<cimhttp::RemoteClassName> ReadHierarchy(ICIMNamespace&) const override { return {}; }
    std::vector<cimhttp::RemoteQualifierDeclaration> ReadQualifierDeclarations(ICIMNamespace&) const override {
        return {};
    }
    boost::shared_ptr<ICIMInstance> ReadInstance(ICIMNamespace&, const std::string&) const override { return {}; }
    std::vector<TCIMReference> InstancePathsIn(ICIMNamespace&, const std::string&, const std::string&) const override {
        return {};
    }
    std::vector<TCIMReference> RelatedPaths(ICIMNamespace&, const cimhttp::AssociationQuery&) const override {
        return {};
    }
    std::unique_ptr<cimhttp::RelatedObjects> ReadRelated(ICIMNamespace&,
                                                         const cimhttp::AssociationQuery&) const override {
        return {};
    }
    void CheckInstance(ICIMNamespace&, const std::string&) const override {}
    std::vector<cimhttp::RemoteLink> ReadLinks(ICIMNamespace&, const std::string&) const override { return {}; }
    cimhttp::ServerProbe Probe(const cimhttp::ProbeTarget&, cimhttp::ServerProbe::Depth) const override { return {}; }
    TCIMReference ParsePath(const std::string&) const override { return {{}, TCIMContext()}; }
    std::vector<std::string> TextsOf(const ICIMInstance*, const boost::shared_ptr<ICIMPropertyDecl const>&,
                                     const TCIMValue&, const NQORVYX20::DisplayForm&) const override {
        throw TVYXException(TVYXStatusCode::eNotSupported);
    }
    void MakeTexts(TextMemory&, const ICIMInstance*, const boost::shared_ptr<ICIMPropertyDecl const>&, const TCIMValue&,
                   const DisplayForm&) const override {
        throw TVYXException(TVYXStatusCode::eNotSupported);
    }
    bool ShowsAsItIs(const ICIMPropertyDecl&) const override { return false; }
    bool HasEmbeddedObjects(const ICIMInstance&) const override { return false; }
    std::vector<std::string> UnitTellers(const ICIMClass&, const ICIMPropertyDecl&) const override { return {}; }
    cimhttp::RequestedClasses ReadRequestedClasses(const std::string&) const override { return {}; }
};

} // namespace

TEST(DisplayText, AValueWithoutATextShowsAsItIs) {
    support::CimServer server;
    server.Listen(5988);
    server.Answer("GetClass", "T",
                  "<CLASS NAME=\"T\"><PROPERTY NAME=\"One\" TYPE=\"uint8\"/>"
                  "<PROPERTY.ARRAY NAME=\"Many\" TYPE=\"string\"/></CLASS>");
    const cimhttp::Plugin plugin(CIMHTTP_PLUGIN);
    const auto nameSpace = plugin.AllocateNamespace({});
    plugin.Access().Connect(*nameSpace, server.Address(), "", "", 5988);
    const auto cls = nameSpace->GetClass("T", TCIMContext());
    const auto instance = cls->AllocateInstance(TCIMContext());
    instance->SetPropertyValue("One", TCIMValue(static_cast<unsigned char>(7)), TCIMContext());
    instance->SetPropertyValue(
        "Many", TCIMValue(TCIMValue::TCIMType::eCIMString, 0, {TCIMValue("a"), TCIMValue("b, c")}), TCIMContext());

    const TextlessAccess textless;
    const cimhttp::ValueTexts texts(textless);
    const DisplayText one = texts.Of(*instance, *instance->GetProperty("One", TCIMContext()));
    EXPECT_FALSE(one.IsList());
    EXPECT_EQ(one.Joined(), "7");
    const DisplayText many = texts.Of(*instance, *instance->GetProperty("Many", TCIMContext()));
    EXPECT_TRUE(many.IsList());
    EXPECT_EQ(many.Texts(), (std::vector<std::string>{"a", "b, c"}));
}
