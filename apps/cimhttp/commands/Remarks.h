#pragma once

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

} // namespace cimhttp
