#pragma once

#include <string_view>

namespace demo {

/// Whether two CIM names are the same: names of classes, properties, qualifiers ... differ in more than case (DSP0004).
bool SameName(std::string_view a, std::string_view b);

/// Whether a text can be a name: letters, digits, underscores and characters beyond ASCII, no digit at the begin.
bool IsName(std::string_view text);

/// Whether a text can be the name of a namespace: names with "/" between them, none in front.
bool IsNamespaceName(std::string_view text);

/// Orders names so that equal ones, in the sense of SameName(), are equivalent.
struct NameLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};

} // namespace demo
