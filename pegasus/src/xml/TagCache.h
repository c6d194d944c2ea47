#pragma once

#include "xml/CachedTag.h"
#include "xml/StartTag.h"
#include "xml/XmlLimits.h"

#include <memory>
#include <string_view>
#include <unordered_map>

namespace Pegasus::xml {

/// Keeps start tags by their text, so that one that comes again is compared and not parsed. What it gives out is valid
/// up to clear().
class TagCache {
  public:
    /// The tag with that text, which is kept from now on if it was not. Null where there is no room for it.
    CachedTag* findOrAdd(const StartTag& tag, std::string_view text);

    /// Whether new tags find no room.
    bool isFull() const noexcept { return tags_.size() == kMaxCachedTags; }
    void clear() noexcept { tags_.clear(); }

  private:
    std::unordered_map<std::string_view, std::unique_ptr<CachedTag>> tags_; // by their text
};

} // namespace Pegasus::xml
