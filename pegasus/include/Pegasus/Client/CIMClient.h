#pragma once

#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Client/CIMEnumerationContext.h>
#include <Pegasus/Client/ClientLimits.h>
#include <Pegasus/Client/ClientOpPerformanceDataHandler.h>
#include <Pegasus/Client/LenientFinding.h>
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
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/SSLContext.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/UintArgs.h>

#include <memory>

namespace Pegasus {
inline namespace bundled {

class ExchangeObserver;

/// A connection to one CIM server, and the operations that read from it (CIM-XML over HTTP or HTTPS).
///
/// One TCP connection is kept for many operations. A server may close it between two of them: the client then connects
/// again and sends the request once more, which the caller does not notice.
///
/// Threads: one thread at a time may use a client, in whatever operation. Two clients are independent of each other.
///
/// Errors: every operation throws NotConnectedException without a connection, ConnectionTimeoutException when the
/// time-out has passed, CIMException when the server reports an error, CIMClientMalformedHTTPException,
/// CIMClientHTTPErrorException, CIMClientXmlException or CIMClientResponseException for an answer that is not valid,
/// OutOfMemoryException when memory runs out; connect() throws the last one, too. What else an operation throws, and
/// the usual codes of its CIMException, are stated with the operation.
///
/// Parameters that several operations have:
///   nameSpace           where the objects are. A path that is asked for counts within it, whatever namespace and host
///                       the path itself names.
///   localOnly           leaves out what a class inherits without overriding it; for instances, servers differ in
///                       what they leave out.
///   includeQualifiers   asks for the qualifiers.
///   includeClassOrigin  asks for the class in which each property and method was first declared.
///   propertyList        asks for these properties only; the null list, its default, for all of them.
class CIMClient {
  public:
    CIMClient();
    ~CIMClient();
    CIMClient(const CIMClient&) = delete;
    CIMClient& operator=(const CIMClient&) = delete;

    /// The limit for one operation in milliseconds, from the request sent to the answer complete. It covers all that an
    /// operation takes, including a new connection and a request that is sent again with the credentials. It limits
    /// connect(), too. With 0, every operation ends in ConnectionTimeoutException. 20000 by default.
    void setTimeout(Uint32 timeoutMilliseconds);
    Uint32 getTimeout() const;

    /// Sets the limits of the next connections and operations.
    void setLimits(const ClientLimits& limits);
    const ClientLimits& getLimits() const;

    /// Whether the next operations go on where a part of an answer cannot be read; false by default. If so, a value
    /// that is not valid for its type becomes null; bytes that are not UTF-8 are taken as Latin-1, or as U+FFFD where
    /// that has no character for them; of two properties of an instance with one name the last counts. Each of these is
    /// a finding, and the rest of the answer is delivered. If not, each ends the operation with CIMClientXmlException.
    /// An answer without such faults is read alike in either case. A class with two properties of one name has both in
    /// a lenient reading, which is no finding. An extension, as is takeFindings().
    void setLenient(Boolean lenient);
    Boolean isLenient() const;
    /// Returns the findings since the last call, or since the client was made, those of operations that threw included,
    /// and forgets them.
    LenientFindings takeFindings();

    /// Whether a string property counts as one of embedded objects where only its qualifiers say so (EmbeddedObject,
    /// EmbeddedInstance) and its attribute does not; true by default. If not, its values stay strings. An extension.
    void setQualifiedEmbedding(Boolean isOn);

    /// Whether an object that has two properties with one name is read, with both of them in the server's order; false
    /// by default: it ends the operation with CIMClientXmlException. Without effect while the client is lenient. An
    /// extension.
    void setDoubledProperties(Boolean areRead);

    /// The languages that the server is asked to use for texts that people read, such as the descriptions of errors.
    /// None by default.
    void setRequestAcceptLanguages(const AcceptLanguageList& languages);
    const AcceptLanguageList& getRequestAcceptLanguages() const;

    /// Sets the handler that is told what each operation took. It must live until it is replaced or deregistered.
    void registerClientOpPerformanceDataHandler(ClientOpPerformanceDataHandler& handler);
    void deregisterClientOpPerformanceDataHandler();

    /// Sets the observer that sees all that is sent and received from now on, in place of the one before; null for
    /// none. An extension, which other libraries of this API do not have (ExchangeObserver.h).
    void setExchangeObserver(std::shared_ptr<ExchangeObserver> observer);

    /// Opens the connection now. An empty host means "localhost". The credentials are sent when the server asks for
    /// them. Throws AlreadyConnectedException, InvalidLocatorException when the host cannot be resolved,
    /// CannotConnectException when nothing listens there, ConnectionTimeoutException.
    void connect(const String& host, Uint32 port, const String& user, const String& password);
    /// Opens the connection with TLS. Throws SSLException, too; so does a later operation when the server refuses the
    /// client's certificate.
    void connect(const String& host, Uint32 port, const SSLContext& sslContext, const String& user,
                 const String& password);
    /// Takes over what is set for another client, all but its observer, and connects to its server in the same way,
    /// with its credentials; a connection that this client has already is kept. Throws as connect() does, and
    /// NotConnectedException where the other client has no connection. For a request while the other client is in use
    /// (ArrivingInstances.h); the other one may be used by the same thread alone. An extension.
    void connectLike(const CIMClient& other);
    /// Closes the connection; does nothing without one.
    void disconnect();

    /// The definition of one class. CIM_ERR_NOT_FOUND when there is none.
    CIMClass getClass(const CIMNamespaceName& nameSpace, const CIMName& className, Boolean localOnly = true,
                      Boolean includeQualifiers = true, Boolean includeClassOrigin = false,
                      const CIMPropertyList& propertyList = CIMPropertyList());

    /// The definitions of the subclasses of a class, of the top classes for the null name; with `deepInheritance` those
    /// of all descendants. CIM_ERR_INVALID_CLASS when there is no such class.
    Array<CIMClass> enumerateClasses(const CIMNamespaceName& nameSpace, const CIMName& className = CIMName(),
                                     Boolean deepInheritance = false, Boolean localOnly = true,
                                     Boolean includeQualifiers = true, Boolean includeClassOrigin = false);

    /// The names of the classes that enumerateClasses() returns.
    Array<CIMName> enumerateClassNames(const CIMNamespaceName& nameSpace, const CIMName& className = CIMName(),
                                       Boolean deepInheritance = false);

    /// One instance. Its path is `instanceName`. CIM_ERR_NOT_FOUND when there is none, CIM_ERR_INVALID_CLASS when its
    /// class does not exist. Throws MalformedObjectNameException when a reference among its keys is not a path.
    CIMInstance getInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                            Boolean localOnly = true, Boolean includeQualifiers = false,
                            Boolean includeClassOrigin = false,
                            const CIMPropertyList& propertyList = CIMPropertyList());

    /// The instances of a class and its subclasses, each with its path. With `deepInheritance` those of subclasses come
    /// with all of their properties. CIM_ERR_INVALID_CLASS when there is no such class.
    Array<CIMInstance> enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                          Boolean deepInheritance = true, Boolean localOnly = true,
                                          Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                                          const CIMPropertyList& propertyList = CIMPropertyList());

