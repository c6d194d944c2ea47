#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// `a, b, c`
std::string Joined(const std::vector<std::string>& words, const char* separator = ", ");

/// `1 class`, `2 classes`
std::string Counted(std::size_t count, const char* one, const char* many);

/// `a, b or c`
std::string Listed(const std::vector<std::string>& words);

/// `a, b and c`
std::string ListedTogether(const std::vector<std::string>& words);

} // namespace cimhttp
