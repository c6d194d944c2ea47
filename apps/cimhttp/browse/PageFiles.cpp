#include "browse/PageFiles.h"

#include <map>

namespace cimhttp {

std::string MediaTypeOf(std::string_view name) {
    static const std::map<std::string_view, std::string> types{{".html", "text/html; charset=utf-8"},
                                                               {".css", "text/css; charset=utf-8"},
                                                               {".js", "text/javascript; charset=utf-8"},
                                                               {".svg", "image/svg+xml"}};
    const auto dot = name.rfind('.');
    const auto found = dot == std::string_view::npos ? types.end() : types.find(name.substr(dot));
    return found == types.end() ? "application/octet-stream" : found->second;
}

} // namespace cimhttp
