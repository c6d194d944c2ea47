#pragma once

#include <string>
#include <vector>

namespace cimhttp {

/// Each name once, in the order of their first places; case does not tell names apart (DSP0004 5.1.2.1).
std::vector<std::string> DistinctNames(const std::vector<std::string>& names);

/// The names in texts such as `Name,Size`, each once.
std::vector<std::string> NamesIn(const std::vector<std::string>& texts);

} // namespace cimhttp
