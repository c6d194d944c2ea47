#pragma once

#include <cstddef>

namespace Pegasus::http {

/// What was done to a head.
struct HeadRepair {
    std::size_t size;      ///< of the head and what follows it, as it is now
    bool ignoresItsLength; ///< it says its length in two ways
};

/// Makes a head of an answer one that the parser takes, where it means nothing else: a status without the blank behind
/// it (RFC 9112, 4), and a length beside the coding "chunked", which overrides it (RFC 9112, 6.3). `bytes` begin with a
/// complete head of `headSize`; there is room for one byte more than `size`.
HeadRepair repairHead(char* bytes, std::size_t headSize, std::size_t size);

} // namespace Pegasus::http
