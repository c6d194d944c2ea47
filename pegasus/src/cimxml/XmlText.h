#pragma once

#include <cstddef>
#include <string_view>

namespace Pegasus::cimxml {

/// Where characters stand in a document.
enum class TextPlace { Content, CData, AttributeValue };

/// What the characters at `raw` stand for: references resolved, every line end a '\n', white space in an attribute's
/// value blanks (XML 1.0, 2.11 and 3.3.3). Overwrites them with it; it is never longer. Throws CIMClientXmlException
/// for a reference that is not one of XML's own, and for '<' in an attribute's value.
std::string_view resolveText(char* raw, std::size_t size, TextPlace place);

} // namespace Pegasus::cimxml
