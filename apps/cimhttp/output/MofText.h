#pragma once

#include "HostTypes.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// A value as it stands in MOF (DSP0004 annex A): strings as literals with escapes, folded into adjacent literals where
/// they do not fit a line that begins at column `indent`; reals with a point; arrays in braces; null as NULL. What
/// could steer a terminal is escaped. Reals that are not numbers, for which MOF has no form, are NULL.
std::string MofValue(const NQORVYX20::TCIMValue& value, std::size_t indent);

/// Items with commas between them, over several lines that begin at column `indent` where they do not fit one.
std::string MofList(const std::vector<std::string>& items, std::size_t indent);

} // namespace cimhttp
