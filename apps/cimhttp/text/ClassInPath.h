#pragma once

#include <string>

namespace cimhttp {

/// The name of the class in an object path, `//host/namespace:Class.key="value"` or a part of it.
std::string ClassInPath(const std::string& path);

} // namespace cimhttp
