#pragma once

#include <string>
#include <utility>
#include <vector>

namespace support {

/// One HTTP request as it came, head and body.
struct HttpRequest {
    std::string method;
    std::string target;
    std::string version;
    std::vector<std::pair<std::string, std::string>> headers; ///< in the order of the wire
    std::string body;

    /// The value of a header, found without regard to case; empty when absent.
    std::string Header(const std::string& name) const;
    bool HasHeader(const std::string& name) const;
};

} // namespace support
