#pragma once

#include "commands/InstanceReader.h"
#include "monitoring/CheckReport.h"

#include <functional>

namespace cimhttp {

/// Reads the instances of a check, of which `take` gets each that meets the conditions. What cannot be read is added to
/// the report. Throws Failure(kNotFound) where there is none.
void ReadForCheck(InstanceReader& reader, const std::function<void(const NQORVYX20::ICIMInstance&)>& take,
                  CheckReport& report);

/// Throws Failure(kNotFound) where all instances that were read are ignored.
void RefuseIfAllAreIgnored(const CheckReport& report, const std::string& className);

} // namespace cimhttp
