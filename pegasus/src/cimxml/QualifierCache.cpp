#include "cimxml/QualifierCache.h"

#include "cimxml/Limits.h"

#include <functional>
#include <utility>

namespace Pegasus::cimxml {

std::size_t QualifierCache::defaultHash(std::string_view text) noexcept { return std::hash<std::string_view>()(text); }

const QualifierCache::Entry* QualifierCache::find(std::string_view text) {
    const auto found = all_.find(hash_(text));
    if (found == all_.end() || found->second.text != text) {
        return nullptr;
    }
    expectFromNowOn(found->second);
    return &found->second;
}

void QualifierCache::add(Entry entry) {
    const std::size_t size = entry.text.size();
    full_ = full_ || size > kMaxCachedQualifierBytes - bytes_;
    if (full_) {
        return;
    }
    const std::size_t hash = hash_(entry.text);
    if (const auto [added, isNew] = all_.emplace(hash, std::move(entry)); isNew) {
        bytes_ += size;
        expectFromNowOn(added->second);
    }
}

void QualifierCache::expectFromNowOn(Entry& entry) noexcept {
    if (last_) {
        last_->next = &entry;
    }
    last_ = &entry;
}

void QualifierCache::clear() noexcept {
    all_.clear();
    last_ = nullptr;
    bytes_ = 0;
    full_ = false;
}

} // namespace Pegasus::cimxml
