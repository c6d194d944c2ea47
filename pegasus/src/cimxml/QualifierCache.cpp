#include "cimxml/QualifierCache.h"

#include "cimxml/Limits.h"

#include <functional>
#include <utility>

namespace Pegasus::cimxml {

std::size_t QualifierCache::defaultHash(std::string_view text) noexcept { return std::hash<std::string_view>()(text); }

const QualifierCache::Entry* QualifierCache::find(std::string_view text) const {
    const auto found = all_.find(hash_(text));
    return found != all_.end() && found->second.text == text ? &found->second : nullptr;
}

void QualifierCache::add(Entry entry) {
    const std::size_t size = entry.text.size();
    full_ = full_ || size > kMaxCachedQualifierBytes - bytes_;
    if (!full_ && all_.emplace(hash_(entry.text), std::move(entry)).second) {
        bytes_ += size;
    }
}

void QualifierCache::clear() noexcept {
    all_.clear();
    bytes_ = 0;
    full_ = false;
}

} // namespace Pegasus::cimxml
