#pragma once

#include <iosfwd>

namespace cimhttp {

struct Options;
class Session;

/// Shows the instances of a class as one table. The columns are the properties asked for, or all that have a value
/// somewhere, the keys first. Values are shown as people read them, or raw when that is asked for. A table wider than
/// the output is shown as one list of properties for each instance.
void RunInstancesCommand(Session& session, const Options& options, std::ostream& output);

} // namespace cimhttp
