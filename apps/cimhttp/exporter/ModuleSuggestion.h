#pragma once

#include "HostTypes.h"
#include "output/ValueTexts.h"

#include <string>

namespace cimhttp {

/// A module for a class, as its qualifiers suggest it: keys become labels, numbers gauges or counters in base units,
/// value maps states. A YAML document with comments, for ReadModules().
std::string SuggestedModule(const NQORVYX20::ICIMClass& cls, const PluginAccess& access);

} // namespace cimhttp
