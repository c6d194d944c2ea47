#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace cimhttp {

class Session;

/// Shows the instances of a class as one table, key properties first, without the columns that are empty throughout.
/// A table wider than `width` is shown as one list of properties for each instance.
void RunInstancesCommand(Session& session, const std::string& class_name, bool deep, std::size_t width,
                         std::ostream& output);

} // namespace cimhttp
