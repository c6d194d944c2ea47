#include "provider/TCimHTTPNamespace.h"

#include "cimhttp/ContextKeys.h"
#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/PegStrToStdStr.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPQualifierDecl.h"
#include "provider/ConnectionPlan.h"
#include "provider/ConnectionPolicy.h"
#include "provider/ConnectionRefusal.h"
#include "provider/NamespaceOptions.h"
#include "provider/PolicyFault.h"
#include "provider/PolicyFile.h"
#include "provider/TCimHTTPNamespaceProvider.h"
#include "provider/TlsOptions.h"
#include "reading/CompatibleReading.h"
#include "reading/FaithfulReading.h"
#include "reading/LimitExceeded.h"
#include "reading/RemoteFailures.h"
#include "reading/RemoteServer.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace NQORVYX20 {

namespace {

constexpr const char* kRemoteNamespaceName = "root/cimv2";

constexpr Pegasus::Uint32 kInitialTimeoutMs = 10000;

[[noreturn]] void FailRemotely(const std::string& what, const Pegasus::Exception& failure) {
    LogDebug(what + MessageOf(failure));
    throw TVYXException(TVYXStatusCode::eRemoteConnectionFailed);
}

std::unique_ptr<Pegasus::CIMNamespaceName> MakeRemoteNamespace() {
    try {
        return std::make_unique<Pegasus::CIMNamespaceName>(kRemoteNamespaceName);
    } catch (const Pegasus::Exception& failure) {
        FailRemotely("TCimHTTPNamespace:Pegasus NSP Creation Fail: ", failure);
    }
}

std::unique_ptr<Pegasus::CIMClient> MakeClient() {
    try {
        auto client = std::make_unique<Pegasus::CIMClient>();
        client->setTimeout(kInitialTimeoutMs);
        return client;
    } catch (const Pegasus::Exception& failure) {
        FailRemotely("TCimHTTPNamespace:Pegasus Client Creation Fail: ", failure);
    }
}

std::unique_ptr<RemoteServer> MakeServer() {
    auto nameSpace = MakeRemoteNamespace(); // before the client
    return std::make_unique<RemoteServer>(std::move(nameSpace), MakeClient());
}

/// The plan by the policy of this machine, as it is now. Throws ConnectionRefusal.
ConnectionPlan MakePlan(const ConnectionOptions& ofHost, const std::string& host, int port) {
    try {
        return {ofHost, ConnectionPolicy(PolicyFile::OfMachine()), host, port};
    } catch (const PolicyFault& fault) {
        throw ConnectionRefusal(RemoteFailure::Kind::kPolicy, fault.what());
    }
}

} // namespace

// --- Construction and connection ---------------------------------------------------------------------------------

TCimHTTPNamespace::TCimHTTPNamespace(bool redefine) : RemoteNamespace(redefine, MakeServer()) {}

TCimHTTPNamespace::~TCimHTTPNamespace() {
    try {
        disconnect();
    } catch (...) {
        // The connection ends with its client.
    }
    if (const auto& reading = GetReading()) {
        reading->End();
    }
}

