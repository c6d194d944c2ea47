#pragma once

#include <map>
#include <string>
#include <vector>

namespace cimhttp {

/// The parameters of a URL's query, `target=a&module=b%20c`, decoded. Of a name that comes twice, the first counts.
std::map<std::string, std::string> QueryParameters(const std::string& query);

/// The parts of a URL's path, `/api/servers/a%20b`, decoded.
std::vector<std::string> PathParts(const std::string& path);

/// A text as a part of a path, or as a value in a query: all but letters, digits and `-._~` as percent signs and
/// digits.
std::string PercentEncoded(const std::string& text);

} // namespace cimhttp
