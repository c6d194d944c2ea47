#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// How many letters have to be put in, left out, exchanged or swapped with their neighbour to make one text of the
/// other. Case does not count.
std::size_t EditDistance(const std::string& one, const std::string& other);

/// The names that somebody who wrote `name` may have meant, the nearest first, at most `count`. A name without its
/// schema (`FileSystem` for `CIM_FileSystem`) is near, one that needs more than a third of its letters changed is not.
std::vector<std::string> NearestNames(const std::string& name, const std::vector<std::string>& names,
                                      std::size_t count = 3);

/// ` (did you mean A, B or C?)`, or nothing where there are no names.
std::string DidYouMean(const std::vector<std::string>& names);

} // namespace cimhttp
