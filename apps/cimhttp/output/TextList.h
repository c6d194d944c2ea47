#pragma once

#include "output/TextStyle.h"

#include <iosfwd>

namespace cimhttp {

class Listing;

/// Writes each row as lines of heading and text, with an empty line between two rows. Long texts go on below
/// themselves. A value that is null is an en dash.
void WriteLists(const Listing& listing, const TextStyle& style, std::ostream& output);

} // namespace cimhttp
