#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <utility>

namespace demo {

/// The sensors that the kernel reads (hwmon), each with its unit, and the shares of the last minute in which something
/// waited for processors, memory or storage, as it counts them. On a virtual machine there may be the latter only.
class SensorProvider : public InstanceProvider {
  public:
    explicit SensorProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_NumericSensor"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    void EnumerateHardware(const Visitor& visit) const;
    void EnumeratePressure(const Visitor& visit) const;

    SystemFiles files_;
};

} // namespace demo
