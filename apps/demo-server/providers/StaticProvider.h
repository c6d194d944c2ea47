#pragma once

#include "providers/InstanceProvider.h"
#include "schema/Schema.h"
#include "schema/SchemaDocuments.h"

#include <string>
#include <utility>
#include <vector>

namespace demo {

/// Instances of one class that do not change.
class StaticProvider : public InstanceProvider {
  public:
    StaticProvider(std::string className, std::vector<Instance> instances)
        : className_(std::move(className)), instances_(std::move(instances)) {}

    std::string_view ClassName() const override { return className_; }
    void Enumerate(const Visitor& visit) const override;

  private:
    std::string className_;
    std::vector<Instance> instances_;
};

/// Providers of the instances that documents declare (DSP0201: INSTANCE), of classes of the schema. References that
/// name a host or another namespace are kept as they are written. Throws SchemaError when an instance is not one of its
/// class, when there are two with the same keys, or when another reference in one is no path of the schema.
InstanceProviders DeclaredInstances(const SchemaDocuments& documents, const Schema& schema,
                                    const std::string& nameSpace);

} // namespace demo
