#pragma once

#include "access/RemoteModel.h"

#include <string>

namespace NQORVYX20 {
class ICIMClass;
} // namespace NQORVYX20

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

/// A class as the object model has it, which every server can give, even one without operations on classes: without
/// what RemoteModel.h says that the model lacks. The members without braces, each on a line of its own:
///
///     "name":"CIM_Fan",
///     "qualifiers":{"Version":"2.1"},
///     "properties":[{"name":"Speed","type":"uint64","array":false,"qualifiers":{}}],
///     "methods":[{"name":"Stop","type":"uint32","parameters":[{"name":"Now","type":"boolean","array":false}],
///                 "qualifiers":{}}]
std::string ClassMembersJson(const NQORVYX20::ICIMClass& cls);

} // namespace cimhttp
