#include "cimxml/Attributes.h"

#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlError.h"

namespace Pegasus::cimxml {

std::string_view Attributes::get(std::string_view name) const {
    const auto value = find(name);
    if (!value) {
        throwXmlError({"the element ", element_, " has no attribute ", name});
    }
    return *value;
}

bool Attributes::getBoolean(std::string_view name, bool absent) const {
    const auto value = find(name);
    return value ? decodeScalar<Boolean>(*value) : absent;
}

void Attributes::throwTooMany() const { throwPastLimit({"the element ", element_, " has too many attributes"}); }

void Attributes::throwTwice(std::string_view name) const {
    throwMalformed({"the element ", element_, " has the attribute ", name, " twice"});
}

} // namespace Pegasus::cimxml
