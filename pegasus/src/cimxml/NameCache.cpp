#include "cimxml/NameCache.h"

#include "model/Chunks.h"
#include "xml/DecodingError.h"
#include "xml/XmlCharacters.h"

#include <cstddef>
#include <cstdint>

namespace Pegasus::cimxml {

namespace {

std::size_t hashOf(std::string_view text) noexcept {
    std::uint32_t hash = 0;
    for (const char c : text) {
        hash = 31 * hash + static_cast<unsigned char>(c);
    }
    return hash ^ hash >> 15U;
}

} // namespace

CIMName NameCache::get(std::string_view text) {
    CIMName& name = names_[hashOf(text) % names_.size()];
    if (text.empty() || name.getString().view() != text) {
        const detail::Chunks::Scope scope(nullptr); // it outlives the object
        const String unchecked(xml::trimmed(text));
        if (!CIMName::legal(unchecked)) {
            xml::throwBadContent({"not a name: \"", text, "\""});
        }
        name = CIMName(unchecked);
    }
    return name;
}

} // namespace Pegasus::cimxml
