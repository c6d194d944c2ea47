#pragma once

#include "HostTypes.h"
#include "access/AssociationQuery.h"
#include "access/InstanceSequence.h"
#include "access/MeasurementSink.h"
#include "access/RelatedObjects.h"
#include "access/RemoteModel.h"
#include "access/ServerProbe.h"
#include "cimhttp/DisplayTexts.h"
#include "cimhttp/EmbeddedObject.h"
#include "cimhttp/ReadingIncidents.h"
#include "cimhttp/RemoteFailure.h"
#include "host/TCIMContext.h"

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// What a requested-class document asks for.
struct RequestedClasses {
    std::map<std::string, std::string> settings; ///< see TCimHTTPRequestedClassParser
    std::vector<std::string> names;              ///< of the classes, repeated where the document repeats them
    std::string error; ///< the first thing that is wrong with the document, with its line; empty when nothing is
};

/// What the program needs of the plug-in beyond the object model's interfaces: the plug-in's classes have operations
/// that are not virtual, so that code which calls them must be linked to the plug-in. That code is a library of its
/// own. It is loaded after the plug-in, and the loader binds it to the plug-in that is there already.
class PluginAccess {
  public:
    virtual ~PluginAccess() = default;

    /// See ConnectNamespace. The namespace must be one of the plug-in's, here and below.
    virtual void Connect(NQORVYX20::ICIMNamespace& nameSpace, const std::string& host, const std::string& user,
                         const std::string& password, int port) const = 0;

    /// See WouldVerifyServer.
    virtual bool WouldVerify(NQORVYX20::ICIMNamespace& nameSpace, const std::string& host, int port) const = 0;

    /// Returns the namespace. As long as the returned pointer is held, its operations are measured, if there is a sink,
    /// and after each one the next has no more time than there is until the deadline, if there is one.
    virtual boost::shared_ptr<NQORVYX20::ICIMNamespace>
    Supervised(const boost::shared_ptr<NQORVYX20::ICIMNamespace>& nameSpace,
               const std::shared_ptr<MeasurementSink>& sink,
               std::optional<std::chrono::steady_clock::time_point> deadline) const = 0;

    /// The time for the next request with its answer, and for each one after it, unless they have less already.
    virtual void SetTimeLeft(NQORVYX20::ICIMNamespace& nameSpace, std::chrono::milliseconds time) const = 0;

    /// The time for each request from now on, also when those before had less.
    virtual void RenewTime(NQORVYX20::ICIMNamespace& nameSpace, std::chrono::milliseconds time) const = 0;

    /// Looks at a server below CIM, by a connection of its own: its name, its port, its certificate.
    virtual ServerProbe Probe(const ProbeTarget& target, ServerProbe::Depth depth) const = 0;

    /// See NQORVYX20::LastFailure.
    virtual std::optional<NQORVYX20::RemoteFailure> LastFailure(NQORVYX20::ICIMNamespace& nameSpace) const = 0;

    /// See NQORVYX20::TakeIncidents.
    virtual NQORVYX20::ReadingIncidents TakeIncidents(NQORVYX20::ICIMNamespace& nameSpace) const = 0;

    /// See EmbeddedObjectsOf.
    virtual std::vector<NQORVYX20::EmbeddedObject> EmbeddedObjects(const NQORVYX20::ICIMInstance& instance,
                                                                   const std::string& property) const = 0;

    /// Whether there are any for one of the instance's properties.
    virtual bool HasEmbeddedObjects(const NQORVYX20::ICIMInstance& instance) const = 0;

    // From here to ReadInstance, what goes wrong remotely is thrown as a RemoteError, and the namespace stays as it
    // was.

    /// The names of all classes of the server.
    virtual std::vector<std::string> ClassNames(NQORVYX20::ICIMNamespace& nameSpace) const = 0;

    /// The paths of the instances of a class and its subclasses, as the server gives them, in its order. One request.
    /// Throws std::invalid_argument for a text that is not a name.
    virtual std::vector<NQORVYX20::TCIMReference> InstancePaths(NQORVYX20::ICIMNamespace& nameSpace,
                                                                const std::string& className) const = 0;

    /// Such paths in the server's namespace of that name, whichever one `nameSpace` reads.
    virtual std::vector<NQORVYX20::TCIMReference> InstancePathsIn(NQORVYX20::ICIMNamespace& nameSpace,
                                                                  const std::string& name,
                                                                  const std::string& className) const = 0;

    /// The definition of a class, with what it inherits. Throws std::invalid_argument for a text that is not a name.
    virtual RemoteClass ReadClass(NQORVYX20::ICIMNamespace& nameSpace, const std::string& name) const = 0;

