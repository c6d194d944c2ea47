#include "text/ClassInPath.h"

namespace cimhttp {

std::string ClassInPath(const std::string& path) {
    const std::string head = path.substr(0, path.find('='));
    const std::string name = head.substr(head.rfind(':') + 1);
    return name.substr(0, name.find('.'));
}

} // namespace cimhttp
