#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#if __has_include(<Pegasus/Client/CIMEnumerationContext.h>)
#include <Pegasus/Client/CIMEnumerationContext.h>
#define CIMHTTP_HAS_PULLED_ENUMERATIONS 1
#endif

namespace NQORVYX20 {

class InstanceArrival;
class ReadingReport;

/// An enumeration that the server keeps open.
struct RemoteEnumeration {
#ifdef CIMHTTP_HAS_PULLED_ENUMERATIONS
    Pegasus::CIMEnumerationContext context;
#endif
    Pegasus::Boolean isAtEnd = false;
};

/// Which of an object's associations count. Texts that are empty let all of them count.
struct AssociationRequest {
    Pegasus::CIMNamespaceName nameSpace;
    Pegasus::CIMObjectPath object;
    std::string associationClass;
    std::string resultClass; ///< of the objects at the other ends, here and below
    std::string role;        ///< of the object itself
    std::string resultRole;
};

/// Every request that the plug-in sends, with its flags. Each operation is one request; what it throws is the client
/// library's. It owns the client and the name of the remote namespace, in which all requests are made that do not name
/// another.
class RemoteServer {
  public:
    /// Throws what the client library throws while it makes a name or a client.
    RemoteServer(std::unique_ptr<Pegasus::CIMNamespaceName> nameSpace, std::unique_ptr<Pegasus::CIMClient> client);
    ~RemoteServer();
    RemoteServer(const RemoteServer&) = delete;
    RemoteServer& operator=(const RemoteServer&) = delete;

    Pegasus::CIMNamespaceName* Namespace() { return namespace_.get(); }
    Pegasus::CIMClient* Client() { return client_.get(); }

    /// Sets the limits of the next connection; those that are not given are the client library's defaults. False,
    /// changing nothing, when the library has no such limits.
    bool SetLimits(std::optional<std::uint64_t> connectMilliseconds, std::optional<std::uint64_t> answerBytes,
                   std::optional<std::uint64_t> answerObjects);

    /// Whether the parts of the next answers that can be read are delivered where others cannot; without effect when
    /// the client library cannot do that.
    void SetLenient(bool lenient);

    /// From now on a string property stays one, whatever its qualifiers say, unless its own attribute says that it
    /// holds an object; without effect when the client library cannot do that.
    void LeaveQualifiedTexts();

    /// From now on an object may have two properties of one name, for the reading to judge; without effect when the
    /// client library does not tell such objects apart.
    void ReadDoubledProperties();

    /// Adds what could not be read of the answers since the last call, and writes it to the log.
    void MoveFindingsTo(ReadingReport& report);

    /// A file to which all that is sent and received from now on is written; none without a path. False, changing
    /// nothing, when the client library does not let anybody see that.
    bool SetTrace(const std::optional<std::string>& path);
    void SetNamespace(const Pegasus::CIMNamespaceName& nameSpace) { *namespace_ = nameSpace; }

    // --- Sent by both readings ---

    Pegasus::CIMQualifierDecl GetQualifier(const Pegasus::CIMName& name);
    Pegasus::Array<Pegasus::CIMName> EnumerateClassNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& top);

    // --- Sent by the compatible reading, which asks for a class twice ---

    /// The definition of which only the names of the class and its superclass are used.
    Pegasus::CIMClass GetClassForItsNames(const std::string& name);

    /// The definition that the class is made of.
    Pegasus::CIMClass GetClassToBuild(const std::string& name);

    /// What the class itself declares, of its instances; with `deep`, what subclasses add, too.
    Pegasus::Array<Pegasus::CIMInstance> EnumerateLocalInstances(const std::string& className, bool deep);

    /// For the diagnostic walk.
    Pegasus::Array<Pegasus::CIMInstance> EnumerateInstancesForDiagnosis(const Pegasus::CIMNamespaceName& nameSpace,
                                                                        const Pegasus::CIMName& className);

    // --- Sent by the faithful reading ---

    /// A definition with all that is inherited and where it comes from.
    Pegasus::CIMClass GetWholeClass(const std::string& name);

    /// Such definitions of the subclasses of a class, of the top classes for an empty name; with `deep`, for all below.
    Pegasus::Array<Pegasus::CIMClass> EnumerateWholeClasses(const std::string& name, bool deep);

    Pegasus::Array<Pegasus::CIMQualifierDecl> EnumerateQualifiers();

    /// The instances of a class and its subclasses with all their properties, or with those of the list. The request is
    /// deep and not local-only, since servers differ in what they leave out otherwise.
    Pegasus::Array<Pegasus::CIMInstance> EnumerateWholeInstances(const std::string& className,
                                                                 const Pegasus::CIMPropertyList& properties);

