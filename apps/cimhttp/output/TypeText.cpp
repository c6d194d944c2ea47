#include "output/TypeText.h"

#include <sstream>

namespace cimhttp {

using NQORVYX20::TCIMValue;

std::string TypeText(TCIMValue::TCIMType type) {
    std::ostringstream text;
    text << type;
    return text.str();
}

std::string ElementTypeText(TCIMValue::TCIMType type) {
    using ECIMType = TCIMValue::TCIMType::ECIMType;
    return TypeText(static_cast<ECIMType>(type & ~ECIMType::eCIMArrayUnknown));
}

} // namespace cimhttp
