#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <cstddef>
#include <utility>

namespace demo {

/// Any number of volumes that do not exist. Each has the values that its number gives it, the same in every
/// enumeration.
class StorageVolumeProvider : public InstanceProvider {
  public:
    StorageVolumeProvider(SystemFiles files, std::size_t count) : files_(std::move(files)), count_(count) {}

    std::string_view ClassName() const override { return "DEMO_StorageVolume"; }
    void Enumerate(const Visitor& visit) const override;
    /// Makes one volume after the other.
    std::unique_ptr<InstanceCursor> Open() const override;
    void EnumerateCandidates(const ObjectPath& path, const Visitor& visit) const override;

  private:
    SystemFiles files_;
    std::size_t count_;
};

} // namespace demo
