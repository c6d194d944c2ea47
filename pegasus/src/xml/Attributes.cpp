#include "xml/Attributes.h"

#include "xml/DecodingError.h"

namespace Pegasus::xml {

std::string_view Attributes::get(std::string_view name) const {
    const auto value = find(name);
    if (!value) {
        throwBadContent({"the element ", element_, " has no attribute ", name});
    }
    return *value;
}

void Attributes::throwTooMany() const { throwPastLimit({"the element ", element_, " has too many attributes"}); }

void Attributes::throwTwice(std::string_view name) const {
    throwMalformed({"the element ", element_, " has the attribute ", name, " twice"});
}

} // namespace Pegasus::xml
