#include "provider/TCimHTTPNamespace.h"

#include <boost/make_shared.hpp>

#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "convert/RemoteText.h"
#include "convert/StatusCodes.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMQualifier.h"
#include "host/PegStrToStdStr.h"
#include "host/TVYXException.h"
#include "model/EntryMap.h"
#include "model/Required.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPQualifierDecl.h"
#include "provider/TCimHTTPNamespaceProvider.h"

namespace NQORVYX20 {

namespace {

constexpr const char* kRemoteNamespaceName = "root/cimv2";
constexpr const char* kPluginNameKey = "pluginNameQualDeclValue";
constexpr const char* kPluginNameQualifier = "PLUGINNAME";
constexpr const char* kPluginVersionQualifier = "PLUGINVERSION";
constexpr const char* kPluginVersion = "1.0";

constexpr int kHttpPort = 5988;
constexpr int kHttpsPort = 5989;
constexpr Pegasus::Uint32 kInitialTimeoutMs = 10000;
constexpr Pegasus::Uint32 kConnectedTimeoutMs = 65535000;

// A hierarchy deeper than this is a server's mistake or malice; fetching it must not exhaust the stack.
constexpr std::size_t kMaxHierarchyDepth = 256;

// No callback is set: the client then encrypts without verifying the server's certificate.
constexpr Pegasus::SSLCertificateVerifyFunction* pegCallbackSSL = nullptr;

/// Notes a class as being fetched for the time of its life.
class TLookup {
  public:
    TLookup(std::set<std::string>& lookups, const std::string& key)
        : fLookups(lookups), fEntry(lookups.insert(key).first) {}
    ~TLookup() { fLookups.erase(fEntry); }
    TLookup(const TLookup&) = delete;
    TLookup& operator=(const TLookup&) = delete;

