#include "xml/CachedTag.h"

#include <cstddef>

namespace Pegasus::xml {

CachedTag::CachedTag(const StartTag& tag, std::string_view itsText) : StartTag(tag), text(itsText) {
    const auto copied = [&](std::string_view part) {
        return std::string_view(text).substr(static_cast<std::size_t>(part.data() - itsText.data()), part.size());
    };
    element = copied(tag.element);
    attributes.reset(element);
    for (const auto& [name, value] : tag.attributes) {
        attributes.add(copied(name), copied(value));
    }
}

} // namespace Pegasus::xml
