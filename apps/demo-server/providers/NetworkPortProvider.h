#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <utility>

namespace demo {

/// The network interfaces.
class NetworkPortProvider : public InstanceProvider {
  public:
    explicit NetworkPortProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_NetworkPort"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    SystemFiles files_;
};

} // namespace demo
