#pragma once

#include "Failure.h"
#include "host/TCIMReference.h"

#include <string>

namespace cimhttp {

class Session;

/// The name of a namespace without the slash that some write before it.
std::string WithoutLeadingSlash(const std::string& name);

/// The Failure about a path that cannot be taken; `reason` belongs after it in a sentence.
Failure NotAPath(const std::string& path, const std::string& reason);

/// Says what the object paths that a user gives mean at a server.
class PathReader {
  public:
    /// The session must outlive the object.
    explicit PathReader(const Session& session) : session_(session) {}

    /// The namespace that a path names, empty for the one that everything is read from. Throws Failure(kUsage) for what
    /// is no path.
    std::string NamespaceIn(const std::string& path) const;

    /// The class that a path names. Throws std::invalid_argument for what is no path.
    std::string ClassIn(const std::string& path) const;

    /// The reference that a path means: with the namespace, and without the host, which is ignored. Throws
    /// Failure(kUsage) for what is no path of an instance.
    NQORVYX20::TCIMReference ReferenceTo(const std::string& path) const;

  private:
    const Session& session_;
};

} // namespace cimhttp
