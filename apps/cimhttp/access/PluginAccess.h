#pragma once

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "access/RemoteModel.h"

namespace NQORVYX20 {
class ICIMInstance;
class ICIMNamespace;
class ICIMProperty;
class ICIMPropertyDecl;
class TCIMValue;
} // namespace NQORVYX20

namespace cimhttp {

/// What a requested-class document asks for.
struct RequestedClasses {
    std::map<std::string, std::string> settings; ///< see TCimHTTPRequestedClassParser
    std::vector<std::string> names;              ///< of the classes, repeated where the document repeats them
    std::string error; ///< the first thing that is wrong with the document, with its line; empty when nothing is
};

/// What the program needs of the plug-in beyond the object model's interfaces: the plug-in's classes have operations
/// that are not virtual, so that code which calls them must be linked to the plug-in. That code is a library of its
/// own. It is loaded behind the plug-in, and the loader binds it to the plug-in that is there already.
class PluginAccess {
  public:
    virtual ~PluginAccess() = default;

    /// See TCimHTTPNamespace::connect. The namespace must be the plug-in's, here and below.
    virtual void Connect(NQORVYX20::ICIMNamespace& name_space, const std::string& host, const std::string& user,
                         const std::string& password, int port) const = 0;

    /// How long a connected namespace waits for an answer.
    virtual void SetTimeout(NQORVYX20::ICIMNamespace& name_space, std::chrono::milliseconds timeout) const = 0;

    /// The names of all classes of the server; empty after a failure, which is in the log.
    virtual std::vector<std::string> ClassNames(NQORVYX20::ICIMNamespace& name_space) const = 0;

    // Here and below, up to ReadInstance, a RemoteFailure is thrown for what goes wrong remotely; the namespace stays
    // as it was.

    /// The definition of a class, with what it inherits. Throws std::invalid_argument for a text that is not a name.
    virtual RemoteClass ReadClass(NQORVYX20::ICIMNamespace& name_space, const std::string& name) const = 0;

    /// All classes of the server, in its order.
    virtual std::vector<RemoteClassName> ReadHierarchy(NQORVYX20::ICIMNamespace& name_space) const = 0;

    /// All qualifiers that the server declares, in its order.
    virtual std::vector<RemoteQualifierDeclaration>
    ReadQualifierDeclarations(NQORVYX20::ICIMNamespace& name_space) const = 0;

    /// One instance, named by an object path (DSP0004 8.2), as an instance of its own class, which may be a subclass of
    /// the one in the path. Values that the class does not allow are left out, and the log says so. Empty when its
    /// class cannot be had, which the log explains. Throws std::invalid_argument, saying what is wrong, for a text that
    /// is not a path or one in another namespace. Its host counts for nothing.
    virtual boost::shared_ptr<NQORVYX20::ICIMInstance> ReadInstance(NQORVYX20::ICIMNamespace& name_space,
                                                                    const std::string& path) const = 0;

    /// A property with the plug-in's texts for people, see TCimHTTPProperty. Refers to the declaration weakly. Throws
    /// TVYXException 14 for a value that the declaration does not allow.
    virtual boost::shared_ptr<NQORVYX20::ICIMProperty>
    MakeProperty(const boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>& declaration,
                 const NQORVYX20::TCIMValue& value) const = 0;

    /// Reads a requested-class document. All that is wrong with it is in the log.
    virtual RequestedClasses ReadRequestedClasses(const std::string& path) const = 0;
};

/// The one function that the library exports. The object lives as long as the process.
using PluginAccessFunction = const PluginAccess*();
constexpr const char* kPluginAccessFunction = "CimhttpPluginAccess";
constexpr const char* kPluginAccessLibrary = "libcimhttp-access.so";

} // namespace cimhttp
