#pragma once

#include "output/Listing.h"

#include <functional>
#include <optional>
#include <string>

namespace cimhttp {

using KeyPredicate = std::function<bool(const std::string& name, const NQORVYX20::TCIMValue& value)>;

/// A reference as text with only the keys that are wanted, `Class.…,key="text"`. The dots stand for the others, and
/// show that this is no path to look an instance up with.
std::string TextWithKeys(const NQORVYX20::TCIMReference& reference, const KeyPredicate& isWanted);

/// A copy of the rows, in which a column's references lack the keys that are the same in every one of them; `…` stands
/// for these, so that nobody takes the text for a path. Empty when there are none to leave out, or when nothing else
/// would be left of a column's references.
std::optional<Listing> WithShortReferences(const Listing& listing);

} // namespace cimhttp
