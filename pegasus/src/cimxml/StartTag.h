#pragma once

#include "cimxml/Attributes.h"

#include <cstddef>
#include <string_view>

namespace Pegasus::cimxml {

/// A start tag, or the tag of an empty element. Names and values are views of text that is kept elsewhere.
struct StartTag {
    std::string_view element;
    Attributes attributes;
    bool isEmpty = false; ///< has no end tag of its own, as in <A/>
    /// The same for every tag with the same text, from 1 on; 0 for one that nobody remembers.
    std::size_t number = 0;
};

} // namespace Pegasus::cimxml
