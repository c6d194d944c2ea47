#pragma once

#include "Failure.h"
#include "access/AssociationQuery.h"
#include "access/InstanceSequence.h"
#include "access/RemoteModel.h"
#include "connection/Connection.h"
#include "connection/IncidentTally.h"
#include "connection/Plugin.h"
#include "waiting/ProgressWait.h"

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {
class ICIMClass;
class ICIMInstance;
class TVYXException;
} // namespace NQORVYX20

namespace cimhttp {

/// The Failure about a class that a server does not have: it suggests classes with similar names, or how to see all.
Failure NoSuchClass(const std::string& name, const std::string& server, const std::vector<std::string>& classes);

/// A connected namespace. What the plug-in reports by a status becomes a Failure here that names the server, the thing
/// asked for, the reason and what to try. Its status is kConnection, kAuthentication, kNotFound or kServer; a
/// ServerFailure has more to say, and a LoginFailure says that nothing else can be had either.
class Session {
  public:
    /// An instance, and the namespace that it is in; empty for the one that everything else is read from.
    struct FoundInstance {
        boost::shared_ptr<NQORVYX20::ICIMInstance> instance;
        std::string nameSpace;
    };

    /// The outcome of asking for something.
    struct Trial {
        std::chrono::microseconds time;
        std::optional<NQORVYX20::RemoteFailure> failure;
    };

    /// Connects. Throws Failure(kConnection) when that fails, and Failure(kUsage) when the namespace is not the name of
    /// one. `wait` is how the session waits for the server.
    Session(const Plugin& plugin, const Connection& connection, const ProgressWait& wait);

    /// This session for another thread than the main one: it waits without showing progress or taking interrupts.
    Session WithoutProgress() const;

    const Plugin& LoadedPlugin() const { return plugin_; }

    const Connection& Target() const { return connection_; }

    /// The server as a URL.
    std::string Server() const { return connection_.Url(); }

    /// The server and, unless it is the usual one, the namespace.
    std::string Place() const { return connection_.Place(); }

    /// The names of all classes, in the server's order.
    std::vector<std::string> ClassNames();

    /// All classes with their superclasses, in the server's order.
    std::vector<RemoteClassName> Hierarchy();

    /// What the server says of a class, with what it inherits. Fails like Class().
    RemoteClass Definition(const std::string& name);

    /// The qualifiers that the server declares, in its order.
    std::vector<RemoteQualifierDeclaration> QualifierDeclarations();

    /// QualifierDeclarations(), or none from a server that does not list its qualifiers.
    std::vector<RemoteQualifierDeclaration> KnownQualifiers();

    /// One instance by its object path, from the namespace that the path names. Throws Failure(kUsage) for what is no
    /// path; about its class it fails like Class(). Valid as long as the session.
    FoundInstance Instance(const std::string& path);

    /// A class by name. Throws Failure(kUsage) for what is no name; for a class that there is not, the Failure suggests
    /// those with names like it.
    boost::shared_ptr<NQORVYX20::ICIMClass> Class(const std::string& name);

    /// The instances of a class, with `deep` those of its subclasses, too, in the order of their paths. The properties
    /// with these names are wanted, or all without names; the others are null. Asks the server each time.
    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Instances(NQORVYX20::ICIMClass& cls, bool deep,
                                                                      const std::vector<std::string>& properties);

    /// Instances(), read on demand: no more than `held` are in memory. Those of a class that has more come in the
    /// server's order. The session must outlive it. Asks for nothing yet.
    std::unique_ptr<InstanceSequence> OpenInstances(NQORVYX20::ICIMClass& cls, bool deep,
                                                    const std::vector<std::string>& properties, std::size_t held) const;

    /// The next of them; none at the end. An interrupt is passed on to the server before the program ends.
    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Next(InstanceSequence& instances,
                                                                 const std::string& className) const;

    /// Ends the program if an interrupt has come since, and tells the server that no more is wanted.
    void EndIfInterrupted(std::unique_ptr<InstanceSequence>& instances) const;

    /// The paths of the instances of a class and its subclasses, in the server's order. Fails like Class().
    std::vector<NQORVYX20::TCIMReference> InstancePaths(const std::string& className);

