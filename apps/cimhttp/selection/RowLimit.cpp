#include "selection/RowLimit.h"

#include "Failure.h"

#include <ostream>

namespace cimhttp {

RowLimit::RowLimit(std::optional<std::size_t> limit) : limit_(limit) {
    if (limit_ && *limit_ == 0) {
        throw Failure(Failure::kUsage, "--limit is 1 or more");
    }
}

void RowLimit::Report(const char* things, std::ostream& errors) const {
    if (IsExceeded()) {
        errors << "cimhttp: " << *limit_ << " of " << total_ << ' ' << things << " shown; without --limit all are\n";
    }
}

} // namespace cimhttp
