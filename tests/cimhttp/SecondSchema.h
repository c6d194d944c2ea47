#pragma once

#include "schema/Schema.h"
#include "schema/SchemaDocuments.h"

#include <set>
#include <string>

/// The schema beside this file, which the demo server serves together with its own.
demo::SchemaSource SecondSchema();

/// The demo server's own and this one together.
const demo::Schema& WholeSchema();

/// The names of the properties of a class, with those that it inherits.
std::set<std::string> PropertyNames(const std::string& className);
