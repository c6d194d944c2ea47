#pragma once

#include <string>
#include <vector>

namespace NQORVYX20 {

/// " (did you mean 'trust'?)" with that of the names from which a mistyped one differs least; empty when none is near.
std::string NearestNameHint(const std::string& mistyped, const std::vector<std::string>& names);

} // namespace NQORVYX20
