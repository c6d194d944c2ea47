#include "wire/NodeAccess.h"

#include "wire/CimError.h"

#include <pugixml.hpp>

#include <string_view>

namespace demo {

namespace {

bool IsWhiteSpace(const pugi::xml_node& node) {
    return node.type() == pugi::node_pcdata &&
           std::string_view(node.value()).find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

void RequestNotValid(const std::string& what) {
    constexpr int kBadRequest = 400;
    throw HttpError(kBadRequest, "request-not-valid", what);
}

std::string RequiredAttribute(const pugi::xml_node& node, const char* attribute) {
    const auto found = node.attribute(attribute);
    if (!found) {
        RequestNotValid(std::string("element ") + node.name() + " has no attribute " + attribute);
    }
    return found.value();
}

pugi::xml_node RequiredChild(const pugi::xml_node& node, const char* name) {
    const auto child = node.child(name);
    if (!child) {
        RequestNotValid(std::string("element ") + node.name() + " has no element " + name);
    }
    return child;
}

std::vector<pugi::xml_node> Content(const pugi::xml_node& node) {
    std::vector<pugi::xml_node> content;
    for (const auto& child : node.children()) {
        if (!IsWhiteSpace(child)) {
            content.push_back(child);
        }
    }
    return content;
}

std::string ReadNamespace(const pugi::xml_node& path) {
    std::string result;
    for (const auto& component : path.children("NAMESPACE")) {
        (result += result.empty() ? "" : "/") += RequiredAttribute(component, "NAME");
    }
    return result;
}

} // namespace demo