  private:
    std::set<std::string>& fLookups;
    std::set<std::string>::iterator fEntry;
};

[[noreturn]] void FailRemotely(const std::string& what, const Pegasus::Exception& failure) {
    LogDebug(what + ToStdString(failure.getMessage()));
    throw TVYXException(kRemoteConnectionFailed);
}

} // namespace

// --- Construction and connection ---------------------------------------------------------------------------------

TCimHTTPNamespace::TCimHTTPNamespace(bool redefine) : fRedefine(redefine) {
    try {
        fRemoteNamespace = std::make_unique<Pegasus::CIMNamespaceName>(kRemoteNamespaceName);
    } catch (const Pegasus::Exception& failure) {
        FailRemotely("TCimHTTPNamespace:Pegasus NSP Creation Fail: ", failure);
    }
    try {
        fClient = std::make_unique<Pegasus::CIMClient>();
        fClient->setTimeout(kInitialTimeoutMs);
    } catch (const Pegasus::Exception& failure) {
        FailRemotely("TCimHTTPNamespace:Pegasus Client Creation Fail: ", failure);
    }
}

TCimHTTPNamespace::~TCimHTTPNamespace() {
    try {
        disconnect();
    } catch (...) {
        // The connection ends with its client.
    }
    fRemoteNamespace.reset();
    fClient.reset();
}

void TCimHTTPNamespace::Initialize(TCIMContext context) {
    const auto pluginName = context.find(kPluginNameKey);
    if (pluginName == context.end()) {
        LogError("TCIMHTTPNamespace: 'pluginNameQualDeclValue' not passed via context");
        throw TVYXException(kContextValueMissing);
    }
    fPluginName = static_cast<std::string>(pluginName->second);
    fRootClass = boost::dynamic_pointer_cast<TCimHTTPClass>(
        AllocateClass(kRootClassName, boost::shared_ptr<ICIMClass>(), TCIMContext()));
    DeclareQualifier(kPluginNameQualifier, "CIMXML");
    DeclareQualifier(kPluginVersionQualifier, "");
}

void TCimHTTPNamespace::DeclareQualifier(const std::string& name, const std::string& value) {
    AddQualifierDecl(boost::dynamic_pointer_cast<TCimHTTPQualifierDecl>(AllocateQualifierDecl(
        name, TCIMValue(value), ICIMQualifierDecl::eScopeNone, ICIMQualifierDecl::eFlavorNone, TCIMContext())));
}

void TCimHTTPNamespace::connect(std::string host, std::string user, std::string password, int port) {
    try {
        fClient->setTimeout(kConnectedTimeoutMs);
        if (port == kHttpPort) {
            fClient->connect(host.c_str(), kHttpPort, user.c_str(), password.c_str());
        } else if (port == kHttpsPort) {
            const Pegasus::SSLContext sslContext(Pegasus::String::EMPTY, pegCallbackSSL, Pegasus::String::EMPTY);
            fClient->connect(host.c_str(), kHttpsPort, sslContext, user.c_str(), password.c_str());
        }
    } catch (const Pegasus::Exception& failure) {
        FailRemotely("TCimHTTPNamespace::connect failed: ", failure);
    }
    fConnected = true;
}

void TCimHTTPNamespace::disconnect() {
    fClient->disconnect();
    fConnected = false;
}

bool TCimHTTPNamespace::isConnected() { return fConnected; }

Pegasus::CIMNamespaceName* TCimHTTPNamespace::getPegNSP() { return fRemoteNamespace.get(); }

Pegasus::CIMClient* TCimHTTPNamespace::getPegClient() { return fClient.get(); }

// --- Classes -----------------------------------------------------------------------------------------------------

std::string TCimHTTPNamespace::NormalizeName(const std::string& name) { return NQORVYX20::NormalizeName(name); }

boost::shared_ptr<ICIMClass> TCimHTTPNamespace::AllocateClass(const std::string& name,
                                                              boost::shared_ptr<ICIMClass> superClass,
                                                              TCIMContext /*context*/) {
    const auto cls = boost::make_shared<TCimHTTPClass>(shared_from_this(), name,
                                                       boost::dynamic_pointer_cast<TCimHTTPClass>(superClass));
    cls->Initialize();
    return cls;
}

boost::shared_ptr<ICIMClass> TCimHTTPNamespace::GetClass(const std::string& name, TCIMContext context) {
    if (!fConnected) {
        return {};
    }
    if (name.empty() || name == kRootClassName) {
        LogDebug("TCimHTTPNamespace::GetClass " + name + " : return <root>");
        return fRootClass;
    }
    const std::string key = NormalizeName(name);
    LogDebug("TCimHTTPNamespace::GetClass from Pegasus for: " + key);
    if (auto cached = FindEntry(fClasses, key)) {
        LogDebug("TCimHTTPNamespace::GetClass " + key + " Found in TCimHTTPNamespace");
        return cached;
    }
    if (fLookups.size() >= kMaxHierarchyDepth || fLookups.count(key) != 0) {
        LogError("TCimHTTPNamespace::GetClass " + key + ": the server's class hierarchy has a cycle or is too deep");
        return {};
    }
    const TLookup lookup(fLookups, key);
    return FetchClass(name, key, context);
}

boost::shared_ptr<ICIMClass> TCimHTTPNamespace::FetchClass(const std::string& name, const std::string& key,
                                                           TCIMContext context) {
    constexpr bool kLocalOnly = false;
    constexpr bool kIncludeQualifiers = true;
    constexpr bool kIncludeClassOrigin = true;
    try {
        auto definition = fClient->getClass(*fRemoteNamespace, Pegasus::CIMName(name.c_str()), kLocalOnly,
                                            kIncludeQualifiers, kIncludeClassOrigin, Pegasus::CIMPropertyList());
        BuildClass(definition, context);
    } catch (const Pegasus::Exception& failure) {
        LogDebug("TCimHTTPNamespace::GetClass from Pegasus for: " + name +
                 "returned exception: " + ToStdString(failure.getMessage()));
        return {};
    } catch (...) {
        return {}; // a definition that cannot be built is as good as none
    }
    auto built = FindEntry(fClasses, key);
    if (built) {
        LogDebug("TCimHTTPNamespace::GetClass " + key + " Now it is Found in TCimHTTPNamespace");
    } else {
        LogError("TCimHTTPNamespace::GetClass " + key + " Not Found - Something Wrong");
    }
    return built;
}

void TCimHTTPNamespace::BuildClass(Pegasus::CIMClass& definition, TCIMContext context) {
    const std::string name = ToStdString(definition.getClassName());
    const auto& superClassName = definition.getSuperClassName();
    const auto superClass = GetClass(superClassName.isNull() ? "" : ToStdString(superClassName), TCIMContext());
    const auto cls = AllocateClass(name, superClass, TCIMContext());
    StampClass(*cls, kPluginNameQualifier, fPluginName, context);
    StampClass(*cls, kPluginVersionQualifier, kPluginVersion, context);
    cls->AddToNamespace(context);
}

void TCimHTTPNamespace::StampClass(ICIMClass& cls, const std::string& qualifierName, const std::string& value,
                                   TCIMContext context) {
    const auto declaration = GetQualifierDecl(qualifierName, TCIMContext());
    cls.AddQualifier(cls.AllocateQualifier(declaration, TCIMValue(value), context), context);
}

void TCimHTTPNamespace::AddClass(boost::shared_ptr<TCimHTTPClass> cls) {
    const std::string& name = cls->GetName(TCIMContext());
    const auto [entry, isNew] = fClasses.emplace(NormalizeName(name), cls);
    if (isNew) {
        return;
    }
    if (!fRedefine) {
        LogDebug("TCimHTTPNamespace: class " + name + " already defined");
        throw TVYXException(kAlreadyExists);
    }
    cls->AdoptSubClasses(*entry->second);
    entry->second = cls;
}

void TCimHTTPNamespace::RemoveClass(boost::shared_ptr<TCimHTTPClass> /*cls*/) {}

void TCimHTTPNamespace::EnumerateRootClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                                             TCIMContext context) {
    if (fConnected) {
        fRootClass->EnumerateSubClasses(callback, true, context);
    }
}

