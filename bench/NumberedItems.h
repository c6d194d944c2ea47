#pragma once

#include "server/CimService.h"

#include <cstdint>

namespace bench {

/// A service with one class of five properties, BENCH_Item, of which there are so many instances, none of them before
/// it is asked for.
demo::CimService NumberedItems(std::uint64_t count);

} // namespace bench
