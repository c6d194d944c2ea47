#include "cimxml/BooleanAttribute.h"

#include "cimxml/ScalarDecoder.h"

namespace Pegasus::cimxml {

bool booleanAttribute(const xml::Attributes& attributes, std::string_view name, bool absent) {
    const auto value = attributes.find(name);
    return value ? decodeScalar<Boolean>(*value) : absent;
}

} // namespace Pegasus::cimxml
