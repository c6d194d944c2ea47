#pragma once

#include "access/RemoteModel.h"

#include <string>

namespace cimhttp {

/// A class with all that the server says of it, in one line:
///
///     {"name":"CIM_Fan","superclass":null,"qualifiers":{"Version":"2.1"},
///      "properties":[{"name":"Speed","type":"uint64","array":false,"default":null,"origin":"CIM_Fan",
///                     "inherited":false,"qualifiers":{}}],
///      "methods":[{"name":"Stop","type":"uint32","array":false,
///                  "parameters":[{"name":"Now","type":"boolean","array":false,"direction":"in","qualifiers":{}}],
///                  "origin":"CIM_Fan","inherited":false,"qualifiers":{}}]}
std::string ClassJson(const RemoteClass& cls);

/// The array of its methods.
std::string MethodsJson(const RemoteClass& cls);

} // namespace cimhttp
