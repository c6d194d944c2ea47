#pragma once

namespace cimhttp {

/// Whether the terminal of TERM is known, and can be written to at any place.
bool KnowsTerminal();

} // namespace cimhttp
