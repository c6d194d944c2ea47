#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"
#include "schema/Schema.h"

#include <utility>

namespace demo {

/// The association between the computer and its operating system: one instance.
class RunningOsProvider : public InstanceProvider {
  public:
    /// The schema has the classes of the two providers; it and they must outlive this one.
    RunningOsProvider(const Schema& schema, SystemFiles files, const InstanceProvider& computer,
                      const InstanceProvider& operatingSystem)
        : files_(std::move(files)),
          computer_(computer),
          computerClass_(*schema.FindClass(computer.ClassName())),
          operatingSystem_(operatingSystem),
          operatingSystemClass_(*schema.FindClass(operatingSystem.ClassName())) {}

    std::string_view ClassName() const override { return "DEMO_RunningOS"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    SystemFiles files_;
    const InstanceProvider& computer_;
    const Class& computerClass_;
    const InstanceProvider& operatingSystem_;
    const Class& operatingSystemClass_;
};

} // namespace demo
