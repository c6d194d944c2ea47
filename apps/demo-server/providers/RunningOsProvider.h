#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <utility>

namespace demo {

/// The association between the computer and its operating system: one instance.
class RunningOsProvider : public InstanceProvider {
  public:
    explicit RunningOsProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_RunningOS"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    SystemFiles files_;
};

} // namespace demo
