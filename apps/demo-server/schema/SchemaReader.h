#pragma once

#include "schema/Schema.h"
#include "schema/SchemaDocuments.h"

#include <string_view>

namespace demo {

/// Reads the qualifiers and classes of declaration documents, which can stand in any order and refer to each other
/// across documents, and resolves inheritance: every class of the result holds what it inherits, with the qualifiers
/// that propagate. The flavors of a qualifier are those of its declaration; a declaration that is there twice must be
/// the same both times. Throws SchemaError with all problems when the documents break rules of DSP0004: duplicate or
/// missing names, qualifiers that are undeclared, out of scope or not overridable, overrides that are not marked as
/// such or change the type, values that their type does not have.
Schema ReadSchema(const SchemaDocuments& documents);

/// Reads a single document.
Schema ReadSchema(std::string_view document);

/// The schema of root/cimv2 that the program carries with it.
Schema BuiltInSchema();

} // namespace demo
