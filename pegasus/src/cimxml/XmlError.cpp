#include "cimxml/XmlError.h"

#include "model/Marked.h"

namespace Pegasus::cimxml {

namespace {

String messageOf(std::initializer_list<std::string_view> parts) {
    constexpr std::size_t kLongestPart = 200;
    std::string message = "the server's answer is not good CIM-XML: ";
    for (const std::string_view part : parts) {
        message += part.substr(0, kLongestPart);
        if (part.size() > kLongestPart)
            message += "...";
    }
    return String(std::string_view(message));
}

} // namespace

void throwXmlError(std::initializer_list<std::string_view> parts) { throw CIMClientXmlException(messageOf(parts)); }

void throwPastLimit(std::initializer_list<std::string_view> parts) {
    throw detail::Marked<CIMClientXmlException, ExceedsLimit>(messageOf(parts));
}

} // namespace Pegasus::cimxml
