#pragma once

#include <Pegasus/Client/CIMClientException.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/SSLContext.h>

#include <memory>

namespace Pegasus {

/// A connection to one CIM server and the operations on it (CIM-XML over HTTP or HTTPS).
///
/// One TCP connection is kept for many operations. A server may close it between two of them: the client then connects
/// again and sends the request, once, unseen by the caller. One thread at a time may use a client; two clients are
/// independent of each other.
///
/// Every operation throws NotConnectedException without a connection, ConnectionTimeoutException past the time-out,
/// CIMException when the server reports an error, CIMClientMalformedHTTPException, CIMClientHTTPErrorException,
/// CIMClientXmlException or CIMClientResponseException for an answer that is not a good one.
class CIMClient {
  public:
    CIMClient();
    ~CIMClient();
    CIMClient(const CIMClient&) = delete;
    CIMClient& operator=(const CIMClient&) = delete;

    /// The limit for one operation in milliseconds, from the request sent to the answer complete. 20000 at first.
    void setTimeout(Uint32 timeoutMilliseconds);
    Uint32 getTimeout() const;

    /// Opens the connection now. An empty host means "localhost". The credentials are sent when the server asks for
    /// them. Throws AlreadyConnectedException, InvalidLocatorException when the host cannot be resolved,
    /// CannotConnectException when nothing listens there, ConnectionTimeoutException.
    void connect(const String& host, Uint32 port, const String& user, const String& password);
    /// The same with a TLS handshake; a failed one throws SSLException or CannotConnectException.
    void connect(const String& host, Uint32 port, const SSLContext& sslContext, const String& user,
                 const String& password);
    /// Closes the connection; does nothing without one.
    void disconnect();

    /// The definition of one class.
    CIMClass getClass(const CIMNamespaceName& nameSpace, const CIMName& className, Boolean localOnly = true,
                      Boolean includeQualifiers = true, Boolean includeClassOrigin = false,
                      const CIMPropertyList& propertyList = CIMPropertyList());

    /// The declaration of one qualifier.
    CIMQualifierDecl getQualifier(const CIMNamespaceName& nameSpace, const CIMName& qualifierName);

    /// The names of the subclasses of a class, of the top classes for the null name; with `deepInheritance` those of
    /// all descendants.
    Array<CIMName> enumerateClassNames(const CIMNamespaceName& nameSpace, const CIMName& className = CIMName(),
                                       Boolean deepInheritance = false);

    /// The instances of a class and its subclasses, each with its path. With `deepInheritance` those of subclasses come
    /// with all of their properties.
    Array<CIMInstance> enumerateInstances(const CIMNamespaceName& nameSpace, const CIMName& className,
                                          Boolean deepInheritance = true, Boolean localOnly = true,
                                          Boolean includeQualifiers = false, Boolean includeClassOrigin = false,
                                          const CIMPropertyList& propertyList = CIMPropertyList());

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace Pegasus
