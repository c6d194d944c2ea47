#pragma once

#include <string>

namespace cimhttp {

/// What keeps a text from being the object path of an instance, such as `CIM_Disk.Name="a",Number=3` (DSP0004 8.2.5),
/// and where: the first thing that is wrong. Empty when nothing of the kind is.
std::string PathFault(const std::string& path);

} // namespace cimhttp
