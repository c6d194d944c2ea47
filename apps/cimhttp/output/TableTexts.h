#pragma once

#include "output/Listing.h"

#include <cstddef>
#include <string>
#include <vector>

namespace cimhttp {

/// A listing as a table shows it: texts that are safe to show, and the columns of a terminal that they take.
class TableTexts {
  public:
    /// The listing must live as long.
    explicit TableTexts(const Listing& listing);

    const std::vector<Listing::Column>& Columns() const { return columns_; }
    const std::vector<std::string>& Headings() const { return headings_; }
    const std::vector<std::vector<std::string>>& Rows() const { return rows_; }

    std::size_t HeadingWidth(std::size_t column) const { return headingWidths_[column]; }

    /// The width of the widest text below the heading.
    std::size_t TextWidth(std::size_t column) const { return widths_[column]; }

    /// Whether a text is so long that only its front is here.
    bool HasCutTexts() const { return hasCutTexts_; }

  private:
    const std::vector<Listing::Column>& columns_;
    std::vector<std::string> headings_;
    std::vector<std::vector<std::string>> rows_;
    std::vector<std::size_t> headingWidths_;
    std::vector<std::size_t> widths_;
    bool hasCutTexts_ = false;
};

} // namespace cimhttp
