#include "provider/TCimHTTPNamespace.h"

#include "cimhttp/ContextKeys.h"
#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMQualifier.h"
#include "host/PegStrToStdStr.h"
#include "host/TVYXException.h"
#include "model/EntryMap.h"
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
constexpr const char* kPluginNameQualifier = "PLUGINNAME";
constexpr const char* kPluginVersionQualifier = "PLUGINVERSION";
constexpr const char* kPluginVersion = "1.0";

constexpr Pegasus::Uint32 kInitialTimeoutMs = 10000;

[[noreturn]] void FailRemotely(const std::string& what, const Pegasus::Exception& failure) {
    LogDebug(what + ToStdString(failure.getMessage()));
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

/// Under the policy of this machine, as it is now. Throws ConnectionRefusal.
ConnectionPlan MakePlan(const ConnectionOptions& ofHost, const std::string& host, int port) {
    try {
        return {ofHost, ConnectionPolicy(PolicyFile::OfMachine()), host, port};
    } catch (const PolicyFault& fault) {
        throw ConnectionRefusal(RemoteFailure::Kind::kPolicy, fault.what());
    }
}

} // namespace

// --- Construction and connection ---------------------------------------------------------------------------------

TCimHTTPNamespace::TCimHTTPNamespace(bool redefine) : redefine_(redefine) {
    auto nameSpace = MakeRemoteNamespace(); // before the client
    server_ = std::make_unique<RemoteServer>(std::move(nameSpace), MakeClient());
}

TCimHTTPNamespace::~TCimHTTPNamespace() {
    try {
        disconnect();
    } catch (...) {
        // The connection ends with its client.
    }
    if (reading_) {
        reading_->End();
    }
    server_.reset();
}