    /// The instances in a namespace of the server, with all properties of their own classes; or their paths. Throws
    /// RemoteError for an error that the server answers with, since another namespace may have them.
    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> InstancesIn(const std::string& nameSpace,
                                                                        const std::string& className);
    std::vector<NQORVYX20::TCIMReference> InstancePathsIn(const std::string& nameSpace, const std::string& className);

    /// The name of the namespace that everything is read from.
    std::string NamespaceName() const;

    /// Asks for `thing` only to see how that goes. Throws Failure only when nothing can be asked at all.
    Trial Try(const std::string& thing, const std::function<void(const PluginAccess&, NQORVYX20::ICIMNamespace&)>& ask);

    /// Throws the Failure that a remote one is to the user, about `what`.
    [[noreturn]] void Fail(const std::string& what, const NQORVYX20::RemoteFailure& failure) const;

    /// What a query about an instance's associations asks for, see AssociationQuery, whose host is filled in: the
    /// objects, or their paths, in the server's order. Throws Failure(kUsage) for what is no path or name; the
    /// instance need not exist.
    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Related(AssociationQuery query);
    std::vector<NQORVYX20::TCIMReference> RelatedPaths(AssociationQuery query);

    /// All associations of an instance. Fails like Related().
    std::vector<RemoteLink> Links(const std::string& path);

    /// The reference that a path of the user's means: with the namespace, and without the host, which is ignored.
    /// Throws Failure(kUsage) for what is no path.
    NQORVYX20::TCIMReference ReferenceTo(const std::string& path);

    /// Throws Failure(kNotFound) where the server says that there is no such instance.
    void CheckExists(const std::string& path);

    /// What could not be taken from the server's answers since the last call.
    IncidentTally TakeIncidents();

  private:
    using Namespace = boost::shared_ptr<NQORVYX20::ICIMNamespace>;

    /// Throws as the constructor does.
    Namespace Open(const Connection& connection) const;
    Namespace Allocate(const Connection& connection) const;

    Failure NotConnected(const NQORVYX20::RemoteFailure& failure) const;

    /// The one that everything is read from, or another of the same server, opened when it is first needed.
    NQORVYX20::ICIMNamespace& NamespaceNamed(const std::string& name);

    /// The one that everything is read from, if that has this name; otherwise NamespaceNamed().
    NQORVYX20::ICIMNamespace& NamespaceOrOwn(const std::string& name);

    /// The namespace that a path names, empty for the one that everything is read from.
    std::string NamespaceIn(const std::string& path) const;

    /// The class that a path names.
    std::string ClassIn(const std::string& path) const;

    std::vector<std::string> ClassNamesIn(NQORVYX20::ICIMNamespace& nameSpace);

    /// Throws the Failure, unless a remote one is an error that the server answers with.
    void FailUnlessAnswered(const std::string& what, const NQORVYX20::RemoteFailure& failure) const;

    [[noreturn]] void FailAboutClass(const std::string& name, NQORVYX20::ICIMNamespace& nameSpace,
                                     const NQORVYX20::RemoteFailure& failure);

    /// Why the operation failed that threw the exception.
    NQORVYX20::RemoteFailure ReasonOf(const NQORVYX20::TVYXException& exception,
                                      NQORVYX20::ICIMNamespace& nameSpace) const;

    /// What goes wrong when associations are asked for.
    [[noreturn]] void FailAboutAssociations(const AssociationQuery& query, const NQORVYX20::RemoteFailure& failure);

    /// Reads, and shows meanwhile that `thing` is being read.
    template <typename Operation>
    auto Awaited(const std::string& thing, const Operation& operation) const;

    /// Awaited(); what goes wrong remotely becomes a Failure about `thing`, or about a class.
    template <typename Operation>
    auto Remotely(const std::string& thing, const Operation& operation) const;
    template <typename Operation>
    auto ReadingAssociations(const AssociationQuery& query, const Operation& operation);
    template <typename Operation>
    auto ReadingClass(const std::string& thing, const std::string& className, const Operation& operation);

    Plugin plugin_;
    Connection connection_;
    std::optional<ProgressWait> wait_;
    Namespace namespace_;
    std::map<std::string, Namespace> others_; // by name
};

} // namespace cimhttp
