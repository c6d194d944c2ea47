#pragma once

#include <map>
#include <string>

namespace NQORVYX20 {

class TCIMValue;

/// Named values that a caller hands down through the operations of the object model, and the form in which named
/// values (method parameters, the values of a modification) are passed. Ordered by name; names are case-sensitive.
/// Code that looks into a context includes TCIMValue.h as well.
using TCIMContext = std::map<std::string, TCIMValue>;

} // namespace NQORVYX20
