#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <utility>

namespace demo {

/// The mounted file systems that hold files: pseudo file systems are left out, but / is always there.
class FileSystemProvider : public InstanceProvider {
  public:
    explicit FileSystemProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_FileSystem"; }
    void Enumerate(const Visitor& visit) const override;

  private:
    SystemFiles files_;
};

} // namespace demo
