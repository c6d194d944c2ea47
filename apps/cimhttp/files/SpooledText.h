#pragma once

#include "files/Spool.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

/// A text of which no more than a little is in memory: the rest is in a spool. For one thread at a time.
class SpooledText {
  public:
    /// How much of it is in memory at most.
    static constexpr std::size_t kMostInMemory = std::size_t{256} << 10U;

    explicit SpooledText(std::shared_ptr<Spool> spool) : spool_(std::move(spool)) {}

    void Append(std::string_view text);

    bool IsEmpty() const { return places_.empty() && tail_.empty(); }

    void WriteTo(std::ostream& output) const;

  private:
    std::shared_ptr<Spool> spool_;
    std::vector<Spool::Place> places_;
    std::string tail_; ///< what follows them
};

} // namespace cimhttp