void TCimHTTPNamespace::EnumerateClassNames(std::string nameSpace, std::string className,
                                            Pegasus::Array<Pegasus::CIMName>& names) {
    constexpr bool kDeepInheritance = true;
    try {
        const auto top = className.empty() ? Pegasus::CIMName() : Pegasus::CIMName(className.c_str());
        names = fClient->enumerateClassNames(Pegasus::CIMNamespaceName(nameSpace.c_str()), top, kDeepInheritance);
    } catch (const Pegasus::Exception& failure) {
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
    const auto [entry, isNew] = fQualifierDecls.emplace(NormalizeName(name), declaration);
    if (isNew) {
        return;
    }
    if (!fRedefine) {
        LogDebug("CimHTTP: TCimHTTPNamespace: qualifier " + name + " already defined");
        throw TVYXException(kAlreadyExists);
    }
    entry->second = declaration;
}

boost::shared_ptr<ICIMQualifierDecl> TCimHTTPNamespace::GetQualifierDecl(const std::string& name,
                                                                         TCIMContext /*context*/) const {
    return FindEntry(fQualifierDecls, NormalizeName(name));
}

void TCimHTTPNamespace::EnumerateQualifierDecls(
    const boost::function<bool(boost::shared_ptr<ICIMQualifierDecl>)>& callback, TCIMContext /*context*/) const {
    VisitEntries(fQualifierDecls, callback);
}

// --- Instances ---------------------------------------------------------------------------------------------------

boost::shared_ptr<ICIMInstance> TCimHTTPNamespace::GetInstance(const TCIMReference& reference,
                                                               TCIMContext context) const {
    // The interface calls this operation const, but a class that is not cached yet is fetched.
    const auto self = boost::const_pointer_cast<TCimHTTPNamespace>(shared_from_this());
    const auto cls =
        boost::dynamic_pointer_cast<TCimHTTPClass>(self->GetClass(reference.GetClassName(), TCIMContext()));
    return Required(cls, kNotFound).GetInstance(reference, context);
}

void TCimHTTPNamespace::EnumerateInstances(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) {
    try {
        constexpr bool kDeepInheritance = false;
        constexpr bool kLocalOnly = false;
        constexpr bool kIncludeQualifiers = false;
        constexpr bool kIncludeClassOrigin = false;
        auto instances =
            fClient->enumerateInstances(nameSpace, className, kDeepInheritance, kLocalOnly, kIncludeQualifiers,
                                        kIncludeClassOrigin, Pegasus::CIMPropertyList());
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

boost::shared_ptr<ICIMNamespace> TCimHTTPNamespace::GetUpcallNamespace() { return fUpcallNamespace.lock(); }

void TCimHTTPNamespace::AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> /*nameSpace*/,
                                               TCIMContext /*context*/) {
    throw TVYXException(kReadOnly);
}

void TCimHTTPNamespace::EnumerateProviders(const boost::function<bool(boost::shared_ptr<IProvider>)>& /*callback*/,
                                           TCIMContext /*context*/) {}

void TCimHTTPNamespace::Subscribe(boost::shared_ptr<ICIMIndicationFilter> /*filter*/,
                                  const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& /*callback*/,
                                  TCIMContext /*context*/) {
    throw TVYXException(kNotSupported);
}

void TCimHTTPNamespace::DeleteInstance(const TCIMReference& /*reference*/, TCIMContext /*context*/) {
    throw TVYXException(kNotSupported);
}

void TCimHTTPNamespace::ModifyInstance(const TCIMReference& /*reference*/, TCIMContext /*values*/,
                                       TCIMContext /*context*/) {
    throw TVYXException(kNotSupported);
}

void TCimHTTPNamespace::ExecuteQuery(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& /*callback*/,
                                     std::string& /*query*/, std::string& /*language*/, TCIMContext /*context*/) {
    throw TVYXException(kNotSupported);
}

void TCimHTTPNamespace::ClearInstances() {}

ICIMNamespace& TCimHTTPNamespace::operator=(ICIMNamespace& /*other*/) { return *this; }

} // namespace NQORVYX20
