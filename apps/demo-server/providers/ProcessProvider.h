#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <utility>

namespace demo {

/// The processes that this process may see.
class ProcessProvider : public InstanceProvider {
  public:
    explicit ProcessProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_Process"; }
    void Enumerate(const Visitor& visit) const override;
    void EnumerateCandidates(const ObjectPath& path, const Visitor& visit) const override;

  private:
    SystemFiles files_;
};

} // namespace demo
