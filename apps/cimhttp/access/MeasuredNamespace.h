#pragma once

#include "access/MeasurementSink.h"

#include <boost/shared_ptr.hpp>

#include <memory>

namespace NQORVYX20 {
class ICIMNamespace;
} // namespace NQORVYX20

namespace cimhttp {

/// The namespace, whose operations on its server are measured as long as somebody holds what this returns.
boost::shared_ptr<NQORVYX20::ICIMNamespace>
MeasuredNamespace(const boost::shared_ptr<NQORVYX20::ICIMNamespace>& nameSpace,
                  const std::shared_ptr<MeasurementSink>& sink);

} // namespace cimhttp
