#pragma once

#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/CIMEnumerationContext.h>
#include <Pegasus/Client/ClientOpPerformanceDataHandler.h>
#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/SSLContext.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/UintArgs.h>

namespace Pegasus {

class CIMClient {
  public:
    CIMClient();
    ~CIMClient();

    Uint32 getTimeout() const;
    void setTimeout(Uint32 timeoutMilliseconds);
    AcceptLanguageList getRequestAcceptLanguages() const;
    void setRequestAcceptLanguages(const AcceptLanguageList& languages);
    void registerClientOpPerformanceDataHandler(ClientOpPerformanceDataHandler& handler);
    void deregisterClientOpPerformanceDataHandler();

    void connect(const String& host, Uint32 port, const String& user, const String& password);
    void connect(const String& host, Uint32 port, const SSLContext& sslContext, const String& user,
                 const String& password);
    void disconnect();

    CIMClass getClass(const CIMNamespaceName& nameSpace, const CIMName& className, Boolean localOnly = true,
                      Boolean includeQualifiers = true, Boolean includeClassOrigin = false,
                      const CIMPropertyList& propertyList = CIMPropertyList());
    Array<CIMClass> enumerateClasses(const CIMNamespaceName& nameSpace, const CIMName& className = CIMName(),
                                     Boolean deepInheritance = false, Boolean localOnly = true,
                                     Boolean includeQualifiers = true, Boolean includeClassOrigin = false);
    Array<CIMName> enumerateClassNames(const CIMNamespaceName& nameSpace, const CIMName& className = CIMName(),
                                       Boolean deepInheritance = false);
    CIMInstance getInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                            Boolean localOnly = true, Boolean includeQualifiers = false,
                            Boolean includeClassOrigin = false,
                            const CIMPropertyList& propertyList = CIMPropertyList());
    Array<CIMInstance> enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                          Boolean deepInheritance = true, Boolean localOnly = true,
                                          Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                                          const CIMPropertyList& propertyList = CIMPropertyList());
    Array<CIMObjectPath> enumerateInstanceNames(const CIMNamespaceName& nameSpace, const CIMName& className);
    Array<CIMObject> associators(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                 const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
                                 const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
                                 Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                                 const CIMPropertyList& propertyList = CIMPropertyList());
    Array<CIMObjectPath> associatorNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                         const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
                                         const String& role = String::EMPTY, const String& resultRole = String::EMPTY);
    Array<CIMObject> references(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
                                Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                                const CIMPropertyList& propertyList = CIMPropertyList());
    Array<CIMObjectPath> referenceNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                        const CIMName& resultClass = CIMName(), const String& role = String::EMPTY);
    CIMValue getProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                         const CIMName& propertyName);
    Array<CIMObject> execQuery(const CIMNamespaceName& nameSpace, const String& queryLanguage, const String& query);
    CIMQualifierDecl getQualifier(const CIMNamespaceName& nameSpace, const CIMName& qualifierName);
    Array<CIMQualifierDecl> enumerateQualifiers(const CIMNamespaceName& nameSpace);

    Array<CIMInstance> openEnumerateInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                              const CIMNamespaceName& nameSpace, const CIMName& className,
                                              Boolean deepInheritance = true, Boolean includeClassOrigin = false,
                                              const CIMPropertyList& propertyList = CIMPropertyList(),
                                              const String& filterQueryLanguage = String::EMPTY,
                                              const String& filterQuery = String::EMPTY,
                                              const Uint32Arg& operationTimeout = Uint32Arg(),
                                              Boolean continueOnError = false, Uint32 maxObjectCount = 0);
    Array<CIMObjectPath> openEnumerateInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                    const CIMNamespaceName& nameSpace, const CIMName& className,
                                                    const String& filterQueryLanguage = String::EMPTY,
                                                    const String& filterQuery = String::EMPTY,
                                                    const Uint32Arg& operationTimeout = Uint32Arg(),
                                                    Boolean continueOnError = false, Uint32 maxObjectCount = 0);
    Array<CIMInstance> openReferenceInstances(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
        Boolean includeClassOrigin = false, const CIMPropertyList& propertyList = CIMPropertyList(),
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);
    Array<CIMObjectPath> openReferenceInstancePaths(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);
    Array<CIMInstance> openAssociatorInstances(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
        const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
        Boolean includeClassOrigin = false, const CIMPropertyList& propertyList = CIMPropertyList(),
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);
    Array<CIMObjectPath> openAssociatorInstancePaths(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
        const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);
    Array<CIMInstance> openQueryInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                          const CIMNamespaceName& nameSpace, const String& queryLanguage,
                                          const String& query, CIMClass& queryResultClass,
                                          Boolean returnQueryResultClass = false,
                                          const Uint32Arg& operationTimeout = Uint32Arg(),
                                          Boolean continueOnError = false, Uint32 maxObjectCount = 0);
    Array<CIMInstance> pullInstancesWithPath(CIMEnumerationContext& context, Boolean& endOfSequence,
                                             Uint32 maxObjectCount);
    Array<CIMObjectPath> pullInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                           Uint32 maxObjectCount);
    Array<CIMInstance> pullInstances(CIMEnumerationContext& context, Boolean& endOfSequence, Uint32 maxObjectCount);
    void closeEnumeration(CIMEnumerationContext& context);
    Uint64Arg enumerationCount(CIMEnumerationContext& context);

  private:
    CIMClient(const CIMClient& other);
    CIMClient& operator=(const CIMClient& other);

    void* rep_;
};

} // namespace Pegasus