void TCimHTTPNamespace::Initialize(TCIMContext context) {
    const NamespaceOptions options(context);
    pluginName_ = options.PluginName();
    options_ = options.Connection();
    try {
        Apply(options_);
    } catch (const ConnectionRefusal& refusal) {
        LogError(std::string("TCimHTTPNamespace: ") + refusal.what());
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    if (options.IsFaithful()) {
        reading_ = boost::make_shared<FaithfulReading>(shared_from_this());
        names_ = reading_->Names();
        server_->SetLenient(options.IsLenient());
    } else {
        server_->LeaveQualifiedTexts();
    }
    rootClass_ = boost::dynamic_pointer_cast<TCimHTTPClass>(
        AllocateClass(kRootClassName, boost::shared_ptr<ICIMClass>(), TCIMContext()));
    DeclareQualifier(kPluginNameQualifier, "CIMXML");
    DeclareQualifier(kPluginVersionQualifier, "");
}

void TCimHTTPNamespace::DeclareQualifier(const std::string& name, const std::string& value) {
    AddQualifierDecl(boost::dynamic_pointer_cast<TCimHTTPQualifierDecl>(AllocateQualifierDecl(
        name, TCIMValue(value), ICIMQualifierDecl::eScopeNone, ICIMQualifierDecl::eFlavorNone, TCIMContext())));
}

void TCimHTTPNamespace::connect(std::string host, std::string user, std::string password, int port) {
    report_.BeginOperation();
    try {
        const auto plan = WithinMemory([&] { return MakePlan(options_, host, port); }, "the policy");
        if (!plan.Decision().empty()) {
            LogInfo("TCimHTTPNamespace: " + plan.Decision());
        }
        Connect(plan, host, user, password, port);
    } catch (const ConnectionRefusal& refusal) {
        RefuseConnection(refusal.Failure());
    } catch (const Pegasus::Exception& failure) {
        report_.Fail(RemoteFailureOf(failure));
        FailRemotely("TCimHTTPNamespace::connect failed: ", failure);
    }
    connected_ = true;
}

void TCimHTTPNamespace::RefuseConnection(RemoteFailure failure) {
    LogError("TCimHTTPNamespace::connect failed: " + failure.text);
    report_.Fail(std::move(failure));
    throw TVYXException(TVYXStatusCode::eRemoteConnectionFailed);
}

/// With the options of the plan, which do not outlive a failure.
void TCimHTTPNamespace::Connect(const ConnectionPlan& plan, const std::string& host, const std::string& user,
                                const std::string& password, int port) {
    const ConnectionOptions before = applied_;
    try {
        Apply(plan.Options());
        getPegClient()->setTimeout(TimeoutMs());
        server_->ForgetWhatItCan();
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
    if (plan.WayToServer() == ConnectionPlan::Way::kPlain) {
        client.connect(ToRemoteText(host), remotePort, ToRemoteText(user), ToRemoteText(password));
    } else if (plan.WayToServer() == ConnectionPlan::Way::kTls) {
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
    if (!server_->SetLimits(options.Number(kConnectTimeoutKey), options.Number(kLimitBytesKey),
                            options.Number(kLimitObjectsKey))) {
        throw ConnectionRefusal(RemoteFailure::Kind::kOther,
                                "the client library that this plug-in was built with knows no limits");
    }
    if (!server_->SetTrace(options.Text(kTraceKey))) {
        throw ConnectionRefusal(RemoteFailure::Kind::kOther,
                                "the client library that this plug-in was built with does not show what it sends");
    }
    server_->SetNamespace(nameSpace);
    budget_.SetElements(options.Number(kLimitElementsKey).value_or(DefinitionBudget::kElements));
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
    getPegClient()->disconnect();
    connected_ = false;
}

const ReadingIncidents& TCimHTTPNamespace::Incidents() {
    server_->MoveFindingsTo(report_);
    return report_.Incidents();
}

ReadingIncidents TCimHTTPNamespace::TakeIncidents() {
    server_->MoveFindingsTo(report_);
    return report_.TakeIncidents();
}

bool TCimHTTPNamespace::isConnected() { return connected_; }

Pegasus::CIMNamespaceName* TCimHTTPNamespace::getPegNSP() { return server_->Namespace(); }

Pegasus::CIMClient* TCimHTTPNamespace::getPegClient() { return server_->Client(); }

boost::shared_ptr<Reading> TCimHTTPNamespace::GetReading() {
    if (!reading_) {
        reading_ = boost::make_shared<CompatibleReading>(shared_from_this());
    }
    return reading_;
}

// --- Classes -----------------------------------------------------------------------------------------------------

std::string TCimHTTPNamespace::NormalizeName(const std::string& name) { return NQORVYX20::NormalizeName(name); }

boost::shared_ptr<ICIMClass> TCimHTTPNamespace::AllocateClass(const std::string& name,
                                                              boost::shared_ptr<ICIMClass> superClass,
                                                              TCIMContext /*context*/) {
    return GetReading()->AllocateClass(name, boost::dynamic_pointer_cast<TCimHTTPClass>(superClass));
}

boost::shared_ptr<TCimHTTPClass> TCimHTTPNamespace::MakeClass(const std::string& name,
                                                              boost::shared_ptr<TCimHTTPClass> superClass) {
    auto cls = boost::make_shared<TCimHTTPClass>(shared_from_this(), name, superClass);
    cls->Initialize();
    return cls;
}

boost::shared_ptr<ICIMClass> TCimHTTPNamespace::GetClass(const std::string& name, TCIMContext context) {
    report_.BeginOperation();
    if (!connected_) {
        return GetReading()->WithoutConnection();
    }
    if (name.empty() || name == kRootClassName) {
        LogDebug("TCimHTTPNamespace::GetClass " + name + " : return <root>");
        return rootClass_;
    }
    const std::string key = NQORVYX20::NormalizeName(name, names_);
    LogDebug("TCimHTTPNamespace::GetClass from Pegasus for: " + key);
    if (auto cached = FindClass(key)) {
        LogDebug("TCimHTTPNamespace::GetClass " + key + " Found in TCimHTTPNamespace");
        return cached;
    }
    return GetReading()->FetchClass(name, key, context);
}

boost::shared_ptr<TCimHTTPClass> TCimHTTPNamespace::FindClass(const std::string& key) const {
    return FindEntry(classes_, key);
}

void TCimHTTPNamespace::StampClass(ICIMClass& cls, TCIMContext context) const {
    StampClass(cls, kPluginNameQualifier, pluginName_, context);
    StampClass(cls, kPluginVersionQualifier, kPluginVersion, context);
}

void TCimHTTPNamespace::StampClass(ICIMClass& cls, const std::string& qualifierName, const std::string& value,
                                   TCIMContext context) const {
    const auto declaration = GetQualifierDecl(qualifierName, TCIMContext());
    cls.AddQualifier(cls.AllocateQualifier(declaration, TCIMValue(value), context), context);
}

void TCimHTTPNamespace::AddClass(boost::shared_ptr<TCimHTTPClass> cls) {
    const std::string& name = cls->GetName(TCIMContext());
    const auto [entry, isNew] = classes_.emplace(NQORVYX20::NormalizeName(name, names_), cls);
    if (isNew) {
        return;
    }
    if (!redefine_) {
        LogDebug("TCimHTTPNamespace: class " + name + " already defined");
        throw TVYXException(TVYXStatusCode::eAlreadyExists);
    }
    cls->AdoptSubClasses(*entry->second);
    entry->second = cls;
}

void TCimHTTPNamespace::RemoveClass(boost::shared_ptr<TCimHTTPClass> /*cls*/) {}

void TCimHTTPNamespace::EnumerateRootClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                             TCIMContext context) {
    if (connected_) {
        rootClass_->EnumerateSubClasses(callback, true, context);
    }
}

void TCimHTTPNamespace::EnumerateClassNames(std::string nameSpace, std::string className,
                                            Pegasus::Array<Pegasus::CIMName>& names) {
    report_.BeginOperation();
    try {
        names = WithinMemory([&] {
            const auto top = className.empty() ? Pegasus::CIMName() : Pegasus::CIMName(ToRemoteText(className));
            return server_->EnumerateClassNames(Pegasus::CIMNamespaceName(ToRemoteText(nameSpace)), top);
        });
    } catch (const Pegasus::Exception& failure) {
        report_.Fail(RemoteFailureOf(failure));
        LogDebug("TCimHTTPNamespace::EnumerateClassNames: " + nameSpace + ":" + className + ": " +
                 PegStrToStdStr(failure.getMessage()) + "\n");
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

void TCimHTTPNamespace::AddQualifierDecl(boost::shared_ptr<TCimHTTPQualifierDecl> declaration) {
    const std::string& name = declaration->GetName(TCIMContext());
    const auto [entry, isNew] = qualifierDecls_.emplace(NQORVYX20::NormalizeName(name, names_), declaration);
    if (isNew) {
        return;
    }
    if (!redefine_) {
        LogDebug("CimHTTP: TCimHTTPNamespace: qualifier " + name + " already defined");
        throw TVYXException(TVYXStatusCode::eAlreadyExists);
    }
    entry->second = declaration;
}

boost::shared_ptr<ICIMQualifierDecl> TCimHTTPNamespace::GetQualifierDecl(const std::string& name,
                                                                         TCIMContext /*context*/) const {
    return FindEntry(qualifierDecls_, NQORVYX20::NormalizeName(name, names_));
}

void TCimHTTPNamespace::EnumerateQualifierDecls(
    const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>& callback, TCIMContext /*context*/) const {
    VisitEntries(qualifierDecls_, callback);
}

// --- Instances ---------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMInstance> TCimHTTPNamespace::GetInstance(const TCIMReference& reference,
                                                               TCIMContext context) const {
    // The interface calls this operation const, but what is not there yet is fetched.
    const auto self = boost::const_pointer_cast<TCimHTTPNamespace>(shared_from_this());
    return self->GetReading()->GetInstance(reference, context);
}

void TCimHTTPNamespace::EnumerateInstances(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) {
    try {
        auto instances = server_->EnumerateInstancesToLookAt(nameSpace, className);
        for (Pegasus::Uint32 i = 0; i < instances.size(); ++i) {
            (void)instances[i].getPath().toString();
            for (Pegasus::Uint32 j = 0; j < instances[i].getPropertyCount(); ++j) {
                auto property = instances[i].getProperty(j);
                (void)property.getName().getString();
                (void)property.getValue().toString();
            }
        }
    } catch (...) {
        // A diagnosis disturbs nobody.
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
