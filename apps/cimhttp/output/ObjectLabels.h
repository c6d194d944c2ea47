#pragma once

#include <string>
#include <vector>

namespace cimhttp {

struct ObjectGraph;

/// What to call the objects of a graph, in their order: the class and the keys that tell an object from the others, as
/// in `CIM_Disk.…,DeviceID="a"`, where dots stand for keys that are left out. These are those that all objects of the
/// class share; of the only one of its class, those that name other objects, such as the system that it is in, and
/// those that only repeat the class. The namespace stands before where it is another than that of the first object.
std::vector<std::string> LabelsOf(const ObjectGraph& graph);

} // namespace cimhttp
