#include "providers/InstanceProvider.h"

#include <cstddef>

namespace demo {

namespace {

class KeptInstances : public InstanceCursor {
  public:
    explicit KeptInstances(const InstanceProvider& provider) {
        provider.Enumerate([this](const Instance& instance) { instances_.push_back(instance); });
    }

    const Instance* Next() override { return next_ == instances_.size() ? nullptr : &instances_[next_++]; }

  private:
    std::vector<Instance> instances_;
    std::size_t next_ = 0;
};

} // namespace

std::unique_ptr<InstanceCursor> InstanceProvider::Open() const { return std::make_unique<KeptInstances>(*this); }

} // namespace demo
