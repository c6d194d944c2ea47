#pragma once

#include "live/LiveView.h"
#include "live/Picture.h"

namespace cimhttp {

/// Draws what a view shows.
Picture PictureOf(const LiveView& view);

/// A bar of so many characters for a share of the whole, to an eighth of a character; without UTF-8 of `#`.
std::string BarText(double share, std::size_t width, bool isUtf8);

/// A block for each span, as high as its mean among these numbers; a blank for none.
std::string BlocksText(const History::Means& means, double least, double greatest, bool isUtf8);

} // namespace cimhttp
