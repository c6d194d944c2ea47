#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cimhttp {

/// A text of a server for the output of a check: one line of at most `width` columns that cannot steer a terminal,
/// with an ellipsis where something is cut off. A vertical bar, after which performance data begins, becomes U+00A6.
std::string StatusText(std::string_view text, std::size_t width);

} // namespace cimhttp
