#include "access/DocumentReader.h"
#include "access/MeasuredNamespace.h"
#include "access/PluginAccess.h"
#include "access/RemoteAssociations.h"
#include "access/RemoteReader.h"
#include "convert/NormalName.h"
#include "display/FaithfulTexts.h"
#include "model/InstanceTexts.h"
#include "model/InstanceUnits.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPPropertyDecl.h"
#include "model/TFaithfulInstance.h"
#include "provider/TCimHTTPNamespace.h"

namespace cimhttp {

namespace {

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
    void Connect(ICIMNamespace& name_space, const std::string& host, const std::string& user,
                 const std::string& password, int port) const override {
        dynamic_cast<TCimHTTPNamespace&>(name_space).connect(host, user, password, port);
    }

    bool WouldVerify(ICIMNamespace& name_space, const std::string& host, int port) const override {
        return dynamic_cast<TCimHTTPNamespace&>(name_space).WouldVerify(host, port);
    }

    boost::shared_ptr<ICIMNamespace> Measured(const boost::shared_ptr<ICIMNamespace>& name_space,
                                              const std::shared_ptr<MeasurementSink>& sink) const override {
        return MeasuredNamespace(name_space, sink);
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

    std::vector<std::string> TextsOf(const ICIMInstance* instance,
                                     const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                     const TCIMValue& value, const TextForm& form) const override {
        return TextsIn(instance, declaration, value, {form.is_unscaled, form.says_what_is_not, nullptr});
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
