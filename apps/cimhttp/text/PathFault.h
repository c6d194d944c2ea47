#pragma once

#include <string>

namespace cimhttp {

/// What keeps a text from being the object path of an instance, such as `CIM_Disk.Name="a",Number=3` (DSP0004 8.2.5),
/// or `CIM_Clock="a"` for a key without a name, and where: the first thing that is wrong. Empty when nothing of the
/// kind is. A namespace may stand before the class, as in `root/cimv2:` or `http://server.example:5988/root/cimv2:`;
/// the server is not looked at.
std::string PathFault(const std::string& path);

} // namespace cimhttp
