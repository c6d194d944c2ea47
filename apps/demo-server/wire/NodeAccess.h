#pragma once

#include <string>
#include <vector>

namespace pugi {
class xml_node;
}

namespace demo {

// What the readers of requests have in common. All throw HttpError (request-not-valid) where the element does not hold
// what DSP0201 demands of it.

[[noreturn]] void RequestNotValid(const std::string& what);

std::string RequiredAttribute(const pugi::xml_node& node, const char* attribute);

pugi::xml_node RequiredChild(const pugi::xml_node& node, const char* name);

/// What stands in an element that holds elements: those, and any text, which is out of place. White space, with which
/// clients lay out their requests, is neither.
std::vector<pugi::xml_node> Content(const pugi::xml_node& node);

/// The components of a LOCALNAMESPACEPATH with "/" between them.
std::string ReadNamespace(const pugi::xml_node& path);

} // namespace demo
