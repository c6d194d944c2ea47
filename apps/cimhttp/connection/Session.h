#pragma once

#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <vector>

#include "Failure.h"
#include "FailureLog.h"
#include "access/RemoteModel.h"
#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "waiting/Attendant.h"

namespace NQORVYX20 {
class ICIMClass;
class ICIMInstance;
} // namespace NQORVYX20

namespace cimhttp {

/// What there is to say about a class that a server does not have: which of its classes have names like it, or how to
/// see them all.
Failure NoSuchClass(const std::string& name, const std::string& server, const std::vector<std::string>& classes);

/// A connected namespace. What the plug-in reports by an empty result and a line in the log becomes a Failure here that
/// names the server, the thing asked for, the reason and what to try. Its status is kConnection, kAuthentication,
/// kNotFound or kServer; a LoginFailure says that asking for anything else is in vain.
class Session {
  public:
    /// Connects. Throws Failure(kConnection) when that fails. `log` is the logger in force and must live longer than
    /// the session. The attendant looks after the user whenever the session waits for the server.
    Session(const Plugin& plugin, const Connection& connection, FailureLog& log, const Attendant& attendant);

    /// The same session for another thread than the main one, and without attendance.
    Session Unattended() const;

    const Plugin& LoadedPlugin() const { return plugin_; }

    const Connection& Target() const { return connection_; }

    /// The server as a URL without a port.
    std::string Server() const { return connection_.Url(); }

    /// The names of all classes, in the server's order.
    std::vector<std::string> ClassNames();

    /// All classes with their superclasses, in the server's order.
    std::vector<RemoteClassName> Hierarchy();

    /// What the server says of a class, with what it inherits. Fails like Class().
    RemoteClass Definition(const std::string& name);

    /// The qualifiers that the server declares, in its order.
    std::vector<RemoteQualifierDeclaration> QualifierDeclarations();

    /// The same, or none from a server that does not list its qualifiers.
    std::vector<RemoteQualifierDeclaration> KnownQualifiers();

    /// One instance by its object path. Throws Failure(kUsage) for what is no path; about its class it fails like
    /// Class().
    boost::shared_ptr<NQORVYX20::ICIMInstance> Instance(const std::string& path);

    /// A class by name. Throws Failure(kUsage) for what is no name; for a class that there is not, the Failure suggests
    /// those with names like it.
    boost::shared_ptr<NQORVYX20::ICIMClass> Class(const std::string& name);

    /// The instances of a class, with `deep` those of its subclasses, too, in the order of their paths. The properties
    /// with these names are wanted, or all without names; the others may be null.
    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Instances(NQORVYX20::ICIMClass& cls, bool deep,
                                                                      const std::vector<std::string>& properties);

  private:
    boost::shared_ptr<NQORVYX20::ICIMClass> FindClass(const std::string& name);
    [[noreturn]] void Fail(const std::string& what, const std::string& reason) const;

    [[noreturn]] void FailAboutClass(const std::string& name, const std::string& reason);
    [[noreturn]] void FailAboutUnknownClass(const std::string& name);

    /// Reads while the attendant says that `thing` is being read.
    template <typename Operation>
    auto Attended(const std::string& thing, const Operation& operation) const;

    /// The same; what goes wrong remotely becomes a Failure about `thing`.
    template <typename Operation>
    auto Remotely(const std::string& thing, const Operation& operation) const;

    FailureLog& log_;
    Plugin plugin_;
    Connection connection_;
    std::optional<Attendant> attendant_;
    boost::shared_ptr<NQORVYX20::ICIMNamespace> namespace_;
};

} // namespace cimhttp
