#include "client/ClientImpl.h"
#include "client/OperationParameters.h"
#include "model/Unchecked.h"

#include <Pegasus/Client/InstanceStream.h>

#include <utility>

namespace Pegasus {
inline namespace bundled {

using namespace client;

CIMClient::CIMClient() : impl_(std::make_unique<Impl>()) {}

CIMClient::~CIMClient() = default;

void CIMClient::setTimeout(Uint32 timeoutMilliseconds) { impl_->timeout = timeoutMilliseconds; }

Uint32 CIMClient::getTimeout() const { return impl_->timeout; }

void CIMClient::setLimits(const ClientLimits& limits) { impl_->setLimits(limits); }

const ClientLimits& CIMClient::getLimits() const { return impl_->limits(); }

void CIMClient::setLenient(Boolean lenient) { impl_->lenient = lenient; }

Boolean CIMClient::isLenient() const { return impl_->lenient; }

void CIMClient::setQualifiedEmbedding(Boolean isOn) { impl_->setQualifiedEmbedding(isOn); }

void CIMClient::setDoubledProperties(Boolean areRead) { impl_->setDoubledProperties(areRead); }

LenientFindings CIMClient::takeFindings() { return impl_->findings.take(); }

void CIMClient::setRequestAcceptLanguages(const AcceptLanguageList& languages) { impl_->languages = languages; }

const AcceptLanguageList& CIMClient::getRequestAcceptLanguages() const { return impl_->languages; }

void CIMClient::registerClientOpPerformanceDataHandler(ClientOpPerformanceDataHandler& handler) {
    impl_->performanceHandler = &handler;
}

void CIMClient::deregisterClientOpPerformanceDataHandler() { impl_->performanceHandler = nullptr; }

void CIMClient::setExchangeObserver(std::shared_ptr<ExchangeObserver> observer) {
    impl_->setObserver(std::move(observer));
}

void CIMClient::connect(const String& host, Uint32 port, const String& user, const String& password) {
    impl_->connect(host, port, std::nullopt, user, password);
}

void CIMClient::connect(const String& host, Uint32 port, const SSLContext& sslContext, const String& user,
                        const String& password) {
    impl_->connect(host, port, sslContext, user, password);
}

void CIMClient::connectLike(const CIMClient& other) { impl_->connectLike(*other.impl_); }

void CIMClient::disconnect() { impl_->disconnect(); }

// The operations. The names of their parameters are those of DSP0200, intrinsic methods.

CIMClass CIMClient::getClass(const CIMNamespaceName& nameSpace, const CIMName& className, Boolean localOnly,
                             Boolean includeQualifiers, Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList) {
    return impl_->call<Classes<Single>>("GetClass", nameSpace, [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("LocalOnly", localOnly);
        addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
    });
}

Array<CIMClass> CIMClient::enumerateClasses(const CIMNamespaceName& nameSpace, const CIMName& className,
                                            Boolean deepInheritance, Boolean localOnly, Boolean includeQualifiers,
                                            Boolean includeClassOrigin) {
    return impl_->call<Classes<Many>>("EnumerateClasses", nameSpace, [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("DeepInheritance", deepInheritance);
        request.addBoolean("LocalOnly", localOnly);
        addExtent(request, includeQualifiers, includeClassOrigin);
    });
}

Array<CIMName> CIMClient::enumerateClassNames(const CIMNamespaceName& nameSpace, const CIMName& className,
                                              Boolean deepInheritance) {
    return impl_->call<ClassNames>("EnumerateClassNames", nameSpace, [&](RequestEncoder& request) {
        request.addClassName("ClassName", className);
        request.addBoolean("DeepInheritance", deepInheritance);
    });
}

CIMInstance CIMClient::getInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                                   Boolean localOnly, Boolean includeQualifiers, Boolean includeClassOrigin,
                                   const CIMPropertyList& propertyList) {
    return impl_->withinMemory([&] {
        CIMInstance instance = impl_->call<Instances<Single>>("GetInstance", nameSpace, [&](RequestEncoder& request) {
            request.addInstanceName("InstanceName", instanceName);
            request.addBoolean("LocalOnly", localOnly);
            addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
        });
        detail::Unchecked::setPath(instance, instanceName); // which may name a superclass
        return instance;
    });
}

Array<CIMInstance> CIMClient::enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                                 Boolean deepInheritance, Boolean localOnly, Boolean includeQualifiers,
                                                 Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return impl_->call<NamedInstances>("EnumerateInstances", nameSpace, [&](RequestEncoder& request) {
        addInstancesOf(request, className, deepInheritance, localOnly, includeQualifiers, includeClassOrigin,
                       propertyList);
    });
}

