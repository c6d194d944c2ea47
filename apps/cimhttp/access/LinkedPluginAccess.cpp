#include "access/DocumentReader.h"
#include "access/MeasuredNamespace.h"
#include "access/PluginAccess.h"
#include "access/RemoteAssociations.h"
#include "access/RemoteReader.h"
#include "cimhttp/Connect.h"
#include "model/InstanceUnits.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPPropertyDecl.h"
#include "provider/TCimHTTPNamespace.h"

namespace cimhttp {

namespace {

using NQORVYX20::DisplayForm;
using NQORVYX20::ICIMClass;
using NQORVYX20::ICIMInstance;
using NQORVYX20::ICIMNamespace;
using NQORVYX20::ICIMPropertyDecl;
using NQORVYX20::TCimHTTPNamespace;
using NQORVYX20::TCimHTTPPropertyDecl;
using NQORVYX20::TCIMReference;
using NQORVYX20::TCIMValue;

class LinkedPluginAccess : public PluginAccess {
  public:
    void Connect(ICIMNamespace& nameSpace, const std::string& host, const std::string& user,
                 const std::string& password, int port) const override {
        ConnectNamespace(nameSpace, host, user, password, port);
    }

    bool WouldVerify(ICIMNamespace& nameSpace, const std::string& host, int port) const override {
        return WouldVerifyServer(nameSpace, host, port);
    }

    boost::shared_ptr<ICIMNamespace> Measured(const boost::shared_ptr<ICIMNamespace>& nameSpace,
                                              const std::shared_ptr<MeasurementSink>& sink) const override {
        return MeasuredNamespace(nameSpace, sink);
    }

    ServerProbe Probe(const ProbeTarget& target, ServerProbe::Depth depth) const override {
        return ProbeServer(target, depth);
    }

    std::optional<NQORVYX20::RemoteFailure> LastFailure(ICIMNamespace& nameSpace) const override {
        return NQORVYX20::LastFailure(nameSpace);
    }

    NQORVYX20::ReadingIncidents TakeIncidents(ICIMNamespace& nameSpace) const override {
        return NQORVYX20::TakeIncidents(nameSpace);
    }

    std::vector<NQORVYX20::EmbeddedObject> EmbeddedObjects(const ICIMInstance& instance,
                                                           const std::string& property) const override {
        return EmbeddedObjectsOf(instance, property);
    }

    std::vector<std::string> ClassNames(ICIMNamespace& nameSpace) const override {
        return ReadRemoteClassNames(dynamic_cast<TCimHTTPNamespace&>(nameSpace));
    }

    std::vector<TCIMReference> InstancePaths(ICIMNamespace& nameSpace, const std::string& className) const override {
        return ReadRemotePaths(dynamic_cast<TCimHTTPNamespace&>(nameSpace), className);
    }

    std::vector<TCIMReference> InstancePathsIn(ICIMNamespace& nameSpace, const std::string& name,
                                               const std::string& className) const override {
        return ReadRemotePathsIn(dynamic_cast<TCimHTTPNamespace&>(nameSpace), name, className);
    }

    RemoteClass ReadClass(ICIMNamespace& nameSpace, const std::string& name) const override {
        return ReadRemoteClass(dynamic_cast<TCimHTTPNamespace&>(nameSpace), name);
    }

    std::vector<RemoteClassName> ReadHierarchy(ICIMNamespace& nameSpace) const override {
        return ReadRemoteHierarchy(dynamic_cast<TCimHTTPNamespace&>(nameSpace));
    }

    std::vector<RemoteQualifierDeclaration> ReadQualifierDeclarations(ICIMNamespace& nameSpace) const override {
        return ReadRemoteQualifiers(dynamic_cast<TCimHTTPNamespace&>(nameSpace));
    }

    std::unique_ptr<InstanceSequence> OpenInstances(ICIMNamespace& nameSpace, NQORVYX20::ICIMClass& cls, bool deep,
                                                    const NQORVYX20::TCIMContext& context) const override {
        return OpenRemoteInstances(dynamic_cast<TCimHTTPNamespace&>(nameSpace),
                                   dynamic_cast<NQORVYX20::TCimHTTPClass&>(cls), deep, context);
    }

    bool HasPulledEnumerations(ICIMNamespace& nameSpace) const override {
        return HasRemotePulls(dynamic_cast<TCimHTTPNamespace&>(nameSpace));
    }

    boost::shared_ptr<ICIMInstance> ReadInstance(ICIMNamespace& nameSpace, const std::string& path) const override {
        return ReadRemoteInstance(dynamic_cast<TCimHTTPNamespace&>(nameSpace), path);
    }

    std::vector<TCIMReference> RelatedPaths(ICIMNamespace& nameSpace, const AssociationQuery& query) const override {
        return ReadRemoteRelatedPaths(dynamic_cast<TCimHTTPNamespace&>(nameSpace), query);
    }

    std::unique_ptr<RelatedObjects> ReadRelated(ICIMNamespace& nameSpace,
                                                const AssociationQuery& query) const override {
        return ReadRemoteRelated(dynamic_cast<TCimHTTPNamespace&>(nameSpace), query);
    }

    void CheckInstance(ICIMNamespace& nameSpace, const std::string& path) const override {
        CheckRemoteInstance(dynamic_cast<TCimHTTPNamespace&>(nameSpace), path);
    }

    std::vector<RemoteLink> ReadLinks(ICIMNamespace& nameSpace, const std::string& path) const override {
        return ReadRemoteLinks(dynamic_cast<TCimHTTPNamespace&>(nameSpace), path);
    }

    TCIMReference ParsePath(const std::string& path) const override { return ParsedReference(path); }

    std::string NamespaceOf(const std::string& path) const override { return NamespaceOfPath(path); }

    std::vector<std::string> TextsOf(const ICIMInstance* instance,
                                     const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                     const TCIMValue& value, const DisplayForm& form) const override {
        return DisplayTexts(declaration, value, form, instance);
    }

    std::vector<std::string> UnitTellers(const ICIMClass& cls, const ICIMPropertyDecl& declaration) const override {
        const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(declaration);
        return own != nullptr && own->IsFaithful() ? NQORVYX20::UnitTellers(cls, own->GetFaithfulTexts())
                                                   : std::vector<std::string>();
    }

    RequestedClasses ReadRequestedClasses(const std::string& text) const override {
        DocumentReader reader;
        reader.SetCharData(text);
        reader.ParseCharData(); // what it returns is said by the error too
        return {reader.Settings(), reader.GetRequestedClassData(), reader.Error()};
    }
};

} // namespace

} // namespace cimhttp

extern "C" const cimhttp::PluginAccess* CimhttpPluginAccess() {
    static const cimhttp::LinkedPluginAccess access;
    return &access;
}
