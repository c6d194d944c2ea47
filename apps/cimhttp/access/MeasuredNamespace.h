#pragma once

#include "access/MeasurementSink.h"

#include <boost/shared_ptr.hpp>

#include <memory>

namespace NQORVYX20 {
class ICIMNamespace;
} // namespace NQORVYX20

namespace cimhttp {

/// Returns the namespace; its operations on the server are measured as long as the returned pointer is held.
boost::shared_ptr<NQORVYX20::ICIMNamespace>
MeasuredNamespace(const boost::shared_ptr<NQORVYX20::ICIMNamespace>& nameSpace,
                  const std::shared_ptr<MeasurementSink>& sink);

} // namespace cimhttp