    /// The paths of the instances that enumerateInstances() returns: class names and keys.
    Array<CIMObjectPath> enumerateInstanceNames(const CIMNamespaceName& nameSpace, const CIMName& className);

    /// The objects at the other end of the associations of an object: instances for an instance, classes for a class
    /// (`objectName` without keys). Each has a path with host and namespace.
    ///   assocClass, role        only associations of this class, in which the object has this role;
    ///   resultClass, resultRole only objects of this class, which have this role.
    /// Null names and empty texts match everything. CIM_ERR_INVALID_PARAMETER for a class that does not exist,
    /// CIM_ERR_NOT_SUPPORTED by servers without associations. Throws MalformedObjectNameException like getInstance().
    Array<CIMObject> associators(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                 const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
                                 const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
                                 Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                                 const CIMPropertyList& propertyList = CIMPropertyList());

    /// The paths of the objects that associators() returns.
    Array<CIMObjectPath> associatorNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                         const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
                                         const String& role = String::EMPTY, const String& resultRole = String::EMPTY);

    /// The associations that refer to an object: only those of `resultClass`, only those in which the object has
    /// `role`. Otherwise like associators().
    Array<CIMObject> references(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
                                Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                                const CIMPropertyList& propertyList = CIMPropertyList());

    /// The paths of the associations that references() returns.
    Array<CIMObjectPath> referenceNames(const CIMNamespaceName& nameSpace, const CIMObjectPath& objectName,
                                        const CIMName& resultClass = CIMName(), const String& role = String::EMPTY);

    /// The value of one property of an instance: a text, or an array of texts, whatever the type of the property, since
    /// servers do not state it; or a reference. CIM_ERR_NO_SUCH_PROPERTY when there is none of that name. DSP0200
    /// discourages servers from having this operation: getInstance() with a property list is more widely available.
    CIMValue getProperty(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                         const CIMName& propertyName);

    /// What a query selects; its objects need not have paths. CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED,
    /// CIM_ERR_INVALID_QUERY.
    Array<CIMObject> execQuery(const CIMNamespaceName& nameSpace, const String& queryLanguage, const String& query);

    /// The declaration of one qualifier. CIM_ERR_NOT_FOUND when there is none.
    CIMQualifierDecl getQualifier(const CIMNamespaceName& nameSpace, const CIMName& qualifierName);

    /// The declarations of all qualifiers of a namespace.
    Array<CIMQualifierDecl> enumerateQualifiers(const CIMNamespaceName& nameSpace);

    // Pulled enumerations (DSP0200 1.4): the objects come in portions whose size the client limits. One of the open
    // operations begins an enumeration and fetches the first portion, which is empty unless `maxObjectCount` says
    // otherwise; the pull operation for its kind of objects fetches the next ones. Once `endOfSequence` is set, the
    // server has closed the enumeration, and the context is no longer open; before that, closeEnumeration() closes it.
    // After an error the server has closed it, too, unless `continueOnError` was set.
    //
    // The codes of their CIMException: CIM_ERR_NOT_SUPPORTED from a server without pulled enumerations,
    // CIM_ERR_INVALID_ENUMERATION_CONTEXT for a context that the server does not know (any more) and, without asking
    // it, for one that is not open. A context stays as it was when an operation throws.
    //
    //   filterQueryLanguage, filterQuery   which of the objects are wanted; empty for all.
    //                                      CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED from servers without filters.
    //   operationTimeout   how many seconds the server keeps the enumeration open between two operations; as long as it
    //                      likes for null, for ever with 0. CIM_ERR_INVALID_OPERATION_TIMEOUT when it will not.
    //   continueOnError    asks for the rest when a part fails. CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED.
    //   maxObjectCount     the most objects of the answer.

    /// As enumerateInstances(): the instances of a class and its subclasses, each with its whole path.
    Array<CIMInstance> openEnumerateInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                              const CIMNamespaceName& nameSpace, const CIMName& className,
                                              Boolean deepInheritance = true, Boolean includeClassOrigin = false,
                                              const CIMPropertyList& propertyList = CIMPropertyList(),
                                              const String& filterQueryLanguage = String::EMPTY,
                                              const String& filterQuery = String::EMPTY,
                                              const Uint32Arg& operationTimeout = Uint32Arg(),
                                              Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    /// As enumerateInstanceNames(), with whole paths.
    Array<CIMObjectPath> openEnumerateInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                                    const CIMNamespaceName& nameSpace, const CIMName& className,
                                                    const String& filterQueryLanguage = String::EMPTY,
                                                    const String& filterQuery = String::EMPTY,
                                                    const Uint32Arg& operationTimeout = Uint32Arg(),
                                                    Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    /// As references(), of an instance.
    Array<CIMInstance> openReferenceInstances(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
        Boolean includeClassOrigin = false, const CIMPropertyList& propertyList = CIMPropertyList(),
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    /// As referenceNames(), of an instance.
    Array<CIMObjectPath> openReferenceInstancePaths(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& resultClass = CIMName(), const String& role = String::EMPTY,
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    /// As associators(), of an instance.
    Array<CIMInstance> openAssociatorInstances(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
        const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
        Boolean includeClassOrigin = false, const CIMPropertyList& propertyList = CIMPropertyList(),
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    /// As associatorNames(), of an instance.
    Array<CIMObjectPath> openAssociatorInstancePaths(
        CIMEnumerationContext& context, Boolean& endOfSequence, const CIMNamespaceName& nameSpace,
        const CIMObjectPath& objectName, const CIMName& assocClass = CIMName(), const CIMName& resultClass = CIMName(),
        const String& role = String::EMPTY, const String& resultRole = String::EMPTY,
        const String& filterQueryLanguage = String::EMPTY, const String& filterQuery = String::EMPTY,
        const Uint32Arg& operationTimeout = Uint32Arg(), Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    /// The instances that a query selects, without paths. With `returnQueryResultClass`, `queryResultClass` is set to
    /// the class that describes them; it stays as it was otherwise.
    Array<CIMInstance> openQueryInstances(CIMEnumerationContext& context, Boolean& endOfSequence,
                                          const CIMNamespaceName& nameSpace, const String& queryLanguage,
                                          const String& query, CIMClass& queryResultClass,
                                          Boolean returnQueryResultClass = false,
                                          const Uint32Arg& operationTimeout = Uint32Arg(),
                                          Boolean continueOnError = false, Uint32 maxObjectCount = 0);

    /// The next instances of an enumeration that openEnumerateInstances(), openReferenceInstances() or
    /// openAssociatorInstances() opened.
    Array<CIMInstance> pullInstancesWithPath(CIMEnumerationContext& context, Boolean& endOfSequence,
                                             Uint32 maxObjectCount);

    /// The next paths of an enumeration that openEnumerateInstancePaths(), openReferenceInstancePaths() or
    /// openAssociatorInstancePaths() opened.
    Array<CIMObjectPath> pullInstancePaths(CIMEnumerationContext& context, Boolean& endOfSequence,
                                           Uint32 maxObjectCount);

    /// The next instances of an enumeration that openQueryInstances() opened.
    Array<CIMInstance> pullInstances(CIMEnumerationContext& context, Boolean& endOfSequence, Uint32 maxObjectCount);

    /// Closes an enumeration before its end.
    void closeEnumeration(CIMEnumerationContext& context);

    /// About how many objects are left; null when the server does not know.
    Uint64Arg enumerationCount(CIMEnumerationContext& context);

    /// Whether the server has pulled enumerations (DSP0200). It is asked to open one for a class that does not exist,
    /// so that none is opened: a server that has them answers CIM_ERR_INVALID_CLASS or CIM_ERR_NOT_FOUND, one without
    /// them CIM_ERR_NOT_SUPPORTED, CIM_ERR_FAILED or the HTTP status 501. An extension, which other libraries of this
    /// API do not have.
    Boolean hasPulledEnumerations(const CIMNamespaceName& nameSpace);

  private:
    friend class ArrivingInstances;
    friend class InstanceStream;

    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace bundled
} // namespace Pegasus
