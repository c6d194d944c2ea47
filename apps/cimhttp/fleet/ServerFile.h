#pragma once

#include <string>

namespace cimhttp {

/// Whether a file's name has a place for that of a server, `{server}`, so that there is a file for each.
bool IsServerFilePattern(const std::string& pattern);

/// The name of a server's own file. Throws Failure(kUsage) for a server whose name is no part of a file's name.
std::string ServerFile(const std::string& pattern, const std::string& server);

} // namespace cimhttp
