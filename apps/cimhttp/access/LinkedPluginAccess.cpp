#include "access/DocumentReader.h"
#include "access/PluginAccess.h"
#include "access/RemoteAssociations.h"
#include "access/RemoteReader.h"
#include "cimhttp/Connect.h"
#include "display/FaithfulTexts.h"
#include "model/InstanceUnits.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPPropertyDecl.h"
#include "model/TFaithfulInstance.h"
#include "provider/TCimHTTPNamespace.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/ClientOpPerformanceDataHandler.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using Clock = std::chrono::steady_clock;

/// A namespace that is one of the plug-in's.
TCimHTTPNamespace& Own(ICIMNamespace& nameSpace) { return dynamic_cast<TCimHTTPNamespace&>(nameSpace); }

std::string NameOf(const Pegasus::ClientOpPerformanceData& data) {
#if __has_include(<Pegasus/Client/ExchangeObserver.h>)
    return Pegasus::cimOperationTypeToString(data.operationType);
#else
    return "operation " +
           std::to_string(static_cast<int>(data.operationType)); // other libraries have no names for them
#endif
}

/// Never lengthens the time.
void SetTimeLeft(Pegasus::CIMClient& client, std::chrono::milliseconds time) {
    const auto left = static_cast<std::uint64_t>(std::max<std::chrono::milliseconds::rep>(time.count(), 1));
    client.setTimeout(static_cast<Pegasus::Uint32>(std::min<std::uint64_t>(client.getTimeout(), left)));
}

