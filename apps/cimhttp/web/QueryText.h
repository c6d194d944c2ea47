#pragma once

#include <map>
#include <string>

namespace cimhttp {

/// The parameters of a URL's query, `target=a&module=b%20c`, decoded. Of a name that comes twice, the first counts.
std::map<std::string, std::string> QueryParameters(const std::string& query);

} // namespace cimhttp
