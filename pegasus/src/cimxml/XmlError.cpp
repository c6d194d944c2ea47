#include "cimxml/XmlError.h"

namespace Pegasus::cimxml {

void throwXmlError(std::initializer_list<std::string_view> parts) {
    constexpr std::size_t kLongestPart = 200;
    std::string message = "the server's answer is not good CIM-XML: ";
    for (const std::string_view part : parts) {
        message += part.substr(0, kLongestPart);
        if (part.size() > kLongestPart)
            message += "...";
    }
    throw CIMClientXmlException(String(std::string_view(message)));
}

} // namespace Pegasus::cimxml
