#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <utility>

namespace demo {

/// The running operating system: one instance.
class OperatingSystemProvider : public InstanceProvider {
  public:
    explicit OperatingSystemProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_OperatingSystem"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    SystemFiles files_;
};

} // namespace demo
