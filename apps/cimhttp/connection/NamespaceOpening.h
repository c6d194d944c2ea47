#pragma once

#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "waiting/ProgressWait.h"

#include <boost/shared_ptr.hpp>

#include <optional>

namespace cimhttp {

/// A new namespace of the plug-in that is connected; with `wait`, that is how it waits for the server. Throws
/// Failure(kConnection) when connecting fails, and Failure(kUsage) when the namespace is not the name of one.
boost::shared_ptr<NQORVYX20::ICIMNamespace> OpenNamespace(const Plugin& plugin, const Connection& connection,
                                                          const std::optional<ProgressWait>& wait);

} // namespace cimhttp
