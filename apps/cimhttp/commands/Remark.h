#pragma once

#include <string>

namespace cimhttp {

struct CommandContext;

/// Says on the error stream, below what was written so far, what the result lacks, unless that is empty. Returns the
/// exit status for that.
int ReportRemark(const std::string& remark, const CommandContext& context);

} // namespace cimhttp