void TCimHTTPNamespace::Initialize(TCIMContext context) {
    const NamespaceOptions options(context);
    options_ = options.Connection();
    try {
        Apply(options_);
    } catch (const ConnectionRefusal& refusal) {
        LogError(std::string("TCimHTTPNamespace: ") + refusal.what());
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    Server().ReadDoubledProperties();
    if (options.IsFaithful()) {
        SetReading(boost::make_shared<FaithfulReading>(shared_from_this()));
        Server().SetLenient(options.IsLenient());
    } else {
        ChosenReading(); // the compatible one
        Server().LeaveQualifiedTexts();
    }
    SetRootClass(boost::dynamic_pointer_cast<TCimHTTPClass>(
        AllocateClass(kRootClassName, boost::shared_ptr<ICIMClass>(), TCIMContext())));
    DeclarePluginQualifiers(options.PluginName());
}

void TCimHTTPNamespace::connect(std::string host, std::string user, std::string password, int port) {
    Report().BeginOperation();
    try {
        const auto plan = WithinMemory([&] { return MakePlan(options_, host, port); }, "the policy");
        if (!plan.Decision().empty()) {
            LogInfo("TCimHTTPNamespace: " + plan.Decision());
        }
        Connect(plan, host, user, password, port);
    } catch (const ConnectionRefusal& refusal) {
        RefuseConnection(refusal.Failure());
    } catch (const Pegasus::Exception& failure) {
        Report().Fail(RemoteFailureOf(failure));
        FailRemotely("TCimHTTPNamespace::connect failed: ", failure);
    }
    connected_ = true;
}

void TCimHTTPNamespace::RefuseConnection(RemoteFailure failure) {
    LogError("TCimHTTPNamespace::connect failed: " + failure.text);
    Report().Fail(std::move(failure));
    throw TVYXException(TVYXStatusCode::eRemoteConnectionFailed);
}

/// Connects with the options of the plan; after a failure, the ones before it apply again.
void TCimHTTPNamespace::Connect(const ConnectionPlan& plan, const std::string& host, const std::string& user,
                                const std::string& password, int port) {
    const ConnectionOptions before = applied_;
    try {
        Apply(plan.Options());
        getPegClient()->setTimeout(TimeoutMs());
        Server().ForgetCapabilities();
        Open(plan, host, user, password, port);
    } catch (...) {
        Apply(before);
        getPegClient()->setTimeout(TimeoutMs());
        throw;
    }
}

void TCimHTTPNamespace::Open(const ConnectionPlan& plan, const std::string& host, const std::string& user,
                             const std::string& password, int port) {
    Pegasus::CIMClient& client = *getPegClient();
    const auto remotePort = static_cast<Pegasus::Uint32>(port);
    if (plan.ChosenTransport() == ConnectionPlan::Transport::kPlain) {
        client.connect(ToRemoteText(host), remotePort, ToRemoteText(user), ToRemoteText(password));
    } else if (plan.ChosenTransport() == ConnectionPlan::Transport::kTls) {
        client.connect(ToRemoteText(host), remotePort, SslContextOf(plan.Options()), ToRemoteText(user),
                       ToRemoteText(password));
    }
}

void TCimHTTPNamespace::Apply(const ConnectionOptions& options) {
    if (options == applied_) {
        return;
    }
    ConnectionOptions applied = options; // what takes memory comes first, so that all counts or nothing
    const Pegasus::CIMNamespaceName nameSpace(ToRemoteText(options.Text(kNamespaceKey).value_or(kRemoteNamespaceName)));
    if (!Server().SetLimits(options.Number(kConnectTimeoutKey), options.Number(kLimitBytesKey),
                            options.Number(kLimitObjectsKey))) {
        throw ConnectionRefusal(RemoteFailure::Kind::kOther,
                                "the client library that this plug-in was built with knows no limits");
    }
    if (!Server().SetTrace(options.Text(kTraceKey))) {
        throw ConnectionRefusal(RemoteFailure::Kind::kOther,
                                "the client library that this plug-in was built with does not show what it sends");
    }
    Server().SetNamespace(nameSpace);
    Budget().SetElements(options.Number(kLimitElementsKey).value_or(DefinitionBudget::kElements));
    applied_ = std::move(applied);
}

std::uint32_t TCimHTTPNamespace::TimeoutMs() const {
    return static_cast<std::uint32_t>(applied_.Number(kTimeoutKey).value_or(kTimeoutMs));
}

bool TCimHTTPNamespace::WouldVerify(const std::string& host, int port) const {
    try {
        const ConnectionOptions options = MakePlan(options_, host, port).Options();
        return options.Has(kTrustKey) || options.Has(kFingerprintKey);
    } catch (const ConnectionRefusal&) {
        return true;
    }
}

void TCimHTTPNamespace::disconnect() {
    Server().EndArrival();
    getPegClient()->disconnect();
    connected_ = false;
}

bool TCimHTTPNamespace::isConnected() { return connected_; }

Pegasus::CIMNamespaceName* TCimHTTPNamespace::getPegNSP() { return Server().Namespace(); }

Pegasus::CIMClient* TCimHTTPNamespace::getPegClient() { return Server().Client(); }

Reading& TCimHTTPNamespace::ChosenReading() {
    if (!GetReading()) {
        SetReading(boost::make_shared<CompatibleReading>(shared_from_this()));
    }
    return *GetReading();
}

// --- Classes -----------------------------------------------------------------------------------------------------

std::string TCimHTTPNamespace::NormalizeName(const std::string& name) { return NQORVYX20::NormalizeName(name); }

boost::shared_ptr<ICIMClass> TCimHTTPNamespace::AllocateClass(const std::string& name,
                                                              boost::shared_ptr<ICIMClass> superClass,
                                                              TCIMContext /*context*/) {
    return ChosenReading().AllocateClass(name, boost::dynamic_pointer_cast<TCimHTTPClass>(superClass));
}

boost::shared_ptr<ICIMClass> TCimHTTPNamespace::GetClass(const std::string& name, TCIMContext context) {
    Report().BeginOperation();
    if (!connected_) {
        return ChosenReading().WithoutConnection();
    }
    if (name.empty() || name == kRootClassName) {
        LogDebug("TCimHTTPNamespace::GetClass " + name + " : return <root>");
        return GetRootClass();
    }
    const std::string key = NQORVYX20::NormalizeName(name, Names());
    LogDebug("TCimHTTPNamespace::GetClass from Pegasus for: " + key);
    if (auto cached = FindClass(key)) {
        LogDebug("TCimHTTPNamespace::GetClass " + key + " Found in TCimHTTPNamespace");
        return cached;
    }
    return ChosenReading().FetchClass(name, key, context);
}

void TCimHTTPNamespace::EnumerateRootClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                             TCIMContext context) {
    if (connected_) {
        GetRootClass()->EnumerateSubClasses(callback, true, context);
    }
}

