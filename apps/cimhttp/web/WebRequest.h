#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace cimhttp {

/// What a client of the program's own web server asks for, and what it gets.
struct WebRequest {
    std::string path;                              ///< without the query, as it was sent, `/probe`
    std::map<std::string, std::string> parameters; ///< of the query, decoded; of a name that comes twice, the first
    std::map<std::string, std::string> headers;    ///< by their names in lower case
    bool isPost = false;                           ///< otherwise it is GET or HEAD
    std::string body = {};                         ///< of POST
};

struct WebAnswer {
    unsigned status = 200;
    std::string type = "text/plain; charset=utf-8";
    std::string body = {};
    std::vector<std::pair<std::string, std::string>> headers = {}; ///< further ones
};

/// Called from several threads. What it throws becomes an answer with the status 500.
using WebHandler = std::function<WebAnswer(const WebRequest&)>;

} // namespace cimhttp
