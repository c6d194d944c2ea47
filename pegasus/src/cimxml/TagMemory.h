#pragma once

#include "cimxml/Limits.h"
#include "cimxml/StartTag.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Pegasus::cimxml {

/// A start tag that was read before, and which tags came after it then. They are likely to do so again: the objects of
/// an answer are mostly of one class.
struct RememberedTag : StartTag {
    RememberedTag(const StartTag& tag, std::string_view itsText);

    const std::string text; ///< the tag from '<' to '>'; element and attributes are views of it
    RememberedTag* firstChild = nullptr;
    RememberedTag* nextSibling = nullptr;
};

/// Remembers start tags, so that one that comes again is compared and not taken apart. What it gives out is valid up
/// to clear().
class TagMemory {
  public:
    /// The tag with that text, which was remembered before or is so now. Null when there is no room for it.
    RememberedTag* remember(const StartTag& tag, std::string_view text);

    /// Whether new tags find no room.
    bool isFull() const noexcept { return tags_.size() == kMaxRememberedTags; }
    void clear() noexcept { tags_.clear(); }

  private:
    std::unordered_map<std::string_view, std::unique_ptr<RememberedTag>> tags_; // by their text
};

} // namespace Pegasus::cimxml
