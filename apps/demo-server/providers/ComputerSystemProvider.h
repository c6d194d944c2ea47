#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <utility>

namespace demo {

/// The computer itself: one instance.
class ComputerSystemProvider : public InstanceProvider {
  public:
    explicit ComputerSystemProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_ComputerSystem"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    SystemFiles files_;
};

} // namespace demo
