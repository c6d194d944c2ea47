#pragma once

#include "schema/CimType.h"
#include "schema/Value.h"

#include <stdexcept>

namespace pugi {
class xml_node;
}

namespace demo {

/// A declaration that is wrong. The text says what is.
class DeclarationError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The value in an element of DSP0201 that holds a VALUE, a VALUE.ARRAY or nothing, which is null. The type is not that
/// of references. Throws DeclarationError when it holds the other one of the two, or a text that is no value of the
/// type.
Value ReadDeclaredValue(const pugi::xml_node& holder, CimType type, bool isArray);

/// The attribute TYPE of an element. Throws DeclarationError when it has none or it names no type of a value.
CimType ReadDeclaredType(const pugi::xml_node& element);

} // namespace demo
