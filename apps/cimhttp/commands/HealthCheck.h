#pragma once

#include "cimhttp/DisplayTexts.h"
#include "commands/CheckRequest.h"
#include "connection/Session.h"
#include "monitoring/CheckReport.h"

#include <iosfwd>

namespace cimhttp {

/// Looks for elements of a managed system that tell that they are not well. See Health.
class HealthCheck {
  public:
    /// `request` has no thresholds, and its class is not used.
    explicit HealthCheck(const CheckRequest& request) : request_(request) {}

    /// As ClassCheck::Run() does.
    ServiceState Run(const Session& session, const NQORVYX20::DisplayForm& form, CheckReport& report,
                     std::ostream& output) const;

  private:
    CheckRequest request_;
};

} // namespace cimhttp
