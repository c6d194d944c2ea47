#pragma once

#include <iosfwd>
#include <string>

namespace cimhttp {

class Session;

/// Shows a class as MOF.
void RunClassCommand(Session& session, const std::string& name, std::ostream& output);

} // namespace cimhttp
