#pragma once

#include "xml/Attributes.h"

#include <cstddef>
#include <string_view>

namespace Pegasus::xml {

/// A start tag, or the tag of an empty element. Names and values are views of text that is kept elsewhere.
struct StartTag {
    std::string_view element;
    Attributes attributes;
    bool isEmpty = false; ///< has no end tag of its own, as in <A/>
    /// Of a tag in a cache, from 1 on: equal for tags with an equal text. 0 for one that is in none.
    std::size_t number = 0;
};

} // namespace Pegasus::xml
