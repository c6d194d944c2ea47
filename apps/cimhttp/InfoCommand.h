#pragma once

#include <iosfwd>

namespace cimhttp {

class Session;

/// Shows the plug-in, the provider that it registered, the server and how many classes it has.
void RunInfoCommand(Session& session, std::ostream& output);

} // namespace cimhttp
