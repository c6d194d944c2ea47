#pragma once

#include "providers/InstanceProvider.h"
#include "schema/Schema.h"

namespace demo {

/// The association between a process and the one that started it: one instance for each process whose parent is among
/// the processes, too.
class ParentProcessProvider : public InstanceProvider {
  public:
    /// The provider is that of the processes, and must outlive this one, as must the schema.
    ParentProcessProvider(const Schema& schema, const InstanceProvider& processes)
        : declaration_(*schema.FindClass(processes.ClassName())), processes_(processes) {}

    std::string_view ClassName() const override { return "DEMO_ParentProcess"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    const Class& declaration_;
    const InstanceProvider& processes_;
};

} // namespace demo