    /// Begins to read those instances while the server sends them. Empty, and nothing is asked, where the client
    /// library cannot do that, or an answer is being read so already. Other requests may be sent meanwhile, over a
    /// second connection where the first one is in use. Once the server has failed to answer over a second one, the
    /// rest of the answer is read into memory before another request, until the namespace is connected anew.
    std::weak_ptr<InstanceArrival> BeginWholeInstances(const std::string& className,
                                                       const Pegasus::CIMPropertyList& properties);

    /// The next ones, at least one before the end. Throws NotConnectedException, too, where the connection was closed
    /// meanwhile.
    Pegasus::Array<Pegasus::CIMInstance> NextInstances(const std::weak_ptr<InstanceArrival>& arriving,
                                                       Pegasus::Boolean& isAtEnd);

    /// Ends such a reading, at its end or before it; any reading. The connection on which the rest would come is
    /// closed, and the next request opens it again.
    void EndArrival(const std::weak_ptr<InstanceArrival>& arriving) noexcept;
    void EndArrival() noexcept;

    /// Those instances in portions of no more than so many: opens an enumeration and gives the first; gives the next
    /// one. Throws CIMException with CIM_ERR_NOT_SUPPORTED, too, when the client library has no such operations.
    Pegasus::Array<Pegasus::CIMInstance> OpenWholeInstances(RemoteEnumeration& enumeration,
                                                            const std::string& className,
                                                            const Pegasus::CIMPropertyList& properties,
                                                            Pegasus::Uint32 count);
    Pegasus::Array<Pegasus::CIMInstance> PullInstances(RemoteEnumeration& enumeration, Pegasus::Uint32 count);

    /// Ends an enumeration before its end, and waits no longer than two seconds for it.
    void CloseEnumeration(RemoteEnumeration& enumeration);

    /// Whether the server is asked for portions: until it has turned out that it has none.
    bool MayPull() const { return mayPull_; }
    void DoNotPull() { mayPull_ = false; }

    /// Another server may answer from now on.
    void ForgetCapabilities() { mayPull_ = hasSecond_ = true; }

    /// What one enumeration may bring in all: bytes of answers, and instances.
    std::uint64_t MaxBytes() const;
    std::uint64_t MaxInstances() const;

    /// The bytes of the answers so far; 0 when the client library does not count them.
    static std::uint64_t BytesOf(const RemoteEnumeration& enumeration);

    Pegasus::CIMInstance GetWholeInstance(const Pegasus::CIMObjectPath& path);

    // --- Sent for the program, which shows more than the object model holds ---

    /// All classes with no more than their names and superclasses.
    Pegasus::Array<Pegasus::CIMClass> EnumerateClassHeads();

    /// Whether the server has pulled enumerations. Throws CIMException with CIM_ERR_NOT_SUPPORTED, too, when the client
    /// library cannot ask for that.
    bool HasPulledEnumerations();
    Pegasus::Array<Pegasus::CIMObjectPath> EnumerateInstanceNames(const std::string& className);
    Pegasus::Array<Pegasus::CIMObjectPath> EnumerateInstanceNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                                  const std::string& className);

    /// Asks for an instance without its values. Throws what the client library throws where there is none.
    void CheckInstance(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMObjectPath& path);

    /// The objects at the other ends of an object's associations, with all their properties or those of the list; their
    /// paths.
    Pegasus::Array<Pegasus::CIMObject> Associators(const AssociationRequest& request,
                                                   const Pegasus::CIMPropertyList& properties);
    Pegasus::Array<Pegasus::CIMObjectPath> AssociatorNames(const AssociationRequest& request);

    /// The associations themselves, and their paths. They have no other ends of their own.
    Pegasus::Array<Pegasus::CIMObject> References(const AssociationRequest& request,
                                                  const Pegasus::CIMPropertyList& properties);
    Pegasus::Array<Pegasus::CIMObjectPath> ReferenceNames(const AssociationRequest& request);

  private:
    template <typename Ask>
    auto Send(const Ask& ask);
    Pegasus::CIMClass GetClass(const std::string& name, bool includeClassOrigin);

    std::unique_ptr<Pegasus::CIMNamespaceName> namespace_;
    std::unique_ptr<Pegasus::CIMClient> client_;
    std::shared_ptr<InstanceArrival> arrival_;   // which uses the client
    std::unique_ptr<Pegasus::CIMClient> second_; // connected while an answer arrives over the first one
    std::optional<std::string> trace_;
    bool mayPull_ = true;
    bool hasSecond_ = true; // the server, a second connection for the same client
};

} // namespace NQORVYX20
