#pragma once

#include "interop/InteropNamespace.h"
#include "text/Names.h"

#include <cstddef>
#include <set>
#include <string>

namespace cimhttp {

class Session;

/// Finds the namespaces of a server. It is asked for instances of CIM_Namespace in its Interop namespace, or else for
/// those of __Namespace, which say what is below a namespace.
class NamespaceSearch {
  public:
    explicit NamespaceSearch(Session& session) : session_(session) {}

    /// Asks until the server tells of some. Throws Failure that says what was asked when it does not.
    void Run();

    /// In alphabetical order.
    const NameSet& Names() const { return names_; }

    /// The class and the namespace that told them.
    const std::string& SourceClass() const { return sourceClass_; }
    const std::string& SourceNamespace() const { return sourceNamespace_; }

    /// What could not be asked for its part, one line; empty when all was.
    const std::string& Remark() const { return remark_; }

  private:
    bool FindInInterop(const std::string& interop);
    bool FindBelow(const std::string& top);

    /// The values of the key `Name` of the class's instances. Throws RemoteError.
    NameSet NamesIn(const std::string& nameSpace, const std::string& className);
    NameSet NamesBelow(const std::string& nameSpace);
    void AskBelow(const std::string& nameSpace);
    bool Found(const std::string& className, const std::string& nameSpace);

    Session& session_;
    VainAttempts attempts_;
    NameSet names_;
    std::string sourceClass_;
    std::string sourceNamespace_;
    std::string remark_;
};

} // namespace cimhttp
