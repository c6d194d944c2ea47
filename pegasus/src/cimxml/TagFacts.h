#pragma once

#include "cimxml/StartTag.h"

#include <optional>
#include <vector>

namespace Pegasus::cimxml {

/// What start tags say, decoded once for all tags that are remembered.
template <class Fact>
class TagFacts {
  public:
    /// What `decode(tag)` says of the tag now, or said when it was asked before. Valid up to the next call.
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

} // namespace Pegasus::cimxml
