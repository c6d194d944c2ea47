#pragma once

#include "xml/StartTag.h"

#include <string>
#include <string_view>

namespace Pegasus::xml {

/// A start tag of a TagCache, with the tags that followed it when it was read last. They are likely to follow it again:
/// elements of one name mostly hold elements of the same names.
struct CachedTag : StartTag {
    /// `itsText` is the tag from '<' to '>', of which element and attributes of `tag` are views.
    CachedTag(const StartTag& tag, std::string_view itsText);

    const std::string text; ///< of which element and attributes are views here
    CachedTag* firstChild = nullptr;
    CachedTag* nextSibling = nullptr;
};

} // namespace Pegasus::xml