Array<CIMObjectPath> CIMClient::enumerateInstanceNames(const CIMNamespaceName& nameSpace, const CIMName& className) {
    return impl_->call<InstanceNames>("EnumerateInstanceNames", nameSpace,
                                      [&](RequestEncoder& request) { request.addClassName("ClassName", className); });
}

Array<CIMObject> CIMClient::associators(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                        const CIMName& assocClass, const CIMName& resultClass, const String& role,
                                        const String& resultRole, Boolean includeQualifiers, Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList) {
    return impl_->call<Objects>("Associators", nameSpace, [&](RequestEncoder& request) {
        addAssociators(request, objectName, assocClass, resultClass, role, resultRole);
        addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
    });
}

Array<CIMObjectPath> CIMClient::associatorNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                                const CIMName& assocClass, const CIMName& resultClass,
                                                const String& role, const String& resultRole) {
    return impl_->call<ObjectPaths>("AssociatorNames", nameSpace, [&](RequestEncoder& request) {
        addAssociators(request, objectName, assocClass, resultClass, role, resultRole);
    });
}

Array<CIMObject> CIMClient::references(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                       const CIMName& resultClass, const String& role, Boolean includeQualifiers,
                                       Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return impl_->call<Objects>("References", nameSpace, [&](RequestEncoder& request) {
        addReferences(request, objectName, resultClass, role);
        addExtent(request, includeQualifiers, includeClassOrigin, propertyList);
    });
}

Array<CIMObjectPath> CIMClient::referenceNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                               const CIMName& resultClass, const String& role) {
    return impl_->call<ObjectPaths>("ReferenceNames", nameSpace, [&](RequestEncoder& request) {
        addReferences(request, objectName, resultClass, role);
    });
}

CIMValue CIMClient::getProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                                const CIMName& propertyName) {
    return impl_->call<Value>("GetProperty", nameSpace, [&](RequestEncoder& request) {
        request.addInstanceName("InstanceName", instanceName);
        request.addString("PropertyName", propertyName.getString().view());
    });
}

Array<CIMObject> CIMClient::execQuery(const CIMNamespaceName& nameSpace, const String& queryLanguage,
                                      const String& query) {
    return impl_->call<Objects>("ExecQuery", nameSpace, [&](RequestEncoder& request) {
        request.addString("QueryLanguage", queryLanguage.view());
        request.addString("Query", query.view());
    });
}

CIMQualifierDecl CIMClient::getQualifier(const CIMNamespaceName& nameSpace, const CIMName& qualifierName) {
    return impl_->call<QualifierDecls<Single>>("GetQualifier", nameSpace, [&](RequestEncoder& request) {
        request.addString("QualifierName", qualifierName.getString().view());
    });
}

Array<CIMQualifierDecl> CIMClient::enumerateQualifiers(const CIMNamespaceName& nameSpace) {
    return impl_->call<QualifierDecls<Many>>("EnumerateQualifiers", nameSpace, [](RequestEncoder& /*request*/) {});
}

Boolean InstanceStream::enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                           const Taker& take, Boolean deepInheritance, Boolean localOnly,
                                           Boolean includeQualifiers, Boolean includeClassOrigin,
                                           const CIMPropertyList& propertyList) {
    const auto addParameters = [&](RequestEncoder& request) {
        addInstancesOf(request, className, deepInheritance, localOnly, includeQualifiers, includeClassOrigin,
                       propertyList);
    };
    return client_.impl_->handOver("EnumerateInstances", nameSpace, addParameters, take);
}

} // namespace bundled
} // namespace Pegasus
