#pragma once

#include "connection/InteropNamespace.h"
#include "text/NameOrder.h"

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
    const std::string& SourceClass() const { return source_class_; }
    const std::string& SourceNamespace() const { return source_namespace_; }

    /// What could not be asked for its part, one line; empty when all was.
    const std::string& Remark() const { return remark_; }

  private:
    bool FindInInterop(const std::string& interop);
    bool FindBelow(const std::string& top);

    /// The values of the key `Name` of the class's instances. Throws RemoteError.
    NameSet NamesIn(const std::string& name_space, const std::string& class_name);
    NameSet NamesBelow(const std::string& name_space);
    void AskBelow(const std::string& name_space);
    bool Found(const std::string& class_name, const std::string& name_space);

    Session& session_;
    VainAttempts attempts_;
    NameSet names_;
    std::string source_class_;
    std::string source_namespace_;
    std::string remark_;
};

} // namespace cimhttp
