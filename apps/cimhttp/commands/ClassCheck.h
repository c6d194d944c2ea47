#pragma once

#include "cimhttp/DisplayTexts.h"
#include "commands/CheckRequest.h"
#include "connection/Session.h"
#include "monitoring/CheckReport.h"
#include "monitoring/InstanceName.h"
#include "monitoring/Threshold.h"
#include "output/InstanceProperties.h"
#include "output/ValueTexts.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

/// Holds the instances of a class against thresholds.
class ClassCheck {
  public:
    /// Throws Failure(kUsage) for what is no Threshold.
    explicit ClassCheck(const CheckRequest& request);

    /// Reads the instances and writes what the check has found. Throws Failure where there is nothing to say of the
    /// instances. `report` may have remarks already.
    ServiceState Run(const Session& session, const NQORVYX20::DisplayForm& form, CheckReport& report,
                     std::ostream& output) const;

  private:
    struct Finding;

    void CheckThresholds(const Properties& declared) const;
    std::vector<std::string> NeededNames(const Properties& declared) const;
    std::vector<const Threshold*> Thresholds() const;

    Finding FindingOf(const NQORVYX20::ICIMInstance& instance, const ValueTexts& texts, const ValueTexts& exact) const;
    void AddNumbers(const NQORVYX20::ICIMInstance& instance, const InstanceName& name, const ValueTexts& exact,
                    PerformanceData& performance) const;
    std::string ValuesOf(const NQORVYX20::ICIMInstance& instance, const InstanceName& name,
                         const ValueTexts& texts) const;

    CheckRequest request_;
    std::vector<Threshold> warnings_;
    std::vector<Threshold> criticals_;
};

} // namespace cimhttp
