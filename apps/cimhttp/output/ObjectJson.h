#pragma once

#include "cimhttp/EmbeddedObject.h"

#include <string>
#include <vector>

namespace cimhttp {

/// Embedded objects as JSON, one or, of an array, an array of them:
///
///     {"class":"CIM_Setting","properties":{"Speed":3,"Next":{"class":"CIM_Setting","properties":{}}}}
///
/// Values are those of JsonValue(). A null element of an array is null.
std::string ObjectsJson(const std::vector<NQORVYX20::EmbeddedObject>& objects, bool is_array);

} // namespace cimhttp
