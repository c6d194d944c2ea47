#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace cimhttp {

class IncidentTally;
struct CommandContext;

// What the result of a command lacks is said on the error stream, below what was written so far, if anything is
// lacking. Both return the exit status for that.

/// `remark` is empty for nothing.
int ReportRemark(const std::string& remark, const CommandContext& context);

/// Says what could not be taken from a server's answers.
int ReportIncidents(const IncidentTally& incidents, const CommandContext& context);

/// Says in a line that no class matches the pattern, and that there are `count` others.
void SayThatNoClassMatches(const std::string& pattern, std::size_t count, std::ostream& errors);

/// Says in a line that no instance meets the conditions, and that there are `count` others.
void SayThatNoInstanceMatches(std::size_t count, std::ostream& errors);

} // namespace cimhttp
