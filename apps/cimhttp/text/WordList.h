#pragma once

#include <string>
#include <vector>

namespace cimhttp {

/// `a, b or c`
std::string Listed(const std::vector<std::string>& words);

/// `a, b and c`
std::string ListedTogether(const std::vector<std::string>& words);

} // namespace cimhttp
