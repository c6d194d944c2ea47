#include "output/MergedListing.h"

#include <algorithm>
#include <iterator>

namespace cimhttp {

namespace {

using Columns = std::vector<Listing::Column>;

const Listing::Column kServer{"Server", Listing::Align::kLeft, Listing::Importance::kAsked};

/// The place of a column with the heading of another; the end where there is none.
std::size_t PlaceOf(const Listing::Column& column, const Columns& columns) {
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const Listing::Column& known) { return known.heading == column.heading; });
    return static_cast<std::size_t>(std::distance(columns.begin(), found));
}

Columns WithServer(const Columns& columns) {
    Columns all{kServer};
    all.insert(all.end(), columns.begin(), columns.end());
    return all;
}

} // namespace

void MergedListing::Add(const std::string& server, const Listing& listing) {
    std::size_t place = 0; // where a column that is new goes
    for (const Listing::Column& column : listing.Columns()) {
        const std::size_t known = PlaceOf(column, columns_);
        if (known < columns_.size()) {
            place = known + 1;
        } else {
            columns_.insert(columns_.begin() + static_cast<std::ptrdiff_t>(place), column);
            ++place;
        }
    }
    listings_.push_back({server, listing});
}

Listing MergedListing::AsListing() const {
    Listing all(WithServer(columns_));
    for (const auto& [server, listing] : listings_) {
        std::vector<std::size_t> places;
        for (const Listing::Column& column : listing.Columns()) {
            places.push_back(PlaceOf(column, columns_) + 1);
        }
        for (const auto& cells : listing.Rows()) {
            std::vector<Cell> row(columns_.size() + 1, Cell::Null());
            row[0] = server;
            for (std::size_t i = 0; i < cells.size(); ++i) {
                row[places[i]] = cells[i];
            }
            all.AddRow(std::move(row));
        }
    }
    return all;
}

Listing WithServer(const std::string& server, const Listing& listing) {
    Listing named(WithServer(listing.Columns()));
    for (const auto& cells : listing.Rows()) {
        std::vector<Cell> row{server};
        row.insert(row.end(), cells.begin(), cells.end());
        named.AddRow(std::move(row));
    }
    return named;
}

} // namespace cimhttp
