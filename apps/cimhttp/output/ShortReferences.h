#pragma once

#include <optional>

#include "output/Listing.h"

namespace cimhttp {

/// The same rows, where a column's references lack the keys that are the same in every one of them; `…` stands for
/// these, so that nobody takes the text for a path. Empty when there are none to leave out, or when nothing else would
/// be left of a column's references.
std::optional<Listing> WithShortReferences(const Listing& listing);

} // namespace cimhttp
