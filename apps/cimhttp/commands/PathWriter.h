#pragma once

#include "output/OutputFormat.h"

#include <string>
#include <vector>

namespace cimhttp {

struct CommandContext;

/// Writes object paths in their order: one a line, as a JSON array of texts, or as CSV with the heading `Path`.
void WritePaths(const std::vector<std::string>& paths, OutputFormat format, const CommandContext& context);

} // namespace cimhttp
