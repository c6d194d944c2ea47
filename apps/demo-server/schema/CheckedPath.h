#pragma once

#include "schema/Schema.h"
#include "schema/Value.h"

#include <stdexcept>

namespace demo {

/// A path that does not have the keys of its class. The text says what is wrong.
class PathError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The path of an instance of a class that others have written, as PathOf() gives it: with the keys' types, and their
/// values in normal form. The namespace of the schema, in which the path is, is left out, and so is every host, because
/// a server does not know all of its names. A reference among the
/// keys that leads to another namespace stays as it is written: the schema does not know what is there. Throws
/// PathError when the path does not have the keys of the class, with values of their types.
ObjectPath CheckedPath(const Schema& schema, const std::string& nameSpace, const Class& declaration,
                       const ObjectPath& path);

} // namespace demo
