#pragma once

/// The base types of the client API, named by their width.
namespace Pegasus {

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

} // namespace Pegasus
