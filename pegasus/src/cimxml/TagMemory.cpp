#include "cimxml/TagMemory.h"

#include <utility>

namespace Pegasus::cimxml {

RememberedTag::RememberedTag(const StartTag& tag, std::string_view itsText) : StartTag(tag), text(itsText) {
    const auto copied = [&](std::string_view part) {
        return std::string_view(text).substr(static_cast<std::size_t>(part.data() - itsText.data()), part.size());
    };
    element = copied(tag.element);
    attributes.reset(element);
    for (const auto& [name, value] : tag.attributes) {
        attributes.add(copied(name), copied(value));
    }
}

RememberedTag* TagMemory::remember(const StartTag& tag, std::string_view text) {
    if (const auto known = tags_.find(text); known != tags_.end()) {
        return known->second.get();
    }
    if (isFull() || text.size() > kMaxRememberedTagBytes) {
        return nullptr;
    }
    auto remembered = std::make_unique<RememberedTag>(tag, text);
    remembered->number = tags_.size() + 1;
    const std::string_view key = remembered->text;
    return tags_.emplace(key, std::move(remembered)).first->second.get();
}

} // namespace Pegasus::cimxml
