#pragma once

/// The client API. Callers write Pegasus:: alone; `bundled` makes the symbols of this library differ from those of any
/// other library with this API, so that a process may have loaded both.
namespace Pegasus {
inline namespace bundled {

// The base types, named by their width.

using Boolean = bool;
using Uint8 = unsigned char;
using Sint8 = signed char;
using Uint16 = unsigned short;
using Sint16 = short;
using Uint32 = unsigned int;
using Sint32 = int;
using Uint64 = unsigned long long;
using Sint64 = long long;
using Real32 = float;
using Real64 = double;

/// What the find operations return when there is nothing of that name: all bits set.
constexpr Uint32 PEG_NOT_FOUND = ~Uint32{0};

} // namespace bundled
} // namespace Pegasus
