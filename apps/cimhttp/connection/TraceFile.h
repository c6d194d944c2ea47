#pragma once

#include <string>

namespace cimhttp {

/// Makes the file for a trace: empty, and for its owner alone. Returns its absolute path, which the plug-in writes to.
/// Throws Failure(kUsage) when it cannot be made.
std::string StartTrace(const std::string& path);

} // namespace cimhttp
