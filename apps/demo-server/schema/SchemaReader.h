#pragma once

#include "schema/Schema.h"

#include <stdexcept>
#include <string_view>

namespace demo {

/// A schema that cannot be used. The text names the class, the feature and what is wrong with it.
class SchemaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads a CIM-XML declaration document (DSP0201: CIM/DECLARATION), whose qualifiers and classes can stand in any
/// order, and resolves inheritance: every class of the result holds what it inherits, with the qualifiers that
/// propagate. The flavors of a qualifier are those of its declaration. Throws SchemaError when the document is not such
/// a declaration or breaks a rule of DSP0004: duplicate or missing names, qualifiers that are undeclared, out of scope
/// or not overridable, overrides that are not marked as such or change the type, values that their type does not have.
Schema ReadSchema(std::string_view document);

/// The schema that the program carries with it.
Schema BuiltInSchema();

} // namespace demo
