#pragma once

#include <string>

namespace cimhttp {

/// The property that tells the greatest number which another property of the same class can have, as
/// `FileSystemSize` does for `AvailableSpace`; empty where none is known.
std::string MaximumOf(const std::string& property);

} // namespace cimhttp
