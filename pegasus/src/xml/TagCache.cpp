#include "xml/TagCache.h"

#include <utility>

namespace Pegasus::xml {

CachedTag* TagCache::findOrAdd(const StartTag& tag, std::string_view text) {
    if (const auto known = tags_.find(text); known != tags_.end()) {
        return known->second.get();
    }
    if (isFull() || text.size() > kMaxCachedTagBytes) {
        return nullptr;
    }
    auto cached = std::make_unique<CachedTag>(tag, text);
    cached->number = tags_.size() + 1;
    const std::string_view key = cached->text;
    return tags_.emplace(key, std::move(cached)).first->second.get();
}

} // namespace Pegasus::xml
