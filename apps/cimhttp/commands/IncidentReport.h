#pragma once

namespace cimhttp {

class IncidentTally;
struct CommandContext;

/// Says on the error stream what could not be taken from a server's answers, if anything, below what was written so
/// far. Returns the exit status for that.
int ReportIncidents(const IncidentTally& incidents, const CommandContext& context);

} // namespace cimhttp
