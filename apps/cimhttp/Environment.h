#pragma once

namespace cimhttp {

struct Options;

/// Fills in what the terminal and the environment say: the widths and kinds of the streams, and the variables COLUMNS,
/// NO_COLOR, TERM and CIMHTTP_PASSWORD.
void ReadEnvironment(Options& options);

} // namespace cimhttp
