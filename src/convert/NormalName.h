#pragma once

#include <string>

namespace NQORVYX20 {

/// The name in lower case, under which every collection of the plug-in keeps its elements. The empty name is
/// accepted. Throws TVYXException 25, after a line in the log, for a name that is not made of letters, digits and
/// underscores or that begins with a digit.
std::string NormalizeName(const std::string& name);

} // namespace NQORVYX20
