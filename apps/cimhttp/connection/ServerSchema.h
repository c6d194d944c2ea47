#pragma once

#include "Failure.h"
#include "HostTypes.h"
#include "access/RemoteModel.h"
#include "connection/Session.h"

#include <boost/shared_ptr.hpp>

#include <stdexcept>
#include <string>
#include <vector>

namespace cimhttp {

/// The Failure about a class that a server does not have: it suggests classes with similar names, or how to see all.
Failure NoSuchClass(const std::string& name, const std::string& server, const std::vector<std::string>& classes);

/// The Failure about a text that cannot be the name of a class.
Failure NotAClassName(const std::string& name);

/// Reads what a server declares: its classes and qualifiers. Throws as Session says.
class ServerSchema {
  public:
    /// The session must outlive the object.
    explicit ServerSchema(const Session& session) : session_(session) {}

    /// The names of all classes, in the server's order.
    std::vector<std::string> ClassNames() const;

    /// Those of a namespace; none where the server does not list its classes.
    std::vector<std::string> KnownClassNames(NQORVYX20::ICIMNamespace& nameSpace) const;

    /// All classes with their superclasses, in the server's order.
    std::vector<RemoteClassName> Hierarchy() const;

    /// A class by name. Throws Failure(kUsage) for what is no name; for a class that there is not, the Failure suggests
    /// those with names like it.
    boost::shared_ptr<NQORVYX20::ICIMClass> Class(const std::string& name) const;

    /// What the server says of a class, with what it inherits. Fails like Class().
    RemoteClass Definition(const std::string& name) const;

    /// The qualifiers that the server declares, in its order.
    std::vector<RemoteQualifierDeclaration> QualifierDeclarations() const;

    /// QualifierDeclarations(), or none from a server that does not list its qualifiers.
    std::vector<RemoteQualifierDeclaration> KnownQualifiers() const;

    /// Throws the Failure about a class of the namespace that could not be read.
    [[noreturn]] void FailAboutClass(const std::string& name, NQORVYX20::ICIMNamespace& nameSpace,
                                     const NQORVYX20::RemoteFailure& failure) const;

    /// Reads `thing`, which the server has for a class of this name. Fails like Class().
    template <typename Operation>
    auto ReadingClass(const std::string& thing, const std::string& className, const Operation& operation) const {
        try {
            return session_.Awaited(thing, operation);
        } catch (const RemoteError& error) {
            FailAboutClass(className, session_.Namespace(), error.Failure());
        } catch (const std::invalid_argument&) {
            throw NotAClassName(className);
        }
    }

  private:
    std::vector<std::string> ClassNamesIn(NQORVYX20::ICIMNamespace& nameSpace) const;

    const Session& session_;
};

} // namespace cimhttp
