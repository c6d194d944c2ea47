#pragma once

#include "operations/Operation.h"
#include "operations/Repository.h"
#include "wire/CimRequest.h"
#include "wire/XmlWriter.h"

#include <map>
#include <string>

namespace demo {

/// A CIM server (DSP0200) with one namespace, root/cimv2, of which it serves the operations that read. Safe to call
/// from several threads.
class CimService {
  public:
    static constexpr const char* kNamespace = "root/cimv2";

    /// The host is what paths in answers begin with.
    CimService(Schema schema, InstanceProviders providers, std::string host);

    /// Carries out an operation and writes its IRETURNVALUE. Throws CimError when it fails: before it has written
    /// anything if the request is at fault, perhaps in the middle otherwise.
    void Execute(const CimRequest& request, XmlWriter& writer) const;

    const Schema& GetSchema() const { return repository_.GetSchema(); }

  private:
    Repository repository_;
    std::map<std::string, Operation, NameLess> operations_;
};

} // namespace demo
