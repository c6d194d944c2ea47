#pragma once

#include "providers/InstanceProvider.h"
#include "schema/Schema.h"

namespace demo {

/// Instances with every type of value: the least and greatest ones, nulls, texts that XML has to escape.
class AllTypesProvider : public InstanceProvider {
  public:
    /// The schema has DEMO_Point, whose instances are embedded.
    explicit AllTypesProvider(const Schema& schema);

    std::string_view ClassName() const override { return "DEMO_AllTypes"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    std::vector<Instance> instances_;
};

} // namespace demo
