#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

struct Collection;

/// Writes a collection as one page for a browser, which has the JSON of WriteJson() in it and needs nothing else.
/// `losses`: what could not be read, a line each.
void WriteReport(const Collection& collection, const std::vector<std::string>& losses, std::ostream& output);

} // namespace cimhttp