    /// All classes of the server, in its order.
    virtual std::vector<RemoteClassName> ReadHierarchy(NQORVYX20::ICIMNamespace& nameSpace) const = 0;

    /// All qualifiers that the server declares, in its order.
    virtual std::vector<RemoteQualifierDeclaration>
    ReadQualifierDeclarations(NQORVYX20::ICIMNamespace& nameSpace) const = 0;

    /// The instances of a class of the namespace, which is a faithful one and must outlive them; with `deep` those of
    /// its subclasses, too. The context has the keys of ICIMClass::EnumerateInstances.
    virtual std::unique_ptr<InstanceSequence> OpenInstances(NQORVYX20::ICIMNamespace& nameSpace,
                                                            NQORVYX20::ICIMClass& cls, bool deep,
                                                            const NQORVYX20::TCIMContext& context) const = 0;

    /// Whether the server has pulled enumerations.
    virtual bool HasPulledEnumerations(NQORVYX20::ICIMNamespace& nameSpace) const = 0;

    /// One instance, named by an object path in one of the forms that clients of CIM print: `Class.k="v"`,
    /// `ns:Class.k="v"`, `/ns:…`, `//host/ns:…`, `host:port/ns:…`, `http://host:port/ns:…`. Its host and namespace are
    /// ignored here. Throws std::invalid_argument for a text that is not a path: its text belongs after the path in a
    /// sentence, `is not an object path: behind …`.
    virtual boost::shared_ptr<NQORVYX20::ICIMInstance> ReadInstance(NQORVYX20::ICIMNamespace& nameSpace,
                                                                    const std::string& path) const = 0;

    // The associations of an instance. Its path is as for ReadInstance, but the namespace in it counts. What throws
    // std::invalid_argument there does so here, too, and so does a path without keys.

    /// The paths of what a query asks for, with their namespaces, in the server's order. One request.
    virtual std::vector<NQORVYX20::TCIMReference> RelatedPaths(NQORVYX20::ICIMNamespace& nameSpace,
                                                               const AssociationQuery& query) const = 0;

    /// The objects that a query asks for. One request.
    virtual std::unique_ptr<RelatedObjects> ReadRelated(NQORVYX20::ICIMNamespace& nameSpace,
                                                        const AssociationQuery& query) const = 0;

    /// Asks for the instance itself, without its values. The RemoteError says where there is none.
    virtual void CheckInstance(NQORVYX20::ICIMNamespace& nameSpace, const std::string& path) const = 0;

    /// All associations of an instance. One request, or two where they do not name the objects by their keys.
    virtual std::vector<RemoteLink> ReadLinks(NQORVYX20::ICIMNamespace& nameSpace, const std::string& path) const = 0;

    /// An object path as a reference. Throws std::invalid_argument as ReadInstance does.
    virtual NQORVYX20::TCIMReference ParsePath(const std::string& path) const = 0;

    /// The namespace that an object path names; empty for one that names none. Throws std::invalid_argument as
    /// ReadInstance does.
    virtual std::string NamespaceOf(const std::string& path) const = 0;

    /// See DisplayTexts.
    virtual std::vector<std::string> TextsOf(const NQORVYX20::ICIMInstance* instance,
                                             const boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>& declaration,
                                             const NQORVYX20::TCIMValue& value,
                                             const NQORVYX20::DisplayForm& form) const = 0;
    virtual void MakeTexts(NQORVYX20::TextMemory& memory, const NQORVYX20::ICIMInstance* instance,
                           const boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>& declaration,
                           const NQORVYX20::TCIMValue& value, const NQORVYX20::DisplayForm& form) const = 0;

    /// Whether a value of the property that is neither null nor an array nor a date-time always shows as it is,
    /// integers in decimal: without a value map, a unit or the like. Valid as long as no qualifier changes.
    virtual bool ShowsAsItIs(const NQORVYX20::ICIMPropertyDecl& declaration) const = 0;

    /// The names of the properties by which instances of a class tell the unit of one of its properties.
    virtual std::vector<std::string> UnitTellers(const NQORVYX20::ICIMClass& cls,
                                                 const NQORVYX20::ICIMPropertyDecl& declaration) const = 0;

    /// Reads the text of a requested-class document. All that is wrong with it is in the log.
    virtual RequestedClasses ReadRequestedClasses(const std::string& text) const = 0;
};

/// The one function that the library exports. The object lives as long as the process.
using PluginAccessFunction = const PluginAccess*();
constexpr const char* kPluginAccessFunction = "CimhttpPluginAccess";
constexpr const char* kPluginAccessLibrary = "libcimhttp-access.so";

} // namespace cimhttp
