#pragma once

#include "provider/ConnectionOptions.h"
#include "reading/RemoteNamespace.h"

#include <Pegasus/Client/CIMClient.h>

#include <boost/enable_shared_from_this.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <string>

namespace NQORVYX20 {

class ConnectionPlan;

/// One remote CIM server as a namespace. It owns its client, the classes that it has fetched and the qualifier
/// declarations that they use; all of them live as long as the namespace. Owned by a boost::shared_ptr.
///
/// A host chooses with kReadingKey (ContextKeys.h) how the server is read. Without that choice the namespace is
/// compatible. In a faithful one, operations that ask the server throw TVYXException eNotFound for what it does not
/// have, eRemoteConnectionFailed when it cannot be read, after a line in the log; LastFailure says why.
///
/// A namespace and all objects reached through it are used from one thread at a time; two namespaces are independent.
/// Waiting is bounded: for each step towards a connection by kConnectTimeoutKey, for a request by kTimeoutKey.
class TCimHTTPNamespace : public RemoteNamespace, public boost::enable_shared_from_this<TCimHTTPNamespace> {
  public:
    /// Creates the client. With `redefine`, a class or qualifier declaration replaces one of the same name; without, a
    /// taken name is refused. Throws TVYXException eRemoteConnectionFailed, after a line in the log, when the client
    /// cannot be created.
    explicit TCimHTTPNamespace(bool redefine);

    /// Disconnects.
    ~TCimHTTPNamespace() override;
    TCimHTTPNamespace(const TCimHTTPNamespace&) = delete;
    TCimHTTPNamespace& operator=(const TCimHTTPNamespace&) = delete;

    /// Takes the plug-in's name from the context key "pluginNameQualDeclValue", makes the root class and declares the
    /// qualifiers PLUGINNAME and PLUGINVERSION. Throws TVYXException, after a line in the log: eContextValueMissing
    /// without that key, eTypeMismatch for what ContextKeys.h does not allow.
    void Initialize(TCIMContext context);

    /// Connects to a server: plain on port 5988, with TLS but without verification of the server on port 5989. On any
    /// other port nothing is attempted, and the namespace counts as connected all the same. The context of
    /// AllocateNamespace (ContextKeys.h) and the policy of the machine, which is read anew each time, can say
    /// otherwise. Throws TVYXException eRemoteConnectionFailed, after a line in the log that says why; the namespace
    /// then stays as it was.
    void connect(std::string host, std::string user, std::string password, int port);

    /// Whether connect() would verify that server, by what the host says or by the machine's policy. True, too, where
    /// it would refuse the connection. Connects to nothing.
    bool WouldVerify(const std::string& host, int port) const;

    /// Ends the connection; classes already fetched are kept for the next one.
    void disconnect();

    // A host that was built on its own links these three, and GetUpcallNamespace, by their signatures, which are not
    // const; so they are not inline either.
    bool isConnected();

    /// The remote namespace and the client, owned by this namespace.
    Pegasus::CIMNamespaceName* getPegNSP();
    Pegasus::CIMClient* getPegClient();

    /// The name in lower case, under which every collection of the plug-in keeps its elements. The empty name is
    /// accepted. Throws TVYXException eInvalidName, after a line in the log, for a name that is not made of letters,
    /// digits and underscores or that begins with a digit.
    static std::string NormalizeName(const std::string& name);

    /// Always empty: upcalls are not supported.
    boost::shared_ptr<ICIMNamespace> GetUpcallNamespace();

    /// Asks the server for the names of all classes below a class, or of all classes when `className` is empty. When
    /// that fails, one line goes to the log and `names` stays as it was.
    void EnumerateClassNames(std::string nameSpace, std::string className, Pegasus::Array<Pegasus::CIMName>& names);

    /// Fetches the instances of a class and reads each path, property name and value, for diagnosis. Changes nothing
    /// and never throws.
    void EnumerateInstances(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className);

    // ICIMNamespace. Refused: AddUnderlyingNamespace with TVYXException eReadOnly; Subscribe, DeleteInstance,
    // ModifyInstance and ExecuteQuery with eNotSupported. SetUpcallNamespace, EnumerateProviders, ClearInstances and
    // the assignment do nothing.
    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TCIMContext context) const override;
    void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> nameSpace, TCIMContext context) override;
    void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> nameSpace, TCIMContext context) override;

    /// A class that is read from the server and not added. Throws TVYXException eNotFound when the server does not have
    /// it, eRemoteConnectionFailed when it cannot be read, after a line in the log.
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name, boost::shared_ptr<ICIMClass> superClass,
                                               TCIMContext context) override;

    /// The root class for an empty name or "<root>"; otherwise a class from the cache, or fetched from the server. A
    /// compatible namespace fetches its superclasses, too, and gives an empty pointer when it is not connected or the
    /// class could not be had; the log says why. A faithful one throws then. Of a server without the operation it gives
    /// a class that gets its declarations from the instances that are read. Throws TVYXException eInvalidName for an
    /// invalid name.
    boost::shared_ptr<ICIMClass> GetClass(const std::string& name, TCIMContext context) override;

    /// The classes fetched so far, in a faithful namespace all classes of the server; nothing when the namespace is not
    /// connected.
    void EnumerateRootClasses(const boost::function<bool(boost::shared_ptr<ICIMClass>)>& callback,
                              TCIMContext context) override;
    void EnumerateProviders(const boost::function<bool(boost::shared_ptr<IProvider>)>& callback,
                            TCIMContext context) override;
    boost::shared_ptr<ICIMQualifierDecl> AllocateQualifierDecl(const std::string& name, const TCIMValue& defaultValue,
                                                               ICIMQualifierDecl::EScope scope,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) override;

    void Subscribe(boost::shared_ptr<ICIMIndicationFilter> filter,
                   const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback,
                   TCIMContext context) override;

    /// In a compatible namespace the instance that the class has filed under the reference's path, or an empty pointer;
    /// the class must exist: where assertions are on, a missing one ends in an assertion, otherwise in
    /// TVYXException eNotFound. In a faithful one the instance as it was read last, or else as the server gives it now.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) const override;
    void DeleteInstance(const TCIMReference& reference, TCIMContext context) override;
    void ModifyInstance(const TCIMReference& reference, TCIMContext values, TCIMContext context) override;
    void ExecuteQuery(const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, std::string& query,
                      std::string& language, TCIMContext context) override;
    void ClearInstances() override;
    virtual ICIMNamespace& operator=(ICIMNamespace& other);

  private:
    static constexpr std::uint32_t kTimeoutMs = 65535000; // of a request, once connected

    void Open(const ConnectionPlan& plan, const std::string& host, const std::string& user, const std::string& password,
              int port);
    void Connect(const ConnectionPlan& plan, const std::string& host, const std::string& user,
                 const std::string& password, int port);
    [[noreturn]] void RefuseConnection(RemoteFailure failure);
    void Apply(const ConnectionOptions& options);
    std::uint32_t TimeoutMs() const;

    /// The compatible one, where no other was set.
    Reading& ChosenReading();

    boost::weak_ptr<ICIMNamespace> upcallNamespace_;
    bool connected_ = false;
    ConnectionOptions options_; // those of the host
    ConnectionOptions applied_; // those that count now: the host's, under the policy of the newest connection
};

} // namespace NQORVYX20
