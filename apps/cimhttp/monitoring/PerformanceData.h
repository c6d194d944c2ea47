#pragma once

#include "monitoring/Quantity.h"
#include "monitoring/ThresholdRange.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// Numbers for the graphs of a monitoring system: `'label'=value[unit];warning;critical`. What may follow, the
/// least and the greatest number, is left out.
class PerformanceData {
  public:
    struct Number {
        std::string label;    ///< of a server; what a label may not have is replaced
        std::string identity; ///< what tells it from others with the same label
        Quantity quantity;
        bool isCounter = false;
        std::string warning; ///< ranges in the base unit
        std::string critical;
    };

    /// Those beyond a thousand are counted only.
    void Add(Number number);

    /// How many were added.
    std::size_t Count() const { return count_; }
    std::size_t ShownCount() const { return numbers_.size(); }

    /// One line without its end. Each label is there once.
    std::string Text() const;

  private:
    std::vector<Number> numbers_;
    std::size_t count_ = 0;
};

} // namespace cimhttp
