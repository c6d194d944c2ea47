#pragma once

#include "providers/InstanceProvider.h"
#include "schema/Schema.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/XmlWriter.h"

#include <string>

namespace demo {

/// The operations of a CIM server (DSP0200) over one namespace, root/cimv2: what it knows are a schema and the
/// instances of its providers. It reads only. Safe to call from several threads.
class CimService {
  public:
    CimService(Schema schema, InstanceProviders providers);

    /// Carries out an operation and writes its IRETURNVALUE. Throws CimError when it fails: before it has written
    /// anything if the request is at fault, perhaps in the middle otherwise.
    void Execute(const CimRequest& request, XmlWriter& writer) const;

    const Schema& GetSchema() const { return schema_; }

  private:
    void GetClass(const CimRequest& request, XmlWriter& writer) const;
    void EnumerateClassNames(const CimRequest& request, XmlWriter& writer) const;
    void EnumerateInstances(const CimRequest& request, XmlWriter& writer) const;
    void GetQualifier(const CimRequest& request, XmlWriter& writer) const;

    const Class& FindClass(const std::string& name, CimStatus otherwise) const;

    Schema schema_;
    InstanceProviders providers_;
};

} // namespace demo
