#pragma once

#include "output/Listing.h"

#include <string>
#include <vector>

namespace cimhttp {

/// The rows of several servers in one listing, whose first column names the server. Where the servers have different
/// columns, it has those of all: what only one server has stands after the column that it follows there. A row has no
/// value in the columns that its server lacks.
class MergedListing {
  public:
    void Add(const std::string& server, const Listing& listing);

    bool IsEmpty() const { return listings_.empty(); }

    Listing AsListing() const;

  private:
    struct Part {
        std::string server;
        Listing listing;
    };

    std::vector<Listing::Column> columns_; // of all, without that of the server
    std::vector<Part> listings_;
};

/// A listing with a first column that names the server.
Listing WithServer(const std::string& server, const Listing& listing);

} // namespace cimhttp
