#pragma once

#include "operations/Enumerations.h"
#include "operations/Namespaces.h"
#include "operations/Operation.h"
#include "operations/Repository.h"
#include "wire/CimRequest.h"
#include "wire/XmlWriter.h"

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace demo {

/// What a namespace is made of.
struct NamespaceContent {
    /// Differs from the names of the server's other namespaces in more than case.
    std::string name;
    Schema schema;
    InstanceProviders providers;
};

/// A CIM server (DSP0200) that serves the operations that read. Safe to call from several threads.
class CimService {
  public:
    static constexpr const char* kNamespace = "root/cimv2";

    /// The host is what paths in answers begin with.
    CimService(std::vector<NamespaceContent> namespaces, const std::string& host,
               const EnumerationLimits& enumerations = {}, Enumerations::Clock clock = &std::chrono::steady_clock::now);

    /// With one namespace, root/cimv2.
    CimService(Schema schema, InstanceProviders providers, const std::string& host,
               const EnumerationLimits& enumerations = {}, Enumerations::Clock clock = &std::chrono::steady_clock::now);

    /// Carries out an operation and writes its IRETURNVALUE and what comes after it. Throws CimError when it fails:
    /// before it has written anything if the request is at fault, perhaps in the middle otherwise.
    void Execute(const CimRequest& request, XmlWriter& writer) const;

    /// Whether executing the operation again would not give the same answer.
    bool IsOnce(const CimRequest& request) const;

  private:
    Namespaces namespaces_;
    std::unique_ptr<Enumerations> enumerations_; // of these namespaces
    std::map<std::string, Operation, NameLess> operations_;
};

} // namespace demo
