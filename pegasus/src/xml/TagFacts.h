#pragma once

#include "xml/StartTag.h"

#include <optional>
#include <vector>

namespace Pegasus::xml {

/// What start tags say, decoded once for each tag of a cache.
template <class Fact>
class TagFacts {
  public:
    /// What `decode(tag)` returns, or returned before for a tag of the cache. Valid up to the next call.
    template <class Decode>
    const Fact& get(const StartTag& tag, Decode decode) {
        if (facts_.size() <= tag.number) {
            facts_.resize(tag.number + 1);
        }
        std::optional<Fact>& fact = facts_[tag.number];
        if (!fact || tag.number == 0) {
            fact = decode(tag);
        }
        return *fact;
    }

    void clear() noexcept { facts_.clear(); }

  private:
    std::vector<std::optional<Fact>> facts_; // by the tag's number
};

} // namespace Pegasus::xml
