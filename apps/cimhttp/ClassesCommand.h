#pragma once

#include <iosfwd>
#include <string>

namespace cimhttp {

class Session;

/// Lists the server's class names in alphabetical order, one a line; with a pattern only those that match it as a
/// whole, without regard to case (`*`, `?` and `[…]` as in a shell).
void RunClassesCommand(Session& session, const std::string& pattern, std::ostream& output);

} // namespace cimhttp
