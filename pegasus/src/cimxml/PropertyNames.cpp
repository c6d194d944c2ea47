#include "cimxml/PropertyNames.h"

#include "text/Ascii.h"

#include <utility>

namespace Pegasus::cimxml {

std::size_t PropertyNames::hashOf(const CIMName& name) noexcept {
    std::size_t hash = 0;
    for (const char c : name.getString().view()) {
        hash = 31 * hash + static_cast<unsigned char>(text::lowered(c));
    }
    return hash ^ hash >> 17U;
}

/// Returns the index that the name had before.
Uint32 PropertyNames::note(const CIMName& name, Uint32 index) {
    std::string key(name.getString().view());
    for (char& c : key) {
        c = text::lowered(c);
    }
    const auto [known, isNew] = indices_.try_emplace(std::move(key), index);
    return isNew ? PEG_NOT_FOUND : std::exchange(known->second, index);
}

} // namespace Pegasus::cimxml
