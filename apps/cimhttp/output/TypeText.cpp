#include "output/TypeText.h"

#include <sstream>

namespace cimhttp {

using NQORVYX20::TCIMValue;

TCIMValue::TCIMType::ECIMType ElementType(TCIMValue::TCIMType type) {
    using ECIMType = TCIMValue::TCIMType::ECIMType;
    return static_cast<ECIMType>(type & ~ECIMType::eCIMArrayUnknown);
}

std::string TypeText(TCIMValue::TCIMType type) {
    std::ostringstream text;
    text << type;
    return text.str();
}

std::string ElementTypeText(TCIMValue::TCIMType type) { return TypeText(ElementType(type)); }

} // namespace cimhttp
