#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace demo {

/// The processor packages; one where the system does not tell them apart.
class ProcessorProvider : public InstanceProvider {
  public:
    explicit ProcessorProvider(SystemFiles files) : files_(std::move(files)) {}

    std::string_view ClassName() const override { return "DEMO_Processor"; }
    /// LoadPercentage is that of the time since the enumeration before, of the time since the start for the first.
    void Enumerate(const Visitor& visit) const override;

  private:
    /// Clock ticks since the start, added up over the instruction streams of a package.
    struct Times {
        std::uint64_t user = 0;
        std::uint64_t system = 0;
        std::uint64_t idle = 0;
    };

    Times ReadTimes(const std::vector<std::string>& streams) const;
    std::uint64_t LoadPercentage(const std::string& package, const Times& now) const;

    SystemFiles files_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, Times> timesBefore_;
};

} // namespace demo
