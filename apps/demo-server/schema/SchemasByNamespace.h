#pragma once

#include "schema/Names.h"
#include "schema/SchemaDocuments.h"

#include <map>
#include <string>
#include <vector>

namespace demo {

/// Schemas by the names of the namespaces in which they are.
using SchemasByNamespace = std::map<std::string, std::vector<SchemaSource>, NameLess>;

} // namespace demo
