#include "access/PluginAccess.h"

#include <boost/make_shared.hpp>

#include "access/DocumentReader.h"
#include "access/RemoteAssociations.h"
#include "access/RemoteReader.h"
#include "convert/NormalName.h"
#include "host/ICIMPropertyDecl.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPProperty.h"
#include "model/TFaithfulInstance.h"
#include "provider/TCimHTTPNamespace.h"

namespace cimhttp {

namespace {

using NQORVYX20::ICIMInstance;
using NQORVYX20::ICIMNamespace;
using NQORVYX20::ICIMProperty;
using NQORVYX20::ICIMPropertyDecl;
using NQORVYX20::TCimHTTPNamespace;
using NQORVYX20::TCimHTTPProperty;
using NQORVYX20::TCIMReference;
using NQORVYX20::TCIMValue;

class LinkedPluginAccess : public PluginAccess {
  public:
    void Connect(ICIMNamespace& name_space, const std::string& host, const std::string& user,
                 const std::string& password, int port) const override {
        dynamic_cast<TCimHTTPNamespace&>(name_space).connect(host, user, password, port);
    }

    bool WouldVerify(ICIMNamespace& name_space, const std::string& host, int port) const override {
        return dynamic_cast<TCimHTTPNamespace&>(name_space).WouldVerify(host, port);
    }

    std::optional<NQORVYX20::RemoteFailure> LastFailure(ICIMNamespace& name_space) const override {
        return dynamic_cast<TCimHTTPNamespace&>(name_space).LastFailure();
    }

    NQORVYX20::ReadingIncidents TakeIncidents(ICIMNamespace& name_space) const override {
        return dynamic_cast<TCimHTTPNamespace&>(name_space).TakeIncidents();
    }

    std::vector<NQORVYX20::EmbeddedObject> EmbeddedObjects(const ICIMInstance& instance,
                                                           const std::string& property) const override {
        const auto* const faithful = dynamic_cast<const NQORVYX20::TFaithfulInstance*>(&instance);
        return faithful == nullptr ? std::vector<NQORVYX20::EmbeddedObject>()
                                   : faithful->Embedded(NQORVYX20::NormalizeName(property, NQORVYX20::NameRule::kCim));
    }

    std::vector<std::string> ClassNames(ICIMNamespace& name_space) const override {
        return ReadRemoteClassNames(dynamic_cast<TCimHTTPNamespace&>(name_space));
    }

    std::vector<TCIMReference> InstancePaths(ICIMNamespace& name_space, const std::string& class_name) const override {
        return ReadRemotePaths(dynamic_cast<TCimHTTPNamespace&>(name_space), class_name);
    }

    std::vector<TCIMReference> InstancePathsIn(ICIMNamespace& name_space, const std::string& name,
                                               const std::string& class_name) const override {
        return ReadRemotePathsIn(dynamic_cast<TCimHTTPNamespace&>(name_space), name, class_name);
    }

    RemoteClass ReadClass(ICIMNamespace& name_space, const std::string& name) const override {
        return ReadRemoteClass(dynamic_cast<TCimHTTPNamespace&>(name_space), name);
    }

    std::vector<RemoteClassName> ReadHierarchy(ICIMNamespace& name_space) const override {
        return ReadRemoteHierarchy(dynamic_cast<TCimHTTPNamespace&>(name_space));
    }

    std::vector<RemoteQualifierDeclaration> ReadQualifierDeclarations(ICIMNamespace& name_space) const override {
        return ReadRemoteQualifiers(dynamic_cast<TCimHTTPNamespace&>(name_space));
    }

    std::unique_ptr<InstanceSequence> OpenInstances(ICIMNamespace& name_space, NQORVYX20::ICIMClass& cls, bool deep,
                                                    const NQORVYX20::TCIMContext& context) const override {
        return OpenRemoteInstances(dynamic_cast<TCimHTTPNamespace&>(name_space),
                                   dynamic_cast<NQORVYX20::TCimHTTPClass&>(cls), deep, context);
    }

    bool HasPulledEnumerations(ICIMNamespace& name_space) const override {
        return HasRemotePulls(dynamic_cast<TCimHTTPNamespace&>(name_space));
    }

    boost::shared_ptr<ICIMInstance> ReadInstance(ICIMNamespace& name_space, const std::string& path) const override {
        return ReadRemoteInstance(dynamic_cast<TCimHTTPNamespace&>(name_space), path);
    }

    std::vector<TCIMReference> RelatedPaths(ICIMNamespace& name_space, const AssociationQuery& query) const override {
        return ReadRemoteRelatedPaths(dynamic_cast<TCimHTTPNamespace&>(name_space), query);
    }

    std::unique_ptr<RelatedObjects> ReadRelated(ICIMNamespace& name_space,
                                                const AssociationQuery& query) const override {
        return ReadRemoteRelated(dynamic_cast<TCimHTTPNamespace&>(name_space), query);
    }

    void CheckInstance(ICIMNamespace& name_space, const std::string& path) const override {
        CheckRemoteInstance(dynamic_cast<TCimHTTPNamespace&>(name_space), path);
    }

    std::vector<RemoteLink> ReadLinks(ICIMNamespace& name_space, const std::string& path) const override {
        return ReadRemoteLinks(dynamic_cast<TCimHTTPNamespace&>(name_space), path);
    }

    TCIMReference ParsePath(const std::string& path) const override { return ParsedReference(path); }

    std::string NamespaceOf(const std::string& path) const override { return NamespaceOfPath(path); }

    boost::shared_ptr<ICIMProperty> MakeProperty(const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                                 const TCIMValue& value) const override {
        return boost::make_shared<TCimHTTPProperty>(declaration, value);
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
