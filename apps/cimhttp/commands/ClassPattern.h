#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace cimhttp {

/// Whether a class is one of those that a user asks for; an empty pattern asks for all.
bool IsSelected(const std::string& pattern, const std::string& className);

/// Says in a line that no class matches the pattern, and that there are `count` others.
void SayThatNoClassMatches(const std::string& pattern, std::size_t count, std::ostream& errors);

} // namespace cimhttp