void TCimHTTPNamespace::EnumerateClassNames(std::string nameSpace, std::string className,
                                            Pegasus::Array<Pegasus::CIMName>& names) {
    Report().BeginOperation();
    try {
        names = WithinMemory([&] {
            const auto top = className.empty() ? Pegasus::CIMName() : Pegasus::CIMName(ToRemoteText(className));
            return Server().EnumerateClassNames(Pegasus::CIMNamespaceName(ToRemoteText(nameSpace)), top);
        });
    } catch (const Pegasus::Exception& failure) {
        Report().Fail(RemoteFailureOf(failure));
        LogDebug("TCimHTTPNamespace::EnumerateClassNames: " + nameSpace + ":" + className + ": " +
                 PegStrToStdStr(StatementOf(failure)) + "\n");
    }
}

// --- Qualifier declarations --------------------------------------------------------------------------------------

boost::shared_ptr<ICIMQualifierDecl> TCimHTTPNamespace::AllocateQualifierDecl(const std::string& name,
                                                                              const TCIMValue& defaultValue,
                                                                              ICIMQualifierDecl::EScope scope,
                                                                              ICIMQualifierDecl::EFlavor flavor,
                                                                              TCIMContext /*context*/) {
    return boost::make_shared<TCimHTTPQualifierDecl>(shared_from_this(), name, defaultValue, scope, flavor);
}

// --- Instances ---------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMInstance> TCimHTTPNamespace::GetInstance(const TCIMReference& reference,
                                                               TCIMContext context) const {
    // The interface calls this operation const, but what is not there yet is fetched.
    const auto self = boost::const_pointer_cast<TCimHTTPNamespace>(shared_from_this());
    return self->ChosenReading().GetInstance(reference, context);
}

void TCimHTTPNamespace::EnumerateInstances(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) {
    try {
        auto instances = Server().EnumerateInstancesForDiagnosis(nameSpace, className);
        for (Pegasus::Uint32 i = 0; i < instances.size(); ++i) {
            (void)instances[i].getPath().toString();
            for (Pegasus::Uint32 j = 0; j < instances[i].getPropertyCount(); ++j) {
                auto property = instances[i].getProperty(j);
                (void)property.getName().getString();
                (void)property.getValue().toString();
            }
        }
    } catch (...) {
        // It is for diagnosis, and its caller does not expect exceptions.
    }
}

// --- What a remote server's namespace does not do ----------------------------------------------------------------

boost::shared_ptr<INamespaceProvider> TCimHTTPNamespace::GetNamespaceProvider(TCIMContext /*context*/) const {
    return TCimHTTPNamespaceProvider::GetInstance();
}

void TCimHTTPNamespace::SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> /*nameSpace*/, TCIMContext /*context*/) {}

boost::shared_ptr<ICIMNamespace> TCimHTTPNamespace::GetUpcallNamespace() { return upcallNamespace_.lock(); }

void TCimHTTPNamespace::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> /*nameSpace*/,
                                               TCIMContext /*context*/) {
    throw TVYXException(TVYXStatusCode::eReadOnly);
}

void TCimHTTPNamespace::EnumerateProviders(const boost::function<bool(boost::shared_ptr<IProvider>)>& /*callback*/,
                                           TCIMContext /*context*/) {}

void TCimHTTPNamespace::Subscribe(boost::shared_ptr<ICIMIndicationFilter> /*filter*/,
                                  const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& /*callback*/,
                                  TCIMContext /*context*/) {
    throw TVYXException(TVYXStatusCode::eNotSupported);
}

void TCimHTTPNamespace::DeleteInstance(const TCIMReference& /*reference*/, TCIMContext /*context*/) {
    throw TVYXException(TVYXStatusCode::eNotSupported);
}

void TCimHTTPNamespace::ModifyInstance(const TCIMReference& /*reference*/, TCIMContext /*values*/,
                                       TCIMContext /*context*/) {
    throw TVYXException(TVYXStatusCode::eNotSupported);
}

void TCimHTTPNamespace::ExecuteQuery(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& /*callback*/,
                                     std::string& /*query*/, std::string& /*language*/, TCIMContext /*context*/) {
    throw TVYXException(TVYXStatusCode::eNotSupported);
}

void TCimHTTPNamespace::ClearInstances() {}

ICIMNamespace& TCimHTTPNamespace::operator=(ICIMNamespace& /*other*/) { return *this; }

} // namespace NQORVYX20
