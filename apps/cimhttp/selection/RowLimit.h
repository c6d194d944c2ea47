#pragma once

#include "Failure.h"

#include <cstddef>
#include <optional>
#include <ostream>
#include <vector>

namespace cimhttp {

/// How many rows of a listing are shown at most.
class RowLimit {
  public:
    /// Throws Failure(kUsage) for a limit of 0.
    explicit RowLimit(std::optional<std::size_t> limit) : limit_(limit) {
        if (limit_ && *limit_ == 0) {
            throw Failure(Failure::kUsage, "--limit is 1 or more");
        }
    }

    /// Drops the rows that are too many.
    template <typename Row>
    void Apply(std::vector<Row>& rows) {
        total_ = rows.size();
        if (IsExceeded()) {
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*limit_), rows.end());
        }
    }

    /// Says in a line that there were more, if so; `things` is the plural of what a row is.
    void Report(const char* things, std::ostream& errors) const {
        if (IsExceeded()) {
            errors << "cimhttp: " << *limit_ << " of " << total_ << ' ' << things
                   << " shown; without --limit all are\n";
        }
    }

  private:
    bool IsExceeded() const { return limit_ && total_ > *limit_; }

    std::optional<std::size_t> limit_;
    std::size_t total_ = 0; // with those that were dropped
};

} // namespace cimhttp
