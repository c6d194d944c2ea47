#pragma once

#include <string>

namespace cimhttp {

/// Whether a text as a whole matches a pattern of a shell (`*`, `?`, `[…]`), without regard to case.
bool Matches(const std::string& pattern, const std::string& text);

/// Whether two names are the same, which case does not tell apart (DSP0004 5.1.2.1).
bool IsSameName(const std::string& name, const std::string& other);

} // namespace cimhttp
