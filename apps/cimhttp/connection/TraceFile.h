#pragma once

#include <string>

namespace cimhttp {

/// Makes the file for a trace: empty, and for its owner alone. Returns its absolute path, which the plug-in writes to.
/// Throws Failure(kUsage) when it cannot be made.
std::string StartTrace(const std::string& path);

/// Makes the file for a recording, for its owner alone, unless it is there: then the recording goes on at its end.
/// Throws Failure(kUsage) when it is no file, cannot be written, or is open to others.
void PrepareRecording(const std::string& path);

} // namespace cimhttp
