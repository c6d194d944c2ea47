#include "support/HttpRequest.h"

#include <strings.h>

#include <algorithm>

namespace support {

namespace {

auto Find(const HttpRequest& request, const std::string& name) {
    return std::find_if(request.headers.begin(), request.headers.end(),
                        [&](const auto& header) { return ::strcasecmp(header.first.c_str(), name.c_str()) == 0; });
}

} // namespace

std::string HttpRequest::Header(const std::string& name) const {
    const auto found = Find(*this, name);
    return found == headers.end() ? std::string() : found->second;
}

bool HttpRequest::HasHeader(const std::string& name) const { return Find(*this, name) != headers.end(); }

} // namespace support