/// Listens to the client of a namespace, which it holds.
class Listener : public Pegasus::ClientOpPerformanceDataHandler {
  public:
    Listener(boost::shared_ptr<ICIMNamespace> nameSpace, std::shared_ptr<MeasurementSink> sink,
             std::optional<Clock::time_point> deadline)
        : namespace_(std::move(nameSpace)), sink_(std::move(sink)), deadline_(deadline) {
        Client().registerClientOpPerformanceDataHandler(*this);
    }
    ~Listener() override { Client().deregisterClientOpPerformanceDataHandler(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    ICIMNamespace* Namespace() const { return namespace_.get(); }

    void handleClientOpPerformanceData(const Pegasus::ClientOpPerformanceData& data) override {
        if (deadline_) { // an operation of the plug-in may take several requests
            SetTimeLeft(Client(), std::chrono::duration_cast<std::chrono::milliseconds>(*deadline_ - Clock::now()));
        }
        if (!sink_) {
            return;
        }
        Measurement measurement{NameOf(data), data.requestSize, data.responseSize, data.roundTripTime, {}};
        if (data.serverTimeKnown) {
            measurement.serverTime = data.serverTime;
        }
        sink_->Add(measurement);
    }

  private:
    Pegasus::CIMClient& Client() const { return *Own(*namespace_).getPegClient(); }

    const boost::shared_ptr<ICIMNamespace> namespace_;
    const std::shared_ptr<MeasurementSink> sink_;
    const std::optional<Clock::time_point> deadline_;
};

class LinkedPluginAccess : public PluginAccess {
  public:
    void Connect(ICIMNamespace& nameSpace, const std::string& host, const std::string& user,
                 const std::string& password, int port) const override {
        ConnectNamespace(nameSpace, host, user, password, port);
    }

    bool WouldVerify(ICIMNamespace& nameSpace, const std::string& host, int port) const override {
        return WouldVerifyServer(nameSpace, host, port);
    }

    boost::shared_ptr<ICIMNamespace> Supervised(const boost::shared_ptr<ICIMNamespace>& nameSpace,
                                                const std::shared_ptr<MeasurementSink>& sink,
                                                std::optional<Clock::time_point> deadline) const override {
        const auto listener = boost::make_shared<Listener>(nameSpace, sink, deadline);
        return {listener, listener->Namespace()};
    }

    void SetTimeLeft(ICIMNamespace& nameSpace, std::chrono::milliseconds time) const override {
        cimhttp::SetTimeLeft(*Own(nameSpace).getPegClient(), time);
    }

    void RenewTime(ICIMNamespace& nameSpace, std::chrono::milliseconds time) const override {
        Own(nameSpace).getPegClient()->setTimeout(static_cast<Pegasus::Uint32>(time.count()));
    }

    ServerProbe Probe(const ProbeTarget& target, ServerProbe::Depth depth) const override {
        return ProbeServer(target, depth);
    }

    std::optional<RemoteFailure> LastFailure(ICIMNamespace& nameSpace) const override {
        return NQORVYX20::LastFailure(nameSpace);
    }

    ReadingIncidents TakeIncidents(ICIMNamespace& nameSpace) const override {
        return NQORVYX20::TakeIncidents(nameSpace);
    }

    std::vector<EmbeddedObject> EmbeddedObjects(const ICIMInstance& instance,
                                                const std::string& property) const override {
        return EmbeddedObjectsOf(instance, property);
    }

    bool HasEmbeddedObjects(const ICIMInstance& instance) const override {
        const auto* const faithful = dynamic_cast<const TFaithfulInstance*>(&instance);
        return faithful != nullptr && faithful->HasEmbedded();
    }

    std::vector<std::string> ClassNames(ICIMNamespace& nameSpace) const override {
        return ReadRemoteClassNames(Own(nameSpace));
    }

    std::vector<TCIMReference> InstancePaths(ICIMNamespace& nameSpace, const std::string& className) const override {
        return ReadRemotePaths(Own(nameSpace), className);
    }

    std::vector<TCIMReference> InstancePathsIn(ICIMNamespace& nameSpace, const std::string& name,
                                               const std::string& className) const override {
        return ReadRemotePathsIn(Own(nameSpace), name, className);
    }

    RemoteClass ReadClass(ICIMNamespace& nameSpace, const std::string& name) const override {
        return ReadRemoteClass(Own(nameSpace), name);
    }

    std::vector<RemoteClassName> ReadHierarchy(ICIMNamespace& nameSpace) const override {
        return ReadRemoteHierarchy(Own(nameSpace));
    }

    std::vector<RemoteQualifierDeclaration> ReadQualifierDeclarations(ICIMNamespace& nameSpace) const override {
        return ReadRemoteQualifiers(Own(nameSpace));
    }

    std::unique_ptr<InstanceSequence> OpenInstances(ICIMNamespace& nameSpace, ICIMClass& cls, bool deep,
                                                    const TCIMContext& context) const override {
        return OpenRemoteInstances(Own(nameSpace), dynamic_cast<TCimHTTPClass&>(cls), deep, context);
    }

    bool HasPulledEnumerations(ICIMNamespace& nameSpace) const override { return HasRemotePulls(Own(nameSpace)); }

    boost::shared_ptr<ICIMInstance> ReadInstance(ICIMNamespace& nameSpace, const std::string& path) const override {
        return ReadRemoteInstance(Own(nameSpace), path);
    }

    std::vector<TCIMReference> RelatedPaths(ICIMNamespace& nameSpace, const AssociationQuery& query) const override {
        return ReadRemoteRelatedPaths(Own(nameSpace), query);
    }

    std::unique_ptr<RelatedObjects> ReadRelated(ICIMNamespace& nameSpace,
                                                const AssociationQuery& query) const override {
        return ReadRemoteRelated(Own(nameSpace), query);
    }

    void CheckInstance(ICIMNamespace& nameSpace, const std::string& path) const override {
        CheckRemoteInstance(Own(nameSpace), path);
    }

    std::vector<RemoteLink> ReadLinks(ICIMNamespace& nameSpace, const std::string& path) const override {
        return ReadRemoteLinks(Own(nameSpace), path);
    }

    TCIMReference ParsePath(const std::string& path) const override { return ParsedReference(path); }

    std::string NamespaceOf(const std::string& path) const override { return NamespaceOfPath(path); }

    std::vector<std::string> TextsOf(const ICIMInstance* instance,
                                     const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                     const TCIMValue& value, const DisplayForm& form) const override {
        return DisplayTexts(declaration, value, form, instance);
    }

    void MakeTexts(TextMemory& memory, const ICIMInstance* instance,
                   const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const TCIMValue& value,
                   const DisplayForm& form) const override {
        MakeDisplayTexts(memory, declaration, value, form, instance);
    }

    bool ShowsAsItIs(const ICIMPropertyDecl& declaration) const override {
        const TCimHTTPPropertyDecl* const own = TCimHTTPPropertyDecl::AsOwn(declaration);
        return own != nullptr && own->IsFaithful() && own->GetFaithfulTexts().ShowsAsItIs();
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
