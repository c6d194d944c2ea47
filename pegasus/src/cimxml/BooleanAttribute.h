#pragma once

#include "xml/Attributes.h"

#include <string_view>

namespace Pegasus::cimxml {

/// The value of a boolean attribute; `absent` where there is none of that name. Throws DecodingError for another text.
bool booleanAttribute(const xml::Attributes& attributes, std::string_view name, bool absent);

} // namespace Pegasus::cimxml
